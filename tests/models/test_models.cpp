/** test_models DIR... [--documents N] [--leaves N] [--seed N]: every module below directories, from YANG to bytes and
 * back. */
#include <CLI/CLI.hpp>

#include <libyang/libyang.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <map>
#include <set>

#include "gpb_templatelib/gpb_host.h"
#include "models/model_run.h"
#include "support/temp_directory.h"
#include "yang/proto_builder.h"
#include "yang/schema_messages.h"
#include "yang/yang_error.h"

namespace
{

using gpbtest::FormResult;
using gpbtest::RunResult;
using gpbyang::Schema;

constexpr std::size_t kShown = 5; /**< differences of a module */

struct Totals
{
    std::size_t modules = 0;
    std::size_t without = 0; /**< modules that have no data of their own, and submodules */
    std::size_t unloaded = 0;
    std::size_t documents = 0;
    std::size_t leaves = 0; /**< in the documents, each carried in several ways */
    std::size_t lost = 0;
    std::size_t lostLossless = 0;
    std::size_t differences = 0;
};

struct ContextDeleter
{
    void operator()(GpbLibContext *context) const { GPBLIB_Uninitial(context); }
};

/** Names of the modules in the directories and below. */
std::set<std::string> findModules(const std::vector<std::string> &directories)
{
    std::set<std::string> names;
    for (const std::string &directory : directories)
    {
        for (const auto &entry : std::filesystem::recursive_directory_iterator(directory))
        {
            if (entry.path().extension() == ".yang" && entry.is_regular_file())
            {
                const std::string stem = entry.path().stem().string();
                names.insert(stem.substr(0, stem.find('@')));
            }
        }
    }
    return names;
}

/** Which modules add nodes to which. */
std::map<std::string, std::set<std::string>> findAugments(const std::vector<std::string> &directories,
                                                          const std::set<std::string> &modules)
{
    std::map<std::string, std::set<std::string>> augmenting;
    for (const std::string &module : modules)
    {
        try
        {
            const Schema schema(directories, module);
            for (const std::string &target : gpbyang::AugmentedModules(schema.Module()))
            {
                augmenting[target].insert(module);
            }
        }
        catch (const gpbyang::YangError &)
        {
            // It is reported where the module's own turn comes.
        }
    }
    return augmenting;
}

/** Adds differences, the first of which are shown. */
void add(const FormResult &form, Totals &totals)
{
    totals.differences += form.unexplained.size();
    for (std::size_t i = 0; i < form.unexplained.size() && i < kShown; ++i)
    {
        std::printf("  DIFFERENCE %s\n", form.unexplained[i].c_str());
    }
}

void print(const std::string &module, const RunResult &result, Totals &totals)
{
    const gpbtest::SettingResult &usual = result.usual;
    const gpbtest::SettingResult &lossless = result.lossless;
    std::printf("%-32s %9zu %7zu  %6zu %6zu %6zu %6zu  %6zu %6zu %6zu %6zu\n", module.c_str(), result.documents,
                usual.xml.leaves, usual.losses, usual.xml.lost, usual.json.lost, usual.toJson.lost, lossless.losses,
                lossless.xml.lost, lossless.json.lost, lossless.toJson.lost);
    ++totals.modules;
    totals.documents += result.documents;
    totals.leaves += usual.xml.leaves;
    totals.lost += usual.xml.lost + usual.json.lost + usual.toJson.lost;
    totals.lostLossless += lossless.xml.lost + lossless.json.lost + lossless.toJson.lost;
    for (const FormResult *form :
         {&usual.xml, &usual.json, &usual.toJson, &lossless.xml, &lossless.json, &lossless.toJson})
    {
        add(*form, totals);
    }
    std::fflush(stdout);
}

/** The module with all that adds to it; what cannot be loaded beside it stays away. */
Schema loadWith(const std::vector<std::string> &directories, const std::string &module,
                const std::set<std::string> &augmenting)
{
    std::vector<std::string> good(augmenting.begin(), augmenting.end());
    try
    {
        return Schema(directories, module, good);
    }
    catch (const gpbyang::YangError &)
    {
        good.clear();
    }
    for (const std::string &name : augmenting)
    {
        good.push_back(name);
        try
        {
            const Schema tried(directories, module, good);
        }
        catch (const gpbyang::YangError &)
        {
            good.pop_back();
        }
    }
    return Schema(directories, module, good);
}

Totals runAll(const std::vector<std::string> &directories, const gpbtest::RunOptions &options)
{
    const gpbtest::TempDirectory work;
    GpbLibInitParam param = {};
    GpbHost_SetWorkPath(work.path().c_str());
    const std::unique_ptr<GpbLibContext, ContextDeleter> context(GPBLIB_Initial(&param));
    GPBLIB_PkgAddInstallPath(context.get(), work.path().c_str());
    const std::set<std::string> modules = findModules(directories);
    const auto augmenting = findAugments(directories, modules);
    // Mandatory identities, such as the type of an interface, are mostly defined by these.
    std::set<std::string> registries;
    std::copy_if(modules.begin(), modules.end(), std::inserter(registries, registries.end()),
                 [](const std::string &module) { return module.find("iana-") == 0; });
    std::printf("%-32s %9s %7s  %-27s  %s\n", "", "", "", "DEFAULT, LOST", "LOSSLESS, LOST");
    std::printf("%-32s %9s %7s  %6s %6s %6s %6s  %6s %6s %6s %6s\n", "MODULE", "DOCUMENTS", "LEAVES", "NODES", "XML",
                "JSON", "X-TO-J", "NODES", "XML", "JSON", "X-TO-J");
    Totals totals;
    for (const std::string &module : modules)
    {
        try
        {
            std::set<std::string> beside = registries;
            const auto own = augmenting.find(module);
            if (own != augmenting.end())
            {
                beside.insert(own->second.begin(), own->second.end());
            }
            beside.erase(module);
            const Schema schema = loadWith(directories, module, beside);
            print(module, runModel(context.get(), work.path(), schema, options), totals);
        }
        catch (const gpbyang::YangError &error)
        {
            const std::string text = error.what();
            const bool isSubmodule = text.find("contains submodule") != std::string::npos;
            const bool isEmpty = error.Cause() == gpbyang::Fault::NoData || isSubmodule;
            totals.without += isEmpty ? 1 : 0;
            totals.unloaded += isEmpty ? 0 : 1;
            if (!isEmpty)
            {
                std::printf("%s\n", text.c_str());
            }
        }
    }
    return totals;
}

} // namespace

int main(int argc, char **argv)
{
    std::vector<std::string> directories;
    gpbtest::RunOptions options;
    CLI::App app("Carries random documents of every module through the library and compares them leaf by leaf.");
    app.add_option("directories", directories, "Where the modules are")->required()->check(CLI::ExistingDirectory);
    app.add_option("--documents", options.documents, "Documents for each top-level node");
    app.add_option("--leaves", options.leaves, "Values of a document, about");
    app.add_option("--seed", options.seed, "Another one makes other documents");
    CLI11_PARSE(app, argc, argv);
    const gpbyang::KeptMessages quiet;
    const Totals totals = runAll(directories, options);
    std::printf(
        "\n%zu modules (%zu without data of their own, %zu that do not load), %zu documents, %zu leaves from XML "
        "and from JSON\n"
        "lost where gpbtool check says so: %zu by default, %zu with the lossless setting\n%zu differences\n",
        totals.modules, totals.without, totals.unloaded, totals.documents, totals.leaves, totals.lost,
        totals.lostLossless, totals.differences);
    return totals.differences == 0 && totals.leaves > 0 ? 0 : 1;
}
