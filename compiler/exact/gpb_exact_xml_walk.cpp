#include "compiler/exact/gpb_exact_xml_walk.h"

#include <google/protobuf/descriptor.h>
#include <string>

#include "compiler/exact/gpb_exact_open.h"
#include "compiler/exact/gpb_exact_xml_node.h"
#include "compiler/gpb_identity_value.h"
#include "compiler/gpb_layer.h"
#include "compiler/gpb_module_plan.h"
#include "compiler/gpb_xml_log.h"

using google::protobuf::FieldDescriptor;

GpbExactXmlWalk::GpbExactXmlWalk(GpbXmlCompiler &compiler) : compiler_(compiler), tables_(compiler.pstPlan->exactNames)
{
}

unsigned int GpbExactXmlWalk::WalkSiblings(xmlNode *first, GpbCompilerStack &stack)
{
    for (xmlNode *node = first; node != nullptr; node = node->next)
    {
        bool stops = false;
        const unsigned int result = stack.uiLayerNum == 0 ? WalkRoot(node, stack, stops) : WalkNode(node, stack, stops);
        if (result != GPB_COMPILER_OK && (stops || compiler_.ucStopOnError != 0))
        {
            return result;
        }
    }
    return GPB_COMPILER_OK;
}

// A root without elements holds nothing that could be lost: it ends as it does in the default.
unsigned int GpbExactXmlWalk::WalkRoot(xmlNode *root, GpbCompilerStack &stack, bool &stops)
{
    switch (GpbClassifyXmlNode(root))
    {
    case GpbXmlNodeKind::IGNORED:
        break;
    case GpbXmlNodeKind::EMPTY:
        stops = true;
        return compiler_.ProcXmlEmptyLeafNode(root, stack);
    case GpbXmlNodeKind::LEAF:
        return compiler_.ProcXmlLeafNode(root, stack);
    case GpbXmlNodeKind::CONTAINER:
        stops = true;
        const unsigned int result = compiler_.PushTopLayer(root, stack);
        return result == GPB_COMPILER_OK ? WalkSiblings(root->children, stack) : result;
    }
    return GPB_COMPILER_OK;
}

unsigned int GpbExactXmlWalk::WalkNode(xmlNode *node, GpbCompilerStack &stack, bool &stops)
{
    std::string joined;
    char *text = nullptr;
    switch (GpbReadExactContent(node, text, joined))
    {
    case GpbXmlNodeKind::IGNORED:
        break;
    case GpbXmlNodeKind::EMPTY:
        stops = true;
        return StoreEmpty(node, stack);
    case GpbXmlNodeKind::LEAF:
        return StoreText(node, text, stack);
    case GpbXmlNodeKind::CONTAINER:
        return WalkContainer(node, stack);
    }
    return GPB_COMPILER_OK;
}

const GpbExactField *GpbExactXmlWalk::Find(xmlNode *node, GpbExactKind kind, const GpbCompilerStack &stack)
{
    // Most elements are in the namespace of the one before.
    if (node->ns != space_)
    {
        space_ = node->ns;
        module_ = GpbExactModuleOf(space_);
    }
    const GpbCompilerStackLayer &top = stack.astLayer[stack.uiLayerNum - 1];
    return tables_.TableOf(top.pstDescriptor, stack.uiLayerNum + 1).Find(GpbXmlNodeName(node), kind, module_);
}

unsigned int GpbExactXmlWalk::WalkContainer(xmlNode *node, GpbCompilerStack &stack)
{
    const GpbLayerScope scope(stack);
    const char *name = GpbXmlNodeName(node);
    const GpbExactField *found = Find(node, GpbExactKind::MESSAGE, stack);
    if (found == nullptr)
    {
        found = Find(node, GpbExactKind::LEAF, stack); // which is no container, and is reported as such
    }
    if (found == nullptr)
    {
        GpbReportNoXmlContainer(compiler_.pvLibHandle, name);
        return GPB_COMPILER_NO_FIELD;
    }
    unsigned int result = GpbOpenExactCases(*found, stack);
    if (result != GPB_COMPILER_OK)
    {
        GpbReportXmlContainerCaseFailed(compiler_.pvLibHandle, name);
        return result;
    }
    result = GpbPushRecordLayer(compiler_.pvLibHandle, stack, found->field)
                 ? GPB_COMPILER_OK
                 : compiler_.PushContainerLayer(found->field, name, stack);
    return result == GPB_COMPILER_OK ? WalkSiblings(node->children, stack) : result;
}

unsigned int GpbExactXmlWalk::StoreText(xmlNode *node, char *text, GpbCompilerStack &stack)
{
    const GpbLayerScope scope(stack);
    const GpbExactField *found = GpbFindForText(text, [&](GpbExactKind kind) { return Find(node, kind, stack); });
    if (found == nullptr)
    {
        // A container that is none of the layer's has no line of its own.
        if (*text != GPB_LINE_BREAK)
        {
            GpbReportNoXmlLeaf(compiler_.pvLibHandle, GpbXmlNodeName(node), GpbTopLayer(stack));
        }
        return GPB_COMPILER_NO_FIELD;
    }
    if (found->field->type() == FieldDescriptor::TYPE_MESSAGE)
    {
        return AddContainer(node, *found, stack);
    }
    const unsigned int result = GpbOpenExactCases(*found, stack);
    if (result != GPB_COMPILER_OK)
    {
        GpbReportXmlLeafCaseFailed(compiler_.pvLibHandle, GpbXmlNodeName(node));
        return result;
    }
    const GpbIdentityValue value(compiler_.uiMemHandle, node, text);
    return compiler_.FillLeafField(GpbTopLayer(stack), found->field, value.Text(), GpbXmlNodeName(node));
}

unsigned int GpbExactXmlWalk::StoreEmpty(xmlNode *node, GpbCompilerStack &stack)
{
    const GpbLayerScope scope(stack);
    const GpbExactField *found = Find(node, GpbExactKind::ANY, stack);
    if (found == nullptr)
    {
        GpbReportNoXmlEmptyLeaf(compiler_.pvLibHandle, GpbTopLayer(stack));
        return GPB_COMPILER_OK;
    }
    if (found->field->type() == FieldDescriptor::TYPE_MESSAGE)
    {
        return AddContainer(node, *found, stack);
    }
    char *value = GpbEmptyValueOf(*found->field);
    if (value == nullptr)
    {
        GpbReportXmlEmptyLeafType(compiler_.pvLibHandle, *found->field);
        return GPB_COMPILER_OK;
    }
    const unsigned int result = GpbOpenExactCases(*found, stack);
    if (result != GPB_COMPILER_OK)
    {
        GpbReportXmlEmptyLeafCaseFailed(compiler_.pvLibHandle, GpbXmlNodeName(node));
        return result;
    }
    return compiler_.FillLeafField(GpbTopLayer(stack), found->field, value, GpbXmlNodeName(node));
}

unsigned int GpbExactXmlWalk::AddContainer(xmlNode *node, const GpbExactField &container, GpbCompilerStack &stack)
{
    const unsigned int result = GpbOpenExactCases(container, stack);
    if (result != GPB_COMPILER_OK)
    {
        GpbReportXmlPresenceCaseFailed(compiler_.pvLibHandle, GpbXmlNodeName(node));
        return result;
    }
    return compiler_.AddContainer(container.field, stack);
}
