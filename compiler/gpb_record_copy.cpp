// Records as messages of protobuf.
#include <google/protobuf/descriptor.h>
#include <string>
#include <vector>

#include "compiler/gpb_record_writer.h"
#include "compiler/gpb_sub_message.h"

using google::protobuf::FieldDescriptor;
using google::protobuf::Message;
using google::protobuf::Reflection;

namespace
{

template <typename Float, typename Bits>
Float FromBits(uint64_t number)
{
    const auto bits = static_cast<Bits>(number);
    Float value = 0;
    std::memcpy(&value, &bits, sizeof(value));
    return value;
}

// Setters and adders of protobuf, under one name each.
struct Setting
{
    const Reflection &reflection;
    Message &message;
    const FieldDescriptor *field;

    template <typename Value>
    void Take(Value value, void (Reflection::*set)(Message *, const FieldDescriptor *, Value) const,
              void (Reflection::*add)(Message *, const FieldDescriptor *, Value) const) const
    {
        (reflection.*(field->is_repeated() ? add : set))(&message, field, std::move(value));
    }
};

void CopyValue(const Setting &to, GpbRecordValue value)
{
    switch (to.field->cpp_type())
    {
    case FieldDescriptor::CPPTYPE_INT32:
        to.Take(static_cast<int32_t>(value.number), &Reflection::SetInt32, &Reflection::AddInt32);
        break;
    case FieldDescriptor::CPPTYPE_INT64:
        to.Take(static_cast<int64_t>(value.number), &Reflection::SetInt64, &Reflection::AddInt64);
        break;
    case FieldDescriptor::CPPTYPE_UINT32:
        to.Take(static_cast<uint32_t>(value.number), &Reflection::SetUInt32, &Reflection::AddUInt32);
        break;
    case FieldDescriptor::CPPTYPE_UINT64:
        to.Take(value.number, &Reflection::SetUInt64, &Reflection::AddUInt64);
        break;
    case FieldDescriptor::CPPTYPE_DOUBLE:
        to.Take(FromBits<double, uint64_t>(value.number), &Reflection::SetDouble, &Reflection::AddDouble);
        break;
    case FieldDescriptor::CPPTYPE_FLOAT:
        to.Take(FromBits<float, uint32_t>(value.number), &Reflection::SetFloat, &Reflection::AddFloat);
        break;
    case FieldDescriptor::CPPTYPE_BOOL:
        to.Take(value.number != 0, &Reflection::SetBool, &Reflection::AddBool);
        break;
    case FieldDescriptor::CPPTYPE_ENUM:
        to.Take(static_cast<int>(value.number), &Reflection::SetEnumValue, &Reflection::AddEnumValue);
        break;
    case FieldDescriptor::CPPTYPE_STRING:
        to.Take(std::string(value.text->View()), &Reflection::SetString, &Reflection::AddString);
        break;
    case FieldDescriptor::CPPTYPE_MESSAGE:
        GpbCopyRecord(*value.record, *(to.field->is_repeated() ? GpbAddSubMessage(&to.message, to.field)
                                                               : GpbMutableSubMessage(&to.message, to.field)));
        break;
    }
}

} // namespace

void GpbCopyRecord(const GpbRecord &record, Message &message)
{
    const Reflection &reflection = *message.GetReflection();
    record.ForEachFromLast(
        [&](const GpbRecordField &field, GpbRecordValue value)
        {
            const Setting to = {reflection, message, field.field};
            if (!field.isRepeated)
            {
                CopyValue(to, value);
                return;
            }
            std::vector<GpbRecordValue> values;
            for (const GpbRecordCell *cell = value.last; cell != nullptr; cell = cell->previous)
            {
                values.push_back(cell->value);
            }
            for (auto next = values.rbegin(); next != values.rend(); ++next)
            {
                CopyValue(to, *next);
            }
        });
}
