/** A random schema and a random document of it, from XML and from JSON: the bytes must be those expected,
 * with the lossless setting those from XML, since these documents lose nothing there. */
#include <cstring>

#include "gpb_templatelib/gpb_compiler_c.h"
#include "support/documents.h"
#include "support/guard.h"
#include "support/library.h"
#include "support/schema.h"

namespace
{

constexpr const char *kModule = "p";

const uint8_t *asBytes(const std::string &text)
{
    return reinterpret_cast<const uint8_t *>(text.data());
}

void requireBytes(const char *bytes, unsigned int length, const std::string &expected, const char *what)
{
    gpbfuzz::require(bytes != nullptr, what);
    gpbfuzz::require(length == expected.size() && std::memcmp(bytes, expected.data(), length) == 0, what);
}

void checkXml(GpbLibContext *context, const gpbfuzz::Expectation &expected)
{
    const gpbfuzz::Compiler compiler(GpbXmlCompiler_CreateCompiler(context, kModule));
    const gpbfuzz::XmlDocument document = gpbfuzz::parseXml(asBytes(expected.xml), expected.xml.size());
    gpbfuzz::require(compiler != nullptr && document != nullptr, "no compiler or no XML document");
    unsigned int length = 0;
    unsigned int code = 1;
    const char *const bytes = GpbXmlCompiler_Encode(compiler.get(), document.get(), &length, &code);
    gpbfuzz::require(code == 0, "the XML document fails");
    if (expected.isXmlEmpty)
    {
        gpbfuzz::require(bytes == nullptr, "bytes of an empty root");
        return;
    }
    requireBytes(bytes, length, expected.fromXml, "the bytes from XML differ");
}

void checkJson(GpbLibContext *context, const gpbfuzz::Expectation &expected, const std::string &expectedBytes)
{
    const gpbfuzz::Compiler compiler(GpbJsonCompiler_CreateJsonCompiler(context, kModule));
    const gpbfuzz::JsonDocument document = gpbfuzz::parseJson(asBytes(expected.json), expected.json.size());
    gpbfuzz::require(compiler != nullptr && document != nullptr, "no compiler or no JSON document");
    unsigned int length = 0;
    const char *const bytes = GpbXmlCompiler_EncodeJson(compiler.get(), document->child, document->child, &length);
    requireBytes(bytes, length, expectedBytes, "the bytes from JSON differ");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    gpbfuzz::library();
    const gpbfuzz::InputGuard guard;
    gpbfuzz::Bytes bytes(data, size);
    const gpbfuzz::Node schema = gpbfuzz::makeSchema(bytes);
    gpbfuzz::useOwnWorkPath(true);
    gpbfuzz::writeProto(kModule, gpbfuzz::protoText(schema));
    GpbLibContext *const context = gpbfuzz::newContext();
    gpbfuzz::require(GPBLIB_ProtobufLoad(context, kModule, 0) == 0, "the schema does not load");
    // Three documents with one schema, which costs more than they do.
    for (int i = 0; i < 3; ++i)
    {
        const gpbfuzz::Expectation expected = gpbfuzz::makeDocument(schema, bytes);
        checkXml(context, expected);
        checkJson(context, expected, expected.fromJson);
        const gpbfuzz::Lossless lossless(context);
        checkXml(context, expected);
        checkJson(context, expected, expected.fromXml);
    }
    GPBLIB_Uninitial(context);
    gpbfuzz::useOwnWorkPath(false);
    return 0;
}
