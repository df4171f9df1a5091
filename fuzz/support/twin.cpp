#include "support/twin.h"

#include <google/protobuf/compiler/importer.h>
#include <string>

#include "gpb_templatelib/gpb_compiler.h"
#include "support/guard.h"

namespace gpbfuzz
{

namespace
{

class HostXmlCompiler : public GpbXmlCompiler
{
public:
    using GpbXmlCompiler::GpbXmlCompiler;
};

class HostJsonCompiler : public GpbJsonCompiler
{
public:
    using GpbJsonCompiler::GpbJsonCompiler;
};

/** What an encode gives. */
struct Outcome
{
    unsigned int code = 0;
    bool hasBytes = false;
    std::string bytes;
    std::string text;
};

/** The outcome of `encode(compiler)`, by a new compiler. */
template <typename Compiler, typename Encode>
Outcome outcomeOf(GpbLibContext *context, const char *module, const Encode &encode)
{
    const auto *importer = GPBLIB_GetImporter(context);
    Compiler compiler(importer->pool()->FindFileByName(std::string(module) + ".proto"), importer, context);
    Outcome outcome;
    outcome.code = encode(compiler);
    unsigned int length = 0;
    const char *const bytes = compiler.GetResult(&length);
    outcome.hasBytes = bytes != nullptr;
    outcome.bytes.assign(bytes == nullptr ? "" : bytes, length);
    outcome.text = compiler.GetEncodeDebugString();
    return outcome;
}

void requireSame(const Outcome &own, const Outcome &host)
{
    require(own.code == host.code, "a subclass gives another code");
    require(own.hasBytes == host.hasBytes && own.bytes == host.bytes, "a subclass gives other bytes");
    require(own.text == host.text, "a subclass gives another debug text");
}

} // namespace

void requireSameXml(GpbLibContext *context, const char *module, xmlDoc *document)
{
    const auto encode = [&](GpbXmlCompiler &compiler) { return compiler.Encode(document); };
    requireSame(outcomeOf<GpbXmlCompiler>(context, module, encode),
                outcomeOf<HostXmlCompiler>(context, module, encode));
}

void requireSameJson(GpbLibContext *context, const char *module, cJSON *root, cJSON *item)
{
    const auto encode = [&](GpbJsonCompiler &compiler) { return compiler.EncodeJson(root, item); };
    requireSame(outcomeOf<GpbJsonCompiler>(context, module, encode),
                outcomeOf<HostJsonCompiler>(context, module, encode));
}

} // namespace gpbfuzz
