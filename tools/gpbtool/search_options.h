/** How a library context is set up: the options that every subcommand has, and the places that they stand for. */
#ifndef GPBTOOL_SEARCH_OPTIONS_H
#define GPBTOOL_SEARCH_OPTIONS_H

#include <optional>
#include <string>
#include <vector>

namespace CLI
{
class App;
}

namespace gpbtool
{

/** One directory of the search path, in the library's order. */
struct SearchPlace
{
    std::string kind; /**< "install path", "patch dir" or "reslink" */
    std::string directory;
};

struct SearchOptions
{
    std::string workPath; /**< empty: GPB_WORK_PATH, or the current directory */
    std::vector<std::string> installPaths;
    std::string patchDir;
    int verbosity = 0;
    bool lossless = false; /**< for subcommands that take documents */

    void Declare(CLI::App &app);
    /** Declares --lossless. */
    void DeclareLossless(CLI::App &app);

    /** Adds the "/" that the library expects at the end, and refuses what it would cut or ignore. */
    void Complete();

    /** The places in search order; the first one that holds a module wins. Needs Complete. */
    std::vector<SearchPlace> Places() const;
};

/** The path of MODULE.proto in the first place that holds it, if any does. */
std::optional<std::string> FindModule(const std::vector<SearchPlace> &places, const std::string &module);

} // namespace gpbtool

#endif
