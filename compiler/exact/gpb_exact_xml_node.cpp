#include "compiler/exact/gpb_exact_xml_node.h"

#include <cstring>

#include "descriptor/gpb_exact_module.h"

using google::protobuf::FieldDescriptor;

namespace
{

char TRUE_VALUE[] = "true";
char EMPTY_VALUE[] = "";

constexpr char BLANKS[] = " \t\r\n";

const char *TextOf(const xmlChar *text)
{
    return text == nullptr ? "" : reinterpret_cast<const char *>(text);
}

bool IsText(const xmlNode *node)
{
    return node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE;
}

bool IsBlank(const char *text)
{
    return text[std::strspn(text, BLANKS)] == '\0';
}

} // namespace

GpbXmlNodeKind GpbReadExactContent(xmlNode *node, char *&text, std::string &joined)
{
    const GpbXmlNodeKind kind = GpbClassifyXmlNode(node);
    if (kind == GpbXmlNodeKind::IGNORED || kind == GpbXmlNodeKind::EMPTY)
    {
        return kind;
    }
    size_t pieces = 0;
    for (xmlNode *child = node->children; child != nullptr; child = child->next)
    {
        if (child->type == XML_ELEMENT_NODE)
        {
            return GpbXmlNodeKind::CONTAINER;
        }
        if (child->type == XML_ENTITY_REF_NODE)
        {
            // Its text is not looked at, and what is left of the value without it would be another one.
            return kind == GpbXmlNodeKind::LEAF ? GpbXmlNodeKind::IGNORED : kind;
        }
        if (IsText(child) && *TextOf(child->content) != '\0')
        {
            ++pieces;
            text = reinterpret_cast<char *>(child->content);
        }
    }
    if (pieces > 1)
    {
        for (const xmlNode *child = node->children; child != nullptr; child = child->next)
        {
            joined += IsText(child) ? TextOf(child->content) : "";
        }
        text = joined.data();
    }
    return pieces == 0 ? GpbXmlNodeKind::EMPTY : GpbXmlNodeKind::LEAF;
}

std::string_view GpbExactModuleOf(const xmlNs *space)
{
    return GpbModuleOfNamespace(TextOf(space == nullptr ? nullptr : space->href));
}

bool GpbIsFormatting(const char *text)
{
    return *text == GPB_LINE_BREAK || IsBlank(text);
}

bool GpbIsValueOf(const FieldDescriptor &leaf, const char *text)
{
    return leaf.cpp_type() == FieldDescriptor::CPPTYPE_STRING || !IsBlank(text);
}

char *GpbEmptyValueOf(const FieldDescriptor &field)
{
    switch (field.type())
    {
    case FieldDescriptor::TYPE_BOOL:
        return TRUE_VALUE;
    case FieldDescriptor::TYPE_STRING:
    case FieldDescriptor::TYPE_BYTES:
        return EMPTY_VALUE;
    default:
        return nullptr;
    }
}
