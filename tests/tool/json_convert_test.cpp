/** gpbtool json: XML documents to JSON, without losing anything unasked. */
#include <gmock/gmock.h>

#include "json_fixture.h"

namespace
{

using gpbtest::ProcessResult;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class JsonConvert : public gpbtest::JsonToolTest
{
protected:
    ProcessResult convert(const std::string &elements, const std::vector<std::string> &more = {}) const
    {
        return run("json", write("doc.xml", "<top>\n" + elements + "\n</top>"), more);
    }

    /** The members that these elements become. */
    std::string members(const std::string &elements, const std::vector<std::string> &more = {}) const
    {
        const ProcessResult result = convert(elements, more);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        EXPECT_EQ(result.err, "");
        EXPECT_THAT(result.out, StartsWith("{\"top\":{"));
        return result.out.substr(8, result.out.rfind("}}\n") - 8);
    }

    /** "LINE: <element>: what is wrong" for a document with one finding. */
    std::string findingFor(const std::string &elements, const std::vector<std::string> &more = {}) const
    {
        const ProcessResult result = convert(elements, more);
        EXPECT_EQ(result.exitCode, 6);
        EXPECT_EQ(result.out, "");
        EXPECT_THAT(result.err, StartsWith("error: " + path("doc.xml") + ": 1 element of the document cannot be"));
        const std::string place = "\n  " + path("doc.xml") + ":";
        const std::size_t begin = result.err.find(place) + place.size();
        return result.err.substr(begin, result.err.find('\n', begin) - begin);
    }
};

TEST_F(JsonConvert, TypesOfValues)
{
    EXPECT_EQ(members("<name>a&lt;\"b</name><i32>-5</i32><u32>7</u32><real>1.5</real><flag>false</flag>"),
              R"("name":"a<\"b","i32":-5,"u32":7,"real":1.5,"flag":false)");
    EXPECT_EQ(members("<color>up-2</color><flag/><raw>AA==</raw>"), R"("color":"up-2","flag":true,"raw":"AA==")");
    EXPECT_EQ(members("<box><name>a</name></box><box><size>1</size></box><tags>x</tags><tags>y</tags>"),
              R"("box":[{"name":"a"},{"size":1}],"tags":["x","y"])");
    EXPECT_EQ(members("<presence>\n</presence><cable>c</cable><plug><pins>1</pins></plug>"),
              R"("presence":{},"cable":"c","plug":{"pins":1})");
}

TEST_F(JsonConvert, Integers64)
{
    const std::string elements = "<i64>-999999999999999</i64><u64>4503599627370496</u64>";
    EXPECT_EQ(members(elements), R"("i64":"-999999999999999","u64":"4503599627370496")");
    EXPECT_EQ(members(elements, {"--numbers64"}), R"("i64":-999999999999999,"u64":4503599627370496)");
    EXPECT_EQ(members("<u64>18446744073709551615</u64>"), R"("u64":"18446744073709551615")");
    // Printing cuts some numbers that a double would hold, such as that of 2 to the 53rd.
    for (const std::string leaf :
         {"<u64>9007199254740992</u64>", "<u64>9007199254740993</u64>", "<u64>18446744073709551615</u64>",
          "<i64>-9007199254740993</i64>", "<i64>9223372036854775807</i64>"})
    {
        const std::string name = leaf.substr(0, 5);
        const std::string value = leaf.substr(5, leaf.size() - 11);
        EXPECT_EQ(findingFor(leaf, {"--numbers64"}),
                  "2: " + name + ": \"" + value + "\" is no number that JSON can hold as it is");
    }
    EXPECT_EQ(convert("<u64>18446744073709551615</u64>", {"--numbers64", "--lenient"}).exitCode, 0);
}

TEST_F(JsonConvert, WhatDoesNotFitTheModule)
{
    EXPECT_EQ(findingFor("<zz>1</zz>"), "2: <zz>: unknown in message j.Top");
    EXPECT_EQ(findingFor("<i32>abc</i32>"), "2: <i32>: \"abc\" is no value of type int32");
    EXPECT_EQ(findingFor("<u64>x</u64>", {"--numbers64"}), "2: <u64>: \"x\" is no value of type uint64");
    EXPECT_EQ(findingFor("<name/>"), "2: <name>: empty, but the module wants a value of type string");
}

TEST_F(JsonConvert, WhatJsonDoesNotHold)
{
    EXPECT_EQ(findingFor("<real>nan</real>"), "2: <real>: \"nan\" is no number that JSON can hold as it is");
    EXPECT_EQ(findingFor("<small-real>inf</small-real>"),
              "2: <small-real>: \"inf\" is no number that JSON can hold as it is");
    EXPECT_EQ(findingFor("<name>a</name>\n<name>b</name>"),
              "3: <name>: stands twice in its element, which gives an object with two members of one name");
    EXPECT_EQ(findingFor("<presence><size>1</size></presence>\n<presence><name>b</name></presence>"),
              "3: <presence>: stands twice in its element, which gives an object with two members of one name");
}

TEST_F(JsonConvert, ListsInListsGoToTheFirstArray)
{
    const std::string elements = "<level>\n<levels><levels><name>a</name></levels></levels></level>";
    EXPECT_EQ(findingFor(elements),
              "3: <levels>: goes to the list in line 2: the library makes one array of all lists of that type");
    const ProcessResult lenient = convert(elements, {"--lenient"});
    EXPECT_EQ(lenient.exitCode, 0);
    EXPECT_EQ(lenient.out, "{\"top\":{\"level\":{\"levels\":[{},{\"name\":\"a\"}]}}}\n");
    EXPECT_EQ(lenient.err, "warning: " + path("doc.xml") +
                               ": 1 element skipped or with a value that does not fit, run with -v to see them\n");
}

TEST_F(JsonConvert, DeepDocumentsAreConverted)
{
    std::string elements = "<name>x</name>";
    std::string expected = "\"name\":\"x\"";
    for (int i = 0; i < 200; ++i)
    {
        elements = "<level>" + elements + "</level>";
        expected = "\"level\":{" + expected + "}";
    }
    EXPECT_EQ(members(elements), expected);
}

TEST_F(JsonConvert, RootElements)
{
    const ProcessResult unknown = run("json", write("doc.xml", "<other><name>a</name></other>"));
    EXPECT_EQ(unknown.exitCode, 4);
    EXPECT_EQ(unknown.out, "");
    EXPECT_THAT(unknown.err, HasSubstr(": root element <other> has no message in module j (code 3)\n"));
    for (const std::size_t length : {128U, 300U})
    {
        const std::string name(length, 'n');
        const ProcessResult longName = run("json", write("doc.xml", "<" + name + "><a>1</a></" + name + ">"));
        EXPECT_EQ(longName.exitCode, 4);
        EXPECT_THAT(longName.err, HasSubstr(": the name of the root element has more than 127 characters"));
    }
    for (const char *text : {"<top/>", "<top>text</top>"})
    {
        const ProcessResult empty = run("json", write("doc.xml", text));
        EXPECT_EQ(empty.exitCode, 4) << text;
        EXPECT_THAT(empty.err, HasSubstr(": nothing encoded: the root element is no container\n")) << text;
    }
}

TEST_F(JsonConvert, Outputs)
{
    const std::string document = write("doc.xml", "<top><name>a</name></top>");
    write("out/kept.json", "earlier");
    EXPECT_EQ(run("json", document, {"-o", path("out/new.json")}).exitCode, 0);
    EXPECT_EQ(gpbtest::readFile(path("out/new.json")), "{\"top\":{\"name\":\"a\"}}\n");
    EXPECT_EQ(run("encode", path("out/new.json"), {"--text"}).out, "name: \"a\"\n");

    EXPECT_EQ(run("json", write("bad.xml", "<top><zz>1</zz></top>"), {"-o", path("out/kept.json")}).exitCode, 6);
    EXPECT_EQ(gpbtest::readFile(path("out/kept.json")), "earlier");
    EXPECT_EQ(run("json", document, {"-o", path("none/new.json")}).exitCode, 5);
    EXPECT_EQ(run("json", write("cut.xml", "<top><name>")).exitCode, 3);
    EXPECT_EQ(run("json", path("none.xml")).exitCode, 3);
    EXPECT_EQ(tool("json", {"--module", "none", document}).exitCode, 2);
    EXPECT_EQ(tool("json", {document}).exitCode, 1);
}

} // namespace
