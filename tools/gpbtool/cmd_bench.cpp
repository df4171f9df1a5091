/** gpbtool bench: where the time of one document goes. */
#include <CLI/CLI.hpp>

#include <chrono>
#include <filesystem>

#include "bench_report.h"
#include "input_documents.h"
#include "input_file.h"
#include "json_encoder.h"
#include "output_file.h"
#include "subcommand.h"

namespace gpbtool
{

namespace
{

using Clock = std::chrono::steady_clock;

constexpr double kDefaultSeconds = 2;
constexpr double kMinSeconds = 0.01;
constexpr double kMaxSeconds = 600;

class BenchCommand : public Subcommand
{
public:
    const char *Name() const override { return "bench"; }
    const char *Description() const override { return "Show where the time of encoding one document goes"; }

    void Declare(CLI::App &app) override
    {
        search_.Declare(app);
        search_.DeclareLossless(app);
        app.add_option("--module", request_.module,
                       "Module of the document, the name of its .proto file without the suffix")
            ->required()
            ->type_name("M");
        app.add_option("document", request_.document, "XML document, or JSON document named *.json")
            ->required()
            ->type_name("DOC");
        app.add_option("--format", format_, "Format of the document, whatever its name (default: by name)")
            ->check(CLI::IsMember({kXml, kJson}))
            ->type_name("xml|json");
        app.add_flag("--strip-prefixes", options_.stripPrefixes, "Take \"MODULE:\" off the names of a JSON document");
        app.add_option("--seconds", seconds_, "How long to repeat (default: 2)")->type_name("S");
        app.add_flag("--json", jsonReport_, "Write the result as JSON instead of a table");
    }

    ExitCode Run(Console &console) override
    {
        search_.Complete();
        // "nan" is a number too, and in no order with others.
        if (!(seconds_ >= kMinSeconds && seconds_ <= kMaxSeconds))
        {
            throw ToolError(ExitCode::Usage, "--seconds: out of range", "give a number from 0.01 to 600");
        }
        const bool json = IsJson(request_.document, format_);
        if (!json && options_.stripPrefixes)
        {
            throw ToolError(ExitCode::Usage, request_.document + ": --strip-prefixes is for JSON documents",
                            "give --format json if it is one");
        }
        CheckPlainFile();
        CheckEncodes(console, json);

        // A context of its own: what the options let the library say is said once, not in each repetition.
        SearchOptions quiet = search_;
        quiet.verbosity = 0;
        Session session(console, quiet);
        const Clock::time_point begin = Clock::now();
        session.Load(request_.module);
        const std::chrono::duration<double> load = Clock::now() - begin;
        const BenchResult result = BenchDocument(
            session,
            {request_.module, request_.document, InputFile(request_.document).ReadAll(), json, options_.stripPrefixes},
            seconds_);
        const BenchTitle title = {request_.module, json, load.count()};
        WriteStdout(jsonReport_ ? BenchJson(title, result) : BenchTable(title, result));
        return ExitCode::Ok;
    }

private:
    /** The document is read more than once, which a pipe would wait for without end. */
    void CheckPlainFile() const
    {
        std::error_code ignored;
        if (std::filesystem::exists(request_.document, ignored) &&
            !std::filesystem::is_regular_file(request_.document, ignored))
        {
            throw ToolError(ExitCode::Input, request_.document + ": no plain file",
                            "give a file with one document; it is read more than once");
        }
    }

    /** A document that does not encode as a whole has no times worth knowing. */
    void CheckEncodes(Console &console, bool json) const
    {
        Session session(console, search_);
        if (json)
        {
            EncodeJson(session, console, request_, options_);
        }
        else
        {
            EncodeXml(session, console, request_);
        }
    }

    SearchOptions search_;
    EncodeRequest request_ = {{}, {}, false};
    JsonOptions options_ = {{}, false};
    std::string format_;
    double seconds_ = kDefaultSeconds;
    bool jsonReport_ = false;
};

} // namespace

std::unique_ptr<Subcommand> MakeBenchCommand()
{
    return std::make_unique<BenchCommand>();
}

} // namespace gpbtool
