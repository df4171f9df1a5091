#include <gmock/gmock.h>

#include "template_fixture.h"

namespace
{

using gpbtest::ProcessResult;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class TemplateBuild : public gpbtest::TemplateTest
{
protected:
    /** A build that fails leaves an earlier output as it was. */
    void expectFailure(int exitCode, const std::string &message, const std::string &schemaPath,
                       const std::vector<std::string> &more = {})
    {
        write("out.bin", "earlier");
        const ProcessResult result = build(schemaPath, "out.bin", more);
        EXPECT_EQ(result.exitCode, exitCode);
        EXPECT_EQ(result.out, "");
        EXPECT_THAT(result.err, HasSubstr(message));
        EXPECT_THAT(result.err, HasSubstr("\n  hint: "));
        EXPECT_EQ(gpbtest::readFile(path("out.bin")), "earlier");
    }

    void expectMapError(const std::string &map, const std::string &message)
    {
        const std::string file = write("map.json", map);
        expectFailure(3, "error: " + file + message, "/top/row", {"--ids", file});
    }
};

TEST_F(TemplateBuild, ATopNodeWithChildrenIsItsNameAlone)
{
    const ProcessResult result = build("/top", "out.bin");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(gpbtest::readFile(path("out.bin")),
              std::string("\x06\x0d\xfe\xff\x1f\x09\x10\x00\x1a\x03top\x20\x00", 15));
}

TEST_F(TemplateBuild, NumbersByRuleWithoutAMap)
{
    EXPECT_EQ(build("/top/row", "out.bin").err, "");
    EXPECT_EQ(show({path("out.bin")}).out, "top                                            class 0x0\n"
                                           "`-- row = 2          message repeated          class 0x2\n"
                                           "    |-- k = 1        string key                field 1    \"2.1\"\n"
                                           "    |-- num = 2      int32                     field 2    2.2\n"
                                           "    |-- many = 3     uint32 repeated packable  field 3    2.3\n"
                                           "    |-- one = 20     message case              class 0x3\n"
                                           "    |   `-- x-y = 1  bool                      field 1    3.1\n"
                                           "    `-- two = 21     message case              class 0x4\n"
                                           "        `-- z = 1    bytes                     field 1    \"4.1\"\n");
}

TEST_F(TemplateBuild, TakesIdsFromAMap)
{
    const std::string map = write("map.json", R"({"module": "t", "classes": {
        "/top/row": {"class": 4097, "fields": {"k": {"id": 10, "map": 3}, "many": 300}},
        "/top/row/two": {"class": 4098, "fields": {"z": 1}}}})");
    const ProcessResult result = build("/top/row", "out.bin", {"--ids", map});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(show({path("out.bin")}).out, "top                                          class 0x0\n"
                                           "`-- row = 2        message repeated          class 0x1001\n"
                                           "    |-- k = 1      string key                field 10      \"1001.a\"\n"
                                           "    |-- many = 3   uint32 repeated packable  field 300     1001.2c\n"
                                           "    |-- one = 20   message case              class 0x0\n"
                                           "    `-- two = 21   message case              class 0x1002\n"
                                           "        `-- z = 1  bytes                     field 1       \"1002.1\"\n");
}

TEST_F(TemplateBuild, AncestorsGiveTheirKeysOnly)
{
    EXPECT_EQ(build("/top/row/one", "out.bin").exitCode, 0);
    EXPECT_EQ(show({path("out.bin")}).out, "top                                    class 0x0\n"
                                           "`-- row = 2          message repeated  class 0x2\n"
                                           "    |-- k = 1        string key        field 1    \"2.1\"\n"
                                           "    `-- one = 20     message case      class 0x3\n"
                                           "        `-- x-y = 1  bool              field 1    3.1\n");
}

TEST_F(TemplateBuild, WarnsAboutLeavesThatAreLeftOut)
{
    const ProcessResult result = build("/top/row/inner", "out.bin");
    EXPECT_EQ(result.exitCode, 0);
    const std::string rest = " is not in the template: t.proto has no integer, enum, string or bytes field of that "
                             "name there\n";
    EXPECT_EQ(result.err, "warning: /top/row/inner/real" + rest + "warning: /top/row/inner/lost" + rest);
}

TEST_F(TemplateBuild, LeavesWithoutAnIdInTheMapAreNoSurprise)
{
    const std::string map =
        write("map.json", R"({"module":"t","classes":{"/top/row/inner":{"class":9,"fields":{"deep":1}}}})");
    EXPECT_EQ(build("/top/row/inner", "out.bin", {"--ids", map}).err, "");
}

TEST_F(TemplateBuild, ASkippedNodeHasNoMessage)
{
    writeYang("flat", "container top { container wrap { list row { key k; leaf k { type string; } } } }");
    writeModule("flat", "syntax = 'proto3'; package flat; message Top { message Row { string k = 1; } "
                        "repeated Row row = 4; }");
    const std::string map = write("map.json", R"({"module":"flat","classes":{"/top/wrap":{"skip":true},
        "/top/wrap/row":{"class":5,"fields":{"k":1}}}})");
    const std::vector<std::string> arguments = {"--yang-path", path("yang"), "--module",      "flat",  "--ids",
                                                map,           "-o",         path("out.bin"), "--path"};
    std::vector<std::string> row = arguments;
    row.push_back("/top/wrap/row");
    EXPECT_EQ(run("build", row).err, "");
    EXPECT_EQ(show({path("out.bin")}).out, "top                              class 0x0\n"
                                           "`-- row = 4    message repeated  class 0x5\n"
                                           "    `-- k = 1  string key        field 1    \"5.1\"\n");
}

TEST_F(TemplateBuild, ToStandardOutput)
{
    const ProcessResult result =
        run("build", {"--yang-path", path("yang"), "--module", "t", "--path", "/top", "-o", "-"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out.size(), 15u);
}

TEST_F(TemplateBuild, SearchPathOfTheProtoFile)
{
    writeModule("t", "syntax = 'proto3'; package t;");
    expectFailure(4, "error: /top does not fit t.proto\n", "/top");
    write("other/t.proto", "syntax = 'proto3'; package t; message Top { }");
    EXPECT_EQ(build("/top", "out.bin", {"--install-path", path("other")}).exitCode, 0);
    EXPECT_EQ(build("/top", "out.bin", {"--patch-dir", "other"}).exitCode, 0);
}

TEST_F(TemplateBuild, VerboseShowsTheLibrarysProgress)
{
    const ProcessResult result = build("/top", "out.bin", {"-vv"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.err, HasSubstr("library[1]: gpblib updates protofile class info begin (path=/top)\n"));
    EXPECT_THAT(result.err, HasSubstr("library[1]: gpb(0x):06 0d fe ff 1f 09 10 00 1a 03 74 6f 70 20 00\n"));
}

TEST_F(TemplateBuild, MoreThanOneYangPath)
{
    write("more/base.yang", "module base { namespace 'urn:b'; prefix b; typedef name { type string; } }");
    writeYang("t", "import base { prefix b; } container top { leaf label { type b:name; } }");
    expectFailure(2, "error: YANG module t does not load\n  no base.yang in " + path("yang") + "\n", "/top");
    const ProcessResult result = build("/top", "out.bin", {"--yang-path", path("more")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(show({path("out.bin")}).out, "top                    class 0x0\n"
                                           "`-- label = 1  string  field 1    \"1.1\"\n");
}

TEST_F(TemplateBuild, YangThatDoesNotLoad)
{
    writeYang("t", "\ncontainer top {\n  leaf label { typ string; }\n}");
    expectFailure(2, "error: YANG module t does not load\n  " + path("yang/t.yang") + ":3: ", "/top");
    writeYang("t", "container top { leaf label { type nothing; } }");
    expectFailure(2, " (at /t:top/label)", "/top");
}

TEST_F(TemplateBuild, YangPathThatIsNoDirectory)
{
    expectFailure(2, "error: " + path("nowhere") + " is not a directory\n", "/top", {"--yang-path", path("nowhere")});
}

TEST_F(TemplateBuild, PathsThatLeadNowhere)
{
    expectFailure(2, "error: /top/raw: no container, list or notification raw in /top; there is: row\n", "/top/raw");
    expectFailure(2, "error: \"top\" is no path; it should look like /top/list or /module:top/list\n", "top");
    expectFailure(2, "error: /top/row/way: a choice is no class; its cases can be\n", "/top/row/way");
}

TEST_F(TemplateBuild, MapsThatCannotBeUsed)
{
    expectMapError("{\n oops", ":2:3: this is no JSON\n");
    expectMapError(R"({"module":"m","classes":{}})", ":1:2: the map is not for module t\n");
    expectMapError(R"({"module":"t","classes":{"/top/row":{"class":1,"fields":{"kk":1}}}})",
                   ":1:58: /top/row has no leaf kk\n");
    expectMapError(R"({"module":"t","classes":{"/top":{"class":1}}})", ": no class id for /top/row\n");
    expectFailure(3, "error: " + path("none.json") + ": cannot be read: No such file", "/top",
                  {"--ids", path("none.json")});
}

TEST_F(TemplateBuild, AProtoFileThatIsNotThere)
{
    writeYang("alone", "container top { }");
    const ProcessResult result =
        run("build", {"--yang-path", path("yang"), "--module", "alone", "--path", "/top", "-o", path("out.bin")});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.err, StartsWith("error: module alone not found; looked for alone.proto in\n"));
    EXPECT_FALSE(gpbtest::exists(path("out.bin")));
}

TEST_F(TemplateBuild, AClassThatDoesNotFitItsProtoFile)
{
    writeModule("t",
                "syntax = 'proto3'; package t; message Top { message Row { string k = 1; } repeated Row row = 2; }");
    expectFailure(4,
                  "library[0]: protofile has not this node = inner\n"
                  "library[0]: protofile has not this node = inner\n"
                  "library[0]: failed to generate gpb template\n"
                  "error: /top/row/inner does not fit t.proto\n",
                  "/top/row/inner");
    expectFailure(4, "library[0]: protofile has not this node = way_one\n", "/top/row/one");
}

TEST_F(TemplateBuild, OutputThatCannotBeWritten)
{
    const ProcessResult result =
        run("build", {"--yang-path", path("yang"), "--module", "t", "--path", "/top", "-o", path("none/out.bin")});
    EXPECT_EQ(result.exitCode, 5);
    EXPECT_THAT(result.err, HasSubstr("error: " + path("none/out.bin") + ": cannot be written: No such file"));
    EXPECT_EQ(
        run("build", {"--yang-path", path("yang"), "--module", "t", "--path", "/top", "-o", "/dev/full"}).exitCode, 5);
}

TEST_F(TemplateBuild, WrongCommandLines)
{
    const std::vector<std::string> all = {"--yang-path", path("yang"), "--module", "t",
                                          "--path",      "/top",       "-o",       path("out.bin")};
    for (std::size_t left = 0; left < all.size(); left += 2)
    {
        std::vector<std::string> arguments = all;
        const auto first = arguments.begin() + static_cast<std::ptrdiff_t>(left);
        const std::string option = *first;
        arguments.erase(first, first + 2);
        const ProcessResult result = run("build", arguments);
        EXPECT_EQ(result.exitCode, 1) << option;
        EXPECT_THAT(result.err, HasSubstr(option)) << option;
    }
    EXPECT_EQ(build("/top", "out.bin", {"--unknown"}).exitCode, 1);
    EXPECT_EQ(build("/top", "out.bin", {"extra"}).exitCode, 1);
    EXPECT_FALSE(gpbtest::exists(path("out.bin")));
    EXPECT_EQ(tool("template", {}).exitCode, 1);
    EXPECT_EQ(run("fly", {}).exitCode, 1);
}

TEST_F(TemplateBuild, HelpNamesOptionsAndExitCodes)
{
    const ProcessResult result = run("build", {"--help"});
    EXPECT_EQ(result.exitCode, 0);
    for (const char *text : {"--yang-path DIR", "--module M", "--path /A/B", "--ids MAP.json", "--install-path DIR",
                             "--output T.bin", "2  module, message or schema path", "4  the document"})
    {
        EXPECT_THAT(result.out, HasSubstr(text));
    }
}

TEST_F(TemplateBuild, TheExampleFromEndToEnd)
{
    const std::string examples = EXAMPLES_DIR;
    const std::vector<std::string> arguments = {"--yang-path",
                                                examples + "yang",
                                                "--install-path",
                                                examples + "modules",
                                                "--module",
                                                "example-interfaces",
                                                "--path",
                                                "/interfaces/interface/ipv4-address",
                                                "--ids",
                                                examples + "yang/example-interfaces.ids.json",
                                                "-o",
                                                path("out.bin")};
    const ProcessResult result = run("build", arguments);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(show({path("out.bin")}).out,
              "interfaces                                           class 0x0\n"
              "`-- interface = 1                  message repeated  class 0x1001\n"
              "    |-- name = 1                   string key        field 1       \"1001.1\"\n"
              "    `-- routed = 17                message case      class 0x1001\n"
              "        `-- ipv4-address = 3       message repeated  class 0x1002\n"
              "            |-- ip = 1             string key        field 1       \"1002.1\"\n"
              "            |-- prefix-length = 2  uint32            field 2       1002.2\n"
              "            |-- origin = 3         enum              field 3       1002.3\n"
              "            `-- secondary = 4      bool              field 4       1002.4\n");
}

TEST_F(TemplateBuild, ATemplateThatIsLongerThanHostsAreTold)
{
    std::string leaves;
    std::string fields;
    for (int i = 1; i <= 2500; ++i)
    {
        const std::string number = std::to_string(i);
        leaves += "leaf leaf-number-" + number + " { type uint32; }\n";
        fields += "uint32 leaf_number_" + number + " = " + number + ";\n";
    }
    writeYang("t", "container top {" + leaves + "}");
    writeModule("t", "syntax = 'proto3'; package t; message Top {" + fields + "}");
    const ProcessResult result = build("/top", "out.bin");
    EXPECT_EQ(result.exitCode, 0);
    const std::size_t size = gpbtest::readFile(path("out.bin")).size();
    EXPECT_GT(size, 65535u);
    EXPECT_EQ(result.err, "warning: the template has " + std::to_string(size) +
                              " bytes; a host that asks the library for it gets a length of 16 bits\n");
    const ProcessResult shown = show({path("out.bin")});
    EXPECT_EQ(shown.exitCode, 0);
    EXPECT_THAT(shown.out, HasSubstr("`-- leaf-number-2500 = 2500"));
}

} // namespace
