#include "document_check.h"

#include <google/protobuf/descriptor.h>
#include <libxml/xmlmemory.h>

#include "core/gpb_protobuf_compat.h"
#include "gpb_templatelib/gpb_compiler.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "value_check.h"

namespace gpbtool
{

namespace
{

namespace pb = google::protobuf;

/** An element that carries this attribute with a value beginning with "1" is passed over with all it holds. */
constexpr const char *kIgnoredAttribute = "__tlmtIgnored";

struct XmlCharDeleter
{
    void operator()(xmlChar *text) const { xmlFree(text); }
};
using XmlText = std::unique_ptr<xmlChar, XmlCharDeleter>;

const char *Chars(const xmlChar *text)
{
    return reinterpret_cast<const char *>(text);
}

std::string Tag(const xmlNode &node)
{
    return std::string("<") + Chars(node.name) + ">";
}

/** An open message: its type, and how many layers are open with it. */
struct Level
{
    const pb::Descriptor *type;
    std::uint32_t layers;
};

class Checker
{
public:
    explicit Checker(const CheckRules &rules) : rules_(rules) {}

    void Children(const xmlNode &parent, const Level &level)
    {
        for (xmlNode *node = parent.children; node != nullptr; node = node->next)
        {
            if (node->type == XML_ELEMENT_NODE)
            {
                Element(*node, level);
            }
            else if (node->type == XML_TEXT_NODE && xmlIsBlankNode(node) == 0)
            {
                Report(*node, Tag(parent) + ": text beside elements is not encoded");
            }
        }
    }

    std::vector<Finding> findings;

private:
    void Report(const xmlNode &node, const std::string &text)
    {
        findings.push_back({std::to_string(xmlGetLineNo(&node)), text});
    }

    void Element(xmlNode &node, const Level &level)
    {
        if (node.children == nullptr)
        {
            Empty(node, level);
            return;
        }
        const XmlText ignored(xmlGetProp(&node, reinterpret_cast<const xmlChar *>(kIgnoredAttribute)));
        if (ignored != nullptr && ignored.get()[0] == '1')
        {
            return;
        }
        const bool loneText = node.children->next == nullptr && node.children->children == nullptr &&
                              node.children->type == XML_TEXT_NODE;
        if (!loneText)
        {
            Container(node, level);
            return;
        }
        const XmlText text(xmlNodeGetContent(node.children));
        const char *value = text != nullptr ? Chars(text.get()) : "";
        if (value[0] == '\n')
        {
            Presence(node, level);
        }
        else
        {
            Leaf(node, level, value);
        }
    }

    const pb::FieldDescriptor *Find(const xmlNode &node, Level &level, bool leaf)
    {
        const pb::FieldDescriptor *caseField = nullptr;
        const auto layer = static_cast<std::int32_t>(level.layers + 1);
        const pb::FieldDescriptor *field =
            leaf ? GPB_GetLeafFieldDescByNodeName(Chars(node.name), level.type, layer, &caseField)
                 : GPB_FindFieldDescByNodeName(level.type, Chars(node.name), layer, &caseField);
        if (field == nullptr)
        {
            Report(node, Tag(node) + ": unknown in message " + GpbPbFullName(*level.type));
            return nullptr;
        }
        if (caseField != nullptr)
        {
            const pb::FieldDescriptor *ancestors[GPB_MAX_ANCESTOR_NUM] = {};
            const std::uint32_t count =
                GPB_GetDescriptorAncestors(caseField, level.type, ancestors, GPB_MAX_ANCESTOR_NUM);
            if (count == 0)
            {
                Report(node, Tag(node) + ": its case cannot be reached from message " + GpbPbFullName(*level.type));
                return nullptr;
            }
            level.layers += count;
            level.type = caseField->message_type();
        }
        if (rules_.extraTest)
        {
            const std::string problem = rules_.extraTest(node, *field);
            if (!problem.empty())
            {
                Report(node, Tag(node) + ": " + problem);
            }
        }
        return field;
    }

    void Empty(const xmlNode &node, Level level)
    {
        const pb::FieldDescriptor *field = Find(node, level, false);
        if (field == nullptr)
        {
            return;
        }
        if (field->type() == pb::FieldDescriptor::TYPE_MESSAGE)
        {
            Report(node, Tag(node) + ": an empty container or list entry needs a line break as its text to be encoded");
        }
        else if (field->type() != pb::FieldDescriptor::TYPE_BOOL)
        {
            Report(node, Tag(node) + ": empty, but the module wants a value of type " + GpbPbTypeName(*field));
        }
    }

    void Leaf(const xmlNode &node, Level level, const char *value)
    {
        const pb::FieldDescriptor *field = Find(node, level, true);
        if (field == nullptr)
        {
            return;
        }
        const std::string problem = ValueProblem(*field, value);
        if (!problem.empty())
        {
            Report(node, Tag(node) + ": " + problem);
        }
    }

    void Presence(const xmlNode &node, Level level)
    {
        const pb::FieldDescriptor *field = Find(node, level, false);
        if (field != nullptr)
        {
            IsMessage(node, *field);
        }
    }

    void Container(const xmlNode &node, Level level)
    {
        const pb::FieldDescriptor *field = Find(node, level, false);
        if (field == nullptr || !IsMessage(node, *field))
        {
            return;
        }
        const pb::Descriptor *type = field->message_type();
        if (rules_.layersByType)
        {
            Children(node, {type, GPB_GetDescriptorLayerNum(type)});
            return;
        }
        if (level.layers >= GPB_COMPILER_MAX_LAYERS)
        {
            Report(node, Tag(node) + ": nested deeper than " + std::to_string(GPB_COMPILER_MAX_LAYERS) + " levels");
            return;
        }
        Children(node, {type, level.layers + 1});
    }

    bool IsMessage(const xmlNode &node, const pb::FieldDescriptor &field)
    {
        if (field.type() == pb::FieldDescriptor::TYPE_MESSAGE)
        {
            return true;
        }
        Report(node, Tag(node) + ": a leaf of type " + GpbPbTypeName(field) +
                         " in the module, but more than one text in the document");
        return false;
    }

    const CheckRules &rules_;
};

} // namespace

const pb::Descriptor *RootMessage(const std::string &container, const pb::FileDescriptor &module)
{
    // Room for the two characters that a conversion can add.
    std::string name = container;
    name.resize(name.size() + 3, '\0');
    Gpb_util_ConverContainerName(name.data(), 1);
    name.erase(name.find('\0'));
    return module.pool()->FindMessageTypeByName(GpbPbPackage(module) + "." + name);
}

std::vector<Finding> CheckDocument(const xmlNode &root, const pb::Descriptor &type, const CheckRules &rules)
{
    Checker checker(rules);
    checker.Children(root, {&type, 1});
    return checker.findings;
}

} // namespace gpbtool
