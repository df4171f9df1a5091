// One whole request, a parsed document in and bytes out, beside the least that the same bytes can cost.
//
// Ways:
//   request     compiler created, document encoded, compiler destroyed; print slots closed
//   floor       a walk with all fields resolved and the message type built beforehand
//   floor_type  the floor, which also builds the message type anew, as a compiler has to, since it owns its factory
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <google/protobuf/dynamic_message.h>
#include <libxml/parser.h>

#include "gpb_templatelib/gpb_compiler_c.h"
#include "support/floor_walk.h"
#include "support/library_session.h"
#include "support/runner.h"
#include "support/workload.h"

namespace
{

using gpbbench::Workload;

// Leaves of each document of the series in which something else grows.
constexpr size_t SERIES_LEAVES = 10000;

// A workload, ready to be encoded in each way.
class Subject
{
public:
    Subject(gpbbench::LibrarySession &session, const Workload &workload)
        : context_(session.Context()), module_(workload.moduleName), leaves_(workload.leaves),
          document_(gpbbench::ParseXml(workload.xmlText))
    {
        session.AddModule(workload.moduleName, workload.protoText);
        pool_ = session.Pool();
        factory_ = std::make_unique<google::protobuf::DynamicMessageFactory>(pool_);
        floor_ =
            std::make_unique<gpbbench::FloorWalk>(pool_->FindMessageTypeByName(workload.topMessage), document_.get());
        prototype_ = factory_->GetPrototype(floor_->Type());
        CheckThatWaysAgree();
    }

    void Request() const
    {
        GpbXmlCompilerBase *compiler = GpbXmlCompiler_CreateCompiler(context_, module_.c_str());
        unsigned int length = 0;
        unsigned int error = 0;
        benchmark::DoNotOptimize(GpbXmlCompiler_Encode(compiler, document_.get(), &length, &error));
        GpbXmlCompiler_Destory(compiler);
    }

    void Floor() const
    {
        std::string bytes;
        floor_->Encode(*prototype_, bytes);
        benchmark::DoNotOptimize(bytes.data());
    }

    void FloorWithType() const
    {
        google::protobuf::DynamicMessageFactory factory(pool_);
        std::string bytes;
        floor_->Encode(*factory.GetPrototype(floor_->Type()), bytes);
        benchmark::DoNotOptimize(bytes.data());
    }

private:
    // Ratios mean nothing unless both sides do the same work.
    void CheckThatWaysAgree() const
    {
        std::string floorBytes;
        floor_->Encode(*prototype_, floorBytes);
        GpbXmlCompilerBase *compiler = GpbXmlCompiler_CreateCompiler(context_, module_.c_str());
        if (compiler == nullptr)
        {
            throw std::runtime_error("no compiler for " + module_);
        }
        unsigned int length = 0;
        unsigned int error = 0;
        const char *bytes = GpbXmlCompiler_Encode(compiler, document_.get(), &length, &error);
        const bool same = bytes != nullptr && floorBytes == std::string(bytes, length);
        GpbXmlCompiler_Destory(compiler);
        if (!same || floorBytes.size() < leaves_)
        {
            throw std::runtime_error("the library and the floor encode " + module_ + " differently");
        }
    }

    GpbLibContext *context_;
    std::string module_;
    size_t leaves_;
    gpbbench::XmlDocument document_;
    const google::protobuf::DescriptorPool *pool_ = nullptr;
    std::unique_ptr<google::protobuf::DynamicMessageFactory> factory_;
    std::unique_ptr<gpbbench::FloorWalk> floor_;
    const google::protobuf::Message *prototype_ = nullptr;
};

// Everything that is measured, in the order of the tables.
class Plan
{
public:
    Plan(gpbbench::Runner &runner, gpbbench::LibrarySession &session, std::vector<std::unique_ptr<Subject>> &subjects)
        : runner_(runner), session_(session), subjects_(subjects)
    {
        // Twenty leaves are mostly the fixed cost of a request, so growth is looked at from 2,000 on.
        runner_.StartSeries("document size", 1);
        for (const size_t leaves : {size_t{20}, size_t{2000}, size_t{200000}})
        {
            Add("leaves:" + std::to_string(leaves), gpbbench::MakeTelemetryWorkload(leaves));
        }
        runner_.StartSeries("message width", 0);
        for (const size_t width : {size_t{10}, size_t{100}, size_t{1000}})
        {
            Add("width:" + std::to_string(width), gpbbench::MakeWideWorkload(width, SERIES_LEAVES));
        }
        runner_.StartSeries("number of cases", 0);
        for (const size_t cases : {size_t{4}, size_t{64}, size_t{200}})
        {
            Add("cases:" + std::to_string(cases), gpbbench::MakeChoiceWorkload(cases, SERIES_LEAVES));
        }
    }

private:
    void Add(const std::string &name, const Workload &workload)
    {
        subjects_.push_back(std::make_unique<Subject>(session_, workload));
        const Subject *subject = subjects_.back().get();
        runner_.Add(name, workload.leaves,
                    {{"request", [subject] { subject->Request(); }},
                     {"floor", [subject] { subject->Floor(); }},
                     {"floor_type", [subject] { subject->FloorWithType(); }}});
    }

    gpbbench::Runner &runner_;
    gpbbench::LibrarySession &session_;
    std::vector<std::unique_ptr<Subject>> &subjects_;
};

} // namespace

int main(int argc, char **argv)
{
    int result = 0;
    {
        gpbbench::LibrarySession session;
        std::vector<std::unique_ptr<Subject>> subjects;
        result = gpbbench::RunBenchmarks(argc, argv,
                                         [&](gpbbench::Runner &runner) { const Plan plan(runner, session, subjects); });
    }
    xmlCleanupParser();
    return result;
}
