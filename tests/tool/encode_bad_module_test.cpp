/** Modules that are not there or do not load: code, reason with its line, and nothing written. */
#include <gmock/gmock.h>

#include "tool_fixture.h"

namespace
{

using gpbtest::ProcessResult;
using ::testing::HasSubstr;

class EncodeBadModule : public gpbtest::ToolTest
{
protected:
    ProcessResult expectFailure(const std::string &module) const
    {
        const std::string document = write("doc.xml", "<top><name>a</name></top>");
        const ProcessResult result = tool("encode", {"--module", module, document, "-o", path("doc.gpb")});
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.out, "");
        EXPECT_FALSE(gpbtest::exists(path("doc.gpb")));
        return result;
    }
};

TEST_F(EncodeBadModule, MissingModuleListsThePlaces)
{
    const std::string install = m_dir.makeDirectory("install");
    m_dir.makeDirectory("patch");
    const ProcessResult result =
        tool("encode", {"--module", "none", "doc.xml", "--text", "--install-path", install, "--patch-dir", "patch"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.err,
              "error: module none not found; looked for none.proto in\n  " + install + " (install path)\n  " +
                  path("patch/ (patch dir)\n  ") + path("reslink/protobuf/ (reslink)\n") +
                  "  hint: add its directory with --install-path; \"gpbtool modules\" lists what is there\n");
}

TEST_F(EncodeBadModule, FileThatDoesNotParseNamesTheLine)
{
    writeModule("bad", "syntax = \"proto3\";\npackage bad;\nmessage Top {\n  strin name 1;\n}\n");
    const ProcessResult result = expectFailure("bad");
    EXPECT_THAT(result.err, HasSubstr("library[0]: load protofile failed\n"));
    EXPECT_THAT(result.err, HasSubstr("error: module bad does not load from " + path("reslink/protobuf/bad.proto") +
                                      "\n  bad.proto:4:"));
    EXPECT_THAT(result.err, HasSubstr("\n  hint: correct the file, or put one that loads ahead of it"));
}

TEST_F(EncodeBadModule, ImportOfWhatIsNotThere)
{
    writeModule("bad", "syntax = \"proto3\";\nimport \"nowhere.proto\";\nmessage Top { string name = 1; }\n");
    const ProcessResult result = expectFailure("bad");
    EXPECT_THAT(result.err, HasSubstr("nowhere.proto"));
    EXPECT_THAT(result.err, HasSubstr("\n  bad.proto:2:1: "));
}

TEST_F(EncodeBadModule, ManyProblemsAreCut)
{
    std::string text = "syntax = \"proto3\";\nmessage Top {\n";
    for (int i = 0; i < 12; ++i)
    {
        text += "  Unknown" + std::to_string(i) + " f" + std::to_string(i) + " = " + std::to_string(i + 1) + ";\n";
    }
    writeModule("bad", text + "}\n");
    EXPECT_THAT(expectFailure("bad").err, HasSubstr("\n  and 2 more\n"));
}

TEST_F(EncodeBadModule, NameThatTheLibraryWouldCut)
{
    const std::string name(58, 'n');
    writeModule(name, "syntax = 'proto3'; package n; message Top { string name = 1; }");
    const ProcessResult result = expectFailure(name);
    EXPECT_THAT(result.err, HasSubstr("names have at most 57 characters"));

    const std::string longest(57, 'n');
    writeModule(longest, "syntax = 'proto3'; package n; message Top { string name = 1; }");
    EXPECT_EQ(tool("encode", {"--module", longest, "--text", path("doc.xml")}).exitCode, 0);
}

TEST_F(EncodeBadModule, NamesThatLeaveTheSearchPath)
{
    write("secret/m.proto", "syntax = 'proto3'; package m; message Top { string name = 1; }");
    expectFailure("../../secret/m");
    expectFailure("");
    expectFailure(std::string(300, 'x'));
}

} // namespace
