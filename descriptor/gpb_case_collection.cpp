#include "descriptor/gpb_case_collection.h"

#include <vector>

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;
using google::protobuf::OneofDescriptor;

namespace
{

// A message whose fields are being gone through.
struct Level
{
    const Descriptor *message;
    int nextField;
};

bool IsMessage(const FieldDescriptor *field)
{
    return field->type() == FieldDescriptor::TYPE_MESSAGE;
}

// The oneof that protobuf makes up around a proto3 optional field is no choice.
bool IsCaseField(const FieldDescriptor *field)
{
    return field->real_containing_oneof() != nullptr;
}

} // namespace

uint32_t GpbCollectCases(const Descriptor *message, const FieldDescriptor **fields, uint32_t capacity, uint32_t &count)
{
    uint32_t collected = count;
    for (int i = 0; i < message->real_oneof_decl_count(); ++i)
    {
        const OneofDescriptor *choice = message->oneof_decl(i);
        for (int k = 0; k < choice->field_count(); ++k)
        {
            const FieldDescriptor *field = choice->field(k);
            if (!IsMessage(field))
            {
                continue;
            }
            if (collected >= capacity)
            {
                return 1;
            }
            fields[collected++] = field;
            // Full means that the last place is taken, so one place fewer than the capacity can be used.
            if (collected == capacity || GpbCollectCaseFields(field->message_type(), fields, capacity, collected) != 0)
            {
                return 1;
            }
        }
    }
    count = collected;
    return 0;
}

uint32_t GpbCollectCaseFields(const Descriptor *message, const FieldDescriptor **fields, uint32_t capacity,
                              uint32_t &count)
{
    uint32_t collected = count;
    if (collected >= capacity)
    {
        return 1;
    }
    // A case that contains itself goes as deep as the capacity, which is the caller's: so the way down is kept here and
    // not on the call stack.
    std::vector<Level> outer;
    Level level = {message, 0};
    for (;;)
    {
        if (level.nextField == level.message->field_count())
        {
            if (outer.empty())
            {
                break;
            }
            level = outer.back();
            outer.pop_back();
            continue;
        }
        const FieldDescriptor *field = level.message->field(level.nextField++);
        if (!IsMessage(field))
        {
            continue;
        }
        fields[collected++] = field;
        if (collected == capacity)
        {
            return 1;
        }
        if (IsCaseField(field))
        {
            outer.push_back(level);
            level = {field->message_type(), 0};
        }
    }
    count = collected;
    return 0;
}
