/** XML documents for tests, parsed by libxml2 and freed with their object. */
#ifndef GPB_TESTS_SUPPORT_XML_DOCUMENT_H
#define GPB_TESTS_SUPPORT_XML_DOCUMENT_H

#include <memory>
#include <string>

#include <libxml/tree.h>

namespace gpbtest
{

class XmlDocument
{
public:
    /**
     * Parses a text; one that is not well-formed fails the test and gives an empty object.
     *
     * @param options  of xmlReadMemory
     */
    explicit XmlDocument(const std::string &text, int options = 0);

    xmlDoc *get() const { return m_document.get(); }

    /** The document element, null for an empty object. */
    xmlNode *root() const;

    /** The first element of that name, in document order; null when there is none. */
    xmlNode *find(const std::string &name) const;

private:
    struct Free
    {
        void operator()(xmlDoc *document) const { xmlFreeDoc(document); }
    };

    std::unique_ptr<xmlDoc, Free> m_document;
};

} // namespace gpbtest

#endif
