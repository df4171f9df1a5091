/** --lossless: what the default loses gets through, and what is still lost is told with its place. */
#include <gmock/gmock.h>

#include "tool_fixture.h"

namespace
{

using gpbtest::ProcessResult;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

class Lossless : public gpbtest::ToolTest
{
protected:
    Lossless()
    {
        writeModule("n", R"(syntax = "proto3";
package n;
message Top {
    message Entry {
        message HowFixed { optional string value = 1; repeated string tag = 2; }
        message HowFree { optional int32 size = 1; }
        message Empty {}
        optional string key = 1;
        oneof how { HowFixed how_fixed = 2; HowFree how_free = 3; }
        optional string note = 4 [json_name = "n:note"];
        optional string note3 = 5 [json_name = "other:note"];
        Empty empty = 6;
        repeated Entry inner = 7;
    }
    repeated Entry entry = 1;
    optional uint64 big = 2;
    optional bool flag = 3;
    repeated uint32 number = 4;
    optional string a_b = 5 [json_name = "a.b"];
}
)");
    }

    /** Runs a subcommand with --lossless for module "n". */
    ProcessResult run(const std::string &command, const std::string &document,
                      const std::vector<std::string> &more = {}) const
    {
        std::vector<std::string> arguments = {"--module", "n", "--lossless", document};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return tool(command, arguments);
    }

    ProcessResult text(const std::string &name, const std::string &content,
                       const std::vector<std::string> &more = {}) const
    {
        std::vector<std::string> arguments = {"--text"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return run("encode", write(name, content), arguments);
    }
};

constexpr const char *kXml =
    "<top xmlns='urn:n'>\n"
    "  <a.b>x</a.b><flag/>\n"
    "  <entry><key>1</key><value/><note>n</note><note xmlns='urn:other'>o</note><empty/></entry>\n"
    "  <entry><key/><value>v<!-- --><![CDATA[w]]></value><tag>\na</tag></entry>\n"
    "</top>\n";
constexpr const char *kJson = R"({ "n:top": { "a.b": "x", "flag": [null], "entry": [
  { "key": "1", "value": "", "note": "n", "other:note": "o", "empty": {} },
  { "key": "", "value": "vw", "tag": ["\na"] } ] } })";
constexpr const char *kText =
    "entry {\n  key: \"1\"\n  how_fixed {\n    value: \"\"\n  }\n  note: \"n\"\n  note3: \"o\"\n"
    "  empty {\n  }\n}\n"
    "entry {\n  key: \"\"\n  how_fixed {\n    value: \"vw\"\n    tag: \"\\na\"\n  }\n}\n"
    "flag: true\na_b: \"x\"\n";

TEST_F(Lossless, KeepsWhatTheDefaultLoses)
{
    const ProcessResult xml = text("doc.xml", kXml);
    EXPECT_EQ(xml.err, "");
    EXPECT_EQ(xml.out, kText);
    EXPECT_EQ(xml.exitCode, 0);
    const ProcessResult json = text("doc.json", kJson);
    EXPECT_EQ(json.err, "");
    EXPECT_EQ(json.out, kText);
    EXPECT_EQ(tool("encode", {"--module", "n", "--text", path("doc.xml")}).exitCode, 6);
    EXPECT_EQ(tool("encode", {"--module", "n", "--text", path("doc.json")}).exitCode, 4);
}

TEST_F(Lossless, HoldsForEachDocumentOfADirectory)
{
    for (int i = 0; i < 6; ++i)
    {
        write("in/" + std::to_string(i) + ".xml", kXml);
    }
    const ProcessResult result = run("encode", path("in"), {"--text", "--jobs", "3", "--out-dir", path("out")});
    EXPECT_EQ(result.exitCode, 0);
    for (int i = 0; i < 6; ++i)
    {
        EXPECT_EQ(gpbtest::readFile(path("out/" + std::to_string(i) + ".txt")), kText);
    }
}

TEST_F(Lossless, SaysWhatIsStillLostInXml)
{
    const ProcessResult result =
        text("doc.xml", "<top xmlns='urn:n'>\n<big/>\n<big>1x</big>\n<none/>\n<entry><none>1</none>\n<size><key>1</key>"
                        "</size></entry>\n<entry>text</entry>\n<none><key>1</key></none><flag>\n</flag></top>\n");
    EXPECT_EQ(result.exitCode, 6);
    for (const char *line : {":2: <big>: empty, but the module wants a value of type uint64\n",
                             ":3: <big>: \"1x\" is no value of type uint64\n", ":4: <none>: unknown in message n.Top\n",
                             ":5: <none>: unknown in message n.Top.Entry\n", ":6: <size>: a leaf of type int32",
                             ":7: <entry>: unknown in message n.Top\n", ":8: <none>: unknown in message n.Top\n"})
    {
        EXPECT_THAT(result.err, HasSubstr(line));
    }
}

TEST_F(Lossless, SaysWhatIsStillLostInJson)
{
    const ProcessResult result =
        text("doc.json", "{\"top\": {\n\"big\": \"1x\",\n\"none\": 1,\n\"entry\": 5,\n\"number\": [1, null, [2]],\n"
                         "\"flag\": {},\n\"a.b\": [\"1\", \"2\"]}}");
    EXPECT_EQ(result.exitCode, 6);
    for (const char *line :
         {":2:1: \"big\": \"1x\" is no value of type uint64\n", ":3:1: \"none\": unknown in message n.Top\n",
          ":4:1: \"entry\": a number, but a list in the module\n",
          "\"number\": null, but a leaf-list of type uint32 in the module\n", "\"number\": an array in an array\n",
          ":6:1: \"flag\": an object, but a leaf of type bool in the module\n",
          ":7:1: \"a.b\": an array, but a leaf of type string in the module\n"})
    {
        EXPECT_THAT(result.err, HasSubstr(line));
    }
    const ProcessResult lenient =
        text("doc.json", "{\"top\": {\"none\": 1, \"entry\": 5, \"flag\": {}, \"a.b\": \"x\", \"number\": [1, 2]}}",
             {"--lenient"});
    EXPECT_EQ(lenient.exitCode, 0);
    EXPECT_EQ(lenient.out, "number: 1\nnumber: 2\na_b: \"x\"\n");
}

TEST_F(Lossless, NestsAsDeepAsTheLibraryGoes)
{
    const auto nested = [](int levels)
    {
        std::string open;
        std::string close;
        for (int i = 0; i < levels; ++i)
        {
            open += i == 0 ? "<entry>" : "<inner>";
            close = std::string(i == 0 ? "</entry>" : "</inner>") + close;
        }
        return "<top>" + open + "<key>k</key>" + close + "</top>";
    };
    EXPECT_EQ(text("doc.xml", nested(30)).exitCode, 0);
    const ProcessResult tooDeep = text("doc.xml", nested(31));
    EXPECT_EQ(tooDeep.exitCode, 6);
    EXPECT_THAT(tooDeep.err, HasSubstr("<inner>: nested deeper than 31 levels\n"));
}

TEST_F(Lossless, AnItemOfAJsonDocument)
{
    EXPECT_EQ(text("doc.json", kJson, {"--item", "/n:top/entry/1"}).out,
              "key: \"\"\nhow_fixed {\n  value: \"vw\"\n  tag: \"\\na\"\n}\n");
    const ProcessResult list = text("doc.json", kJson, {"--item", "/n:top/entry"});
    EXPECT_EQ(list.exitCode, 4);
    EXPECT_THAT(list.err, HasSubstr("is a list of 2 entries"));
}

TEST_F(Lossless, XmlToJson)
{
    const std::string document = "<top xmlns='urn:n'><a.b>x</a.b>"
                                 "<entry><key>1</key><inner><key>2</key></inner><note>n</note>"
                                 "<note xmlns='urn:other'>o</note></entry>"
                                 "<entry><key/><inner><key>3</key></inner></entry></top>";
    const ProcessResult result = run("json", write("doc.xml", document));
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out,
              "{\"top\":{\"a.b\":\"x\",\"entry\":[{\"key\":\"1\",\"inner\":[{\"key\":\"2\"}],\"note\":\"n\","
              "\"other:note\":\"o\"},{\"key\":\"\",\"inner\":[{\"key\":\"3\"}]}]}}\n");
    EXPECT_EQ(text("back.json", result.out).out, text("doc.xml", document).out);
}

TEST_F(Lossless, Bench)
{
    const ProcessResult result = run("bench", write("doc.xml", kXml), {"--seconds", "0.01"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.err, Not(HasSubstr("cannot be encoded")));
}

} // namespace
