/** Any XML document, by the compiler of the module that knows its root element, in both settings. */
#include "gpb_templatelib/gpb_compiler_c.h"
#include "support/documents.h"
#include "support/guard.h"
#include "support/library.h"
#include "support/twin.h"

namespace
{

/** Encodes twice with one compiler: the second result must be as long as the first. */
void encode(xmlDoc *document)
{
    const char *const name = gpbfuzz::rootName(document);
    const char *const module = gpbfuzz::moduleOf(name);
    const gpbfuzz::Compiler compiler(GpbXmlCompiler_CreateCompiler(gpbfuzz::library(), module));
    gpbfuzz::require(compiler != nullptr, "no compiler");
    unsigned int length = 0;
    unsigned int code = 0;
    const char *const bytes = GpbXmlCompiler_Encode(compiler.get(), document, &length, &code);
    gpbfuzz::require(bytes == nullptr || code == 0, "bytes in spite of a failure");
    if (bytes != nullptr)
    {
        gpbfuzz::requireEncoding(module, name, bytes, length);
    }
    unsigned int lengthAgain = 0;
    unsigned int codeAgain = 0;
    const bool isEncoded = bytes != nullptr;
    const char *const bytesAgain = GpbXmlCompiler_Encode(compiler.get(), document, &lengthAgain, &codeAgain);
    gpbfuzz::require(codeAgain == code && isEncoded == (bytesAgain != nullptr), "the second encode ends otherwise");
    gpbfuzz::require(!isEncoded || lengthAgain == length, "the second encode has another length");
    gpbfuzz::requireSameXml(gpbfuzz::library(), module, document);
}

void encodeBothWays(xmlDoc *document)
{
    encode(document);
    const gpbfuzz::Lossless lossless(gpbfuzz::library());
    encode(document);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    gpbfuzz::library();
    // An enum value that is too long raises an assertion.
    const gpbfuzz::InputGuard guard(true);
    const gpbfuzz::XmlDocument document = gpbfuzz::parseXml(data, size);
    if (document == nullptr)
    {
        return 0;
    }
    encodeBothWays(document.get());
    if (document->intSubset != nullptr)
    {
        const gpbfuzz::XmlDocument expanded = gpbfuzz::parseXml(data, size, XML_PARSE_NOENT);
        if (expanded != nullptr)
        {
            encodeBothWays(expanded.get());
        }
    }
    return 0;
}
