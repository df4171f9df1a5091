// XML to GPB: leaves.
#include <google/protobuf/descriptor.h>
#include <libxml/tree.h>

#include "compiler/gpb_ancestor_layers.h"
#include "compiler/gpb_case_switch.h"
#include "compiler/gpb_identity_value.h"
#include "compiler/gpb_layer.h"
#include "compiler/gpb_record_leaf.h"
#include "compiler/gpb_translator_table.h"
#include "compiler/gpb_xml_log.h"
#include "compiler/gpb_xml_node.h"
#include "core/gpb_log.h"
#include "descriptor/gpb_field_finder.h"
#include "gpb_templatelib/gpb_compiler.h"

using google::protobuf::FieldDescriptor;

namespace
{

constexpr char FILL_LEAF[] = "FillLeafField";
constexpr uint32_t LINE_FIELD_TYPE_INVALID = 496;
constexpr uint32_t LINE_NO_TRANSLATOR = 504;
constexpr uint32_t LINE_TRANSLATE_FAILED = 512;

// A leaf that is there and has no content is true.
char EMPTY_LEAF_VALUE[] = "true";

[[gnu::noinline]] void ReportNotStored(void *libHandle, const GpbCompilerStackLayer &layer,
                                       const FieldDescriptor &field, bool hasTranslator, const char *value,
                                       const char *nodeName)
{
    const auto type = static_cast<unsigned int>(field.type());
    if (type >= GPB_FIELD_TYPE_NUM)
    {
        GPB_LOG_AS(libHandle, GPB_LOG_ERROR, FILL_LEAF, LINE_FIELD_TYPE_INVALID,
                   "[GpbXmlCompiler][FillLeafField]field type invalid node [%s] type %u.", nodeName, type);
    }
    else if (!hasTranslator)
    {
        GPB_LOG_AS(libHandle, GPB_LOG_ERROR, FILL_LEAF, LINE_NO_TRANSLATOR,
                   "[GpbXmlCompiler][FillLeafField]Fail to find translator for node [%s] type %u.", nodeName, type);
    }
    else
    {
        GPB_LOG_AS(libHandle, GPB_LOG_ERROR, FILL_LEAF, LINE_TRANSLATE_FAILED,
                   "[GpbXmlCompiler][FillLeafField]Fail to translator node [%s] value [%s] to layer [%s].", nodeName,
                   value, layer.strXPath.c_str());
    }
}

// Stores a leaf in a message. The table is not read again once the translator has been called: one that fails may have
// taken itself out, since subclasses can reach the table.
[[gnu::noinline]] unsigned int Translate(void *libHandle, const GpbCompilerStackLayer &layer,
                                         const FieldDescriptor &field, const GpbTranslators &translators,
                                         const char *value, const char *nodeName)
{
    const GpbStrTransFunc translate = GpbTranslatorOf(field, translators);
    const unsigned int result = translate == nullptr ? GPB_COMPILER_NO_TRANSLATOR : translate(layer, &field, value);
    if (result != GPB_COMPILER_OK)
    {
        ReportNotStored(libHandle, layer, field, translate != nullptr, value, nodeName);
    }
    return result;
}

// A leaf in a case, a member of a choice, or one that may be an identity. `fill(layer, field, value, name)` stores it.
template <typename Fill>
[[gnu::noinline]] unsigned int FillSpecial(void *libHandle, uint32_t memHandle, xmlNode *node,
                                           const GpbFoundField found, GpbCompilerStack &stack, const Fill fill)
{
    const uint32_t layerNum = stack.uiLayerNum;
    char *name = GpbXmlNodeName(node);
    if (found.caseField != nullptr)
    {
        const unsigned int result = GpbPushAncestorLayers(found.caseField, stack);
        if (result != GPB_COMPILER_OK)
        {
            GpbReportXmlLeafCaseFailed(libHandle, name);
            // Layers that were pushed stay, as they do for a host that looks at the stack.
            return result;
        }
    }
    const GpbCompilerStackLayer &layer = GpbTopLayer(stack);
    const GpbIdentityValue value(memHandle, node, reinterpret_cast<char *>(node->children->content));
    unsigned int result = GPB_COMPILER_OK;
    {
        const GpbCaseSwitch caseSwitch(stack, layer.pstMessage, found.field);
        result = fill(layer, found.field, value.Text(), name);
    }
    stack.uiLayerNum = layerNum;
    return result;
}

} // namespace

// Flat, since most of a document are leaves.
[[gnu::flatten]] unsigned int GpbXmlCompiler::ProcXmlLeafNode(xmlNode *pstNode, GpbCompilerStack &stStack)
{
    xmlNode *child = pstNode->children;
    if (child == nullptr || child->type != XML_TEXT_NODE)
    {
        return GPB_COMPILER_OK;
    }
    // The text of a lone text child stands in the document as it is.
    char *text = reinterpret_cast<char *>(child->content);
    if (text == nullptr)
    {
        return GPB_COMPILER_OK;
    }
    // Content that begins with a line break is formatting: the element is a container that is only present.
    if (*text == '\n')
    {
        return ProcXmlPresenceContainerNode(pstNode, stStack);
    }
    const GpbCompilerStackLayer &layer = GpbTopLayer(stStack);
    char *name = GpbXmlNodeName(pstNode);
    const GpbFoundField &found = pstFieldFinder->FindLeaf(layer.pstDescriptor, name, stStack.uiLayerNum + 1);
    if (found.field == nullptr)
    {
        GpbReportNoXmlLeaf(pvLibHandle, name, layer);
        return GPB_COMPILER_NO_FIELD;
    }
    if (found.caseField != nullptr || found.field->containing_oneof() != nullptr || GpbMayBeIdentity(pstNode))
    {
        return FillSpecial(pvLibHandle, uiMemHandle, pstNode, found, stStack,
                           [this](const GpbCompilerStackLayer &top, const FieldDescriptor *field, char *value,
                                  char *nodeName) { return FillLeafField(top, field, value, nodeName); });
    }
    return FillLeafField(layer, found.field, text, name);
}

unsigned int GpbXmlCompiler::ProcXmlEmptyLeafNode(xmlNode *pstNode, GpbCompilerStack &stStack)
{
    if (pstNode->type != XML_ELEMENT_NODE)
    {
        return GPB_COMPILER_OK;
    }
    const uint32_t layerNum = stStack.uiLayerNum;
    char *name = GpbXmlNodeName(pstNode);
    const GpbFoundField found = pstFieldFinder->FindNode(GpbTopLayer(stStack).pstDescriptor, name, layerNum + 1);
    if (found.field == nullptr)
    {
        GpbReportNoXmlEmptyLeaf(pvLibHandle, GpbTopLayer(stStack));
        return GPB_COMPILER_OK;
    }
    if (found.caseField != nullptr)
    {
        const unsigned int result = GpbPushAncestorLayers(found.caseField, stStack);
        if (result != GPB_COMPILER_OK)
        {
            GpbReportXmlEmptyLeafCaseFailed(pvLibHandle, name);
            return result;
        }
    }
    if (found.field->type() != FieldDescriptor::TYPE_BOOL)
    {
        GpbReportXmlEmptyLeafType(pvLibHandle, *found.field);
        // The layers of the case deliberately stay; the enclosing container pops them at its end.
        return GPB_COMPILER_OK;
    }
    unsigned int result = GPB_COMPILER_OK;
    {
        const GpbCaseSwitch caseSwitch(stStack, GpbTopLayer(stStack).pstMessage, found.field);
        result = FillLeafField(GpbTopLayer(stStack), found.field, EMPTY_LEAF_VALUE, name);
    }
    stStack.uiLayerNum = layerNum;
    return result;
}

unsigned int GpbXmlCompiler::FillLeafField(const GpbCompilerStackLayer &stLayer, const FieldDescriptor *pstField,
                                           char *pcValue, char *pcNodeName)
{
    GpbRecord *record = GpbRecordOf(stLayer.pstMessage);
    if (record == nullptr)
    {
        return Translate(pvLibHandle, stLayer, *pstField, astStrTrans, pcValue, pcNodeName);
    }
    const unsigned int result = GpbStoreInRecord(*record, pstField, pcValue);
    if (result != GPB_COMPILER_OK)
    {
        ReportNotStored(pvLibHandle, stLayer, *pstField, result != GPB_COMPILER_NO_TRANSLATOR, pcValue, pcNodeName);
    }
    return result;
}
