#include "xml_document.h"

#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/xmlerror.h>

#include <exception>
#include <functional>

#include "tool_error.h"

namespace gpbtool
{

namespace
{

// Blank text stays: a presence container is told from an empty leaf by the line break that it holds. Without
// XML_PARSE_HUGE libxml2 keeps its limits on depth, text size and entity expansion.
constexpr int kParseOptions = XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_NOCDATA | XML_PARSE_BIG_LINES;

/** What one parse reported. */
struct ParseLog
{
    std::string firstError;
    int line = 0;
};

/** libxml2 hands errors to a plain function, which each thread has one of. */
void RememberFirstError(void *arg, xmlErrorPtr error)
{
    auto *log = static_cast<ParseLog *>(arg);
    if (log == nullptr || error->level < XML_ERR_ERROR || !log->firstError.empty())
    {
        return;
    }
    log->firstError = error->message != nullptr ? error->message : "unknown error";
    while (!log->firstError.empty() && log->firstError.back() == '\n')
    {
        log->firstError.pop_back();
    }
    log->line = error->line;
}

xmlParserInputPtr RefuseExternalEntity(const char *, const char *, xmlParserCtxtPtr)
{
    return nullptr;
}

bool IsExternal(const xmlEntity *entity)
{
    return entity->etype == XML_EXTERNAL_GENERAL_PARSED_ENTITY ||
           entity->etype == XML_EXTERNAL_GENERAL_UNPARSED_ENTITY || entity->etype == XML_EXTERNAL_PARAMETER_ENTITY;
}

bool RefersToOutside(const xmlDtd *dtd)
{
    if (dtd == nullptr)
    {
        return false;
    }
    if (dtd->ExternalID != nullptr || dtd->SystemID != nullptr)
    {
        return true;
    }
    for (const xmlNode *node = dtd->children; node != nullptr; node = node->next)
    {
        if (node->type == XML_ENTITY_DECL && IsExternal(reinterpret_cast<const xmlEntity *>(node)))
        {
            return true;
        }
    }
    return false;
}

struct ParserDeleter
{
    void operator()(xmlParserCtxt *parser) const { xmlFreeParserCtxt(parser); }
};

/** Where libxml2 gets the bytes of a document from: `read` gives up to `size` of them, 0 at the end. */
struct ByteSource
{
    std::function<std::size_t(char *buffer, std::size_t size)> read;
    std::exception_ptr failure; /**< no exception may pass through libxml2, so it waits here */
};

int ReadFrom(void *arg, char *buffer, int size)
{
    auto *source = static_cast<ByteSource *>(arg);
    try
    {
        return static_cast<int>(source->read(buffer, static_cast<std::size_t>(size)));
    }
    catch (...)
    {
        source->failure = std::current_exception();
        return -1;
    }
}

XmlDocument Parse(ByteSource source, const std::string &path)
{
    const std::unique_ptr<xmlParserCtxt, ParserDeleter> parser(xmlNewParserCtxt());
    if (parser == nullptr)
    {
        throw ToolError(ExitCode::Internal, path + ": no memory for a parser");
    }
    ParseLog log;
    xmlSetStructuredErrorFunc(&log, &RememberFirstError);
    XmlDocument doc(xmlCtxtReadIO(parser.get(), &ReadFrom, nullptr, &source, path.c_str(), nullptr, kParseOptions));
    xmlSetStructuredErrorFunc(nullptr, nullptr);
    if (source.failure != nullptr)
    {
        std::rethrow_exception(source.failure);
    }

    const xmlDoc *seen = doc != nullptr ? doc.get() : parser->myDoc;
    if (seen != nullptr && RefersToOutside(seen->intSubset))
    {
        throw ToolError(ExitCode::Input, path + ": refers to an external DTD or entity, which is not read",
                        "take the reference out, or put the text itself into the document");
    }
    if (doc == nullptr)
    {
        const std::string line = log.line > 0 ? ":" + std::to_string(log.line) : std::string();
        throw ToolError(ExitCode::Input, path + line + ": no well-formed XML: " + log.firstError,
                        "correct the document at that line; a file that ends early was cut");
    }
    return doc;
}

} // namespace

void PrepareXmlParser()
{
    LIBXML_TEST_VERSION
    xmlInitParser();
    xmlSetExternalEntityLoader(&RefuseExternalEntity);
}

XmlDocument ReadXmlDocument(InputFile &input)
{
    return Parse({[&](char *buffer, std::size_t size) { return input.Read(buffer, size); }, nullptr}, input.Path());
}

XmlDocument ParseXmlText(std::string_view text, const std::string &path)
{
    const auto read = [text](char *buffer, std::size_t size) mutable
    {
        const std::size_t count = text.copy(buffer, size);
        text.remove_prefix(count);
        return count;
    };
    return Parse({read, nullptr}, path);
}

} // namespace gpbtool
