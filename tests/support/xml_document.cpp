#include "support/xml_document.h"

#include <limits>

#include <gtest/gtest.h>
#include <libxml/parser.h>

namespace gpbtest
{

namespace
{

/** The node behind this one in document order, below `top`. */
xmlNode *nextInDocument(xmlNode *node, const xmlNode *top)
{
    if (node->children != nullptr)
    {
        return node->children;
    }
    while (node != top && node->next == nullptr)
    {
        node = node->parent;
    }
    return node == top ? nullptr : node->next;
}

} // namespace

XmlDocument::XmlDocument(const std::string &text, int options)
{
    if (text.size() > static_cast<size_t>(std::numeric_limits<int>::max()))
    {
        ADD_FAILURE() << "document too large";
        return;
    }
    m_document.reset(
        xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, options | XML_PARSE_NONET));
    if (m_document == nullptr)
    {
        ADD_FAILURE() << "not well-formed:\n" << text.substr(0, 1000);
    }
}

xmlNode *XmlDocument::root() const
{
    return m_document == nullptr ? nullptr : xmlDocGetRootElement(m_document.get());
}

xmlNode *XmlDocument::find(const std::string &name) const
{
    xmlNode *const top = root();
    for (xmlNode *node = top; node != nullptr; node = nextInDocument(node, top))
    {
        if (node->type == XML_ELEMENT_NODE && name == reinterpret_cast<const char *>(node->name))
        {
            return node;
        }
    }
    return nullptr;
}

} // namespace gpbtest
