#include "descriptor/gpb_field_search.h"

#include "descriptor/gpb_case_collection.h"
#include "platform/safe_string.h"
#include "platform/yos.h"

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

const FieldDescriptor *GpbSearchSuffixed(const Descriptor *message, const char *name, int32_t layer)
{
    char suffixed[GPB_NAME_SIZE] = {};
    if (strcpy_s(suffixed, sizeof(suffixed), name) != 0)
    {
        return nullptr;
    }
    const uint32_t length = YOS_StrLen(suffixed);
    if (sprintf_s(suffixed + length, sizeof(suffixed) - length, "%d", layer) < 0)
    {
        return nullptr;
    }
    return message->FindFieldByLowercaseName(suffixed);
}

GpbFoundField GpbSearchCases(const Descriptor *message, const char *name, int32_t layer)
{
    const FieldDescriptor *cases[GPB_MAX_CASE_FIELDS] = {};
    uint32_t count = 0;
    if (GpbCollectCases(message, cases, GPB_MAX_CASE_FIELDS, count) != 0)
    {
        return {};
    }
    for (uint32_t i = 0; i < count; ++i)
    {
        const Descriptor *caseMessage = cases[i]->message_type();
        const FieldDescriptor *field = caseMessage->FindFieldByLowercaseName(name);
        if (field == nullptr)
        {
            const auto caseLayer = static_cast<int32_t>(GPB_GetSubDescriptorLayerNum(caseMessage, message, layer));
            // A case message from elsewhere has no layer number here, and deliberately ends the search.
            if (caseLayer < 1)
            {
                return {};
            }
            field = GpbSearchSuffixed(caseMessage, name, caseLayer);
        }
        if (field != nullptr)
        {
            return {field, cases[i]};
        }
    }
    return {};
}
