/** gpbtool bench: its fields parse and add up. */
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <cjson/cJSON.h>

#include <cmath>
#include <memory>
#include <sstream>

#include "json_fixture.h"

namespace
{

using gpbtest::ProcessResult;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr const char *kPhases[] = {"parse", "create", "walk", "serialize", "destroy", "free"};
constexpr const char *kTimes[] = {"median_ns", "p10_ns", "p90_ns", "mean_ns", "share", "ns_per_leaf"};

struct TreeDeleter
{
    void operator()(cJSON *tree) const { cJSON_Delete(tree); }
};
using Tree = std::unique_ptr<cJSON, TreeDeleter>;

double number(const cJSON *object, const char *name)
{
    const cJSON *item = cJSON_GetObjectItemCaseSensitive(object, name);
    EXPECT_TRUE(cJSON_IsNumber(item) != 0) << name;
    return cJSON_IsNumber(item) != 0 ? item->valuedouble : std::nan("");
}

void expectClose(double a, double b, const char *what)
{
    EXPECT_NEAR(a, b, 1e-9 * std::fabs(b)) << what;
}

class Bench : public gpbtest::JsonToolTest
{
protected:
    std::string xmlDocument() const
    {
        return write("doc.xml",
                     "<top><name>a</name><box><name>b</name><size>1</size></box><presence>\n</presence></top>");
    }
    std::string jsonDocument() const
    {
        return write("doc.json",
                     R"({"j:top": {"j:name": "a", "j:colors": ["red", "up-2"], "j:box": [{"j:size": 1}]}})");
    }

    ProcessResult bench(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.end(), {"--module", "j", "--seconds", "0.05"});
        return tool("bench", arguments);
    }

    Tree report(std::vector<std::string> arguments) const
    {
        arguments.emplace_back("--json");
        const ProcessResult result = bench(arguments);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        EXPECT_EQ(result.err, "");
        return Tree(cJSON_Parse(result.out.c_str()));
    }

    /** What holds for every report. */
    static void expectConsistent(const cJSON *report)
    {
        const cJSON *phases = cJSON_GetObjectItemCaseSensitive(report, "phases");
        const cJSON *total = cJSON_GetObjectItemCaseSensitive(report, "total");
        ASSERT_EQ(cJSON_GetArraySize(phases), 6);
        for (const char *name : kTimes)
        {
            double sum = 0;
            for (const char *phase : kPhases)
            {
                sum += number(cJSON_GetObjectItemCaseSensitive(phases, phase), name);
            }
            expectClose(sum, number(total, name), name);
        }
        for (const char *phase : kPhases)
        {
            const cJSON *times = cJSON_GetObjectItemCaseSensitive(phases, phase);
            EXPECT_GE(number(times, "p10_ns"), 0) << phase;
            EXPECT_GE(number(times, "median_ns"), number(times, "p10_ns")) << phase;
            EXPECT_GE(number(times, "p90_ns"), number(times, "median_ns")) << phase;
        }
        const double median = number(total, "median_ns");
        EXPECT_GT(median, 0);
        expectClose(number(total, "share"), 1, "share");
        expectClose(number(report, "documents_per_second"), 1e9 / median, "documents_per_second");
        expectClose(number(report, "mb_per_second"), number(report, "document_bytes") * 1e3 / median, "mb_per_second");
        expectClose(number(report, "ns_per_leaf"), median / number(report, "leaves"), "ns_per_leaf");
        EXPECT_GE(number(report, "repetitions"), 5);
        EXPECT_NEAR(number(report, "seconds"), number(total, "mean_ns") * number(report, "repetitions") / 1e9, 1e-6);
        EXPECT_GT(number(report, "module_load_ns"), 0);
    }
};

TEST_F(Bench, JsonReportOfAnXmlDocument)
{
    const std::string document = xmlDocument();
    const Tree tree = report({document});
    ASSERT_NE(tree, nullptr);
    expectConsistent(tree.get());
    EXPECT_STREQ(cJSON_GetObjectItemCaseSensitive(tree.get(), "module")->valuestring, "j");
    EXPECT_STREQ(cJSON_GetObjectItemCaseSensitive(tree.get(), "format")->valuestring, "xml");
    EXPECT_EQ(number(tree.get(), "document_bytes"), static_cast<double>(gpbtest::readFile(document).size()));
    EXPECT_EQ(number(tree.get(), "encoded_bytes"),
              static_cast<double>(tool("encode", {"--module", "j", document}).out.size()));
    EXPECT_EQ(number(tree.get(), "leaves"), 4);
}

TEST_F(Bench, JsonReportOfAJsonDocument)
{
    const std::string document = jsonDocument();
    const Tree tree = report({document, "--strip-prefixes"});
    ASSERT_NE(tree, nullptr);
    expectConsistent(tree.get());
    EXPECT_STREQ(cJSON_GetObjectItemCaseSensitive(tree.get(), "format")->valuestring, "json");
    EXPECT_EQ(number(tree.get(), "document_bytes"), static_cast<double>(gpbtest::readFile(document).size()));
    EXPECT_EQ(number(tree.get(), "encoded_bytes"),
              static_cast<double>(tool("encode", {"--module", "j", document, "--strip-prefixes"}).out.size()));
    EXPECT_EQ(number(tree.get(), "leaves"), 4);
}

TEST_F(Bench, Table)
{
    const ProcessResult result = bench({xmlDocument()});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(result.out, StartsWith("j, xml: 86 bytes in, 12 bytes out, 4 leaves\n"));
    EXPECT_THAT(result.out, HasSubstr(" documents/s, "));
    std::istringstream lines(result.out.substr(result.out.find("PHASE")));
    std::string line;
    std::getline(lines, line);
    double sum = 0;
    for (const char *phase : {"parse", "create", "walk", "serialize", "destroy", "free", "total"})
    {
        std::string name;
        double median = 0;
        ASSERT_TRUE(std::getline(lines, line));
        std::istringstream(line) >> name >> median;
        EXPECT_EQ(name, phase);
        if (name == "total")
        {
            EXPECT_NEAR(median, sum, 0.1) << "each is rounded to two digits";
        }
        sum += median;
    }
}

TEST_F(Bench, MessagesAreNotRepeated)
{
    const ProcessResult result = bench({xmlDocument(), "-vv"});
    EXPECT_EQ(result.exitCode, 0);
    const std::size_t said = result.err.find("Success to serialize");
    ASSERT_NE(said, std::string::npos) << result.err;
    EXPECT_EQ(result.err.find("Success to serialize", said + 1), std::string::npos);
}

TEST_F(Bench, DocumentsThatDoNotEncodeAsAWhole)
{
    const auto expectFailure = [&](const std::string &document, int code, const std::string &message)
    {
        const ProcessResult result = bench({document});
        EXPECT_EQ(result.exitCode, code) << document;
        EXPECT_EQ(result.out, "");
        EXPECT_THAT(result.err, HasSubstr("error: " + document + message));
        EXPECT_THAT(result.err, HasSubstr("\n  hint: "));
    };
    expectFailure(path("none.xml"), 3, ": cannot be read: No such file");
    expectFailure(write("cut.xml", "<top><name>"), 3, ":1: no well-formed XML");
    expectFailure(write("cut.json", "{\"top\":"), 3, ":1:8: no well-formed JSON");
    expectFailure(write("foreign.xml", "<other><a>1</a></other>"), 4, ": root element <other>");
    expectFailure(write("unknown.xml", "<top><zz>1</zz></top>"), 6, ": 1 element of the document");
    expectFailure(jsonDocument(), 4, ": top-level container \"j:top\"");
    ASSERT_EQ(mkfifo(path("pipe.xml").c_str(), 0600), 0);
    expectFailure(path("pipe.xml"), 3, ": no plain file");
    expectFailure(m_dir.makeDirectory("dir"), 3, ": no plain file");
}

TEST_F(Bench, WrongUse)
{
    const std::string document = xmlDocument();
    EXPECT_EQ(tool("bench", {"--module", "none", document}).exitCode, 2);
    EXPECT_EQ(tool("bench", {document}).exitCode, 1);
    EXPECT_EQ(tool("bench", {"--module", "j"}).exitCode, 1);
    EXPECT_EQ(bench({document, document}).exitCode, 1);
    const ProcessResult prefixes = bench({document, "--strip-prefixes"});
    EXPECT_EQ(prefixes.exitCode, 1);
    EXPECT_THAT(prefixes.err, HasSubstr("--strip-prefixes is for JSON documents"));
    for (const char *seconds : {"0", "-1", "601", "long", "nan"})
    {
        EXPECT_EQ(tool("bench", {"--module", "j", document, "--seconds", seconds}).exitCode, 1) << seconds;
    }
}

} // namespace
