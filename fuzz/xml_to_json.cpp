/** Any XML document as JSON, with 64-bit numbers as texts and as numbers, in both settings. */
#include <cstring>

#include "gpb_templatelib/gpb_compiler_c.h"
#include "support/documents.h"
#include "support/guard.h"
#include "support/library.h"

namespace
{

void convert(xmlDoc *document, unsigned char flag)
{
    const char *const module = gpbfuzz::moduleOf(gpbfuzz::rootName(document));
    const gpbfuzz::Compiler compiler(GpbXmlCompiler_CreateJsonCompiler(gpbfuzz::library(), module, flag));
    gpbfuzz::require(compiler != nullptr, "no compiler");
    unsigned int length = 0;
    unsigned int code = 0;
    const char *const text = GpbXmlCompiler_Encode(compiler.get(), document, &length, &code);
    gpbfuzz::require((text != nullptr) == (code == 0), "text and code do not agree");
    if (text == nullptr)
    {
        return;
    }
    gpbfuzz::require(length == std::strlen(text), "the length is not that of the text");
    const gpbfuzz::JsonDocument parsed(cJSON_Parse(text));
    gpbfuzz::require(cJSON_IsObject(parsed.get()) != 0, "the text is no JSON object");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    gpbfuzz::library();
    const gpbfuzz::InputGuard guard;
    const gpbfuzz::XmlDocument document = gpbfuzz::parseXml(data, size);
    if (document != nullptr)
    {
        convert(document.get(), 0);
        convert(document.get(), 1);
        const gpbfuzz::Lossless lossless(gpbfuzz::library());
        convert(document.get(), 0);
        convert(document.get(), 1);
    }
    return 0;
}
