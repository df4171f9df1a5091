// JSON to GPB: leaves.
#include <cjson/cJSON.h>
#include <cstdint>
#include <google/protobuf/descriptor.h>

#include "compiler/gpb_ancestor_layers.h"
#include "compiler/gpb_case_switch.h"
#include "compiler/gpb_json_log.h"
#include "compiler/gpb_json_node.h"
#include "compiler/gpb_layer.h"
#include "compiler/gpb_record_leaf.h"
#include "compiler/gpb_translator_table.h"
#include "core/gpb_log.h"
#include "descriptor/gpb_field_finder.h"
#include "gpb_templatelib/gpb_compiler.h"
#include "platform/safe_string.h"

using google::protobuf::FieldDescriptor;

namespace
{

constexpr char FILL_LEAF[] = "FillLeafField";
constexpr uint32_t LINE_NO_TRANSLATOR = 438;
constexpr uint32_t LINE_TRANSLATE_FAILED = 474;
constexpr uint32_t LINE_EMPTY_LEAF_TYPE = 496;

// What an empty leaf stands for.
constexpr char PRESENT[] = "true";
constexpr char NO_TEXT[] = "";

// The text of a value that is no number, as the translators read it; null for one that is none.
const char *ValueText(const cJSON *item)
{
    switch (GpbJsonType(item))
    {
    case cJSON_False:
        return "false";
    case cJSON_True:
        return "true";
    case cJSON_String:
        return item->valuestring;
    default:
        return nullptr;
    }
}

// What comes of a value that was not stored, or that has no text.
[[gnu::noinline]] unsigned int LeaveOut(void *libHandle, const GpbCompilerStackLayer &layer,
                                        const FieldDescriptor &field, bool hasTranslator, const cJSON *item,
                                        const char *text)
{
    if (!hasTranslator)
    {
        const auto type = static_cast<unsigned int>(field.type());
        GPB_LOG_AS(libHandle, GPB_LOG_ERROR, FILL_LEAF, LINE_NO_TRANSLATOR,
                   "Gpb Compiler fill leaf fail to find translator for node [%s] type %u.", GpbJsonLogKey(item), type);
        return GPB_COMPILER_ERR;
    }
    if (text == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    // A value that the field does not take is left out; deliberately the rest of the document still counts.
    GPB_LOG_AS(libHandle, GPB_LOG_ERROR, FILL_LEAF, LINE_TRANSLATE_FAILED,
               "Gpb Compiler  fill leaf fail to translator layer [%s].", layer.strXPath.c_str());
    return GPB_COMPILER_OK;
}

// Stores a leaf in a message. The table is not read again once the translator has been called: one that fails may have
// taken itself out, since subclasses can reach the table.
[[gnu::noinline]] unsigned int Translate(void *libHandle, const GpbCompilerStackLayer &layer,
                                         const FieldDescriptor &field, const GpbTranslators &translators,
                                         const cJSON *item, const char *text)
{
    const GpbStrTransFunc translate = GpbTranslatorOf(field, translators);
    const bool isStored = translate != nullptr && text != nullptr && translate(layer, &field, text) == GPB_COMPILER_OK;
    return isStored ? GPB_COMPILER_OK : LeaveOut(libHandle, layer, field, translate != nullptr, item, text);
}

unsigned int StoreText(void *libHandle, const GpbCompilerStackLayer &layer, const FieldDescriptor *field,
                       const GpbTranslators &translators, const cJSON *item, const char *text)
{
    GpbRecord *record = GpbRecordOf(layer.pstMessage);
    if (record == nullptr)
    {
        return Translate(libHandle, layer, *field, translators, item, text);
    }
    if (text != nullptr && GpbStoreInRecord(*record, field, text) == GPB_COMPILER_OK)
    {
        return GPB_COMPILER_OK;
    }
    return LeaveOut(libHandle, layer, *field, GpbTranslatorOf(*field, translators) != nullptr, item, text);
}

// A number is printed unless its field takes no text. Not a part of what all leaves go through, since it needs room on
// the stack.
[[gnu::noinline, gnu::flatten]] unsigned int StoreNumber(void *libHandle, const GpbCompilerStackLayer &layer,
                                                         const FieldDescriptor *field,
                                                         const GpbTranslators &translators, const cJSON *item)
{
    char number[GPB_JSON_NUMBER_SIZE] = {};
    const bool isPrinted =
        translators[field->type()] != nullptr && sprintf_s(number, sizeof(number), "%.14g", item->valuedouble) >= 0;
    return StoreText(libHandle, layer, field, translators, item, isPrinted ? number : nullptr);
}

// A leaf in a case, or a member of a choice. `fill(layer, stack, field, item)` stores it in the top layer.
template <typename Fill>
[[gnu::noinline]] unsigned int FillInChoice(void *libHandle, cJSON *item, const GpbFoundField found,
                                            GpbCompilerStack &stack, const Fill fill)
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
    unsigned int result = GPB_COMPILER_OK;
    {
        const GpbCompilerStackLayer &layer = GpbTopLayer(stack);
        const GpbCaseSwitch caseSwitch(stack, layer.pstMessage, found.field);
        result = fill(layer, stack, found.field, item);
    }
    stack.uiLayerNum = layerNum;
    return result;
}

} // namespace

[[gnu::noinline]] unsigned int GpbJsonCompiler::ProcJsonEmptyLeafNode(cJSON *pstItem, GpbCompilerStack &stStack,
                                                                      const FieldDescriptor *pstField)
{
    if (astStrTrans[pstField->type()] == nullptr)
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
    const GpbCompilerStackLayer &layer = GpbTopLayer(stStack);
    const char *text = pstField->type() == FieldDescriptor::TYPE_BOOL ? PRESENT : NO_TEXT;
    GpbRecord *record = GpbRecordOf(layer.pstMessage);
    return record == nullptr ? astStrTrans[pstField->type()](layer, pstField, text)
                             : GpbStoreInRecord(*record, pstField, text);
}

// Flat, since most of a document are leaves.
[[gnu::flatten]] unsigned int GpbJsonCompiler::ProcJsonLeafNode(cJSON *pstItem, GpbCompilerStack &stStack)
{
    const GpbCompilerStackLayer &layer = GpbTopLayer(stStack);
    const GpbFoundField &found = pstFieldFinder->FindNode(layer.pstDescriptor, pstItem->string, stStack.uiLayerNum + 1);
    if (found.field == nullptr)
    {
        GpbReportNoJsonField(pvLibHandle, GpbJsonLogKey(pstItem), layer);
        return GPB_COMPILER_ERR;
    }
    const auto fill =
        [this](const GpbCompilerStackLayer &top, GpbCompilerStack &stack, const FieldDescriptor *field, cJSON *item)
    {
        return GpbJsonType(item) == cJSON_NULL ? ProcJsonEmptyLeafNode(item, stack, field)
                                               : FillLeafField(top, field, item);
    };
    if (found.caseField != nullptr || found.field->containing_oneof() != nullptr)
    {
        return FillInChoice(pvLibHandle, pstItem, found, stStack, fill);
    }
    return fill(layer, stStack, found.field, pstItem);
}

unsigned int GpbJsonCompiler::FillLeafField(const GpbCompilerStackLayer &stLayer, const FieldDescriptor *pstField,
                                            cJSON *pstItem)
{
    return GpbJsonType(pstItem) == cJSON_Number
               ? StoreNumber(pvLibHandle, stLayer, pstField, astStrTrans, pstItem)
               : StoreText(pvLibHandle, stLayer, pstField, astStrTrans, pstItem, ValueText(pstItem));
}
