#include "document_checker.h"

#include <google/protobuf/descriptor.h>

#include "core/gpb_protobuf_compat.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "gpb_templatelib/gpb_limits.h"
#include "value_check.h"

namespace gpbtool
{

namespace pb = google::protobuf;

namespace
{

std::string Tag(const xmlNode &node)
{
    return std::string("<") + reinterpret_cast<const char *>(node.name) + ">: ";
}

} // namespace

void DocumentChecker::Children(const xmlNode &parent, const OpenLevel &level)
{
    for (xmlNode *node = parent.children; node != nullptr; node = node->next)
    {
        if (node->type == XML_ELEMENT_NODE)
        {
            Element(*node, level);
        }
        else if (node->type == XML_TEXT_NODE && xmlIsBlankNode(node) == 0)
        {
            findings.push_back(
                {std::to_string(xmlGetLineNo(node)), Tag(parent) + "text beside elements is not encoded"});
        }
    }
}

void DocumentChecker::Report(const xmlNode &node, const std::string &what)
{
    findings.push_back({std::to_string(xmlGetLineNo(&node)), Tag(node) + what});
}

void DocumentChecker::ReportUnknown(const xmlNode &node, const OpenLevel &level)
{
    Report(node, "unknown in message " + GpbPbFullName(*level.type));
}

void DocumentChecker::ReportEmpty(const xmlNode &node, const pb::FieldDescriptor &field)
{
    Report(node, std::string("empty, but the module wants a value of type ") + GpbPbTypeName(field));
}

void DocumentChecker::Test(const xmlNode &node, const pb::FieldDescriptor &field)
{
    const std::string problem = rules_.extraTest ? rules_.extraTest(node, field) : "";
    if (!problem.empty())
    {
        Report(node, problem);
    }
}

void DocumentChecker::TestValue(const xmlNode &node, const pb::FieldDescriptor &field, const char *value)
{
    const std::string problem = ValueProblem(field, value);
    if (!problem.empty())
    {
        Report(node, problem);
    }
}

bool DocumentChecker::TestMessage(const xmlNode &node, const pb::FieldDescriptor &field)
{
    const bool isMessage = field.type() == pb::FieldDescriptor::TYPE_MESSAGE;
    if (!isMessage)
    {
        Report(node, std::string("a leaf of type ") + GpbPbTypeName(field) +
                         " in the module, but more than one text in the document");
    }
    return isMessage;
}

void DocumentChecker::Enter(const xmlNode &node, const pb::FieldDescriptor &field, const OpenLevel &level)
{
    if (!TestMessage(node, field))
    {
        return;
    }
    const pb::Descriptor *type = field.message_type();
    if (rules_.layersByType)
    {
        Children(node, {type, GPB_GetDescriptorLayerNum(type)});
        return;
    }
    if (level.layers >= GPB_COMPILER_MAX_LAYERS)
    {
        Report(node, "nested deeper than " + std::to_string(GPB_COMPILER_MAX_LAYERS) + " levels");
        return;
    }
    Children(node, {type, level.layers + 1});
}

} // namespace gpbtool
