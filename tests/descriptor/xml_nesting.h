/** XML documents of one element in another, for the tests of node paths and of the tables that are searched by path. */
#ifndef GPB_TESTS_DESCRIPTOR_XML_NESTING_H
#define GPB_TESTS_DESCRIPTOR_XML_NESTING_H

#include <algorithm>
#include <memory>
#include <string>

#include <libxml/tree.h>

namespace gpbtest
{

/** A document in which each element is the only child of the one before it. */
class XmlNesting
{
public:
    /** @param path  element names from the root on, separated by "/" */
    explicit XmlNesting(const std::string &path) : m_document(xmlNewDoc(nullptr))
    {
        auto *parent = reinterpret_cast<xmlNode *>(m_document.get());
        size_t start = 0;
        while (start <= path.size())
        {
            const size_t end = std::min(path.find('/', start), path.size());
            parent = add(parent, path.substr(start, end - start));
            start = end + 1;
        }
        m_leaf = parent;
    }

    /** The innermost element. */
    xmlNode *leaf() const { return m_leaf; }

    xmlNode *document() const { return reinterpret_cast<xmlNode *>(m_document.get()); }

    /** Declares a namespace on the innermost element. */
    void declareNamespace(const char *prefix = "p")
    {
        xmlNewNs(m_leaf, reinterpret_cast<const xmlChar *>("urn:test"), reinterpret_cast<const xmlChar *>(prefix));
    }

    /** Element names e, e, ..., that many, separated and followed by "/". */
    static std::string levels(size_t count)
    {
        std::string path;
        for (size_t i = 0; i < count; ++i)
        {
            path += "e/";
        }
        return path;
    }

private:
    static xmlNode *add(xmlNode *parent, const std::string &name)
    {
        xmlNode *const node =
            xmlNewDocNode(parent->doc, nullptr, reinterpret_cast<const xmlChar *>(name.c_str()), nullptr);
        return xmlAddChild(parent, node);
    }

    struct Free
    {
        void operator()(xmlDoc *document) const { xmlFreeDoc(document); }
    };

    std::unique_ptr<xmlDoc, Free> m_document;
    xmlNode *m_leaf = nullptr;
};

} // namespace gpbtest

#endif
