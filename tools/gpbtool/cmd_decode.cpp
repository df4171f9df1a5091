/** gpbtool decode: encoded messages made readable. */
#include <CLI/CLI.hpp>

#include "core/gpb_protobuf_compat.h"
#include "input_file.h"
#include "message_view.h"
#include "output_file.h"
#include "session.h"
#include "subcommand.h"

namespace gpbtool
{

namespace
{

namespace pb = google::protobuf;

std::string TopMessages(const pb::FileDescriptor &file)
{
    std::string names;
    for (int i = 0; i < file.message_type_count(); ++i)
    {
        names += "\n  " + GpbPbName(*file.message_type(i));
    }
    return names;
}

const pb::Descriptor &ChooseMessage(const pb::FileDescriptor &file, const std::string &name)
{
    if (name.empty())
    {
        if (file.message_type_count() == 1)
        {
            return *file.message_type(0);
        }
        throw ToolError(ExitCode::Usage,
                        GpbPbName(file) + " has " + std::to_string(file.message_type_count()) +
                            " top-level messages:" + TopMessages(file),
                        "name one with --message");
    }
    const std::string local = GpbPbPackage(file).empty() ? name : GpbPbPackage(file) + "." + name;
    const pb::Descriptor *type = file.pool()->FindMessageTypeByName(local);
    if (type == nullptr)
    {
        type = file.pool()->FindMessageTypeByName(name);
    }
    if (type == nullptr)
    {
        throw ToolError(ExitCode::Module, GpbPbName(file) + " has no message " + name + "; it has:" + TopMessages(file),
                        "name one of these, or a nested one as Outer.Inner");
    }
    return *type;
}

class DecodeCommand : public Subcommand
{
public:
    const char *Name() const override { return "decode"; }
    const char *Description() const override { return "Show an encoded message of a module"; }

    void Declare(CLI::App &app) override
    {
        search_.Declare(app);
        app.add_option("--module", module_, "Module of the message, the name of its .proto file without the suffix")
            ->required()
            ->type_name("M");
        app.add_option("--message", message_, "Message type (default: the module's only top-level message)")
            ->type_name("NAME");
        app.add_option("input", input_, "Encoded message; - is standard input")->required()->type_name("IN.gpb");
        app.add_option("-o,--output", output_, "Write to this file instead of standard output")->type_name("OUT");
        app.add_flag("--json", json_, "Show JSON instead of protobuf's text form");
    }

    ExitCode Run(Console &console) override
    {
        search_.Complete();
        Session session(console, search_);
        const pb::Descriptor &type = ChooseMessage(session.Load(module_), message_);
        const MessageView view(type, InputFile(input_).ReadAll(), input_);
        const std::string missing = view.MissingFields();
        if (!missing.empty())
        {
            console.Warning(input_ + ": required fields are missing: " + missing);
        }
        if (view.UnknownFields() > 0)
        {
            console.Warning(input_ + ": " + std::to_string(view.UnknownFields()) + " fields are unknown in " +
                            GpbPbFullName(type) + "; is it the right module and message?");
        }
        WriteOutput(output_, json_ ? view.Json() : view.Text());
        return ExitCode::Ok;
    }

private:
    SearchOptions search_;
    std::string module_;
    std::string message_;
    std::string input_;
    std::string output_;
    bool json_ = false;
};

} // namespace

std::unique_ptr<Subcommand> MakeDecodeCommand()
{
    return std::make_unique<DecodeCommand>();
}

} // namespace gpbtool
