// The textbook way from a document to bytes: names converted as they come, fields asked of the descriptor, values set
// through reflection, protobuf's own serialization.
#ifndef GPB_BENCH_SUPPORT_TEXTBOOK_WALK_H
#define GPB_BENCH_SUPPORT_TEXTBOOK_WALK_H

#include <memory>
#include <stdexcept>
#include <string>

#include <google/protobuf/descriptor.h>
#include <google/protobuf/message.h>

#include "support/reflection_store.h"

namespace gpbbench
{

/// Knows neither choices nor lists of values.
template <typename Dom>
class TextbookWalk
{
public:
    using Node = typename Dom::Node;

    static void Encode(const google::protobuf::Message &prototype, const Node *root, std::string &bytes)
    {
        const std::unique_ptr<google::protobuf::Message> message(prototype.New());
        Fill(root, message.get());
        if (!message->SerializeToString(&bytes))
        {
            throw std::runtime_error("the message cannot be serialized");
        }
    }

private:
    static void Fill(const Node *parent, google::protobuf::Message *message)
    {
        Dom::ForEachNode(parent,
                         [&](const char *nodeName, const Node *node)
                         {
                             const google::protobuf::FieldDescriptor *field =
                                 message->GetDescriptor()->FindFieldByLowercaseName(FieldName(nodeName));
                             if (field->message_type() != nullptr)
                             {
                                 Fill(node, OpenMessage(message, field));
                                 return;
                             }
                             StoreLeaf<Dom>(message, field, node,
                                            [&](const char *text)
                                            {
                                                const google::protobuf::EnumDescriptor *type = field->enum_type();
                                                return type->FindValueByName(type->name() + "_" + text)->number();
                                            });
                         });
    }

    static std::string FieldName(const char *nodeName)
    {
        std::string name = nodeName;
        for (char &c : name)
        {
            c = c == '-' ? '_' : (c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c);
        }
        return name;
    }
};

} // namespace gpbbench

#endif
