/** Whether a message holds the data of a document, leaf by leaf, as libyang sees them. */
#ifndef GPB_TESTS_MODELS_DATA_MATCH_H
#define GPB_TESTS_MODELS_DATA_MATCH_H

#include <map>
#include <string>
#include <vector>

#include "yang/proto_model.h"

struct lyd_node;
struct lysc_node;

namespace google::protobuf
{
class FieldDescriptor;
class Message;
} // namespace google::protobuf

namespace gpbtest
{

/** One node of the document that the message does not hold as it is. */
struct Difference
{
    std::string path; /**< schema path */
    std::string text;
    std::string value;   /**< of a leaf; else empty */
    bool isList = false; /**< a value of a leaf-list, where one that is lost moves the others */
};

/** A difference at a node, "name text". */
Difference differenceOf(const lyd_node &node, const std::string &text);

/** Whether two texts are one value of a leaf: prefixes of names in it may differ. */
bool isSameValue(const lysc_node &schema, const std::string &a, const std::string &b);

class DataMatch
{
public:
    /** @param file  made from the schema that the data belong to */
    explicit DataMatch(const gpbyang::ProtoFile &file) : m_file(file) {}

    /** Compares a top-level node with its message, in both directions. */
    void compare(const lyd_node &top, const google::protobuf::Message &message);

    /** Values in the documents; a leaf of bits has one for each bit. */
    std::size_t leaves() const { return m_leaves; }
    /** Values that the messages do not have in their places. */
    std::size_t lost() const { return m_lost; }
    const std::vector<Difference> &differences() const { return m_differences; }

private:
    using Message = google::protobuf::Message;
    using FieldDescriptor = google::protobuf::FieldDescriptor;

    /** A field with the message that holds it, which may be a case's. */
    struct Place
    {
        const gpbyang::ProtoField *field = nullptr;
        const Message *message = nullptr;
    };

    void children(const lyd_node &parent, const gpbyang::ProtoMessage &type, const Message &message);
    Place find(const lyd_node &node, const gpbyang::ProtoMessage &type, const Message &message) const;
    void leaf(const lyd_node &node, const Place &place, int index);
    void missing(const lyd_node &node);
    void report(const lyd_node &node, const std::string &text);

    const gpbyang::ProtoFile &m_file;
    std::size_t m_leaves = 0;
    std::size_t m_lost = 0;
    std::vector<Difference> m_differences;
};

/** Number of values that a document has in a node and below it, as DataMatch counts them. */
std::size_t countLeaves(const lyd_node &node);

} // namespace gpbtest

#endif
