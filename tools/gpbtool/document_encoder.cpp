#include "document_encoder.h"

#include <google/protobuf/descriptor.h>

#include "compiler.h"
#include "core/gpb_protobuf_compat.h"
#include "document_check.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "json_shape.h"
#include "xml_document.h"

namespace gpbtool
{

namespace
{

namespace pb = google::protobuf;

constexpr const char *kUnit = "element";

std::string RootName(const xmlDoc &doc)
{
    const xmlNode *root = xmlDocGetRootElement(&doc);
    return root != nullptr ? reinterpret_cast<const char *>(root->name) : "";
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
                         "is this the right module? Its messages: " + TopMessages(file));
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

ToolError NoResultError(const EncodeRequest &request, const xmlDoc &doc, const std::string &why)
{
    return ToolError(ExitCode::Encode, request.document + ": nothing encoded: " + why,
                     "does <" + RootName(doc) + "> hold elements, and every one that the module requires?");
}

/** An XML document on its way through a compiler. */
struct XmlJob
{
    Session &session;
    Console &console;
    const EncodeRequest &request;
    const pb::FileDescriptor &file;
    InputFile input;
    XmlDocument doc;

    XmlJob(Session &theSession, Console &theConsole, const EncodeRequest &theRequest)
        : session(theSession), console(theConsole), request(theRequest), file(session.Load(request.module)),
          input(request.document), doc(ReadXmlDocument(input))
    {
    }

    /** What a compiler makes of the document; `compiler` is null when it could not be created. */
    std::string Run(GpbXmlCompilerBase *compiler) const
    {
        if (compiler == nullptr)
        {
            throw ModuleError(session.Places(), request.module);
        }
        session.Log().Reset();
        unsigned int length = 0;
        unsigned int code = 0;
        const char *bytes = GpbXmlCompiler_Encode(compiler, doc.get(), &length, &code);
        if (code != GPB_COMPILER_OK)
        {
            throw EncodeError(code, request, *doc, file);
        }
        if (bytes == nullptr)
        {
            throw NoResultError(request, *doc, session.Log().LastFailure());
        }
        return std::string(bytes, length);
    }

    void Judge(const pb::Descriptor &type, const CheckRules &rules) const
    {
        JudgeCompleteness({request.document, kUnit, request.lenient},
                          CheckDocument(*xmlDocGetRootElement(doc.get()), type, rules), session.Log(), console);
    }
};

} // namespace

std::string TopMessages(const pb::FileDescriptor &file)
{
    std::string names;
    for (int i = 0; i < file.message_type_count(); ++i)
    {
        names += (i > 0 ? ", " : "") + GpbPbFullName(*file.message_type(i));
    }
    return names.empty() ? "none" : names;
}

EncodedDocument EncodeXml(Session &session, Console &console, const EncodeRequest &request)
{
    const XmlJob job(session, console, request);
    const Compiler compiler(GpbXmlCompiler_CreateCompiler(session.Context(), request.module.c_str()));
    EncodedDocument encoded = {job.Run(compiler.get()), nullptr, job.input.BytesRead()};
    encoded.type = RootMessage(RootName(*job.doc), job.file);
    job.Judge(*encoded.type, {false, session.IsLossless(), nullptr});
    return encoded;
}

std::string ConvertXmlToJson(Session &session, Console &console, const EncodeRequest &request, bool numbers64)
{
    const XmlJob job(session, console, request);
    const Compiler compiler(
        GpbXmlCompiler_CreateJsonCompiler(session.Context(), request.module.c_str(), numbers64 ? 1 : 0));
    std::string json = job.Run(compiler.get());
    // The compiler makes an object of a root that the module does not have, too.
    const std::string root = RootName(*job.doc);
    if (root.size() >= GPB_NAME_SIZE)
    {
        throw EncodeError(GPB_COMPILER_ROOT_NAME_TOO_LONG, request, *job.doc, job.file);
    }
    const pb::Descriptor *type = RootMessage(root, job.file);
    if (type == nullptr)
    {
        throw EncodeError(GPB_COMPILER_NO_MESSAGE_TYPE, request, *job.doc, job.file);
    }
    if (json == kEmptyJson)
    {
        throw NoResultError(request, *job.doc, "the root element is no container");
    }
    JsonShape shape(numbers64, session.IsLossless());
    job.Judge(*type, {true, session.IsLossless(), [&](const xmlNode &node, const pb::FieldDescriptor &field) {
                          return shape.Problem(node, field);
                      }});
    return json;
}

} // namespace gpbtool
