#include "search_options.h"

#include <CLI/CLI.hpp>
#include <filesystem>

#include "gpb_templatelib/gpb_host.h"
#include "gpb_templatelib/gpb_lib.h"
#include "platform/zmp.h"
#include "tool_error.h"

namespace gpbtool
{

namespace
{

/** Below the system work path; the last place of the search. */
constexpr const char *kReslink = "reslink/protobuf";

void AddSlash(std::string &directory)
{
    if (!directory.empty() && directory.back() != '/')
    {
        directory += '/';
    }
}

void CheckDirectory(const std::string &option, const std::string &directory)
{
    if (directory.size() >= GPB_PATH_SIZE)
    {
        throw ToolError(ExitCode::Usage, option + ": the path has more than 255 characters", "use a shorter path");
    }
    std::error_code ignored;
    if (!std::filesystem::is_directory(directory, ignored))
    {
        throw ToolError(ExitCode::Usage, option + ": " + directory + " is not a directory",
                        "give an existing directory");
    }
}

std::string SystemWorkPath()
{
    char buffer[GPB_PATH_SIZE] = {};
    if (ZMP_GetSysWorkPath(buffer, sizeof buffer) != 0)
    {
        throw ToolError(ExitCode::Usage, "the work path cannot be used", "give a shorter one with --work-path");
    }
    return buffer;
}

} // namespace

void SearchOptions::Declare(CLI::App &app)
{
    app.add_option("--work-path", workPath,
                   "Directory above reslink/protobuf (default: $GPB_WORK_PATH, or the current directory)")
        ->type_name("DIR");
    app.add_option("--install-path", installPaths, "Directory with modules, searched first; may be repeated")
        ->type_name("DIR")
        ->allow_extra_args(false);
    app.add_option("--patch-dir", patchDir, "Directory below the work path, searched before reslink/protobuf")
        ->type_name("DIR");
    app.add_flag("-v,--verbose", verbosity,
                 "-v shows what the library skips, -vv its progress too, -vvv encoded messages as text too");
}

void SearchOptions::DeclareLossless(CLI::App &app)
{
    app.add_flag("--lossless", lossless, "Put every node into its own list entry and case, and keep every value");
}

void SearchOptions::Complete()
{
    if (!workPath.empty())
    {
        AddSlash(workPath);
        CheckDirectory("--work-path", workPath);
        GpbHost_SetWorkPath(workPath.c_str());
    }
    for (std::string &path : installPaths)
    {
        AddSlash(path);
        CheckDirectory("--install-path", path);
    }
    AddSlash(patchDir);
    if (!patchDir.empty())
    {
        CheckDirectory("--patch-dir", SystemWorkPath() + patchDir);
    }
}

std::vector<SearchPlace> SearchOptions::Places() const
{
    std::vector<SearchPlace> places;
    for (const std::string &path : installPaths)
    {
        places.push_back({"install path", path});
    }
    const std::string work = SystemWorkPath();
    if (!patchDir.empty())
    {
        places.push_back({"patch dir", work + patchDir});
    }
    places.push_back({"reslink", work + kReslink + "/"});
    return places;
}

std::optional<std::string> FindModule(const std::vector<SearchPlace> &places, const std::string &module)
{
    for (const SearchPlace &place : places)
    {
        std::error_code ignored;
        const std::string path = place.directory + module + ".proto";
        if (std::filesystem::exists(path, ignored) && !std::filesystem::is_directory(path, ignored))
        {
            return path;
        }
    }
    return std::nullopt;
}

} // namespace gpbtool
