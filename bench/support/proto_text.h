// Writes `.proto` and XML texts, indented, with names by the rules that tie modules to `.proto` files.
#ifndef GPB_BENCH_SUPPORT_PROTO_TEXT_H
#define GPB_BENCH_SUPPORT_PROTO_TEXT_H

#include <cstddef>
#include <string>

namespace gpbbench
{

/// The kinds of leaves; makers go through them in turn, so that every translator takes part.
enum class LeafKind
{
    STRING,
    UINT32,
    BOOL,
    ENUM,
    INT64,
    DOUBLE,
    UINT64,
    EMPTY
};

/// The kind of the n-th leaf of a message.
LeafKind LeafKindOf(size_t index);

/// A `.proto` text in the making.
class ProtoText
{
public:
    explicit ProtoText(const std::string &package);

    void OpenMessage(const std::string &name);
    void CloseMessage();
    void OpenChoice(const std::string &name);
    void CloseChoice();

    /// The enum type that leaves of kind ENUM have; each message with such leaves declares it.
    void DeclareEnum();

    void LeafField(const std::string &nodeName, LeafKind kind, int number);
    void MessageField(const std::string &nodeName, const std::string &type, int number, bool repeated);

    const std::string &Text() const { return text_; }

private:
    void Line(const std::string &line);

    std::string text_;
    size_t depth_ = 0;
};

/// An XML document in the making; counts its leaves.
class XmlText
{
public:
    void Open(const std::string &name);
    void Close(const std::string &name);

    /// A leaf of a kind; its value depends on `seed` and is never the kind's zero value.
    void Leaf(const std::string &name, LeafKind kind, size_t seed);

    size_t Leaves() const { return leaves_; }
    const std::string &Text() const { return text_; }

private:
    std::string text_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    size_t depth_ = 0;
    size_t leaves_ = 0;
};

} // namespace gpbbench

#endif
