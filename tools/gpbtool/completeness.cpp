#include "completeness.h"

#include "tool_error.h"

namespace gpbtool
{

namespace
{

constexpr std::size_t kFindingsShown = 10;

std::string List(const std::string &document, const std::vector<Finding> &findings, std::size_t shown)
{
    std::string text;
    for (std::size_t i = 0; i < findings.size() && i < shown; ++i)
    {
        text += "\n  " + document + ":" + findings[i].place + ": " + findings[i].text;
    }
    if (findings.size() > shown)
    {
        text += "\n  and " + std::to_string(findings.size() - shown) + " more";
    }
    return text;
}

} // namespace

void JudgeCompleteness(const Completeness &about, const std::vector<Finding> &findings, const Diagnostics &log,
                       Console &console)
{
    if (findings.empty() && log.Problems() == 0)
    {
        return;
    }
    const std::uint64_t count = findings.empty() ? log.Problems() : findings.size();
    const std::string counted = std::to_string(count) + " " + about.unit + (count == 1 ? "" : "s");
    const bool verbose = log.Verbosity() > 0;
    if (about.lenient)
    {
        console.Warning(about.document + ": " + counted + " skipped or with a value that does not fit" +
                        (verbose ? List(about.document, findings, findings.size()) : ", run with -v to see them"));
        return;
    }
    throw ToolError(ExitCode::Incomplete,
                    about.document + ": " + counted + " of the document cannot be encoded as given" +
                        List(about.document, findings, verbose ? findings.size() : kFindingsShown),
                    "correct them, or give --lenient to encode the rest; -v shows all");
}

} // namespace gpbtool
