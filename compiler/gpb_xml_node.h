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
    EMPTY,    ///< no children: an empty leaf, or nothing at all when it is no element
    LEAF,     ///< a lone text child
    CONTAINER ///< anything else
};

GpbXmlNodeKind GpbClassifyXmlNode(xmlNode *node);

/// The node's name as a text; empty when it has none.
inline char *GpbXmlNodeName(xmlNode *node)
{
    static char noName[] = "";
    return node->name == nullptr ? noName : const_cast<char *>(reinterpret_cast<const char *>(node->name));
}

#endif
