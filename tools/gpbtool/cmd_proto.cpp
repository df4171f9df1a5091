/** gpbtool proto: the .proto file of a YANG module. */
#include <CLI/CLI.hpp>

#include <filesystem>

#include "input_file.h"
#include "output_file.h"
#include "proto_text.h"
#include "subcommand.h"
#include "yang/number_lock.h"
#include "yang/proto_builder.h"
#include "yang/proto_writer.h"
#include "yang_request.h"

namespace gpbtool
{

namespace
{

class ProtoCommand : public Subcommand
{
public:
    const char *Name() const override { return "proto"; }
    const char *Description() const override { return "Make the .proto file of a YANG module"; }

    void Declare(CLI::App &app) override
    {
        request_.Declare(app);
        app.add_option("--lock", lock_, "File that keeps field numbers as they are; made when it does not exist")
            ->type_name("FILE");
        app.add_flag("--comments", comments_, "Keep the descriptions of the module as comments");
        app.add_option("-o,--output", output_,
                       "Write to this file, or to MODULE.proto in this directory (default: standard output)")
            ->type_name("OUT");
    }

    ExitCode Run(Console &console) override
    {
        try
        {
            Make(console);
        }
        catch (const gpbyang::YangError &error)
        {
            throw AsToolError(error);
        }
        return ExitCode::Ok;
    }

private:
    void Make(Console &console)
    {
        const gpbyang::Schema schema = request_.Load();
        gpbyang::ProtoFile file = gpbyang::BuildProtoFile(schema, request_.decimals);
        gpbyang::NumberLock lock = ReadLock(file.module);
        lock.Number(file);
        const std::string text = gpbyang::WriteProtoFile(file, comments_);
        // Protobuf is asked before anybody else gets to see the file.
        const ProtoText accepted(file.module, text);
        // Numbers are kept ahead of their use: those of a file that could not be written do no harm.
        if (!lock_.empty())
        {
            WriteFile(lock_, lock.Text());
        }
        WriteOutput(OutputPath(file.module, console), text);
        for (const gpbyang::LeftOutNode &node : file.leftOut)
        {
            console.Warning(node.path + " is left out: " + node.reason);
        }
    }

    gpbyang::NumberLock ReadLock(const std::string &module) const
    {
        std::error_code ignored;
        return lock_.empty() || !std::filesystem::exists(lock_, ignored)
                   ? gpbyang::NumberLock(module)
                   : gpbyang::NumberLock::Read(InputFile(lock_).ReadAll(), lock_, module);
    }

    std::string OutputPath(const std::string &module, Console &console) const
    {
        const std::string name = module + ".proto";
        std::error_code ignored;
        const std::filesystem::path path = output_;
        if (std::filesystem::is_directory(path, ignored))
        {
            return (path / name).string();
        }
        if (!output_.empty() && output_ != "-" && path.filename() != name)
        {
            console.Warning(output_ + ": the library looks for " + name);
        }
        return output_;
    }

    YangRequest request_;
    std::string lock_;
    std::string output_;
    bool comments_ = false;
};

} // namespace

std::unique_ptr<Subcommand> MakeProtoCommand()
{
    return std::make_unique<ProtoCommand>();
}

} // namespace gpbtool
