// JSON to GPB: the layers that are open before the walk, and opening one for a container.
#include <cjson/cJSON.h>
#include <google/protobuf/descriptor.h>
#include <google/protobuf/message.h>
#include <typeinfo>
#include <utility>

#include "compiler/gpb_ancestor_layers.h"
#include "compiler/gpb_case_switch.h"
#include "compiler/gpb_json_log.h"
#include "compiler/gpb_json_node.h"
#include "compiler/gpb_layer.h"
#include "compiler/gpb_module_plan.h"
#include "core/gpb_log.h"
#include "core/gpb_protobuf_compat.h"
#include "descriptor/gpb_field_finder.h"
#include "gpb_templatelib/gpb_compiler.h"

using google::protobuf::FieldDescriptor;

namespace
{

constexpr uint32_t LINE_NOT_A_MESSAGE = 109;
constexpr char PUSH_ITEM[] = "GPB_PushItemDescriptor";
constexpr uint32_t LINE_STACK_FULL = 173;
constexpr uint32_t LINE_ROOT_STACK_FULL = 258;

constexpr GpbTopLayerLog TOP_LAYER_LOG = {"GPB_CompilerStackInitTop", 226, 232, 238};

} // namespace

unsigned int GpbJsonCompiler::GPB_CompilerStackPrepare(cJSON *pstRoot, cJSON *pstItem, GpbCompilerStack &stStack)
{
    GpbCompilerStackLayer layer;
    if (GPB_CompilerStackInitTop(pstRoot, layer) != GPB_COMPILER_OK)
    {
        return GPB_COMPILER_ERR;
    }
    if (stStack.uiLayerNum == GPB_COMPILER_MAX_LAYERS)
    {
        delete layer.pstMessage;
        GPB_LOG(pvLibHandle, GPB_LOG_ERROR, LINE_ROOT_STACK_FULL, "Fail to push root layer [%s]",
                layer.strXPath.c_str());
        return GPB_COMPILER_JSON_STACK_FULL;
    }
    stStack.astLayer[stStack.uiLayerNum] = std::move(layer);
    ++stStack.uiLayerNum;
    const unsigned int result = GPB_PushItemAncestors(pstRoot, pstItem, stStack);
    if (result != GPB_COMPILER_OK)
    {
        GpbReportJsonAncestorsFailed(pvLibHandle, GpbJsonLogKey(pstItem));
    }
    return result;
}

unsigned int GpbJsonCompiler::GPB_CompilerStackInitTop(cJSON *pstRoot, GpbCompilerStackLayer &stLayer)
{
    // Only a subclass can look at the message.
    const bool isSubclass = typeid(*this) != typeid(GpbJsonCompiler);
    return GpbSetUpTopLayer({pvLibHandle, pstFileDesc, pstImporter, pstMsgFactory, &pstPlan->records, isSubclass},
                            GpbLib_Json_GetObjectName(pstRoot), TOP_LAYER_LOG, stLayer);
}

unsigned int GpbJsonCompiler::GPB_PushItemAncestors(cJSON *pstRoot, cJSON *pstItem, GpbCompilerStack &stStack)
{
    cJSON *ancestors[GPB_MAX_ANCESTOR_NUM] = {};
    // A tree does not hold its own root, so there is nothing to search for the whole document.
    if (pstItem == pstRoot || GPB_GetItemAncestors(pstRoot, pstItem, ancestors, GPB_MAX_ANCESTOR_NUM, 0) == nullptr)
    {
        return GPB_COMPILER_OK;
    }
    for (cJSON *ancestor : ancestors)
    {
        if (ancestor == nullptr)
        {
            break;
        }
        // A member of an array has no key; its array has opened the layer.
        if (ancestor->string == nullptr)
        {
            continue;
        }
        const unsigned int result = GPB_PushItemDescriptor(ancestor->string, stStack);
        if (result != GPB_COMPILER_OK)
        {
            return result;
        }
    }
    return GPB_COMPILER_OK;
}

cJSON *GpbJsonCompiler::GPB_GetItemAncestors(cJSON *pstRoot, cJSON *pstItem, cJSON **ppstAncestors,
                                             unsigned int uiCapacity, unsigned int uiDepth)
{
    if (uiDepth == uiCapacity || pstRoot == nullptr)
    {
        return nullptr;
    }
    for (cJSON *child = pstRoot->child; child != nullptr; child = child->next)
    {
        if (child == pstItem)
        {
            return child;
        }
        ppstAncestors[uiDepth] = child;
        cJSON *found = GPB_GetItemAncestors(child, pstItem, ppstAncestors, uiCapacity, uiDepth + 1);
        if (found != nullptr)
        {
            return found;
        }
        ppstAncestors[uiDepth] = nullptr;
    }
    return nullptr;
}

cJSON *GpbJsonCompiler::FindArrayOf(cJSON *pstRoot, cJSON *pstItem)
{
    if (pstItem->string != nullptr)
    {
        return nullptr;
    }
    cJSON *ancestors[GPB_MAX_ANCESTOR_NUM] = {};
    (void)GPB_GetItemAncestors(pstRoot, pstItem, ancestors, GPB_MAX_ANCESTOR_NUM, 0);
    cJSON *innermost = nullptr;
    for (cJSON *ancestor : ancestors)
    {
        innermost = ancestor == nullptr ? innermost : ancestor;
    }
    return innermost;
}

unsigned int GpbJsonCompiler::GPB_PushItemDescriptor(const char *pcKey, GpbCompilerStack &stStack)
{
    if (stStack.uiLayerNum == 0 || stStack.astLayer[stStack.uiLayerNum - 1].pstDescriptor == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    const GpbFoundField found =
        pstFieldFinder->FindNode(stStack.astLayer[stStack.uiLayerNum - 1].pstDescriptor, pcKey, stStack.uiLayerNum + 1);
    if (found.field == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    // A leaf-list where an object should be opens no layer; what the object holds is taken as the parent's.
    if (found.field->type() != FieldDescriptor::TYPE_MESSAGE && found.field->is_repeated())
    {
        return GPB_COMPILER_OK;
    }
    if (found.caseField != nullptr)
    {
        const unsigned int result = GpbPushAncestorLayers(found.caseField, stStack);
        if (result != GPB_COMPILER_OK)
        {
            GpbReportJsonContainerCaseFailed(pvLibHandle, pcKey);
            return result;
        }
    }
    return GpbPushRecordLayer(pvLibHandle, stStack, found.field) ? GPB_COMPILER_OK : PushLayer(found.field, stStack);
}

// Seldom called, and not a part of the usual way, which needs no room on the stack.
[[gnu::noinline]] unsigned int GpbJsonCompiler::PushLayer(const FieldDescriptor *pstField, GpbCompilerStack &stStack)
{
    const GpbCompilerStackLayer &upper = stStack.astLayer[stStack.uiLayerNum - 1];
    // The path is made when the layer is pushed, and for a log line, and only if somebody can read it.
    GpbCompilerStackLayer layer;
    unsigned int result = GPB_COMPILER_OK;
    {
        const GpbCaseSwitch caseSwitch(stStack, upper.pstMessage, pstField);
        result = GPB_FillLayerMessage(upper, layer, pstField);
    }
    if (result != GPB_COMPILER_OK)
    {
        return result;
    }
    // The message is in its parent by now: a document that nests too deep leaves it there, empty.
    if (stStack.uiLayerNum == GPB_COMPILER_MAX_LAYERS)
    {
        GPB_LOG_AS(pvLibHandle, GPB_LOG_ERROR, PUSH_ITEM, LINE_STACK_FULL,
                   "Gpb Compiler[ProcXmlContainerNode]Fail to push layer [%s]. depth is %u.",
                   GpbXPathOf(upper, *pstField).c_str(), GPB_COMPILER_MAX_LAYERS);
        return GPB_COMPILER_JSON_STACK_FULL;
    }
    GpbCompilerStackLayer &pushed = GpbPushLayer(stStack, layer.pstMessage, pstField->message_type());
    if (GpbIsPathRead(pvLibHandle, pushed))
    {
        GenerateXPath(pushed, &upper, pstField);
    }
    return GPB_COMPILER_OK;
}

unsigned int GpbJsonCompiler::GPB_GetItemSerializeLayer(const GpbCompilerStack &stStack, cJSON *pstRoot, cJSON *pstItem)
{
    if (pstItem == pstRoot)
    {
        return 0;
    }
    if (cJSON_IsObject(pstItem) != 0 || cJSON_IsArray(pstItem) != 0)
    {
        return stStack.uiLayerNum;
    }
    return stStack.uiLayerNum == 0 ? 0 : stStack.uiLayerNum - 1;
}

unsigned int GpbJsonCompiler::GPB_FillLayerMessage(const GpbCompilerStackLayer &stUpper, GpbCompilerStackLayer &stLayer,
                                                   const FieldDescriptor *pstField)
{
    if (pstField->type() != FieldDescriptor::TYPE_MESSAGE)
    {
        GPB_LOG(pvLibHandle, GPB_LOG_ERROR, LINE_NOT_A_MESSAGE,
                "Gpb Compiler fill layer message Field [%s] type is not message, it is %u.",
                GpbPbName(*pstField).c_str(), static_cast<unsigned int>(pstField->type()));
        return GPB_COMPILER_ERR;
    }
    stLayer.pstMessage = GpbOpenLayerMessage(stUpper.pstMessage, pstField);
    return stLayer.pstMessage == nullptr ? GPB_COMPILER_ERR : GPB_COMPILER_OK;
}

void GpbJsonCompiler::GenerateXPath(GpbCompilerStackLayer &stLayer, const GpbCompilerStackLayer *pstUpper,
                                    const FieldDescriptor *pstField)
{
    GpbAppendXPath(stLayer, pstUpper, *pstFileDesc, *pstField);
}
