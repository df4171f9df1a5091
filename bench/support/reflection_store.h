// Storing a leaf through reflection, as every peer that fills a dynamic message does it.
#ifndef GPB_BENCH_SUPPORT_REFLECTION_STORE_H
#define GPB_BENCH_SUPPORT_REFLECTION_STORE_H

#include <stdexcept>

#include <google/protobuf/descriptor.h>
#include <google/protobuf/message.h>

namespace gpbbench
{

/// Stores a leaf in a singular field; `enumNumber(text)` is asked for the number of an enum value.
template <typename Dom, typename EnumNumber>
void StoreLeaf(google::protobuf::Message *message, const google::protobuf::FieldDescriptor *field,
               const typename Dom::Node *leaf, const EnumNumber &enumNumber)
{
    using google::protobuf::FieldDescriptor;
    const google::protobuf::Reflection *reflection = message->GetReflection();
    switch (field->cpp_type())
    {
    case FieldDescriptor::CPPTYPE_STRING:
        reflection->SetString(message, field, Dom::Text(leaf));
        break;
    case FieldDescriptor::CPPTYPE_UINT32:
        reflection->SetUInt32(message, field, Dom::UInt32(leaf));
        break;
    case FieldDescriptor::CPPTYPE_UINT64:
        reflection->SetUInt64(message, field, Dom::UInt64(leaf));
        break;
    case FieldDescriptor::CPPTYPE_INT64:
        reflection->SetInt64(message, field, Dom::Int64(leaf));
        break;
    case FieldDescriptor::CPPTYPE_DOUBLE:
        reflection->SetDouble(message, field, Dom::Double(leaf));
        break;
    case FieldDescriptor::CPPTYPE_BOOL:
        reflection->SetBool(message, field, Dom::Bool(leaf));
        break;
    case FieldDescriptor::CPPTYPE_ENUM:
        reflection->SetEnumValue(message, field, enumNumber(Dom::Text(leaf)));
        break;
    default:
        throw std::runtime_error("no way to store " + field->full_name());
    }
}

/// The message that a container or a list entry fills.
inline google::protobuf::Message *OpenMessage(google::protobuf::Message *parent,
                                              const google::protobuf::FieldDescriptor *field)
{
    const google::protobuf::Reflection *reflection = parent->GetReflection();
    return field->is_repeated() ? reflection->AddMessage(parent, field) : reflection->MutableMessage(parent, field);
}

} // namespace gpbbench

#endif
