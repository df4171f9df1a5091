// One whole request, JSON text in and bytes out, beside the least that the same bytes can cost and beside protobuf's
// own reader of JSON.
//
// Ways:
//   request     cJSON parses, compiler created, tree encoded, compiler destroyed; print slots closed
//   floor       cJSON parses, and a walk with all fields resolved beforehand fills and serializes the equal message
//   protobuf    JsonStringToMessage on protobuf's own spelling of the message, and serializing
#include <memory>
#include <stdexcept>
#include <string>

#include <benchmark/benchmark.h>
#include <cjson/cJSON.h>
#include <google/protobuf/dynamic_message.h>
#include <google/protobuf/util/json_util.h>
#include <libxml/parser.h>

#include "gpb_templatelib/gpb_compiler_c.h"
#include "support/floor_walk.h"
#include "support/library_session.h"
#include "support/runner.h"
#include "support/workload.h"

namespace
{

using google::protobuf::Message;

struct CompilerDestroy
{
    void operator()(GpbXmlCompilerBase *compiler) const { GpbXmlCompiler_Destory(compiler); }
};
using Compiler = std::unique_ptr<GpbXmlCompilerBase, CompilerDestroy>;

struct JsonFree
{
    void operator()(cJSON *tree) const { cJSON_Delete(tree); }
};
using JsonTree = std::unique_ptr<cJSON, JsonFree>;

// A workload as JSON, ready to be encoded in each way.
class Subject
{
public:
    Subject(gpbbench::LibrarySession &session, const gpbbench::Workload &workload)
        : context_(session.Context()), module_(workload.moduleName), document_(gpbbench::ParseXml(workload.xmlText))
    {
        session.AddModule(workload.moduleName, workload.protoText);
        factory_ = std::make_unique<google::protobuf::DynamicMessageFactory>(session.Pool());
        floor_ = std::make_unique<gpbbench::FloorWalk>(session.Pool()->FindMessageTypeByName(workload.topMessage),
                                                       document_.get());
        prototype_ = factory_->GetPrototype(floor_->Type());
        WriteTexts();
        CheckThatWaysAgree(workload.leaves);
    }

    std::string Request() const
    {
        const JsonTree tree = Parse();
        const Compiler compiler(GpbJsonCompiler_CreateJsonCompiler(context_, module_.c_str()));
        unsigned int length = 0;
        const char *bytes = GpbXmlCompiler_EncodeJson(compiler.get(), tree->child, tree->child, &length);
        return bytes == nullptr ? std::string() : std::string(bytes, length);
    }

    std::string Floor() const
    {
        const JsonTree tree = Parse();
        benchmark::DoNotOptimize(tree.get());
        std::string bytes;
        floor_->Encode(*prototype_, bytes);
        return bytes;
    }

    std::string Protobuf() const
    {
        const std::unique_ptr<Message> message(prototype_->New());
        if (!google::protobuf::util::JsonStringToMessage(protobufText_, message.get()).ok())
        {
            throw std::runtime_error("protobuf does not read its own text");
        }
        return message->SerializeAsString();
    }

private:
    JsonTree Parse() const { return JsonTree(cJSON_ParseWithLength(text_.data(), text_.size())); }

    // Both texts are protobuf's; the library's has YANG's enum values and its top-level container around it.
    void WriteTexts()
    {
        std::string bytes;
        floor_->Encode(*prototype_, bytes);
        const std::unique_ptr<Message> message(prototype_->New());
        google::protobuf::util::JsonPrintOptions options;
        options.preserve_proto_field_names = true;
        if (!message->ParseFromString(bytes) ||
            !google::protobuf::util::MessageToJsonString(*message, &protobufText_, options).ok())
        {
            throw std::runtime_error("protobuf does not write " + module_);
        }
        const std::string prefix = "Encoding_";
        text_ = "{\"telemetry-system\":" + protobufText_ + "}";
        for (size_t at = text_.find(prefix); at != std::string::npos; at = text_.find(prefix, at))
        {
            text_.erase(at, prefix.size());
        }
    }

    // Ratios mean nothing unless all ways do the same work.
    void CheckThatWaysAgree(size_t leaves) const
    {
        const std::string floorBytes = Floor();
        if (Request() != floorBytes || Protobuf() != floorBytes || floorBytes.size() < leaves)
        {
            throw std::runtime_error("the ways encode " + module_ + " differently");
        }
    }

    GpbLibContext *context_;
    std::string module_;
    gpbbench::XmlDocument document_;
    std::unique_ptr<google::protobuf::DynamicMessageFactory> factory_;
    std::unique_ptr<gpbbench::FloorWalk> floor_;
    const Message *prototype_ = nullptr;
    std::string text_;
    std::string protobufText_;
};

void Plan(gpbbench::Runner &runner, gpbbench::LibrarySession &session, std::vector<std::unique_ptr<Subject>> &subjects)
{
    // Twenty leaves are mostly the fixed cost of a request, so growth is looked at from 2,000 on.
    runner.StartSeries("document size", 1);
    for (const size_t leaves : {20, 2000, 200000})
    {
        const gpbbench::Workload workload = gpbbench::MakeTelemetryWorkload(leaves);
        subjects.push_back(std::make_unique<Subject>(session, workload));
        const Subject *subject = subjects.back().get();
        runner.Add("leaves:" + std::to_string(leaves), workload.leaves,
                   {{"request", [subject] { benchmark::DoNotOptimize(subject->Request()); }},
                    {"floor", [subject] { benchmark::DoNotOptimize(subject->Floor()); }},
                    {"protobuf", [subject] { benchmark::DoNotOptimize(subject->Protobuf()); }}});
    }
}

} // namespace

int main(int argc, char **argv)
{
    int result = 0;
    {
        gpbbench::LibrarySession session;
        std::vector<std::unique_ptr<Subject>> subjects;
        result =
            gpbbench::RunBenchmarks(argc, argv, [&](gpbbench::Runner &runner) { Plan(runner, session, subjects); });
    }
    xmlCleanupParser();
    return result;
}
