#include "compiler/gpb_xml_node.h"

namespace
{

// An element with children whose attribute of this name begins with "1" takes no part in the encoding.
constexpr char IGNORED_ATTRIBUTE[] = "__tlmtIgnored";

bool IsMarkedIgnored(xmlNode *node)
{
    // Without attributes, and without a document type that may give default ones, there is nothing to look for.
    if (node->properties == nullptr && (node->doc == nullptr || node->doc->intSubset == nullptr))
    {
        return false;
    }
    const GpbXmlText value(xmlGetProp(node, reinterpret_cast<const xmlChar *>(IGNORED_ATTRIBUTE)));
    return value != nullptr && *value == '1';
}

} // namespace

GpbXmlNodeKind GpbClassifyXmlNode(xmlNode *node)
{
    const xmlNode *first = node->children;
    if (first == nullptr)
    {
        return GpbXmlNodeKind::EMPTY;
    }
    // Entity references have their declaration as a child. Following it would leave the document, so that a few bytes
    // of entities could stand for any amount of content.
    if (node->type != XML_ELEMENT_NODE || IsMarkedIgnored(node))
    {
        return GpbXmlNodeKind::IGNORED;
    }
    if (first->children == nullptr && first->next == nullptr && first->type != XML_ELEMENT_NODE)
    {
        return GpbXmlNodeKind::LEAF;
    }
    return GpbXmlNodeKind::CONTAINER;
}
