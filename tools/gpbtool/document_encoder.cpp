#include "document_encoder.h"

#include <google/protobuf/descriptor.h>

#include "document_check.h"
#include "gpb_templatelib/gpb_compiler.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "xml_document.h"

namespace gpbtool
{

namespace
{

namespace pb = google::protobuf;

constexpr std::size_t kFindingsShown = 10;

struct CompilerDeleter
{
    void operator()(GpbXmlCompilerBase *compiler) const { GpbXmlCompiler_Destory(compiler); }
};
using Compiler = std::unique_ptr<GpbXmlCompilerBase, CompilerDeleter>;

std::string RootName(const xmlDoc &doc)
{
    const xmlNode *root = xmlDocGetRootElement(&doc);
    return root != nullptr ? reinterpret_cast<const char *>(root->name) : "";
}

std::string Messages(const pb::FileDescriptor &file)
{
    std::string names;
    for (int i = 0; i < file.message_type_count(); ++i)
    {
        names += (i > 0 ? ", " : "") + file.message_type(i)->full_name();
    }
    return names.empty() ? "none" : names;
}

ToolError EncodeError(unsigned int code, const EncodeRequest &request, const xmlDoc &doc,
                      const pb::FileDescriptor &file)
{
    const std::string root = RootName(doc);
    const std::string suffix = " (code " + std::to_string(code) + ")";
    if (code == GPB_COMPILER_NO_MESSAGE_TYPE)
    {
        return ToolError(ExitCode::Encode,
                         request.document + ": root element <" + root + "> has no message in module " + request.module +
                             suffix,
                         "is this the right module? Its messages: " + Messages(file));
    }
    if (code == GPB_COMPILER_ROOT_NAME_TOO_LONG)
    {
        return ToolError(ExitCode::Encode,
                         request.document + ": the name of the root element has more than " +
                             std::to_string(GPB_NAME_SIZE - 1) + " characters" + suffix,
                         "no module has such a container; is it the right document?");
    }
    return ToolError(ExitCode::Encode, request.document + ": not encoded" + suffix,
                     "the library's messages above say why; -v shows what it skipped before");
}

ToolError NoResultError(const EncodeRequest &request, const xmlDoc &doc, const Diagnostics &log)
{
    return ToolError(ExitCode::Encode, request.document + ": nothing encoded: " + log.LastFailure(),
                     "does <" + RootName(doc) + "> hold elements, and every one that the module requires?");
}

std::string List(const std::string &document, const std::vector<Finding> &findings, std::size_t shown)
{
    std::string text;
    for (std::size_t i = 0; i < findings.size() && i < shown; ++i)
    {
        text += "\n  " + document + ":" + std::to_string(findings[i].line) + ": " + findings[i].text;
    }
    if (findings.size() > shown)
    {
        text += "\n  and " + std::to_string(findings.size() - shown) + " more";
    }
    return text;
}

/** Fails, or warns where that was asked for, when not all of the document is in the message. */
void JudgeCompleteness(const EncodeRequest &request, const std::vector<Finding> &findings, Session &session,
                       Console &console)
{
    const std::uint64_t problems = session.Log().Problems();
    if (findings.empty() && problems == 0)
    {
        return;
    }
    const std::uint64_t count = findings.empty() ? problems : findings.size();
    const std::string counted = std::to_string(count) + (count == 1 ? " element" : " elements");
    const bool verbose = session.Log().Verbosity() > 0;
    if (request.lenient)
    {
        console.Warning(request.document + ": " + counted + " skipped or with a value that does not fit" +
                        (verbose ? List(request.document, findings, findings.size()) : ", run with -v to see them"));
        return;
    }
    throw ToolError(ExitCode::Incomplete,
                    request.document + ": " + counted + " of the document cannot be encoded as given" +
                        List(request.document, findings, verbose ? findings.size() : kFindingsShown),
                    "correct them, or give --lenient to encode the rest; -v shows all");
}

} // namespace

EncodedDocument EncodeDocument(Session &session, Console &console, const EncodeRequest &request)
{
    const pb::FileDescriptor &file = session.Load(request.module);
    const XmlDocument doc = ReadXmlDocument(request.document);
    const Compiler compiler(GpbXmlCompiler_CreateCompiler(session.Context(), request.module.c_str()));
    if (compiler == nullptr)
    {
        throw ModuleError(session.Places(), request.module);
    }
    session.Log().Reset();
    unsigned int length = 0;
    unsigned int code = 0;
    const char *bytes = GpbXmlCompiler_Encode(compiler.get(), doc.get(), &length, &code);
    if (code != GPB_COMPILER_OK)
    {
        throw EncodeError(code, request, *doc, file);
    }
    if (bytes == nullptr)
    {
        throw NoResultError(request, *doc, session.Log());
    }
    const xmlNode &root = *xmlDocGetRootElement(doc.get());
    const pb::Descriptor *type = RootMessage(root, file);
    JudgeCompleteness(request, CheckDocument(root, *type), session, console);
    return {std::string(bytes, length), type};
}

} // namespace gpbtool
