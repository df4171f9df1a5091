/** gpbtool attrs: names and type codes of the leaves of an item's message. */
#include <CLI/CLI.hpp>

#include <algorithm>

#include "gpb_templatelib/gpb_compiler_c.h"
#include "json_encoder.h"
#include "output_file.h"
#include "subcommand.h"

namespace gpbtool
{

namespace
{

constexpr const char *kNameTitle = "NAME";
constexpr std::size_t kCodeWidth = 6;

const char *Meaning(std::uint32_t code)
{
    switch (code)
    {
    case GPB_MDL_TYPE_INT:
        return "signed integer";
    case GPB_MDL_TYPE_UINT:
        return "unsigned integer";
    case GPB_MDL_TYPE_BOOL:
        return "boolean";
    case GPB_MDL_TYPE_FLOAT:
        return "float";
    default:
        return "text, bytes or enumeration";
    }
}

std::string Row(const std::string &name, std::size_t width, const std::string &code, const char *meaning)
{
    return name + std::string(width - name.size() + 2, ' ') + code + std::string(kCodeWidth - code.size(), ' ') +
           meaning + "\n";
}

std::string Table(const std::vector<LeafAttribute> &leaves)
{
    std::size_t width = std::string(kNameTitle).size();
    for (const LeafAttribute &leaf : leaves)
    {
        width = std::max(width, leaf.name.size());
    }
    std::string table = Row(kNameTitle, width, "CODE", "MEANING");
    for (const LeafAttribute &leaf : leaves)
    {
        table += Row(leaf.name, width, std::to_string(leaf.type), Meaning(leaf.type));
    }
    return table;
}

class AttrsCommand : public Subcommand
{
public:
    const char *Name() const override { return "attrs"; }
    const char *Description() const override { return "List the leaves of the message that a JSON item stands for"; }

    void Declare(CLI::App &app) override
    {
        search_.Declare(app);
        app.add_option("--module", request_.module,
                       "Module of the document, the name of its .proto file without the suffix")
            ->required()
            ->type_name("M");
        app.add_option("document", request_.document, "JSON document; - is standard input")
            ->required()
            ->type_name("DOC.json");
        app.add_option("--item", options_.item, "Container, list or leaf-list, such as /interfaces/interface")
            ->required()
            ->type_name("PATH");
        app.add_option("-o,--output", output_, "Write to this file instead of standard output")->type_name("OUT");
        app.add_flag("--strip-prefixes", options_.stripPrefixes, "Take \"MODULE:\" off the names of the document");
    }

    ExitCode Run(Console &console) override
    {
        search_.Complete();
        Session session(console, search_);
        WriteOutput(output_, Table(ReadAttributes(session, request_, options_)));
        return ExitCode::Ok;
    }

private:
    SearchOptions search_;
    EncodeRequest request_ = {{}, {}, false};
    JsonOptions options_ = {{}, false};
    std::string output_;
};

} // namespace

std::unique_ptr<Subcommand> MakeAttrsCommand()
{
    return std::make_unique<AttrsCommand>();
}

} // namespace gpbtool
