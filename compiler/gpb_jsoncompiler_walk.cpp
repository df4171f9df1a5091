// JSON to GPB: the walk over the tree, containers, lists and leaf-lists.
#include <cjson/cJSON.h>
#include <google/protobuf/descriptor.h>

#include "compiler/gpb_ancestor_layers.h"
#include "compiler/gpb_case_switch.h"
#include "compiler/gpb_json_log.h"
#include "compiler/gpb_json_node.h"
#include "compiler/gpb_layer.h"
#include "descriptor/gpb_field_finder.h"
#include "gpb_templatelib/gpb_compiler.h"

unsigned int GpbJsonCompiler::IterJson(cJSON *pstFirst, cJSON *pstParent, GpbCompilerStack &stStack)
{
    for (cJSON *item = pstFirst; item != nullptr; item = item->next)
    {
        GpbJsonPrefetchBehind(item);
        unsigned int result = GPB_COMPILER_OK;
        switch (GpbJsonType(item))
        {
        case cJSON_Array:
            result = ProcJsonArrayNode(item, stStack);
            break;
        case cJSON_Object:
            result = ProcJsonContainerNode(item, pstParent, stStack);
            break;
        default:
            result = ProcJsonLeafNode(item, stStack);
            break;
        }
        if (result != GPB_COMPILER_OK)
        {
            return result;
        }
    }
    return GPB_COMPILER_OK;
}

unsigned int GpbJsonCompiler::ProcJsonContainerNode(cJSON *pstItem, cJSON *pstParent, GpbCompilerStack &stStack)
{
    const uint32_t layerNum = stStack.uiLayerNum;
    const char *key = GpbLib_Json_GetObjectName(pstItem);
    unsigned int result = GPB_PushItemDescriptor(key == nullptr ? GpbLib_Json_GetObjectName(pstParent) : key, stStack);
    if (result == GPB_COMPILER_OK)
    {
        result = IterJson(pstItem->child, pstItem, stStack);
    }
    // Pops the layers of the case, too.
    stStack.uiLayerNum = layerNum;
    return result;
}

unsigned int GpbJsonCompiler::ProcJsonArrayNode(cJSON *pstArray, GpbCompilerStack &stStack)
{
    cJSON *first = pstArray->child;
    if (first == nullptr)
    {
        return GPB_COMPILER_OK;
    }
    // The first member speaks for all of them.
    if (GpbJsonType(first) != cJSON_Object && GpbJsonType(first) != cJSON_Array)
    {
        return ProcLeafListNode(pstArray, first, stStack);
    }
    for (cJSON *member = first; member != nullptr; member = member->next)
    {
        GpbJsonPrefetchBehind(member);
        const unsigned int result = ProcJsonContainerNode(member, pstArray, stStack);
        if (result != GPB_COMPILER_OK)
        {
            return result;
        }
    }
    return GPB_COMPILER_OK;
}

unsigned int GpbJsonCompiler::ProcLeafListNode(cJSON *pstArray, cJSON *pstMember, GpbCompilerStack &stStack)
{
    const uint32_t layerNum = stStack.uiLayerNum;
    if (layerNum == 0)
    {
        return pstMember == nullptr ? GPB_COMPILER_OK : GPB_COMPILER_ERR;
    }
    const GpbFoundField found = pstFieldFinder->FindNode(stStack.astLayer[layerNum - 1].pstDescriptor,
                                                         GpbLib_Json_GetObjectName(pstArray), layerNum + 1);
    if (found.field == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    // Leaf-lists of any other type are deliberately passed over without a word: hosts rely on that, and encode such
    // lists from XML.
    if (found.field->enum_type() == nullptr)
    {
        return GPB_COMPILER_OK;
    }
    if (found.caseField != nullptr)
    {
        const unsigned int result = GpbPushAncestorLayers(found.caseField, stStack);
        if (result != GPB_COMPILER_OK)
        {
            GpbReportJsonLeafListCaseFailed(pvLibHandle, GpbJsonLogKey(pstMember));
            return result;
        }
    }
    unsigned int result = GPB_COMPILER_OK;
    {
        const GpbCompilerStackLayer &top = GpbTopLayer(stStack);
        const GpbCaseSwitch caseSwitch(stStack, top.pstMessage, found.field);
        for (cJSON *member = pstMember; member != nullptr && result == GPB_COMPILER_OK; member = member->next)
        {
            result = FillLeafField(top, found.field, member);
        }
    }
    stStack.uiLayerNum = layerNum;
    return result;
}
