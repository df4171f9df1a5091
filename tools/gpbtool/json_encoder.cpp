#include "json_encoder.h"

#include <google/protobuf/descriptor.h>

#include <algorithm>
#include <array>

#include "compiler.h"
#include "descriptor/gpb_exact_module.h"
#include "document_check.h"
#include "gpb_templatelib/gpb_compiler_c.h"
#include "json_check.h"
#include "json_document.h"
#include "platform/zmp.h"

namespace gpbtool
{

namespace
{

namespace pb = google::protobuf;

constexpr const char *kUnit = "value";

/** A document, the item that was asked for, and a compiler for the two. */
class JsonJob
{
public:
    JsonJob(Session &theSession, const EncodeRequest &theRequest, const JsonOptions &theOptions)
        : session(theSession), request(theRequest), options(theOptions), file(session.Load(request.module)),
          document(request.document, options.stripPrefixes),
          item(options.item.empty() ? document.Container() : document.Keep(options.item)), type(ContainerType()),
          compiler(GpbJsonCompiler_CreateJsonCompiler(session.Context(), request.module.c_str()))
    {
        if (compiler == nullptr)
        {
            throw ModuleError(session.Places(), request.module);
        }
        FindWay();
        session.Log().Reset();
    }

    ToolError ItemError(const std::string &what, const std::string &hint) const
    {
        return ToolError(ExitCode::Encode, request.document + ": item " + options.item + " " + what, hint);
    }

    bool IsWholeDocument() const { return way.empty(); }

    Session &session;
    const EncodeRequest &request;
    const JsonOptions &options;
    const pb::FileDescriptor &file;
    JsonDocument document;
    cJSON &item;
    const pb::Descriptor &type;     /**< of the top-level container */
    std::vector<const cJSON *> way; /**< from below the container to the item */
    Compiler compiler;

private:
    const pb::Descriptor &ContainerType() const
    {
        const std::string key = document.Container().string;
        const std::string name(session.IsLossless() ? std::string(GpbSplitName(key, "").name) : key);
        // The library takes no longer ones.
        const pb::Descriptor *found = name.size() < GPB_NAME_SIZE ? RootMessage(name, file) : nullptr;
        if (found != nullptr)
        {
            return *found;
        }
        throw ToolError(ExitCode::Encode,
                        request.document + ": top-level container \"" + name.substr(0, GPB_NAME_SIZE) +
                            "\" has no message in module " + request.module,
                        name.find(':') != std::string::npos
                            ? "--strip-prefixes takes \"MODULE:\" off the names"
                            : "is this the right module? Its messages: " + TopMessages(file));
    }

    /** The tree holds the item's branch only, so the way to the item is all there is above it. */
    void FindWay()
    {
        const cJSON *at = &document.Container();
        while (at != &item)
        {
            at = at->child;
            way.push_back(at);
        }
        if (way.size() > GPB_MAX_ANCESTOR_NUM)
        {
            throw ItemError("lies deeper than the " + std::to_string(GPB_MAX_ANCESTOR_NUM) +
                                " levels that the library searches",
                            "name an item further up");
        }
    }
};

/** Refuses arrays that no single message stands for. */
void CheckOneMessage(const JsonJob &job)
{
    if (cJSON_IsArray(&job.item) == 0)
    {
        return;
    }
    const int entries = cJSON_GetArraySize(&job.item);
    if (entries == 0 || cJSON_IsObject(job.item.child) == 0)
    {
        throw job.ItemError("has no message of its own", "name the container that holds it, or an entry of a list");
    }
    if (entries > 1)
    {
        throw job.ItemError("is a list of " + std::to_string(entries) + " entries, and a message holds one",
                            "name an entry by its number, as in " + job.options.item + "/0");
    }
}

std::vector<Finding> Places(JsonDocument &document, const std::vector<JsonFinding> &findings)
{
    std::vector<Finding> placed;
    for (const JsonFinding &finding : findings)
    {
        const TextPlace place = document.PlaceOf(*finding.item);
        placed.push_back({std::to_string(place.line) + ":" + std::to_string(place.column), finding.text});
    }
    return placed;
}

/** Takes out what the library would refuse the whole document for. */
void RemoveBlocking(const JsonJob &job, const std::vector<JsonFinding> &findings)
{
    for (const JsonFinding &finding : findings)
    {
        if (!finding.blocks)
        {
            continue;
        }
        if (std::find(job.way.begin(), job.way.end(), finding.item) != job.way.end())
        {
            throw job.ItemError("cannot be encoded: " + finding.text, "name an item that the module has");
        }
        cJSON_Delete(cJSON_DetachItemViaPointer(finding.parent, finding.item));
    }
}

} // namespace

EncodedDocument EncodeJson(Session &session, Console &console, const EncodeRequest &request, const JsonOptions &options)
{
    JsonJob job(session, request, options);
    CheckOneMessage(job);
    const bool lossless = session.IsLossless();
    const JsonCheckResult result = lossless
                                       ? CheckLosslessJson(job.document.Container(), job.type, job.item, request.module)
                                       : CheckJson(job.document.Container(), job.type, job.item);
    const std::vector<Finding> findings = Places(job.document, result.findings);
    const Completeness about = {request.document, kUnit, request.lenient};
    if (!request.lenient)
    {
        // The library encodes nothing of a document that it refuses a part of, so the findings come first.
        JudgeCompleteness(about, findings, session.Log(), console);
    }
    RemoveBlocking(job, result.findings);
    // A list stands for its only entry, which the default finds no other way.
    cJSON &item = lossless && cJSON_IsArray(&job.item) != 0 ? *job.item.child : job.item;
    unsigned int length = 0;
    const char *bytes = GpbXmlCompiler_EncodeJson(job.compiler.get(), &job.document.Container(), &item, &length);
    if (bytes == nullptr)
    {
        throw ToolError(ExitCode::Encode, request.document + ": nothing encoded: " + session.Log().LastFailure(),
                        "the library's messages above say why; -v shows what it skipped before");
    }
    JudgeCompleteness(about, findings, session.Log(), console);
    return {std::string(bytes, length), result.itemType, job.document.Size()};
}

std::vector<LeafAttribute> ReadAttributes(Session &session, const EncodeRequest &request, const JsonOptions &options)
{
    // The record counts to 255; the room for one leaf more tells a message that has more.
    constexpr std::size_t kRoom = 256;
    const JsonJob job(session, request, options);
    if (job.IsWholeDocument())
    {
        throw job.ItemError("is the top-level container, of which the library tells no attributes",
                            "name an item below it");
    }
    std::array<char *, kRoom> names = {};
    std::array<std::uint32_t, kRoom> types = {};
    GpbMdlAttr record = {names.data(), types.data(), 0, 0};
    const unsigned int failed =
        GpbXmlCompiler_GetMdlAttr(session.Context(), job.compiler.get(), &job.document.Container(), &job.item, &record);
    std::vector<LeafAttribute> leaves;
    for (std::size_t i = 0; failed == 0 && i < record.ucCount; ++i)
    {
        leaves.push_back({names[i], types[i]});
        ZMP_Free_F(names[i], __FILE__, __LINE__);
    }
    if (failed != 0)
    {
        throw job.ItemError("has no attributes in module " + request.module + ": " + session.Log().LastFailure(),
                            "name a container, a list or a leaf-list that the module has");
    }
    if (types.back() != 0)
    {
        throw job.ItemError("has more than " + std::to_string(kRoom - 1) + " leaves, which the library cannot count",
                            "encode the item to see its values");
    }
    return leaves;
}

} // namespace gpbtool
