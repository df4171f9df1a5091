#include "support/xml_parser.h"

#include <stdexcept>

namespace gpbbench
{

XmlParser::XmlParser() : parser_(xmlNewParserCtxt())
{
    if (parser_ == nullptr)
    {
        throw std::runtime_error("no XML parser");
    }
}

XmlDocument XmlParser::Parse(const std::string &text) const
{
    // Unlike xmlCtxtReadMemory this reads the text where it is.
    XmlDocument document(xmlCtxtReadDoc(parser_.get(), reinterpret_cast<const xmlChar *>(text.c_str()), nullptr,
                                        nullptr, XML_PARSE_NONET | XML_PARSE_COMPACT));
    if (document == nullptr)
    {
        throw std::runtime_error("the document does not parse");
    }
    return document;
}

} // namespace gpbbench
