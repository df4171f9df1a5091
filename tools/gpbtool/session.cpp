#include "session.h"

#include "gpb_templatelib/gpb_descriptor.h"
#include "proto_problems.h"
#include "tool_error.h"

namespace gpbtool
{

namespace
{

constexpr std::size_t kProblemsShown = 10;

} // namespace

ToolError ModuleError(const std::vector<SearchPlace> &places, const std::string &module)
{
    const std::optional<std::string> path = FindModule(places, module);
    if (!path)
    {
        std::string text = "module " + module + " not found; looked for " + module + ".proto in";
        for (const SearchPlace &place : places)
        {
            text += "\n  " + place.directory + " (" + place.kind + ")";
        }
        return ToolError(ExitCode::Module, text,
                         "add its directory with --install-path; \"gpbtool modules\" lists what is there");
    }
    std::string text = "module " + module + " does not load from " + *path;
    const std::vector<std::string> problems = FindProtoProblems(places, module);
    for (std::size_t i = 0; i < problems.size() && i < kProblemsShown; ++i)
    {
        text += "\n  " + problems[i];
    }
    if (problems.size() > kProblemsShown)
    {
        text += "\n  and " + std::to_string(problems.size() - kProblemsShown) + " more";
    }
    if (problems.empty())
    {
        text += "\n  its file reads well, but the library cannot use it: names have at most 57 characters";
    }
    return ToolError(ExitCode::Module, text, "correct the file, or put one that loads ahead of it in the search path");
}

Session::Session(Console &console, const SearchOptions &options)
    : diagnostics_(console, options.verbosity), places_(options.Places())
{
    GpbLibInitParam param = {};
    param.uiModuleId = kModuleId;
    diagnostics_.Connect(param);
    context_.reset(GPBLIB_Initial(&param));
    if (context_ == nullptr)
    {
        throw ToolError(ExitCode::Internal, "the library cannot be initialised", "is there enough memory?");
    }
    for (const std::string &path : options.installPaths)
    {
        if (GPBLIB_PkgAddInstallPath(Context(), path.c_str()) != 0)
        {
            throw ToolError(ExitCode::Internal, "the install path " + path + " cannot be added",
                            "is there enough memory?");
        }
    }
    GPBLIB_SetPatchDir(Context(), options.patchDir.empty() ? nullptr : options.patchDir.c_str());
    if (options.lossless && GPBEXT_SetLossless(Context(), 1) != 0)
    {
        throw ToolError(ExitCode::Internal, "the lossless setting cannot be made", "is there enough memory?");
    }
}

const google::protobuf::FileDescriptor &Session::Load(const std::string &module)
{
    const std::uint32_t result = GPBLIB_ProtobufLoad(Context(), module.c_str(), 0);
    const google::protobuf::FileDescriptor *file =
        result == 0 ? Gpb_ModuleAdapt_GetFileHandle(Context(), module.c_str()) : nullptr;
    if (file == nullptr)
    {
        throw ModuleError(places_, module);
    }
    return *file;
}

} // namespace gpbtool
