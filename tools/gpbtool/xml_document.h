/** Reading XML documents that nobody has checked: no network, no external entities, bounded entity expansion. */
#ifndef GPBTOOL_XML_DOCUMENT_H
#define GPBTOOL_XML_DOCUMENT_H

#include <libxml/tree.h>

#include <memory>
#include <string>
#include <string_view>

#include "input_file.h"

namespace gpbtool
{

struct XmlDocDeleter
{
    void operator()(xmlDoc *doc) const { xmlFreeDoc(doc); }
};
using XmlDocument = std::unique_ptr<xmlDoc, XmlDocDeleter>;

/** Prepares libxml2 for the process; call once, on the main thread, before the first document. */
void PrepareXmlParser();

/**
 * Reads a document. Threads may read different ones.
 *
 * Entities that the document declares itself are replaced by their text within libxml2's limits; a document that
 * refers to an external DTD or entity is refused. CDATA becomes plain text.
 *
 * @throws ToolError (Input) with file and line
 */
XmlDocument ReadXmlDocument(InputFile &input);

/** The same for a text that was read from `path`. */
XmlDocument ParseXmlText(std::string_view text, const std::string &path);

} // namespace gpbtool

#endif
