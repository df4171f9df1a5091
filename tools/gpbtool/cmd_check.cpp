/** gpbtool check: what of a YANG module the library would lose. */
#include <CLI/CLI.hpp>

#include <algorithm>

#include "output_file.h"
#include "proto_text.h"
#include "subcommand.h"
#include "yang/check.h"
#include "yang/number_lock.h"
#include "yang/proto_builder.h"
#include "yang/proto_writer.h"
#include "yang_request.h"

namespace gpbtool
{

namespace
{

/** "no losses", "1 loss", "2 losses" */
std::string Counted(std::size_t count, const std::string &one, const std::string &many)
{
    return count == 0 ? "no " + many : std::to_string(count) + " " + (count == 1 ? one : many);
}

class CheckCommand : public Subcommand
{
public:
    const char *Name() const override { return "check"; }
    const char *Description() const override
    {
        return "Say what of a YANG module the library does not carry or carries with loss";
    }

    void Declare(CLI::App &app) override
    {
        request_.Declare(app);
        app.add_flag("--losses", lossesOnly_, "Leave out notes: what is carried, but not for every use");
    }

    const char *ExitCodes() const override
    {
        return "Exit codes:\n"
               "  0  nothing is lost; there may be notes\n"
               "  1  wrong use of the command line\n"
               "  2  the module is not found, does not load or has no data\n"
               "  5  output could not be written\n"
               "  6  encoding a valid document can lose or misplace data\n"
               "  7  out of memory or an error of the tool itself";
    }

    ExitCode Run(Console & /*console*/) override
    {
        try
        {
            return Report(Check());
        }
        catch (const gpbyang::YangError &error)
        {
            throw AsToolError(error);
        }
    }

private:
    std::vector<gpbyang::CheckFinding> Check()
    {
        const gpbyang::Schema schema = request_.Load();
        gpbyang::ProtoFile file = gpbyang::BuildProtoFile(schema, request_.decimals);
        gpbyang::NumberLock(file.module).Number(file);
        module_ = file.module;
        const ProtoText read(file.module, gpbyang::WriteProtoFile(file, false));
        return gpbyang::CheckModule(file, read.File());
    }

    ExitCode Report(const std::vector<gpbyang::CheckFinding> &findings) const
    {
        std::string text;
        std::size_t losses = 0;
        for (auto first = findings.begin(); first != findings.end();)
        {
            const gpbyang::CheckKindInfo &info = gpbyang::InfoOf(first->kind);
            const auto last = std::find_if(
                first, findings.end(), [&](const gpbyang::CheckFinding &finding) { return finding.kind != info.kind; });
            losses += info.loss ? static_cast<std::size_t>(last - first) : 0;
            if (info.loss || !lossesOnly_)
            {
                text += std::string(info.loss ? "loss " : "note ") + info.name + ": " + info.text + "\n";
                for (auto finding = first; finding != last; ++finding)
                {
                    text += "  " + finding->path + (finding->detail.empty() ? "" : ": " + finding->detail) + "\n";
                }
            }
            first = last;
        }
        const std::size_t notes = findings.size() - losses;
        WriteStdout(text + module_ + ": " + Counted(losses, "loss", "losses") + ", " + Counted(notes, "note", "notes") +
                    "\n");
        return losses == 0 ? ExitCode::Ok : ExitCode::Incomplete;
    }

    YangRequest request_;
    std::string module_;
    bool lossesOnly_ = false;
};

} // namespace

std::unique_ptr<Subcommand> MakeCheckCommand()
{
    return std::make_unique<CheckCommand>();
}

} // namespace gpbtool
