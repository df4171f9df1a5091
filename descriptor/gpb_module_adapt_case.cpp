// The cases of choices: message-typed members of oneofs, and what lies in them.
#include <google/protobuf/descriptor.h>

#include "core/gpb_barrier.h"
#include "descriptor/gpb_case_collection.h"
#include "gpb_templatelib/gpb_descriptor.h"

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

uint32_t GPB_GetOneofCaseChilds(const Descriptor *pstMessage, const FieldDescriptor **ppstFields, uint32_t uiCapacity,
                                uint32_t *puiCount)
{
    if (pstMessage == nullptr || ppstFields == nullptr || puiCount == nullptr)
    {
        return 0;
    }
    return GpbNoThrow(1U, [&] { return GpbCollectCases(pstMessage, ppstFields, uiCapacity, *puiCount); });
}

uint32_t GPB_GetEachOneofCaseChilds(const Descriptor *pstMessage, const FieldDescriptor **ppstFields,
                                    uint32_t uiCapacity, uint32_t *puiCount)
{
    if (pstMessage == nullptr || ppstFields == nullptr || puiCount == nullptr)
    {
        return 0;
    }
    return GpbNoThrow(1U, [&] { return GpbCollectCaseFields(pstMessage, ppstFields, uiCapacity, *puiCount); });
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
