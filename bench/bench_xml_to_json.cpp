// One whole request, an XML document in and JSON text out, beside a walk written by hand and beside libyang.
//
// Ways:
//   request     compiler created, parsed document encoded and printed, compiler destroyed; print slots closed
//   cjson_walk  a walk written for this one module makes a cJSON tree, and cJSON prints it: the same text
// And from text:
//   request     libxml2 parses, and the request above
//   one_parser  the same with one parser for all documents, the large ones, too
//   parse       libxml2 parses, and nothing else
//   libyang     libyang parses the same text without validating it, and prints JSON
// Each side keeps what may be kept between documents: the parser of libxml2 (but for large ones), the context of
// libyang.
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <libyang/libyang.h>

#include "support/bench_run.h"
#include "support/compiler_ptr.h"
#include "support/json_walk.h"
#include "support/library_session.h"
#include "support/workload.h"
#include "support/xml_parser.h"
#include "support/yang_text.h"

namespace
{

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
        : context_(session.Context()), yang_(yang), module_(workload.moduleName), leaves_(workload.leaves),
          text_(workload.xmlText)
    {
        // libyang wants the namespace; the library reads past it.
        const std::string root = "<telemetry-system>";
        text_.replace(text_.find(root), root.size(),
                      std::string("<telemetry-system xmlns=\"") + gpbbench::TELEMETRY_NAMESPACE + "\">");
        session.AddModule(workload.moduleName, workload.protoText);
        document_ = parser_.Parse(text_);
        CheckThatWaysAgree();
    }

    size_t Leaves() const { return leaves_; }

    // Both call `take` with the text, which goes with the compiler.
    template <typename Take>
    void Request(const Take &take) const
    {
        Encode(document_.get(), take);
    }
    template <typename Take>
    void RequestFromText(const Take &take) const
    {
        Encode(parser_.Parse(text_).get(), take);
    }

    template <typename Take>
    void RequestFromTextWithOneParser(const Take &take) const
    {
        Encode(parser_.ParseKept(text_).get(), take);
    }

    void ParseText() const { benchmark::DoNotOptimize(parser_.Parse(text_).get()); }

    gpbbench::JsonText Walk() const { return gpbbench::WriteTelemetryJson(xmlDocGetRootElement(document_.get())); }

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
    template <typename Take>
    void Encode(xmlDoc *document, const Take &take) const
    {
        const gpbbench::CompilerPtr compiler(GpbXmlCompiler_CreateJsonCompiler(context_, module_.c_str(), 0));
        unsigned int length = 0;
        unsigned int error = 0;
        const char *json = GpbXmlCompiler_Encode(compiler.get(), document, &length, &error);
        take(std::string_view(json, json == nullptr ? 0 : length));
    }

    static size_t LeavesIn(const std::string &text)
    {
        size_t found = 0;
        for (const char *name : {"\"leaf-", "\"subscription-name\""})
        {
            for (size_t at = text.find(name); at != std::string::npos; at = text.find(name, at + 1))
            {
                ++found;
            }
        }
        return found;
    }

    // Ratios mean nothing unless all ways do the same work; libyang's text differs in names, empty leaves and lists.
    void CheckThatWaysAgree() const
    {
        const std::string text = Walk().get();
        const auto expect = [&](std::string_view written)
        {
            if (written != text)
            {
                throw std::runtime_error("the library and the walk write " + module_ + " differently");
            }
        };
        Request(expect);
        RequestFromText(expect);
        RequestFromTextWithOneParser(expect);
        if (LeavesIn(text) != leaves_ || LeavesIn(Libyang()) != leaves_)
        {
            throw std::runtime_error("a way leaves out leaves of " + module_);
        }
    }

    GpbLibContext *context_;
    const ly_ctx *yang_;
    std::string module_;
    size_t leaves_;
    std::string text_;
    gpbbench::XmlParser parser_;
    gpbbench::XmlDocument document_;
};

void Keep(std::string_view text)
{
    benchmark::DoNotOptimize(text.data());
}

std::vector<gpbbench::Table> Plan(gpbbench::LibrarySession &session, const ly_ctx *yang,
                                  std::vector<std::unique_ptr<Subject>> &subjects)
{
    // Twenty leaves are mostly the fixed cost of a request, so growth is looked at from 2,000 on.
    gpbbench::Table parsed = {{{"parsed document", {}, 2}}, {"request", "cjson_walk"}};
    gpbbench::Table text = {{{"document as text", {}, 2}}, {"request", "one_parser", "parse", "libyang"}};
    for (const size_t leaves : gpbbench::DOCUMENT_SIZES)
    {
        if (!gpbbench::TakesPart(leaves))
        {
            continue;
        }
        subjects.push_back(std::make_unique<Subject>(session, yang, gpbbench::MakeTelemetryWorkload(leaves)));
        const Subject *subject = subjects.back().get();
        const size_t items = subject->Leaves();
        const std::string name = "size:" + std::to_string(leaves);
        parsed.series[0].names.push_back(name);
        gpbbench::Register(name, "request", items, [=] { subject->Request(Keep); });
        gpbbench::Register(name, "cjson_walk", items, [=] { benchmark::DoNotOptimize(subject->Walk().get()); });
        const std::string textName = "text:" + std::to_string(leaves);
        text.series[0].names.push_back(textName);
        gpbbench::Register(textName, "request", items, [=] { subject->RequestFromText(Keep); });
        gpbbench::Register(textName, "one_parser", items, [=] { subject->RequestFromTextWithOneParser(Keep); });
        gpbbench::Register(textName, "parse", items, [=] { subject->ParseText(); });
        gpbbench::Register(textName, "libyang", items, [=] { benchmark::DoNotOptimize(subject->Libyang().data()); });
    }
    return {parsed, text};
}

} // namespace

int main(int argc, char **argv)
{
    int result = 0;
    {
        gpbbench::LibrarySession session;
        std::unique_ptr<ly_ctx, YangFree> yang;
        std::vector<std::unique_ptr<Subject>> subjects;
        result = gpbbench::RunTables(argc, argv,
                                     [&]
                                     {
                                         yang = MakeYangContext();
                                         return Plan(session, yang.get(), subjects);
                                     });
    }
    xmlCleanupParser();
    return result;
}
