/** gpbtool template diff: what differs between two templates. */
#include <CLI/CLI.hpp>

#include <map>

#include "output_file.h"
#include "subcommand.h"
#include "template_file.h"
#include "template_views.h"

namespace gpbtool
{

namespace
{

constexpr const char *kDiffExitCodes = "Exit codes:\n"
                                       "  0  the templates are equal\n"
                                       "  1  they differ\n"
                                       "  2  an error: wrong use of the command line, or an unreadable template";
constexpr int kStatusDifferent = 1;
constexpr int kStatusError = 2;

using Descriptions = std::map<std::string, std::string>;

Descriptions ByPath(const std::vector<DescribedNode> &nodes)
{
    Descriptions descriptions;
    for (const DescribedNode &node : nodes)
    {
        descriptions[node.path] = node.description;
    }
    return descriptions;
}

/** The lines of one side that the other does not have in the same way. */
std::string Lines(const char *mark, const DescribedNode &node, const Descriptions &other)
{
    const auto found = other.find(node.path);
    const bool same = found != other.end() && found->second == node.description;
    return same ? "" : mark + node.path + " " + node.description + "\n";
}

std::string Compare(const TemplateNode &left, const TemplateNode &right)
{
    const std::vector<DescribedNode> leftNodes = DescribeAll(left);
    const std::vector<DescribedNode> rightNodes = DescribeAll(right);
    const Descriptions leftByPath = ByPath(leftNodes);
    const Descriptions rightByPath = ByPath(rightNodes);
    std::string text;
    for (const DescribedNode &node : leftNodes)
    {
        const std::string line = Lines("- ", node, rightByPath);
        const auto other = rightByPath.find(node.path);
        text += line;
        if (!line.empty() && other != rightByPath.end())
        {
            text += "+ " + node.path + " " + other->second + "\n";
        }
    }
    for (const DescribedNode &node : rightNodes)
    {
        text += leftByPath.count(node.path) == 0 ? Lines("+ ", node, leftByPath) : "";
    }
    return text;
}

/** Exit codes are those of diff, so that scripts can use the one for the other. */
class TemplateDiffCommand : public Subcommand
{
public:
    const char *Name() const override { return "diff"; }
    const char *Description() const override { return "Compare two templates"; }
    const char *ExitCodes() const override { return kDiffExitCodes; }

    void Declare(CLI::App &app) override
    {
        app.add_option("left", left_, "Template; - is standard input")->required()->type_name("A.bin");
        app.add_option("right", right_, "Template to compare it with")->required()->type_name("B.bin");
    }

    int Status(ExitCode code) const override
    {
        return code == ExitCode::Ok ? 0 : code == ExitCode::Different ? kStatusDifferent : kStatusError;
    }

    ExitCode Run(Console &) override
    {
        const TemplateFile left(left_);
        const TemplateFile right(right_);
        if (left.Bytes() == right.Bytes())
        {
            return ExitCode::Ok;
        }
        const std::string differences = Compare(left.Model(), right.Model());
        WriteStdout(differences.empty() ? "the same nodes, in another order or with other descriptions beside them\n"
                                        : differences);
        return ExitCode::Different;
    }

private:
    std::string left_;
    std::string right_;
};

} // namespace

std::unique_ptr<Subcommand> MakeTemplateDiffCommand()
{
    return std::make_unique<TemplateDiffCommand>();
}

} // namespace gpbtool
