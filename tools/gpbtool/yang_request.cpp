#include "yang_request.h"

#include <CLI/CLI.hpp>

#include <filesystem>

namespace gpbtool
{

void YangRequest::Declare(CLI::App &app)
{
    app.add_option("module", module, "YANG module: a name, NAME@REVISION, or a .yang or .yin file")
        ->required()
        ->type_name("MODULE");
    app.add_option("--yang-path", yangPaths,
                   "Directory with the module and its imports; may be repeated (default: the current directory)")
        ->type_name("DIR")
        ->allow_extra_args(false);
    app.add_option("--augment", augmenting,
                   "Module that adds nodes to it or deviates from it, named like it; may be repeated")
        ->type_name("MODULE")
        ->allow_extra_args(false);
    const std::map<std::string, gpbyang::Decimals> kinds = {{"double", gpbyang::Decimals::Double},
                                                            {"string", gpbyang::Decimals::String}};
    app.add_option("--decimals", decimals,
                   "Type of decimal64 leaves: double (default) or string, which keeps all digits")
        ->transform(CLI::CheckedTransformer(kinds, CLI::ignore_case).description(""))
        ->type_name("double|string");
}

gpbyang::Schema YangRequest::Load() const
{
    const std::filesystem::path path = module;
    const bool isFile = path.extension() == ".yang" || path.extension() == ".yin" || path.has_parent_path();
    std::vector<std::string> directories;
    if (isFile)
    {
        directories.push_back(path.has_parent_path() ? path.parent_path().string() : ".");
    }
    directories.insert(directories.end(), yangPaths.begin(), yangPaths.end());
    if (directories.empty())
    {
        directories.emplace_back(".");
    }
    return gpbyang::Schema(directories, isFile ? path.stem().string() : module, augmenting);
}

ToolError AsToolError(const gpbyang::YangError &error)
{
    switch (error.Cause())
    {
    case gpbyang::Fault::Module:
        return {ExitCode::Module, error.what(),
                "name the directories of the module and of what it imports with --yang-path"};
    case gpbyang::Fault::NoData:
        return {ExitCode::Module, error.what(),
                "name a module with data; one that adds nodes to another is named with --augment beside that one"};
    case gpbyang::Fault::Path:
        return {ExitCode::Module, error.what(), "give --path a container, list, notification or case"};
    case gpbyang::Fault::Lock:
        return {ExitCode::Input, error.what(),
                "correct the file, or leave out --lock to number anew, which breaks what was encoded before"};
    default:
        return {ExitCode::Input, error.what(), "correct the map, or leave out --ids to number by rule"};
    }
}

} // namespace gpbtool
