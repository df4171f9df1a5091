// One whole request, JSON in and bytes out, beside the ways in which the same bytes can be had.
//
// Ways:
//   request     compiler created, parsed tree encoded, compiler destroyed; print slots closed
//   floor       a walk with all fields resolved beforehand fills a dynamic message, which protobuf serializes
//   textbook    names converted and looked up as they come, otherwise as the floor
//   generated   a walk written by hand fills the classes that protoc makes of the module
//   file_and_generated   the same, and the question whether the module's file still is there, which creating asks
// And from text:
//   request     cJSON parses, and the request above
//   parse       cJSON parses, and nothing else
//   protobuf    JsonStringToMessage on protobuf's own spelling of the message, and SerializeToString
// Once more, where each side keeps its memory between documents: cJSON's trees lie in blocks, protobuf has an arena.
#include <algorithm>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>
#include <cjson/cJSON.h>
#include <google/protobuf/arena.h>
#include <google/protobuf/util/json_util.h>
#include <libxml/parser.h>

#include "support/bench_run.h"
#include "support/compiler_ptr.h"
#include "support/dom.h"
#include "support/file_look.h"
#include "support/generated_walk.h"
#include "support/gpb_peers.h"
#include "support/json_parser.h"
#include "support/library_session.h"
#include "support/workload.h"
#include "support/xml_parser.h"

namespace
{

using google::protobuf::Message;
using gpbbench::JsonDom;
using gpbbench::Workload;
using gpbbench::XmlDom;

struct JsonFree
{
    void operator()(cJSON *tree) const { cJSON_Delete(tree); }
    void operator()(char *text) const { cJSON_free(text); }
};
using JsonTree = std::unique_ptr<cJSON, JsonFree>;

JsonTree Parse(const std::string &text)
{
    return JsonTree(cJSON_ParseWithLength(text.data(), text.size()));
}

// Gives the members of protobuf's JSON the names of the nodes.
void UseNodeNames(cJSON *item)
{
    for (; item != nullptr; item = item->next)
    {
        if (item->string != nullptr)
        {
            std::replace(item->string, item->string + std::strlen(item->string), '_', '-');
        }
        UseNodeNames(item->child);
    }
}

// Protobuf's JSON of the message that an XML document stands for.
std::string ProtobufJson(const google::protobuf::DescriptorPool *pool, const Workload &workload)
{
    const gpbbench::XmlDocument document = gpbbench::XmlParser().Parse(workload.xmlText);
    const gpbbench::GpbPeers<XmlDom> peers(pool, workload.topMessage, xmlDocGetRootElement(document.get()));
    const std::unique_ptr<Message> message(peers.Prototype().New());
    google::protobuf::util::JsonPrintOptions options;
    options.preserve_proto_field_names = true;
    std::string text;
    if (!message->ParseFromString(peers.Floor()) ||
        !google::protobuf::util::MessageToJsonString(*message, &text, options).ok())
    {
        throw std::runtime_error("protobuf does not write " + workload.moduleName);
    }
    return text;
}

// The same document for the library: YANG's enum values and node names, and the top-level container around it.
std::string LibraryJson(const std::string &protobufText)
{
    const std::string prefix = "Encoding_";
    std::string text = "{\"telemetry-system\":" + protobufText + "}";
    std::string plain;
    for (size_t from = 0; from < text.size();)
    {
        const size_t at = std::min(text.find(prefix, from), text.size());
        plain.append(text, from, at - from);
        from = at + prefix.size();
    }
    const JsonTree tree = Parse(plain);
    UseNodeNames(tree.get());
    const std::unique_ptr<char, JsonFree> printed(cJSON_PrintUnformatted(tree.get()));
    return printed.get();
}

// A workload as JSON, ready to be encoded in each way.
class Subject
{
public:
    Subject(gpbbench::LibrarySession &session, gpbbench::JsonParser &parser, const Workload &workload)
        : context_(session.Context()), parser_(parser), module_(workload.moduleName), file_(session.FileOf(module_)),
          leaves_(workload.leaves)
    {
        session.AddModule(workload.moduleName, workload.protoText);
        protobufText_ = ProtobufJson(session.Pool(), workload);
        text_ = LibraryJson(protobufText_);
        tree_ = Parse(text_);
        peers_ = std::make_unique<gpbbench::GpbPeers<JsonDom>>(session.Pool(), workload.topMessage, tree_->child);
        KeepArena();
        CheckThatWaysAgree();
    }

    size_t Leaves() const { return leaves_; }

    // These call `take` with the bytes, which go with the compiler.
    template <typename Take>
    void Request(const Take &take) const
    {
        Encode(tree_.get(), take);
    }
    template <typename Take>
    void RequestFromText(const Take &take) const
    {
        Encode(Parse(text_).get(), take);
    }
    template <typename Take>
    void RequestFromTextKept(const Take &take) const
    {
        Encode(parser_.Parse(text_), take);
    }

    void ParseText() const { benchmark::DoNotOptimize(Parse(text_).get()); }

    std::string Floor() const { return peers_->Floor(); }
    std::string Textbook() const { return peers_->Textbook(); }

    std::string Generated() const
    {
        std::string bytes;
        gpbbench::GeneratedWalk<JsonDom>::Encode(tree_->child, bytes);
        return bytes;
    }

    std::string FileAndGenerated() const
    {
        gpbbench::LookForFile(file_);
        return Generated();
    }

    std::string Protobuf() const
    {
        const std::unique_ptr<Message> message(peers_->Prototype().New());
        return ReadAndSerialize(message.get());
    }

    std::string ProtobufKept() const
    {
        arena_->Reset();
        return ReadAndSerialize(peers_->Prototype().New(arena_.get()));
    }

private:
    template <typename Take>
    void Encode(cJSON *tree, const Take &take) const
    {
        const gpbbench::CompilerPtr compiler(GpbJsonCompiler_CreateJsonCompiler(context_, module_.c_str()));
        unsigned int length = 0;
        const char *bytes = GpbXmlCompiler_EncodeJson(compiler.get(), tree->child, tree->child, &length);
        take(std::string_view(bytes, bytes == nullptr ? 0 : length));
    }

    std::string ReadAndSerialize(Message *message) const
    {
        if (!google::protobuf::util::JsonStringToMessage(protobufText_, message).ok())
        {
            throw std::runtime_error("protobuf does not read its own text");
        }
        return message->SerializeAsString();
    }

    // Gives protobuf a block that its message fits into.
    void KeepArena()
    {
        arena_ = std::make_unique<google::protobuf::Arena>();
        ProtobufKept();
        arenaBlock_.resize(arena_->SpaceAllocated());
        google::protobuf::ArenaOptions options;
        options.initial_block = arenaBlock_.data();
        options.initial_block_size = arenaBlock_.size();
        arena_ = std::make_unique<google::protobuf::Arena>(options);
    }

    // Ratios mean nothing unless all ways do the same work.
    void CheckThatWaysAgree() const
    {
        const std::string bytes = Floor();
        const auto expect = [&](std::string_view encoded)
        {
            if (encoded != bytes)
            {
                throw std::runtime_error("the library and the floor encode " + module_ + " differently");
            }
        };
        Request(expect);
        RequestFromText(expect);
        RequestFromTextKept(expect);
        if (Textbook() != bytes || Generated() != bytes || Protobuf() != bytes || ProtobufKept() != bytes ||
            bytes.empty())
        {
            throw std::runtime_error("the peers encode " + module_ + " differently");
        }
    }

    GpbLibContext *context_;
    gpbbench::JsonParser &parser_;
    std::string module_;
    std::string file_;
    size_t leaves_;
    std::string text_;
    std::string protobufText_;
    JsonTree tree_;
    std::unique_ptr<gpbbench::GpbPeers<JsonDom>> peers_;
    std::vector<char> arenaBlock_;
    std::unique_ptr<google::protobuf::Arena> arena_; ///< of the message that protobuf reads
};

void Keep(std::string_view bytes)
{
    benchmark::DoNotOptimize(bytes.data());
}

std::vector<gpbbench::Table> Plan(gpbbench::LibrarySession &session, gpbbench::JsonParser &parser,
                                  std::vector<std::unique_ptr<Subject>> &subjects)
{
    // Twenty leaves are mostly the fixed cost of a request, so growth is looked at from 2,000 on.
    gpbbench::Table parsed = {{{"parsed document", {}, 2}},
                              {"request", "floor", "textbook", "generated", "file_and_generated"}};
    gpbbench::Table text = {{{"document as text", {}, 2}}, {"request", "parse", "protobuf"}};
    gpbbench::Table kept = {{{"document as text, memory kept", {}, 2}}, {"request", "protobuf"}};
    for (const size_t leaves : gpbbench::DOCUMENT_SIZES)
    {
        if (!gpbbench::TakesPart(leaves))
        {
            continue;
        }
        subjects.push_back(std::make_unique<Subject>(session, parser, gpbbench::MakeTelemetryWorkload(leaves)));
        const Subject *subject = subjects.back().get();
        const size_t items = subject->Leaves();
        const std::string name = "size:" + std::to_string(leaves);
        parsed.series[0].names.push_back(name);
        gpbbench::Register(name, "request", items, [=] { subject->Request(Keep); });
        gpbbench::Register(name, "floor", items, [=] { benchmark::DoNotOptimize(subject->Floor().data()); });
        gpbbench::Register(name, "textbook", items, [=] { benchmark::DoNotOptimize(subject->Textbook().data()); });
        gpbbench::Register(name, "generated", items, [=] { benchmark::DoNotOptimize(subject->Generated().data()); });
        gpbbench::Register(name, "file_and_generated", items,
                           [=] { benchmark::DoNotOptimize(subject->FileAndGenerated().data()); });
        const std::string textName = "text:" + std::to_string(leaves);
        text.series[0].names.push_back(textName);
        gpbbench::Register(textName, "request", items, [=] { subject->RequestFromText(Keep); });
        gpbbench::Register(textName, "parse", items, [=] { subject->ParseText(); });
        gpbbench::Register(textName, "protobuf", items, [=] { benchmark::DoNotOptimize(subject->Protobuf().data()); });
        const std::string keptName = "kept:" + std::to_string(leaves);
        kept.series[0].names.push_back(keptName);
        gpbbench::Register(keptName, "request", items, [=] { subject->RequestFromTextKept(Keep); });
        gpbbench::Register(keptName, "protobuf", items,
                           [=] { benchmark::DoNotOptimize(subject->ProtobufKept().data()); });
    }
    return {parsed, text, kept};
}

} // namespace

int main(int argc, char **argv)
{
    int result = 0;
    {
        gpbbench::LibrarySession session;
        gpbbench::JsonParser parser;
        std::vector<std::unique_ptr<Subject>> subjects;
        result = gpbbench::RunTables(argc, argv, [&] { return Plan(session, parser, subjects); });
    }
    xmlCleanupParser();
    return result;
}
