// The cases of choices: message-typed members of oneofs, and what lies in them.
#include <google/protobuf/descriptor.h>

#include "gpb_templatelib/gpb_descriptor.h"

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;
using google::protobuf::OneofDescriptor;

namespace
{

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

uint32_t GPB_GetOneofCaseChilds(const Descriptor *pstMessage, const FieldDescriptor **ppstFields, uint32_t uiCapacity,
                                uint32_t *puiCount)
{
    if (pstMessage == nullptr || ppstFields == nullptr || puiCount == nullptr)
    {
        return 0;
    }
    uint32_t count = *puiCount;
    for (int i = 0; i < pstMessage->real_oneof_decl_count(); ++i)
    {
        const OneofDescriptor *choice = pstMessage->oneof_decl(i);
        for (int k = 0; k < choice->field_count(); ++k)
        {
            const FieldDescriptor *field = choice->field(k);
            if (!IsMessage(field))
            {
                continue;
            }
            if (count >= uiCapacity)
            {
                return 1;
            }
            ppstFields[count++] = field;
            // Full means that the last place is taken, so one place fewer than the capacity can be used.
            if (count == uiCapacity)
            {
                return 1;
            }
            if (GPB_GetEachOneofCaseChilds(field->message_type(), ppstFields, uiCapacity, &count) != 0)
            {
                return 1;
            }
        }
    }
    *puiCount = count;
    return 0;
}

uint32_t GPB_GetEachOneofCaseChilds(const Descriptor *pstMessage, const FieldDescriptor **ppstFields,
                                    uint32_t uiCapacity, uint32_t *puiCount)
{
    if (pstMessage == nullptr || ppstFields == nullptr || puiCount == nullptr)
    {
        return 0;
    }
    uint32_t count = *puiCount;
    if (count >= uiCapacity)
    {
        return 1;
    }
    for (int i = 0; i < pstMessage->field_count(); ++i)
    {
        const FieldDescriptor *field = pstMessage->field(i);
        if (!IsMessage(field))
        {
            continue;
        }
        ppstFields[count++] = field;
        if (count == uiCapacity)
        {
            return 1;
        }
        if (IsCaseField(field))
        {
            const uint32_t result = GPB_GetEachOneofCaseChilds(field->message_type(), ppstFields, uiCapacity, &count);
            if (result != 0)
            {
                return result;
            }
        }
    }
    *puiCount = count;
    return 0;
}

uint32_t GPB_GetDescriptorLayerNum(const Descriptor *pstMessage)
{
    uint32_t layer = 0;
    for (const Descriptor *message = pstMessage; message != nullptr; message = message->containing_type())
    {
        ++layer;
    }
    return layer;
}

uint32_t GPB_GetSubDescriptorLayerNum(const Descriptor *pstSubMessage, const Descriptor *pstMessage, int32_t iLayer)
{
    auto layer = static_cast<uint32_t>(iLayer);
    if (pstSubMessage == pstMessage)
    {
        return layer;
    }
    for (const Descriptor *message = pstSubMessage; message != nullptr; message = message->containing_type())
    {
        if (message == pstMessage)
        {
            return layer;
        }
        ++layer;
    }
    return 0;
}
