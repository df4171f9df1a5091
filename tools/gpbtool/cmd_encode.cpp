/** gpbtool encode: XML and JSON documents to GPB. */
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <set>
#include <thread>

#include "encode_batch.h"
#include "input_documents.h"
#include "json_encoder.h"
#include "message_view.h"
#include "output_file.h"
#include "session.h"
#include "subcommand.h"

namespace gpbtool
{

namespace
{

constexpr const char *kBinarySuffix = ".gpb";
constexpr const char *kTextSuffix = ".txt";
constexpr unsigned int kMaxJobs = 256;

class EncodeCommand : public Subcommand
{
public:
    const char *Name() const override { return "encode"; }
    const char *Description() const override { return "Encode XML or JSON documents of a module"; }

    void Declare(CLI::App &app) override
    {
        search_.Declare(app);
        search_.DeclareLossless(app);
        app.add_option("--module", module_, "Module of the documents, the name of its .proto file without the suffix")
            ->required()
            ->type_name("M");
        app.add_option("documents", arguments_,
                       "XML documents, or JSON documents named *.json; - is standard input, a directory its *.xml and "
                       "*.json files")
            ->required()
            ->type_name("DOC");
        app.add_option("--format", format_,
                       "Format of all documents, whatever their names (default: by name); of directories, their files "
                       "named so")
            ->check(CLI::IsMember({kXml, kJson}))
            ->type_name("xml|json");
        app.add_option("--item", json_.item,
                       "Encode this item of a JSON document only, such as /interfaces/interface/0")
            ->type_name("PATH");
        app.add_flag("--strip-prefixes", json_.stripPrefixes, "Take \"MODULE:\" off the names of JSON documents");
        CLI::Option *single = app.add_option("-o,--output", output_, "Write to this file; - is standard output");
        single->type_name("OUT");
        app.add_option("--out-dir", outDir_, "Write DOC.gpb (DOC.txt with --text) for each document to this directory")
            ->type_name("DIR")
            ->excludes(single);
        app.add_option("--jobs", jobs_, "Threads that encode several documents (default: the number of processors)")
            ->check(CLI::Range(1U, kMaxJobs))
            ->type_name("N");
        app.add_flag("--text", text_, "Write protobuf's text form instead of the encoded bytes");
        app.add_flag("--lenient", lenient_, "Leave out what has no place in the module, and warn");
    }

    ExitCode Run(Console &console) override
    {
        search_.Complete();
        documents_ = FindDocuments(arguments_, format_);
        CheckFormats();
        CheckOutputs();
        return IsBatch() ? EncodeAll(console) : EncodeOnly(console);
    }

private:
    bool IsBatch() const { return documents_.fromDirectory || documents_.paths.size() > 1; }

    void CheckFormats() const
    {
        for (const std::string &document : documents_.paths)
        {
            if (!IsJson(document, format_) && (!json_.item.empty() || json_.stripPrefixes))
            {
                throw ToolError(ExitCode::Usage, document + ": --item and --strip-prefixes are for JSON documents",
                                "give --format json if it is one");
            }
        }
    }

    void CheckOutputs() const
    {
        if (outDir_.empty() && IsBatch())
        {
            throw ToolError(ExitCode::Usage, "several documents cannot share one output",
                            "give --out-dir DIR to get one file for each");
        }
        if (outDir_.empty() && output_.empty() && !text_ && isatty(STDOUT_FILENO) != 0)
        {
            throw ToolError(ExitCode::Usage, "encoded bytes are not for a terminal",
                            "give -o FILE, or --text to read them, or -o - if you want them here all the same");
        }
        std::set<std::string> targets;
        for (const std::string &document : documents_.paths)
        {
            if (!outDir_.empty() && !targets.insert(Target(document)).second)
            {
                const std::string kinds =
                    documents_.fromDirectory ? "; --format takes one kind of a directory's documents" : "";
                throw ToolError(ExitCode::Usage,
                                document + ": another document would be written to " + Target(document) + " too",
                                "encode documents of the same name in separate calls" + kinds);
            }
        }
    }

    void MakeOutDir() const
    {
        if (outDir_.empty())
        {
            return;
        }
        std::error_code failed;
        std::filesystem::create_directories(outDir_, failed);
        if (failed)
        {
            throw ToolError(ExitCode::Output, outDir_ + ": cannot be made: " + failed.message(),
                            "give a directory that you may write to");
        }
    }

    std::string Target(const std::string &document) const
    {
        if (outDir_.empty())
        {
            return output_;
        }
        const std::string stem = document == "-" ? "stdin" : std::filesystem::path(document).stem().string();
        return (std::filesystem::path(outDir_) / (stem + (text_ ? kTextSuffix : kBinarySuffix))).string();
    }

    /** Encodes and writes one document; failures are ToolErrors. */
    EncodedSizes EncodeOne(Session &session, Console &console, const std::string &document) const
    {
        const EncodeRequest request = {module_, document, lenient_};
        const EncodedDocument encoded = IsJson(document, format_) ? EncodeJson(session, console, request, json_)
                                                                  : EncodeXml(session, console, request);
        const std::string bytes = text_ ? MessageView(*encoded.type, encoded.bytes, document).Text() : encoded.bytes;
        WriteOutput(Target(document), bytes);
        return {encoded.documentSize, bytes.size()};
    }

    ExitCode EncodeOnly(Console &console) const
    {
        Session session(console, search_);
        session.Load(module_);
        MakeOutDir();
        EncodeOne(session, console, documents_.paths.front());
        return ExitCode::Ok;
    }

    ExitCode EncodeAll(Console &console) const
    {
        const unsigned int jobs = jobs_ > 0 ? jobs_ : std::max(1U, std::thread::hardware_concurrency());
        EncodeBatch batch({search_, module_, documents_.paths, jobs,
                           [this](Session &session, Console &messages, const std::string &document)
                           { return EncodeOne(session, messages, document); }},
                          console);
        MakeOutDir();
        return batch.Run();
    }

    SearchOptions search_;
    std::string module_;
    std::vector<std::string> arguments_;
    InputDocuments documents_ = {{}, false};
    unsigned int jobs_ = 0; /**< 0: as many as there are processors */
    std::string format_;
    JsonOptions json_ = {{}, false};
    std::string output_;
    std::string outDir_;
    bool text_ = false;
    bool lenient_ = false;
};

} // namespace

std::unique_ptr<Subcommand> MakeEncodeCommand()
{
    return std::make_unique<EncodeCommand>();
}

} // namespace gpbtool
