/** gpbtool json: XML documents to JSON. */
#include <CLI/CLI.hpp>

#include "document_encoder.h"
#include "output_file.h"
#include "subcommand.h"

namespace gpbtool
{

namespace
{

class JsonCommand : public Subcommand
{
public:
    const char *Name() const override { return "json"; }
    const char *Description() const override { return "Turn an XML document of a module into JSON"; }

    void Declare(CLI::App &app) override
    {
        search_.Declare(app);
        search_.DeclareLossless(app);
        app.add_option("--module", request_.module,
                       "Module of the document, the name of its .proto file without the suffix")
            ->required()
            ->type_name("M");
        app.add_option("document", request_.document, "XML document; - is standard input")
            ->required()
            ->type_name("DOC.xml");
        app.add_option("-o,--output", output_, "Write to this file instead of standard output")->type_name("OUT");
        app.add_flag("--numbers64", numbers64_, "Write 64-bit integers as numbers, not as texts");
        app.add_flag("--lenient", request_.lenient, "Leave out what has no place in the module, and warn");
    }

    ExitCode Run(Console &console) override
    {
        search_.Complete();
        Session session(console, search_);
        WriteOutput(output_, ConvertXmlToJson(session, console, request_, numbers64_) + "\n");
        return ExitCode::Ok;
    }

private:
    SearchOptions search_;
    EncodeRequest request_ = {{}, {}, false};
    std::string output_;
    bool numbers64_ = false;
};

} // namespace

std::unique_ptr<Subcommand> MakeJsonCommand()
{
    return std::make_unique<JsonCommand>();
}

} // namespace gpbtool
