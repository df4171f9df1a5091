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
        app.add_flag("--lossless", lossless_, "Say what is left with the lossless setting (encode --lossless)");
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

    ExitCode Report(std::vector<gpbyang::CheckFinding> findings) const
    {
        if (lossless_)
        {
            findings.erase(std::remove_if(findings.begin(), findings.end(),
                                          [](const gpbyang::CheckFinding &finding) { return finding.IsKept(); }),
                           findings.end());
        }
        std::string text;
        std::size_t losses = 0;
        std::size_t kept = 0;
        for (auto first = findings.begin(); first != findings.end();)
        {
            const gpbyang::CheckKindInfo &info = gpbyang::InfoOf(first->kind);
            const bool isKept = first->IsKept();
            const auto last = std::find_if(first, findings.end(),
                                           [&](const gpbyang::CheckFinding &finding)
                                           { return finding.kind != info.kind || finding.IsKept() != isKept; });
            const auto count = static_cast<std::size_t>(last - first);
            losses += info.loss ? count : 0;
            kept += info.loss && isKept ? count : 0;
            if (info.loss || !lossesOnly_)
            {
                text += Heading(info, isKept);
                for (auto finding = first; finding != last; ++finding)
                {
                    text += "  " + finding->path + (finding->detail.empty() ? "" : ": " + finding->detail) + "\n";
                }
            }
            first = last;
        }
        const std::size_t notes = findings.size() - losses;
        WriteStdout(text + module_ + ": " + Counted(losses, "loss", "losses") + (lossless_ ? "" : Kept(losses, kept)) +
                    ", " + Counted(notes, "note", "notes") + "\n");
        return losses == 0 ? ExitCode::Ok : ExitCode::Incomplete;
    }

    std::string Heading(const gpbyang::CheckKindInfo &info, bool isKept) const
    {
        const char *text = lossless_ && info.lossless != nullptr ? info.lossless : info.text;
        const char *setting = isKept                    ? " (kept with --lossless)"
                              : info.loss && !lossless_ ? " (lost with --lossless, too)"
                                                        : "";
        return std::string(info.loss ? "loss " : "note ") + info.name + setting + ": " + text + "\n";
    }

    /** " (all kept with --lossless)" */
    static std::string Kept(std::size_t losses, std::size_t kept)
    {
        if (losses == 0)
        {
            return "";
        }
        const std::string count = kept == 0 ? "none" : kept == losses ? "all" : std::to_string(kept);
        return " (" + count + " kept with --lossless)";
    }

    YangRequest request_;
    std::string module_;
    bool lossesOnly_ = false;
    bool lossless_ = false;
};

} // namespace

std::unique_ptr<Subcommand> MakeCheckCommand()
{
    return std::make_unique<CheckCommand>();
}

} // namespace gpbtool
