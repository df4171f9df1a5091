// XML documents from texts, as a host parses them that reads many.
#ifndef GPB_BENCH_SUPPORT_XML_PARSER_H
#define GPB_BENCH_SUPPORT_XML_PARSER_H

#include <memory>
#include <string>

#include <libxml/parser.h>
#include <libxml/tree.h>

namespace gpbbench
{

struct XmlFree
{
    void operator()(xmlDoc *document) const { xmlFreeDoc(document); }
    void operator()(xmlParserCtxt *parser) const { xmlFreeParserCtxt(parser); }
};
using XmlDocument = std::unique_ptr<xmlDoc, XmlFree>;

/// A parser that is kept from one document to the next, but for large ones, as docs/embedding.md tells hosts. Documents
/// may outlive it; failures throw std::runtime_error.
class XmlParser
{
public:
    XmlParser();

    /// Parses a UTF-8 text, blank text nodes included; nobody changes the document, so short texts may lie in their
    /// nodes.
    XmlDocument Parse(const std::string &text) const;

    /// The same with the parser that is kept, however large the document is.
    XmlDocument ParseKept(const std::string &text) const { return Read(parser_.get(), text); }

private:
    using Context = std::unique_ptr<xmlParserCtxt, XmlFree>;

    static Context NewContext();
    static XmlDocument Read(xmlParserCtxt *context, const std::string &text);

    Context parser_;
};

} // namespace gpbbench

#endif
