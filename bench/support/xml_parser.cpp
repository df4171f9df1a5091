#include "support/xml_parser.h"

#include <stdexcept>

namespace gpbbench
{

namespace
{

// A document of such a text takes more memory than a cache holds that a processor has for itself.
constexpr size_t LARGE_TEXT = size_t{256} * 1024;

} // namespace

XmlParser::XmlParser() : parser_(NewContext()) {}

XmlDocument XmlParser::Parse(const std::string &text) const
{
    return text.size() < LARGE_TEXT ? ParseKept(text) : Read(NewContext().get(), text);
}

XmlParser::Context XmlParser::NewContext()
{
    Context context(xmlNewParserCtxt());
    if (context == nullptr)
    {
        throw std::runtime_error("no XML parser");
    }
    return context;
}

XmlDocument XmlParser::Read(xmlParserCtxt *context, const std::string &text)
{
    // Unlike xmlCtxtReadMemory this reads the text where it is.
    XmlDocument document(xmlCtxtReadDoc(context, reinterpret_cast<const xmlChar *>(text.c_str()), nullptr, nullptr,
                                        XML_PARSE_NONET | XML_PARSE_COMPACT));
    if (document == nullptr)
    {
        throw std::runtime_error("the document does not parse");
    }
    return document;
}

} // namespace gpbbench
