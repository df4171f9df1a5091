// The floor under an encoder that fills dynamic messages: a walk made for one document, which knows the field of every
// node beforehand.
#ifndef GPB_BENCH_SUPPORT_FLOOR_WALK_H
#define GPB_BENCH_SUPPORT_FLOOR_WALK_H

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <google/protobuf/descriptor.h>
#include <google/protobuf/message.h>

#include "support/reflection_store.h"

namespace gpbbench
{

/// Fills a dynamic message through reflection and serializes it, with nothing left to look up but enum values. Knows
/// no lists of values; it shares no code with the library.
template <typename Dom>
class FloorWalk
{
public:
    using Node = typename Dom::Node;

    /// Resolves the field of every node below `root`, by the plain naming rules; std::runtime_error when one has none.
    FloorWalk(const google::protobuf::Descriptor *type, const Node *root) : type_(type), root_(root)
    {
        if (type_ == nullptr || root_ == nullptr)
        {
            throw std::runtime_error("no message type or no document to walk");
        }
        Resolve(type_, root_);
    }

    const google::protobuf::Descriptor *Type() const { return type_; }

    /// Encodes the document into `bytes` by way of a new message.
    void Encode(const google::protobuf::Message &prototype, std::string &bytes) const
    {
        const std::unique_ptr<google::protobuf::Message> message(prototype.New());
        const Step *next = steps_.data();
        Fill(next, root_, message.get());
        if (!message->SerializeToString(&bytes))
        {
            throw std::runtime_error("the message cannot be serialized");
        }
    }

private:
    using Field = google::protobuf::FieldDescriptor;
    using MessageType = google::protobuf::Descriptor;
    using EnumNumbers = std::map<std::string, int, std::less<>>;

    /// Cases in each other, outermost first.
    static constexpr size_t MAX_CASES = 2;

    /// What a node stands for; one per node, in document order.
    struct Step
    {
        const Field *field = nullptr;
        const Field *caseFields[MAX_CASES] = {}; ///< the cases that hold the field
        const EnumNumbers *enumNumbers = nullptr;
    };

    void Resolve(const MessageType *type, const Node *parent)
    {
        Dom::ForEachNode(parent,
                         [&](const char *nodeName, const Node *node)
                         {
                             std::string name = nodeName;
                             std::replace(name.begin(), name.end(), '-', '_');
                             Step step;
                             if (!FindField(type, name, 0, step))
                             {
                                 throw std::runtime_error("no field for node " + name);
                             }
                             if (step.field->enum_type() != nullptr)
                             {
                                 step.enumNumbers = NumbersOf(step.field->enum_type());
                             }
                             steps_.push_back(step);
                             if (step.field->message_type() != nullptr)
                             {
                                 Resolve(step.field->message_type(), node);
                             }
                         });
    }

    static bool FindField(const MessageType *type, const std::string &name, size_t depth, Step &step)
    {
        step.field = type->FindFieldByName(name);
        for (int i = 0; step.field == nullptr && depth < MAX_CASES && i < type->field_count(); ++i)
        {
            const Field *member = type->field(i);
            if (member->real_containing_oneof() != nullptr && member->message_type() != nullptr)
            {
                step.caseFields[depth] = FindField(member->message_type(), name, depth + 1, step) ? member : nullptr;
            }
        }
        return step.field != nullptr;
    }

    const EnumNumbers *NumbersOf(const google::protobuf::EnumDescriptor *type)
    {
        EnumNumbers &numbers = enums_[type];
        for (int i = 0; i < type->value_count(); ++i)
        {
            // A value is named TYPE_VALUE.
            numbers.emplace(type->value(i)->name().substr(type->name().size() + 1), type->value(i)->number());
        }
        return &numbers;
    }

    static void Fill(const Step *&next, const Node *parent, google::protobuf::Message *message)
    {
        Dom::ForEachNode(parent,
                         [&](const char * /*name*/, const Node *node)
                         {
                             const Step &here = *next++;
                             google::protobuf::Message *target = message;
                             for (size_t i = 0; i < MAX_CASES && here.caseFields[i] != nullptr; ++i)
                             {
                                 target = OpenMessage(target, here.caseFields[i]);
                             }
                             if (here.field->cpp_type() == Field::CPPTYPE_MESSAGE)
                             {
                                 Fill(next, node, OpenMessage(target, here.field));
                                 return;
                             }
                             StoreLeaf<Dom>(target, here.field, node,
                                            [&](const char *text)
                                            { return here.enumNumbers->find(std::string_view(text))->second; });
                         });
    }

    const MessageType *type_;
    const Node *root_;
    std::map<const google::protobuf::EnumDescriptor *, EnumNumbers> enums_;
    std::vector<Step> steps_;
};

} // namespace gpbbench

#endif
