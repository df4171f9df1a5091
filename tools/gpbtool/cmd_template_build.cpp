/** gpbtool template build: the template of a class of a YANG module. */
#include <CLI/CLI.hpp>

#include "output_file.h"
#include "session.h"
#include "subcommand.h"
#include "template_builder.h"

namespace gpbtool
{

namespace
{

class TemplateBuildCommand : public Subcommand
{
public:
    const char *Name() const override { return "build"; }
    const char *Description() const override { return "Make the template of a class of a YANG module"; }

    void Declare(CLI::App &app) override
    {
        search_.Declare(app);
        app.add_option("--yang-path", request_.yangPaths,
                       "Directory with the YANG module and its imports; may be repeated")
            ->required()
            ->type_name("DIR")
            ->allow_extra_args(false);
        app.add_option("--module", request_.module, "Module, the name of its .yang and its .proto file")
            ->required()
            ->type_name("M");
        app.add_option("--path", request_.path, "Schema path of the class, for example /interfaces/interface")
            ->required()
            ->type_name("/A/B");
        app.add_option("--ids", request_.idsFile, "Class ids and field ids (default: numbered by rule)")
            ->type_name("MAP.json");
        app.add_option("-o,--output", output_, "Write the template to this file; - is standard output")
            ->required()
            ->type_name("T.bin");
    }

    ExitCode Run(Console &console) override
    {
        search_.Complete();
        Session session(console, search_);
        WriteOutput(output_, BuildTemplate(session, console, request_));
        return ExitCode::Ok;
    }

private:
    SearchOptions search_;
    TemplateRequest request_;
    std::string output_;
};

} // namespace

std::unique_ptr<Subcommand> MakeTemplateBuildCommand()
{
    return std::make_unique<TemplateBuildCommand>();
}

} // namespace gpbtool
