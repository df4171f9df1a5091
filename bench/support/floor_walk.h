// The floor under an XML to GPB encoder: a walk written for one document, which knows every element's field beforehand.
#ifndef GPB_BENCH_SUPPORT_FLOOR_WALK_H
#define GPB_BENCH_SUPPORT_FLOOR_WALK_H

#include <functional>
#include <map>
#include <string>
#include <vector>

#include <google/protobuf/descriptor.h>
#include <google/protobuf/message.h>
#include <libxml/tree.h>

namespace gpbbench
{

/// Fills a dynamic message through reflection and serializes it, with nothing left to look up but enum values. Knows
/// no lists of values; it shares no code with the library.
class FloorWalk
{
public:
    /// Resolves the field of every element of the document, by the plain naming rules; std::runtime_error when one has
    /// none.
    FloorWalk(const google::protobuf::Descriptor *type, xmlDoc *document);

    const google::protobuf::Descriptor *Type() const { return type_; }

    /// Encodes the document into `bytes` by way of a new message.
    void Encode(const google::protobuf::Message &prototype, std::string &bytes) const;

private:
    using EnumNumbers = std::map<std::string, int, std::less<>>;

    /// What an element stands for; one per element, in document order.
    struct Step
    {
        const google::protobuf::FieldDescriptor *field = nullptr;
        const google::protobuf::FieldDescriptor *caseField = nullptr; ///< the case that holds the field, or null
        const EnumNumbers *enumNumbers = nullptr;
    };

    void Resolve(const google::protobuf::Descriptor *type, const xmlNode *parent);
    Step FindStep(const google::protobuf::Descriptor *type, const xmlNode *element);
    const EnumNumbers *NumbersOf(const google::protobuf::EnumDescriptor *type);
    static const Step *Fill(const Step *step, const xmlNode *parent, google::protobuf::Message *message);
    static void Store(const Step &step, const xmlNode *leaf, google::protobuf::Message *message);

    const google::protobuf::Descriptor *type_;
    xmlNode *root_;
    std::map<const google::protobuf::EnumDescriptor *, EnumNumbers> enums_;
    std::vector<Step> steps_;
};

} // namespace gpbbench

#endif
