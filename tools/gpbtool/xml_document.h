/** Reading XML documents that nobody has checked: no network, no external entities, bounded entity expansion. */
#ifndef GPBTOOL_XML_DOCUMENT_H
#define GPBTOOL_XML_DOCUMENT_H

#include <libxml/tree.h>

#include <memory>
#include <string>

namespace gpbtool
{

struct XmlDocDeleter
{
    void operator()(xmlDoc *doc) const { xmlFreeDoc(doc); }
};
using XmlDocument = std::unique_ptr<xmlDoc, XmlDocDeleter>;

/** Prepares libxml2 for the process; call once, before the first document. */
void PrepareXmlParser();

/**
 * Reads a document.
 *
 * Entities that the document declares itself are replaced by their text within libxml2's limits; a document that
 * refers to an external DTD or entity is refused. CDATA becomes plain text.
 *
 * @param path  a file name, never a URL; "-" is standard input
 * @throws ToolError (Input) with file and line
 */
XmlDocument ReadXmlDocument(const std::string &path);

} // namespace gpbtool

#endif
