#include <gmock/gmock.h>

#include "tool_fixture.h"

namespace
{

using gpbtest::ProcessResult;
using ::testing::HasSubstr;

// name: "a", i32: 5
constexpr const char *kBytes = "\x0a\x01"
                               "a\x10\x05";

class Decode : public gpbtest::ToolTest
{
protected:
    ProcessResult decode(const std::string &bytes, const std::vector<std::string> &more = {}) const
    {
        std::vector<std::string> arguments = {"--module", "m", write("in.gpb", bytes)};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return tool("decode", arguments);
    }
};

TEST_F(Decode, TextFormByDefault)
{
    const ProcessResult result = decode(kBytes);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "name: \"a\"\ni32: 5\n");
    EXPECT_EQ(result.err, "");
}

TEST_F(Decode, Json)
{
    const ProcessResult result = decode(kBytes, {"--json"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "{\n \"name\": \"a\",\n \"i32\": 5\n}\n");
}

TEST_F(Decode, ToAFileAndFromStandardInput)
{
    gpbtest::ProcessSetup process = setup("decode", {"--module", "m", "-", "-o", path("out.txt")});
    process.input = kBytes;
    EXPECT_EQ(gpbtest::runProcess(process).exitCode, 0);
    EXPECT_EQ(gpbtest::readFile(path("out.txt")), "name: \"a\"\ni32: 5\n");
}

TEST_F(Decode, AnEmptyFileIsAnEmptyMessage)
{
    const ProcessResult result = decode("");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "");
}

TEST_F(Decode, MessageByNameWithAndWithoutPackage)
{
    const std::string box = "\x0a\x01"
                            "b";
    EXPECT_EQ(decode(box, {"--message", "Top.Box"}).out, "name: \"b\"\n");
    EXPECT_EQ(decode(box, {"--message", "m.Top.Box"}).out, "name: \"b\"\n");
}

TEST_F(Decode, UnknownMessageListsThoseThatAre)
{
    const ProcessResult result = decode(kBytes, {"--message", "Nothing"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.err, "error: m.proto has no message Nothing; it has:\n  Top\n"
                          "  hint: name one of these, or a nested one as Outer.Inner\n");
}

TEST_F(Decode, SeveralTopMessagesNeedAName)
{
    writeModule("m", "syntax = 'proto3'; package m; message Top { string name = 1; } message Down { int32 i = 2; }");
    const ProcessResult result = decode(kBytes);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "error: m.proto has 2 top-level messages:\n  Top\n  Down\n  hint: name one with --message\n");
    EXPECT_EQ(decode("\x10\x05", {"--message", "Down"}).out, "i: 5\n");
}

TEST_F(Decode, BytesThatAreNoMessage)
{
    const ProcessResult result = decode("\x0a\x7f short", {"-o", path("out.txt")});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "error: " + path("in.gpb") +
                              ": no encoded message of type m.Top\n"
                              "  hint: is it the right module and message, and is the file complete?\n");
    EXPECT_FALSE(gpbtest::exists(path("out.txt")));
}

TEST_F(Decode, FieldsThatTheModuleDoesNotKnow)
{
    const ProcessResult result = decode("\xf8\x07\x05");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "127: 5\n");
    EXPECT_EQ(result.err,
              "warning: " + path("in.gpb") + ": 1 fields are unknown in m.Top; is it the right module and message?\n");
}

TEST_F(Decode, RequiredFieldsThatAreMissing)
{
    writeModule("m", "syntax = 'proto2'; package m; message Top { required string id = 1; optional int32 n = 2; }");
    const ProcessResult result = decode("\x10\x05");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "n: 5\n");
    EXPECT_EQ(result.err, "warning: " + path("in.gpb") + ": required fields are missing: id\n");
}

TEST_F(Decode, InputThatCannotBeRead)
{
    const std::vector<std::pair<std::string, std::string>> inputs = {{path("none.gpb"), "No such file or directory"},
                                                                     {m_dir.makeDirectory("dir"), "Is a directory"}};
    for (const auto &[input, reason] : inputs)
    {
        const ProcessResult result = tool("decode", {"--module", "m", input});
        EXPECT_EQ(result.exitCode, 3);
        EXPECT_EQ(result.err,
                  "error: " + input + ": cannot be read: " + reason + "\n  hint: give a file that can be read\n");
    }
}

TEST_F(Decode, MissingModule)
{
    const ProcessResult result = tool("decode", {"--module", "none", write("in.gpb", kBytes)});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.err, HasSubstr("error: module none not found"));
}

TEST_F(Decode, OutputThatCannotBeWritten)
{
    EXPECT_EQ(decode(kBytes, {"-o", path("none/out.txt")}).exitCode, 5);
}

} // namespace
