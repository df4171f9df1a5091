// One whole request, a parsed XML document in and bytes out, beside the ways in which the same bytes can be had.
//
// Ways:
//   request     compiler created, document encoded, compiler destroyed; print slots closed
//   floor       a walk with all fields resolved beforehand fills a dynamic message, which protobuf serializes
//   new_types   the floor, which also makes the message types anew, as a compiler with a factory of its own has to
//   textbook    names converted and looked up as they come, otherwise as the floor
//   generated   a walk written by hand fills the classes that protoc makes of the module
//   file_and_generated   the same, and the question whether the module's file still is there, which creating asks
//   prototype   creating alone: a look-up in a kept factory, and FEW allocations
//   file_and_prototype   the same, and the question for the module's file
//   platform, stat, statx, access, from_directory   that question alone, by the platform and in four ways of the system
#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>
#include <libxml/parser.h>

#include "support/bench_run.h"
#include "support/compiler_ptr.h"
#include "support/dom.h"
#include "support/file_look.h"
#include "support/generated_walk.h"
#include "support/gpb_peers.h"
#include "support/library_session.h"
#include "support/workload.h"
#include "support/xml_parser.h"

namespace
{

using gpbbench::Workload;
using gpbbench::XmlDom;
using Sizes = std::initializer_list<size_t>;

// Leaves of each document of the series in which something else grows.
constexpr size_t SERIES_LEAVES = 10000;
constexpr size_t SPARSE_LEAVES = 2000;

// So many that a message of a thousand fields costs nothing beside them.
constexpr size_t BY_NAME_LEAVES = 20000;

// What "a few allocations" are taken to be.
constexpr size_t FEW = 8;
constexpr size_t FEW_SIZE = 256;

// A workload, ready to be encoded in each way.
class Subject
{
public:
    Subject(gpbbench::LibrarySession &session, const Workload &workload)
        : context_(session.Context()), module_(workload.moduleName), file_(session.FileOf(module_)),
          leaves_(workload.leaves), document_(gpbbench::XmlParser().Parse(workload.xmlText)),
          root_(xmlDocGetRootElement(document_.get()))
    {
        session.AddModule(workload.moduleName, workload.protoText);
        peers_ = std::make_unique<gpbbench::GpbPeers<XmlDom>>(session.Pool(), workload.topMessage, root_);
        Request([this](std::string_view bytes) { Expect(bytes, "the library"); });
    }

    size_t Leaves() const { return leaves_; }

    gpbbench::CompilerPtr Compiler() const
    {
        return gpbbench::CompilerPtr(GpbXmlCompiler_CreateCompiler(context_, module_.c_str()));
    }

    // Calls `take` with the bytes, which go with the compiler.
    template <typename Take>
    void Request(const Take &take) const
    {
        const gpbbench::CompilerPtr compiler = Compiler();
        unsigned int length = 0;
        unsigned int error = 0;
        const char *bytes = GpbXmlCompiler_Encode(compiler.get(), document_.get(), &length, &error);
        take(std::string_view(bytes, bytes == nullptr ? 0 : length));
    }

    std::string Floor() const { return peers_->Floor(); }
    std::string NewTypes() const { return peers_->FloorWithFactory(); }
    std::string Textbook() const { return peers_->Textbook(); }

    std::string Generated() const
    {
        std::string bytes;
        gpbbench::GeneratedWalk<XmlDom>::Encode(root_, bytes);
        return bytes;
    }

    const std::string &File() const { return file_; }

    std::string FileAndGenerated() const
    {
        gpbbench::LookForFile(file_);
        return Generated();
    }

    void LookUpPrototype() const
    {
        benchmark::DoNotOptimize(peers_->LookUpPrototype());
        void *memory[FEW];
        for (void *&one : memory)
        {
            one = std::malloc(FEW_SIZE);
            benchmark::DoNotOptimize(one);
        }
        for (void *one : memory)
        {
            std::free(one);
        }
    }

    // Ratios mean nothing unless all ways do the same work.
    void Expect(std::string_view bytes, const std::string &way) const
    {
        if (bytes != Floor() || bytes.empty())
        {
            throw std::runtime_error(way + " and the floor encode " + module_ + " differently");
        }
    }

private:
    GpbLibContext *context_;
    std::string module_;
    std::string file_;
    size_t leaves_;
    gpbbench::XmlDocument document_;
    xmlNode *root_;
    std::unique_ptr<gpbbench::GpbPeers<XmlDom>> peers_;
};

// Everything that is measured, in the order of the tables.
class Plan
{
public:
    explicit Plan(gpbbench::LibrarySession &session, std::vector<std::unique_ptr<Subject>> &subjects)
        : session_(session), subjects_(subjects)
    {
        AddSizes();
        tables_.push_back({{}, {"request", "floor"}});
        AddOrders();
        StartSeries("message width", 0);
        for (const size_t width : Sizes{10, 100, 1000})
        {
            Add("width:" + std::to_string(width), gpbbench::MakeWideWorkload(width, width, SERIES_LEAVES));
        }
        StartSeries("ten of a thousand", 0);
        for (const size_t leaves : Sizes{20, SPARSE_LEAVES})
        {
            Add("sparse:" + std::to_string(leaves), gpbbench::MakeWideWorkload(1000, 10, leaves));
        }
        StartSeries("number of cases", 0);
        for (const size_t cases : Sizes{4, 64, 200})
        {
            Add("cases:" + std::to_string(cases), gpbbench::MakeChoiceWorkload(cases, SERIES_LEAVES));
        }
        StartSeries("cases in cases", 0);
        for (const size_t cases : Sizes{2, 14})
        {
            Add("nested:" + std::to_string(cases), gpbbench::MakeNestedChoiceWorkload(cases, SERIES_LEAVES));
        }
        StartSeries("field by name", 0);
        for (const size_t width : Sizes{10, 1000})
        {
            Add("by_name:" + std::to_string(width), gpbbench::MakeFieldByNameWorkload(width, BY_NAME_LEAVES));
        }
        StartSeries("case field by name", 0);
        for (const size_t cases : Sizes{4, 200})
        {
            Add("case_by_name:" + std::to_string(cases), gpbbench::MakeCaseFieldByNameWorkload(cases, BY_NAME_LEAVES));
        }
    }

    const std::vector<gpbbench::Table> &Tables() const { return tables_; }

private:
    void AddSizes()
    {
        // Twenty leaves are mostly the fixed cost of a request, so growth is looked at from 2,000 on.
        tables_.push_back({{}, {"request", "floor", "new_types", "textbook", "generated", "file_and_generated"}});
        StartSeries("document size", 2);
        for (const size_t leaves : gpbbench::DOCUMENT_SIZES)
        {
            const std::string name = "size:" + std::to_string(leaves);
            const Subject *subject = Add(name, gpbbench::MakeTelemetryWorkload(leaves));
            if (subject == nullptr)
            {
                continue;
            }
            subject->Expect(subject->Textbook(), "the textbook way");
            subject->Expect(subject->Generated(), "generated code");
            Register(name, "new_types", subject->Leaves(), [subject] { return subject->NewTypes(); });
            Register(name, "textbook", subject->Leaves(), [subject] { return subject->Textbook(); });
            Register(name, "generated", subject->Leaves(), [subject] { return subject->Generated(); });
            Register(name, "file_and_generated", subject->Leaves(), [subject] { return subject->FileAndGenerated(); });
        }
        const Subject *subject = subjects_.front().get();
        tables_.push_back({{{"compiler alone", {"create"}, 0}}, {"request", "prototype", "file_and_prototype"}});
        gpbbench::Register("create", "request", 1, [subject] { benchmark::DoNotOptimize(subject->Compiler().get()); });
        gpbbench::Register("create", "prototype", 1, [subject] { subject->LookUpPrototype(); });
        gpbbench::Register("create", "file_and_prototype", 1,
                           [subject]
                           {
                               gpbbench::LookForFile(subject->File());
                               subject->LookUpPrototype();
                           });
        AddLooks(subject->File());
    }

    void AddLooks(const std::string &file)
    {
        tables_.push_back(
            {{{"look for a file", {"look"}, 0}}, {"platform", "stat", "statx", "access", "from_directory"}});
        const auto look = std::make_shared<gpbbench::FileLook>(file);
        gpbbench::Register("look", "platform", 1, [file] { gpbbench::LookForFile(file); });
        gpbbench::Register("look", "stat", 1, [look] { benchmark::DoNotOptimize(look->ByStat()); });
        gpbbench::Register("look", "statx", 1, [look] { benchmark::DoNotOptimize(look->ByStatx()); });
        gpbbench::Register("look", "access", 1, [look] { benchmark::DoNotOptimize(look->ByAccess()); });
        gpbbench::Register("look", "from_directory", 1, [look] { benchmark::DoNotOptimize(look->FromDirectory()); });
    }

    void AddOrders()
    {
        StartSeries("order of nodes", 0);
        for (const size_t leaves : Sizes{200, 20000})
        {
            Add("ordered:" + std::to_string(leaves), gpbbench::MakeTelemetryWorkload(leaves));
            Add("mixed:" + std::to_string(leaves), gpbbench::MakeTelemetryWorkload(leaves, gpbbench::NodeOrder::MIXED));
        }
    }

    void StartSeries(const std::string &title, size_t growthFrom)
    {
        tables_.back().series.push_back({title, {}, growthFrom});
    }

    // The ways that every workload has; null when the workload takes no part in this run.
    const Subject *Add(const std::string &name, const Workload &workload)
    {
        if (!gpbbench::TakesPart(workload.leaves))
        {
            return nullptr;
        }
        tables_.back().series.back().names.push_back(name);
        subjects_.push_back(std::make_unique<Subject>(session_, workload));
        const Subject *subject = subjects_.back().get();
        gpbbench::Register(
            name, "request", subject->Leaves(),
            [subject] { subject->Request([](std::string_view bytes) { benchmark::DoNotOptimize(bytes.data()); }); });
        Register(name, "floor", subject->Leaves(), [subject] { return subject->Floor(); });
        return subject;
    }

    template <typename Encode>
    static void Register(const std::string &name, const std::string &way, size_t leaves, const Encode &encode)
    {
        gpbbench::Register(name, way, leaves, [encode] { benchmark::DoNotOptimize(encode().data()); });
    }

    gpbbench::LibrarySession &session_;
    std::vector<std::unique_ptr<Subject>> &subjects_;
    std::vector<gpbbench::Table> tables_;
};

} // namespace

int main(int argc, char **argv)
{
    int result = 0;
    {
        gpbbench::LibrarySession session;
        std::vector<std::unique_ptr<Subject>> subjects;
        result = gpbbench::RunTables(argc, argv, [&] { return Plan(session, subjects).Tables(); });
    }
    xmlCleanupParser();
    return result;
}
