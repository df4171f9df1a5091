// One whole request, XML text in and JSON text out, beside the reflection floor and beside libyang.
//
// Ways:
//   request     libxml2 parses, compiler created, document encoded and printed, compiler destroyed; print slots closed
//   floor       libxml2 parses, and a walk with all fields resolved beforehand fills and serializes a message
//   libyang     libyang parses the same text without validating it, and prints JSON
#include <memory>
#include <stdexcept>
#include <string>

#include <benchmark/benchmark.h>
#include <google/protobuf/dynamic_message.h>
#include <libxml/parser.h>
#include <libyang/libyang.h>

#include "gpb_templatelib/gpb_compiler_c.h"
#include "support/floor_walk.h"
#include "support/library_session.h"
#include "support/runner.h"
#include "support/workload.h"
#include "support/yang_text.h"

namespace
{

struct CompilerDestroy
{
    void operator()(GpbXmlCompilerBase *compiler) const { GpbXmlCompiler_Destory(compiler); }
};
using Compiler = std::unique_ptr<GpbXmlCompilerBase, CompilerDestroy>;

struct YangFree
{
    void operator()(ly_ctx *context) const { ly_ctx_destroy(context); }
    void operator()(lyd_node *tree) const { lyd_free_all(tree); }
};

// A libyang context with the module of the telemetry workload.
std::unique_ptr<ly_ctx, YangFree> MakeYangContext()
{
    ly_ctx *context = nullptr;
    if (ly_ctx_new(nullptr, 0, &context) != LY_SUCCESS)
    {
        throw std::runtime_error("no libyang context");
    }
    std::unique_ptr<ly_ctx, YangFree> owner(context);
    if (lys_parse_mem(context, gpbbench::TelemetryYang().c_str(), LYS_IN_YANG, nullptr) != LY_SUCCESS)
    {
        throw std::runtime_error(std::string("libyang: ") + ly_errmsg(context));
    }
    return owner;
}

// A workload, ready to be turned into JSON in each way.
class Subject
{
public:
    Subject(gpbbench::LibrarySession &session, const ly_ctx *yang, const gpbbench::Workload &workload)
        : context_(session.Context()), yang_(yang), module_(workload.moduleName), text_(workload.xmlText)
    {
        // libyang wants the namespace; the library reads past it.
        const std::string root = "<telemetry-system>";
        text_.replace(text_.find(root), root.size(),
                      std::string("<telemetry-system xmlns=\"") + gpbbench::TELEMETRY_NAMESPACE + "\">");
        session.AddModule(workload.moduleName, workload.protoText);
        factory_ = std::make_unique<google::protobuf::DynamicMessageFactory>(session.Pool());
        type_ = session.Pool()->FindMessageTypeByName(workload.topMessage);
        resolvedDocument_ = gpbbench::ParseXml(text_);
        floor_ = std::make_unique<gpbbench::FloorWalk>(type_, resolvedDocument_.get());
        prototype_ = factory_->GetPrototype(type_);
        CheckThatWaysWork(workload.leaves);
    }

    std::string Request() const
    {
        const gpbbench::XmlDocument document = gpbbench::ParseXml(text_);
        const Compiler compiler(GpbXmlCompiler_CreateJsonCompiler(context_, module_.c_str(), 0));
        unsigned int length = 0;
        unsigned int error = 0;
        const char *json = GpbXmlCompiler_Encode(compiler.get(), document.get(), &length, &error);
        return json == nullptr ? std::string() : std::string(json, length);
    }

    std::string Floor() const
    {
        const gpbbench::XmlDocument document = gpbbench::ParseXml(text_);
        benchmark::DoNotOptimize(document.get());
        std::string bytes;
        floor_->Encode(*prototype_, bytes);
        return bytes;
    }

    std::string Libyang() const
    {
        lyd_node *parsed = nullptr;
        if (lyd_parse_data_mem(yang_, text_.c_str(), LYD_XML, LYD_PARSE_ONLY | LYD_PARSE_STRICT, 0, &parsed) !=
            LY_SUCCESS)
        {
            throw std::runtime_error(std::string("libyang: ") + ly_errmsg(yang_));
        }
        const std::unique_ptr<lyd_node, YangFree> tree(parsed);
        char *json = nullptr;
        if (lyd_print_mem(&json, tree.get(), LYD_JSON, LYD_PRINT_SHRINK) != LY_SUCCESS || json == nullptr)
        {
            throw std::runtime_error("libyang does not print");
        }
        std::string text(json);
        std::free(json);
        return text;
    }

private:
    // The texts differ in names and in empty leaves, so each way has to have a part per leaf.
    void CheckThatWaysWork(size_t leaves) const
    {
        for (const std::string &text : {Request(), Libyang()})
        {
            size_t found = 0;
            for (const char *name : {"\"leaf-", "\"subscription-name\""})
            {
                for (size_t at = text.find(name); at != std::string::npos; at = text.find(name, at + 1))
                {
                    ++found;
                }
            }
            if (found != leaves)
            {
                throw std::runtime_error("a way leaves out leaves of " + module_);
            }
        }
        if (Floor().size() < leaves)
        {
            throw std::runtime_error("the floor leaves out leaves of " + module_);
        }
    }

    GpbLibContext *context_;
    const ly_ctx *yang_;
    std::string module_;
    std::string text_;
    std::unique_ptr<google::protobuf::DynamicMessageFactory> factory_;
    const google::protobuf::Descriptor *type_ = nullptr;
    gpbbench::XmlDocument resolvedDocument_;
    std::unique_ptr<gpbbench::FloorWalk> floor_;
    const google::protobuf::Message *prototype_ = nullptr;
};

void Plan(gpbbench::Runner &runner, gpbbench::LibrarySession &session, const ly_ctx *yang,
          std::vector<std::unique_ptr<Subject>> &subjects)
{
    // Twenty leaves are mostly the fixed cost of a request, so growth is looked at from 2,000 on.
    runner.StartSeries("document size", 1);
    for (const size_t leaves : {20, 2000, 200000})
    {
        const gpbbench::Workload workload = gpbbench::MakeTelemetryWorkload(leaves);
        subjects.push_back(std::make_unique<Subject>(session, yang, workload));
        const Subject *subject = subjects.back().get();
        runner.Add("leaves:" + std::to_string(leaves), workload.leaves,
                   {{"request", [subject] { benchmark::DoNotOptimize(subject->Request()); }},
                    {"floor", [subject] { benchmark::DoNotOptimize(subject->Floor()); }},
                    {"libyang", [subject] { benchmark::DoNotOptimize(subject->Libyang()); }}});
    }
}

} // namespace

int main(int argc, char **argv)
{
    int result = 0;
    {
        gpbbench::LibrarySession session;
        std::unique_ptr<ly_ctx, YangFree> yang;
        std::vector<std::unique_ptr<Subject>> subjects;
        result = gpbbench::RunBenchmarks(argc, argv,
                                         [&](gpbbench::Runner &runner)
                                         {
                                             yang = MakeYangContext();
                                             Plan(runner, session, yang.get(), subjects);
                                         });
    }
    xmlCleanupParser();
    return result;
}
