// XML to GPB: leaves.
#include <google/protobuf/descriptor.h>
#include <libxml/tree.h>
#include <memory>

#include "compiler/gpb_ancestor_layers.h"
#include "compiler/gpb_case_switch.h"
#include "compiler/gpb_layer.h"
#include "compiler/gpb_source_tag.h"
#include "compiler/gpb_xml_node.h"
#include "core/gpb_log.h"
#include "descriptor/gpb_field_finder.h"
#include "gpb_templatelib/gpb_compiler.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "platform/zmp.h"

using google::protobuf::FieldDescriptor;

namespace
{

constexpr uint32_t LINE_NO_LEAF_FIELD = 418;
constexpr uint32_t LINE_LEAF_CASE_FAILED = 426;
constexpr uint32_t LINE_FREE_IDENTITY = 435;
constexpr uint32_t LINE_NO_EMPTY_LEAF_FIELD = 465;
constexpr uint32_t LINE_EMPTY_LEAF_CASE_FAILED = 472;
constexpr uint32_t LINE_EMPTY_LEAF_NOT_BOOL = 480;
constexpr uint32_t LINE_FIELD_TYPE_INVALID = 496;
constexpr uint32_t LINE_NO_TRANSLATOR = 504;
constexpr uint32_t LINE_TRANSLATE_FAILED = 512;

// A leaf that is there and has no content is true.
char EMPTY_LEAF_VALUE[] = "true";

// The lines of empty leaves deliberately leave the name out: tools that read logs compare these lines as a whole.
constexpr char EMPTY_LEAF_LOG_NAME[] = "";

// Frees an identity value.
struct IdentityFree
{
    void operator()(char *value) const { ZMP_Free_F(value, GPB_XML_COMPILER_TAG, LINE_FREE_IDENTITY); }
};

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
        GPB_LOG(pvLibHandle, GPB_LOG_SKIP, LINE_NO_LEAF_FIELD,
                "[GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [%s] from [%s].", name, layer->strXPath.c_str());
        return GPB_COMPILER_NO_FIELD;
    }
    if (found.caseField != nullptr)
    {
        const unsigned int result = GpbPushAncestorLayers(found.caseField, stStack);
        if (result != GPB_COMPILER_OK)
        {
            GPB_LOG(pvLibHandle, GPB_LOG_ERROR, LINE_LEAF_CASE_FAILED, "Gpb compiler leaf choice case node [%s] fail.",
                    name);
            // Layers that were pushed stay, as they do for a host that looks at the stack.
            return result;
        }
        layer = &GpbTopLayer(stStack);
    }
    // Only a leaf that declares a namespace can hold an identity.
    const std::unique_ptr<char, IdentityFree> identity(
        pstNode->nsDef == nullptr ? nullptr : GPB_IdentityNodeValueUpdate(uiMemHandle, pstNode, text));
    char *value = identity == nullptr ? text : identity.get();
    unsigned int result = GPB_COMPILER_OK;
    {
        const GpbCaseSwitch caseSwitch(stStack, layer->pstMessage, found.field);
        result = FillLeafField(*layer, found.field, value, name);
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
        GPB_LOG(pvLibHandle, GPB_LOG_SKIP, LINE_NO_EMPTY_LEAF_FIELD,
                "[GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [%s] from [%s].", EMPTY_LEAF_LOG_NAME,
                GpbTopLayer(stStack).strXPath.c_str());
        return GPB_COMPILER_OK;
    }
    if (found.caseField != nullptr)
    {
        const unsigned int result = GpbPushAncestorLayers(found.caseField, stStack);
        if (result != GPB_COMPILER_OK)
        {
            GPB_LOG(pvLibHandle, GPB_LOG_ERROR, LINE_EMPTY_LEAF_CASE_FAILED,
                    "Gpb compiler empty leaf choice case node [%s] fail.", name);
            return result;
        }
    }
    if (found.field->type() != FieldDescriptor::TYPE_BOOL)
    {
        GPB_LOG(pvLibHandle, GPB_LOG_SKIP, LINE_EMPTY_LEAF_NOT_BOOL,
                "[GpbXmlCompiler][ProcXmlLeafNode]leaf %s, not expect type %d.", EMPTY_LEAF_LOG_NAME,
                static_cast<int>(found.field->type()));
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
    const unsigned int result = translate(stLayer, pstField, pcValue);
    if (result != GPB_COMPILER_OK)
    {
        GPB_LOG(pvLibHandle, GPB_LOG_ERROR, LINE_TRANSLATE_FAILED,
                "[GpbXmlCompiler][FillLeafField]Fail to translator node [%s] value [%s] to layer [%s].", pcNodeName,
                pcValue, stLayer.strXPath.c_str());
    }
    return result;
}
