// Fields by YANG node name.
#include <google/protobuf/descriptor.h>

#include "descriptor/gpb_field_search.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "platform/safe_string.h"
#include "platform/yos.h"

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

const FieldDescriptor *GPB_FindFieldDescByNodeName(const Descriptor *pstMessage, const char *pcNodeName, int32_t iLayer,
                                                   const FieldDescriptor **ppstCaseField)
{
    if (pstMessage == nullptr || pcNodeName == nullptr)
    {
        return nullptr;
    }
    return GpbSearchNode(pstMessage, GpbFieldName(pcNodeName), iLayer,
                         [&](const char *name)
                         { return GPB_GetFieldDescByOneof(name, pstMessage, iLayer, ppstCaseField); });
}

const FieldDescriptor *GPB_GetLeafFieldDescByNodeName(const char *pcNodeName, const Descriptor *pstMessage,
                                                      int32_t iLayer, const FieldDescriptor **ppstCaseField)
{
    if (pstMessage == nullptr || pcNodeName == nullptr)
    {
        return nullptr;
    }
    return GpbSearchLeaf(pstMessage, GpbFieldName(pcNodeName), iLayer,
                         [&](const char *name)
                         { return GPB_GetFieldDescByOneof(name, pstMessage, iLayer, ppstCaseField); });
}

const FieldDescriptor *GPB_GetDescFieldByRepeateName(const Descriptor *pstMessage, const char *pcName, int32_t iLayer)
{
    char name[GPB_NAME_SIZE] = {};
    if (pstMessage == nullptr || pcName == nullptr || strcpy_s(name, sizeof(name), pcName) != 0)
    {
        return nullptr;
    }
    const uint32_t length = YOS_StrLen(name);
    if (sprintf_s(name + length, sizeof(name) - length, "%d", iLayer) < 0)
    {
        return nullptr;
    }
    return GpbFindByLowercaseName(pstMessage, name);
}

const FieldDescriptor *GPB_GetFieldDescByOneof(const char *pcName, const Descriptor *pstMessage, int32_t iLayer,
                                               const FieldDescriptor **ppstCaseField)
{
    const FieldDescriptor *cases[GPB_MAX_CASE_FIELDS] = {};
    uint32_t count = 0;
    if (pcName == nullptr || GPB_GetOneofCaseChilds(pstMessage, cases, GPB_MAX_CASE_FIELDS, &count) != 0)
    {
        return nullptr;
    }
    for (uint32_t i = 0; i < count; ++i)
    {
        const Descriptor *caseMessage = cases[i]->message_type();
        const FieldDescriptor *field = GpbFindByLowercaseName(caseMessage, pcName);
        if (field == nullptr)
        {
            const auto layer = static_cast<int32_t>(GPB_GetSubDescriptorLayerNum(caseMessage, pstMessage, iLayer));
            // A case message from elsewhere has no layer number here, and deliberately ends the search.
            if (layer < 1)
            {
                return nullptr;
            }
            field = GPB_GetDescFieldByRepeateName(caseMessage, pcName, layer);
        }
        if (field != nullptr)
        {
            if (ppstCaseField != nullptr)
            {
                *ppstCaseField = cases[i];
            }
            return field;
        }
    }
    return nullptr;
}
