// What kind of YANG node an XML node stands for, and texts of libxml2.
#ifndef GPB_COMPILER_GPB_XML_NODE_H
#define GPB_COMPILER_GPB_XML_NODE_H

#include <libxml/tree.h>
#include <memory>

/// Frees a text that libxml2 allocated.
struct GpbXmlTextFree
{
    void operator()(xmlChar *text) const { xmlFree(text); }
};

/// A text allocated by libxml2.
using GpbXmlText = std::unique_ptr<xmlChar, GpbXmlTextFree>;

enum class GpbXmlNodeKind
{
    IGNORED,  ///< marked "__tlmtIgnored", or no element: passed over with its subtree
    EMPTY,    ///< no children: an empty leaf
    LEAF,     ///< a lone text child
    CONTAINER ///< anything else
};

/// Whether an element has the attribute that takes it out of the encoding.
bool GpbIsMarkedIgnored(xmlNode *node);

inline GpbXmlNodeKind GpbClassifyXmlNode(xmlNode *node)
{
    // Most nodes that are no elements are the blanks between them. Entity references have their declaration as a child:
    // following it would leave the document, so that a few bytes of entities could stand for any amount of content.
    if (node->type != XML_ELEMENT_NODE)
    {
        return GpbXmlNodeKind::IGNORED;
    }
    const xmlNode *first = node->children;
    if (first == nullptr)
    {
        return GpbXmlNodeKind::EMPTY;
    }
    // Without attributes, and without a document type that may give default ones, there is no mark.
    const bool hasAttributes = node->properties != nullptr || (node->doc != nullptr && node->doc->intSubset != nullptr);
    if (hasAttributes && GpbIsMarkedIgnored(node))
    {
        return GpbXmlNodeKind::IGNORED;
    }
    if (first->children == nullptr && first->next == nullptr && first->type != XML_ELEMENT_NODE)
    {
        return GpbXmlNodeKind::LEAF;
    }
    return GpbXmlNodeKind::CONTAINER;
}

/// The node's name as a text; empty when it has none.
inline char *GpbXmlNodeName(xmlNode *node)
{
    static char noName[] = "";
    return node->name == nullptr ? noName : const_cast<char *>(reinterpret_cast<const char *>(node->name));
}

#endif
