// JSON to GPB: leaves.
#include <cjson/cJSON.h>
#include <cstdint>
#include <google/protobuf/descriptor.h>

#include "compiler/gpb_ancestor_layers.h"
#include "compiler/gpb_case_switch.h"
#include "compiler/gpb_json_log.h"
#include "compiler/gpb_json_node.h"
#include "compiler/gpb_layer.h"
#include "core/gpb_log.h"
#include "descriptor/gpb_field_finder.h"
#include "gpb_templatelib/gpb_compiler.h"
#include "platform/safe_string.h"

using google::protobuf::FieldDescriptor;

namespace
{

constexpr uint32_t LINE_NO_TRANSLATOR = 438;
constexpr uint32_t LINE_TRANSLATE_FAILED = 474;
constexpr uint32_t LINE_EMPTY_LEAF_TYPE = 496;

// What an empty leaf stands for.
constexpr char PRESENT[] = "true";
constexpr char NO_TEXT[] = "";

// The text of a value as the translators read it; null for a value that is none, or a number that cannot be printed.
// `number` is the room for a number.
const char *ValueText(const cJSON *item, char (&number)[GPB_JSON_NUMBER_SIZE])
{
    switch (GpbJsonType(item))
    {
    case cJSON_False:
        return "false";
    case cJSON_True:
        return "true";
    case cJSON_Number:
        return sprintf_s(number, sizeof(number), "%.14g", item->valuedouble) < 0 ? nullptr : number;
    case cJSON_String:
        return item->valuestring;
    default:
        return nullptr;
    }
}

// A leaf in a case, or a member of a choice. `store(layer)` stores it.
template <typename Store>
[[gnu::noinline]] unsigned int StoreChosenLeaf(void *libHandle, const cJSON *item, const GpbFoundField found,
                                               GpbCompilerStack &stack, const Store store)
{
    const uint32_t layerNum = stack.uiLayerNum;
    if (found.caseField != nullptr)
    {
        const unsigned int result = GpbPushAncestorLayers(found.caseField, stack);
        if (result != GPB_COMPILER_OK)
        {
            GpbReportJsonLeafCaseFailed(libHandle, GpbJsonLogKey(item), GpbTopLayer(stack));
            return result;
        }
    }
    const GpbCompilerStackLayer &layer = GpbTopLayer(stack);
    unsigned int result = GPB_COMPILER_OK;
    {
        const GpbCaseSwitch caseSwitch(stack, layer.pstMessage, found.field);
        result = store(layer);
    }
    stack.uiLayerNum = layerNum;
    return result;
}

} // namespace

// Flat, since most of a document are leaves.
[[gnu::flatten]] unsigned int GpbJsonCompiler::ProcJsonLeafNode(cJSON *pstItem, GpbCompilerStack &stStack)
{
    const GpbCompilerStackLayer &layer = GpbTopLayer(stStack);
    const GpbFoundField found = pstFieldFinder->FindNode(layer.pstDescriptor, pstItem->string, stStack.uiLayerNum + 1);
    if (found.field == nullptr)
    {
        GpbReportNoJsonField(pvLibHandle, GpbJsonLogKey(pstItem), layer);
        return GPB_COMPILER_ERR;
    }
    const auto store = [&](const GpbCompilerStackLayer &top)
    {
        return GpbJsonType(pstItem) == cJSON_NULL ? ProcJsonEmptyLeafNode(pstItem, stStack, found.field)
                                                  : FillLeafField(top, found.field, pstItem);
    };
    if (found.caseField != nullptr || found.field->containing_oneof() != nullptr)
    {
        return StoreChosenLeaf(pvLibHandle, pstItem, found, stStack, store);
    }
    return store(layer);
}

unsigned int GpbJsonCompiler::ProcJsonEmptyLeafNode(cJSON *pstItem, GpbCompilerStack &stStack,
                                                    const FieldDescriptor *pstField)
{
    const GpbStrTransFunc translate = astStrTrans[pstField->type()];
    if (translate == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    if (pstField->type() != FieldDescriptor::TYPE_BOOL && pstField->type() != FieldDescriptor::TYPE_STRING)
    {
        // Nothing is stored, and the encode deliberately goes on.
        GPB_LOG(pvLibHandle, GPB_LOG_ERROR, LINE_EMPTY_LEAF_TYPE, "Gpb compiler empty leaf %s, expect type %d.",
                GpbJsonLogKey(pstItem), static_cast<int>(pstField->type()));
        return GPB_COMPILER_OK;
    }
    return translate(GpbTopLayer(stStack), pstField,
                     pstField->type() == FieldDescriptor::TYPE_BOOL ? PRESENT : NO_TEXT);
}

unsigned int GpbJsonCompiler::FillLeafField(const GpbCompilerStackLayer &stLayer, const FieldDescriptor *pstField,
                                            cJSON *pstItem)
{
    const auto type = static_cast<unsigned int>(pstField->type());
    const GpbStrTransFunc translate = astStrTrans[type];
    if (translate == nullptr)
    {
        GPB_LOG(pvLibHandle, GPB_LOG_ERROR, LINE_NO_TRANSLATOR,
                "Gpb Compiler fill leaf fail to find translator for node [%s] type %u.", GpbJsonLogKey(pstItem), type);
        return GPB_COMPILER_ERR;
    }
    char number[GPB_JSON_NUMBER_SIZE] = {};
    const char *text = ValueText(pstItem, number);
    if (text == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    if (translate(stLayer, pstField, text) != GPB_COMPILER_OK)
    {
        // A value that the field does not take is left out; deliberately the rest of the document still counts.
        GPB_LOG(pvLibHandle, GPB_LOG_ERROR, LINE_TRANSLATE_FAILED,
                "Gpb Compiler  fill leaf fail to translator layer [%s].", stLayer.strXPath.c_str());
    }
    return GPB_COMPILER_OK;
}
