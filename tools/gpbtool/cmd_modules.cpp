/** gpbtool modules: what the search path holds. */
#include <CLI/CLI.hpp>

#include <algorithm>
#include <filesystem>
#include <map>

#include "output_file.h"
#include "proto_problems.h"
#include "session.h"
#include "subcommand.h"

namespace gpbtool
{

namespace
{

constexpr const char *kProtoSuffix = ".proto";

/** One MODULE.proto in one place. */
struct Row
{
    std::string module;
    std::string place;
    std::string status;
};

std::vector<std::string> ModulesIn(const std::string &directory)
{
    std::vector<std::string> names;
    std::error_code failed;
    for (std::filesystem::directory_iterator entry(directory, failed), end; !failed && entry != end;
         entry.increment(failed))
    {
        std::error_code ignored;
        if (entry->path().extension() == kProtoSuffix && !entry->is_directory(ignored))
        {
            names.push_back(entry->path().stem().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string Table(const std::vector<Row> &rows)
{
    std::size_t moduleWidth = 0;
    std::size_t placeWidth = 0;
    for (const Row &row : rows)
    {
        moduleWidth = std::max(moduleWidth, row.module.size());
        placeWidth = std::max(placeWidth, row.place.size());
    }
    std::string text;
    for (const Row &row : rows)
    {
        text += row.module + std::string(moduleWidth - row.module.size() + 2, ' ') + row.place +
                std::string(placeWidth - row.place.size() + 2, ' ') + row.status + "\n";
    }
    return text;
}

class ModulesCommand : public Subcommand
{
public:
    const char *Name() const override { return "modules"; }
    const char *Description() const override { return "List the modules of the search path and whether they load"; }

    void Declare(CLI::App &app) override { search_.Declare(app); }

    ExitCode Run(Console &console) override
    {
        search_.Complete();
        Session session(console, search_);
        // The table says what failed and why.
        session.Log().SetQuiet(true);
        const std::vector<Row> rows = Collect(session);
        if (rows.size() == 1)
        {
            throw ToolError(ExitCode::Module, "no modules in the search path",
                            "name directories that hold .proto files with --work-path or --install-path");
        }
        WriteStdout(Printable(Table(rows)));
        return allLoad_ ? ExitCode::Ok : ExitCode::Module;
    }

private:
    /** The table with its heading. */
    std::vector<Row> Collect(Session &session)
    {
        std::vector<Row> rows = {{"MODULE", "PLACE", "STATUS"}};
        std::map<std::string, std::string> taken;
        for (const SearchPlace &place : session.Places())
        {
            const std::string shown = place.directory + " (" + place.kind + ")";
            for (const std::string &module : ModulesIn(place.directory))
            {
                const auto [first, isNew] = taken.try_emplace(module, place.directory);
                rows.push_back({module, shown, isNew ? LoadStatus(session, module) : "shadowed by " + first->second});
            }
        }
        return rows;
    }

    std::string LoadStatus(const Session &session, const std::string &module)
    {
        if (GPBLIB_ProtobufLoad(session.Context(), module.c_str(), 0) == 0)
        {
            return "loads";
        }
        allLoad_ = false;
        const std::vector<std::string> problems = FindProtoProblems(session.Places(), module);
        if (problems.empty())
        {
            return "does not load: the path or name is too long for the library";
        }
        const std::string more = problems.size() > 1 ? " (and " + std::to_string(problems.size() - 1) + " more)" : "";
        return "does not load: " + problems.front() + more;
    }

    SearchOptions search_;
    bool allLoad_ = true;
};

} // namespace

std::unique_ptr<Subcommand> MakeModulesCommand()
{
    return std::make_unique<ModulesCommand>();
}

} // namespace gpbtool
