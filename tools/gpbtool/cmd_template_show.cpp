/** gpbtool template show: a template made readable. */
#include <CLI/CLI.hpp>

#include "output_file.h"
#include "subcommand.h"
#include "template_file.h"
#include "template_views.h"

namespace gpbtool
{

namespace
{

class TemplateShowCommand : public Subcommand
{
public:
    const char *Name() const override { return "show"; }
    const char *Description() const override { return "Show a template"; }

    void Declare(CLI::App &app) override
    {
        app.add_option("template", input_, "Template; - is standard input")->required()->type_name("T.bin");
        CLI::Option *hex = app.add_flag("--hex", hex_, "List every byte with its meaning");
        app.add_flag("--dot", dot_, "Draw a picture for Graphviz")->excludes(hex);
    }

    ExitCode Run(Console &) override
    {
        const TemplateFile file(input_);
        WriteStdout(hex_ ? TemplateHex(file.Root()) : dot_ ? TemplateDot(file.Model()) : TemplateTree(file.Model()));
        return ExitCode::Ok;
    }

private:
    std::string input_;
    bool hex_ = false;
    bool dot_ = false;
};

} // namespace

std::unique_ptr<Subcommand> MakeTemplateShowCommand()
{
    return std::make_unique<TemplateShowCommand>();
}

} // namespace gpbtool
