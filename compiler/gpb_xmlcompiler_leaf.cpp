// XML to GPB: leaves.
#include <google/protobuf/descriptor.h>
#include <libxml/tree.h>

#include "compiler/gpb_ancestor_layers.h"
#include "compiler/gpb_case_switch.h"
#include "compiler/gpb_identity_value.h"
#include "compiler/gpb_layer.h"
#include "compiler/gpb_record_leaf.h"
#include "compiler/gpb_xml_log.h"
#include "compiler/gpb_xml_node.h"
#include "core/gpb_log.h"
#include "descriptor/gpb_field_finder.h"
#include "gpb_templatelib/gpb_compiler.h"

using google::protobuf::FieldDescriptor;

namespace
{

constexpr uint32_t LINE_FIELD_TYPE_INVALID = 496;
constexpr uint32_t LINE_NO_TRANSLATOR = 504;
constexpr uint32_t LINE_TRANSLATE_FAILED = 512;

// A leaf that is there and has no content is true.
char EMPTY_LEAF_VALUE[] = "true";

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
    const uint32_t layerNum = stStack.uiLayerNum;
    const GpbCompilerStackLayer *layer = &GpbTopLayer(stStack);
    char *name = GpbXmlNodeName(pstNode);
    const GpbFoundField found = pstFieldFinder->FindLeaf(layer->pstDescriptor, name, layerNum + 1);
    if (found.field == nullptr)
    {
        GpbReportNoXmlLeaf(pvLibHandle, name, *layer);
        return GPB_COMPILER_NO_FIELD;
    }
    if (found.caseField != nullptr)
    {
        const unsigned int result = GpbPushAncestorLayers(found.caseField, stStack);
        if (result != GPB_COMPILER_OK)
        {
            GpbReportXmlLeafCaseFailed(pvLibHandle, name);
            // Layers that were pushed stay, as they do for a host that looks at the stack.
            return result;
        }
        layer = &GpbTopLayer(stStack);
    }
    unsigned int result = GPB_COMPILER_OK;
    if (pstNode->nsDef == nullptr && found.field->containing_oneof() == nullptr)
    {
        result = FillLeafField(*layer, found.field, text, name);
    }
    else
    {
        const GpbIdentityValue value(uiMemHandle, pstNode, text);
        const GpbCaseSwitch caseSwitch(stStack, layer->pstMessage, found.field);
        result = FillLeafField(*layer, found.field, value.Text(), name);
    }
    stStack.uiLayerNum = layerNum;
    return result;
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
    const auto type = static_cast<unsigned int>(pstField->type());
    if (type >= GPB_FIELD_TYPE_NUM)
    {
        GPB_LOG(pvLibHandle, GPB_LOG_ERROR, LINE_FIELD_TYPE_INVALID,
                "[GpbXmlCompiler][FillLeafField]field type invalid node [%s] type %u.", pcNodeName, type);
        return GPB_COMPILER_NO_TRANSLATOR;
    }
    const GpbStrTransFunc translate = astStrTrans[type];
    if (translate == nullptr)
    {
        GPB_LOG(pvLibHandle, GPB_LOG_ERROR, LINE_NO_TRANSLATOR,
                "[GpbXmlCompiler][FillLeafField]Fail to find translator for node [%s] type %u.", pcNodeName, type);
        return GPB_COMPILER_NO_TRANSLATOR;
    }
    const unsigned int result = GpbStoreLeaf(stLayer, pstField, translate, pcValue);
    if (result != GPB_COMPILER_OK)
    {
        GPB_LOG(pvLibHandle, GPB_LOG_ERROR, LINE_TRANSLATE_FAILED,
                "[GpbXmlCompiler][FillLeafField]Fail to translator node [%s] value [%s] to layer [%s].", pcNodeName,
                pcValue, stLayer.strXPath.c_str());
    }
    return result;
}
