// XML to GPB: the walk over the document, containers and list entries.
#include <google/protobuf/descriptor.h>
#include <google/protobuf/message.h>
#include <libxml/tree.h>
#include <utility>

#include "compiler/gpb_ancestor_layers.h"
#include "compiler/gpb_case_switch.h"
#include "compiler/gpb_layer.h"
#include "compiler/gpb_xml_log.h"
#include "compiler/gpb_xml_node.h"
#include "core/gpb_log.h"
#include "descriptor/gpb_field_finder.h"
#include "gpb_templatelib/gpb_compiler.h"

using google::protobuf::FieldDescriptor;

namespace
{

constexpr char TOP_LAYER[] = "ProcCompilerTopLayer";
constexpr uint32_t LINE_TOP_STACK_FULL = 268;
constexpr char CONTAINER[] = "ProcXmlContainerNode";
constexpr uint32_t LINE_LAYER_FAILED = 313;
constexpr uint32_t LINE_STACK_FULL = 325;

} // namespace

unsigned int GpbXmlCompiler::IterXmlDoc(xmlNode *pstNode, GpbCompilerStack &stStack)
{
    for (xmlNode *node = pstNode; node != nullptr; node = node->next)
    {
        unsigned int result = GPB_COMPILER_OK;
        bool stops = false;
        switch (GpbClassifyXmlNode(node))
        {
        case GpbXmlNodeKind::IGNORED:
            continue;
        case GpbXmlNodeKind::EMPTY:
            result = ProcXmlEmptyLeafNode(node, stStack);
            stops = true;
            break;
        case GpbXmlNodeKind::LEAF:
            result = ProcXmlLeafNode(node, stStack);
            break;
        case GpbXmlNodeKind::CONTAINER:
            // Below the top a failing container is logged and passed over. The top is the whole document: what fails
            // there has to reach the caller.
            stops = stStack.uiLayerNum == 0;
            result = ProcXmlContainerNode(node, stStack);
            break;
        }
        if (result != GPB_COMPILER_OK && (stops || ucStopOnError != 0))
        {
            return result;
        }
    }
    return GPB_COMPILER_OK;
}

unsigned int GpbXmlCompiler::ProcXmlContainerNode(xmlNode *pstNode, GpbCompilerStack &stStack)
{
    const uint32_t layerNum = stStack.uiLayerNum;
    if (layerNum == 0)
    {
        return ProcCompilerTopLayer(pstNode, stStack);
    }
    unsigned int result = PushXmlContainer(pstNode, stStack);
    if (result != GPB_COMPILER_OK)
    {
        return result;
    }
    result = IterXmlDoc(pstNode->children, stStack);
    // Pops the layers of the case, too.
    stStack.uiLayerNum = layerNum;
    return result;
}

unsigned int GpbXmlCompiler::PushXmlContainer(xmlNode *pstNode, GpbCompilerStack &stStack)
{
    const uint32_t layerNum = stStack.uiLayerNum;
    const char *name = GpbXmlNodeName(pstNode);
    const GpbFoundField found =
        pstFieldFinder->FindNode(stStack.astLayer[layerNum - 1].pstDescriptor, name, layerNum + 1);
    if (found.field == nullptr)
    {
        GpbReportNoXmlContainer(pvLibHandle, name);
        return GPB_COMPILER_NO_FIELD;
    }
    if (found.caseField != nullptr)
    {
        const unsigned int result = GpbPushAncestorLayers(found.caseField, stStack);
        if (result != GPB_COMPILER_OK)
        {
            GpbReportXmlContainerCaseFailed(pvLibHandle, name);
            return result;
        }
    }
    return GpbPushRecordLayer(pvLibHandle, stStack, found.field) ? GPB_COMPILER_OK
                                                                 : PushContainerLayer(found.field, name, stStack);
}

unsigned int GpbXmlCompiler::PushContainerLayer(const FieldDescriptor *pstField, const char *pcNodeName,
                                                GpbCompilerStack &stStack)
{
    GpbCompilerStackLayer &upper = stStack.astLayer[stStack.uiLayerNum - 1];
    // The path is made when the layer is pushed, and for log lines, and only if somebody can read it.
    GpbCompilerStackLayer layer;
    unsigned int result = GenerateLayerType(layer, &upper, pstField, nullptr);
    if (result != GPB_COMPILER_OK)
    {
        GPB_LOG_AS(pvLibHandle, GPB_LOG_ERROR, CONTAINER, LINE_LAYER_FAILED, "Create layer failed [%s]", pcNodeName);
        return result;
    }
    {
        const GpbCaseSwitch caseSwitch(stStack, upper.pstMessage, pstField);
        result = AddLayerToUpperLayer(upper, layer, pstField);
    }
    if (result != GPB_COMPILER_OK)
    {
        return result;
    }
    // The message is in its parent by now: a document that nests too deep leaves it there, empty.
    if (stStack.uiLayerNum == GPB_COMPILER_MAX_LAYERS)
    {
        GPB_LOG_AS(pvLibHandle, GPB_LOG_ERROR, CONTAINER, LINE_STACK_FULL,
                   "[GpbXmlCompiler][ProcXmlContainerNode]Fail to push layer [%s]. depth is %u.",
                   GpbXPathOf(upper, *pstField).c_str(), GPB_COMPILER_MAX_LAYERS);
        return GPB_COMPILER_STACK_FULL;
    }
    GpbCompilerStackLayer &pushed = GpbPushLayer(stStack, layer.pstMessage, layer.pstDescriptor);
    if (GpbIsPathRead(pvLibHandle, pushed))
    {
        GenerateXPath(pushed, &upper, pstField);
    }
    return GPB_COMPILER_OK;
}

unsigned int GpbXmlCompiler::ProcCompilerTopLayer(xmlNode *pstRoot, GpbCompilerStack &stStack)
{
    const unsigned int result = PushTopLayer(pstRoot, stStack);
    if (result != GPB_COMPILER_OK)
    {
        return result;
    }
    const uint32_t layerNum = stStack.uiLayerNum;
    const unsigned int walkResult = IterXmlDoc(pstRoot->children, stStack);
    // The top layer stays on the stack: its message is the result.
    stStack.uiLayerNum = layerNum;
    return walkResult;
}

unsigned int GpbXmlCompiler::PushTopLayer(xmlNode *pstRoot, GpbCompilerStack &stStack)
{
    GpbCompilerStackLayer layer;
    const unsigned int result = InitCompilerTopLayer(pstRoot, layer);
    if (result != GPB_COMPILER_OK)
    {
        return result;
    }
    if (stStack.uiLayerNum == GPB_COMPILER_MAX_LAYERS)
    {
        delete layer.pstMessage;
        GPB_LOG_AS(pvLibHandle, GPB_LOG_ERROR, TOP_LAYER, LINE_TOP_STACK_FULL, "Fail to push upper layer [%s]",
                   layer.strXPath.c_str());
        return GPB_COMPILER_STACK_FULL;
    }
    stStack.astLayer[stStack.uiLayerNum] = std::move(layer);
    ++stStack.uiLayerNum;
    return GPB_COMPILER_OK;
}

unsigned int GpbXmlCompiler::ProcXmlPresenceContainerNode(xmlNode *pstNode, GpbCompilerStack &stStack)
{
    if (stStack.uiLayerNum == 0)
    {
        return GPB_COMPILER_ERR;
    }
    const char *name = GpbXmlNodeName(pstNode);
    const GpbFoundField found =
        pstFieldFinder->FindNode(stStack.astLayer[stStack.uiLayerNum - 1].pstDescriptor, name, stStack.uiLayerNum + 1);
    if (found.field == nullptr)
    {
        return GPB_COMPILER_NO_FIELD;
    }
    if (found.caseField != nullptr)
    {
        const unsigned int result = GpbPushAncestorLayers(found.caseField, stStack);
        if (result != GPB_COMPILER_OK)
        {
            GpbReportXmlPresenceCaseFailed(pvLibHandle, name);
            return result;
        }
    }
    // No layer is pushed, and those of the case deliberately stay: the enclosing container pops them at its end.
    return AddContainer(found.field, stStack);
}

unsigned int GpbXmlCompiler::AddContainer(const FieldDescriptor *pstField, GpbCompilerStack &stStack)
{
    GpbCompilerStackLayer &upper = stStack.astLayer[stStack.uiLayerNum - 1];
    GpbCompilerStackLayer layer;
    const unsigned int result = GenerateLayer(layer, &upper, pstField);
    if (result != GPB_COMPILER_OK)
    {
        return result;
    }
    const GpbCaseSwitch caseSwitch(stStack, upper.pstMessage, pstField);
    return AddLayerToUpperLayer(upper, layer, pstField);
}
