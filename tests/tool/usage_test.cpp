#include <gmock/gmock.h>

#include "tool_fixture.h"

namespace
{

using gpbtest::ProcessResult;
using ::testing::HasSubstr;

class Usage : public gpbtest::ToolTest
{
protected:
    static ProcessResult run(const std::vector<std::string> &arguments)
    {
        gpbtest::ProcessSetup setup;
        setup.program = GPBTOOL_PROGRAM;
        setup.arguments = arguments;
        return gpbtest::runProcess(setup);
    }
};

TEST_F(Usage, HelpNamesSubcommandsAndExitCodes)
{
    const ProcessResult result = run({"--help"});
    EXPECT_EQ(result.exitCode, 0);
    for (const char *text :
         {"encode", "bench", "decode", "json", "attrs", "modules", "0  done", "1  wrong use", "2  module", "3  input",
          "4  the document", "5  output", "6  part of the document", "7  out of memory"})
    {
        EXPECT_THAT(result.out, HasSubstr(text));
    }
}

TEST_F(Usage, EachSubcommandHasHelpWithExitCodes)
{
    for (const char *command : {"encode", "bench", "decode", "json", "attrs", "modules"})
    {
        const ProcessResult result = run({command, "--help"});
        EXPECT_EQ(result.exitCode, 0) << command;
        EXPECT_THAT(result.out, HasSubstr("--work-path DIR")) << command;
        EXPECT_THAT(result.out, HasSubstr("Exit codes:")) << command;
    }
}

TEST_F(Usage, VersionIsPrinted)
{
    const ProcessResult result = run({"--version"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, ::testing::MatchesRegex("[0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST_F(Usage, WrongCommandLinesGiveOne)
{
    EXPECT_EQ(run({}).exitCode, 1);
    EXPECT_EQ(run({"fly"}).exitCode, 1);
    EXPECT_EQ(run({"encode"}).exitCode, 1);
    EXPECT_EQ(run({"encode", "--module", "m"}).exitCode, 1);
    EXPECT_EQ(run({"encode", "doc.xml"}).exitCode, 1);
    EXPECT_EQ(run({"encode", "--module", "m", "doc.xml", "--unknown"}).exitCode, 1);
    EXPECT_EQ(run({"encode", "--module", "m", "doc.xml", "-o", "x", "--out-dir", "y"}).exitCode, 1);
    EXPECT_EQ(run({"decode", "--module", "m"}).exitCode, 1);
    EXPECT_EQ(run({"modules", "extra"}).exitCode, 1);
}

TEST_F(Usage, InstallPathThatIsNoDirectory)
{
    const ProcessResult result = tool("modules", {"--install-path", path("nothing")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "error: --install-path: " + path("nothing/") +
                              " is not a directory\n  hint: give an existing directory\n");
}

TEST_F(Usage, PatchDirThatIsNoDirectory)
{
    const ProcessResult result = tool("modules", {"--patch-dir", "patch"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err,
              "error: --patch-dir: " + path("patch/") + " is not a directory\n  hint: give an existing directory\n");
}

TEST_F(Usage, PathLongerThanTheLibraryKeeps)
{
    const ProcessResult result = run({"modules", "--work-path", "/" + std::string(255, 'a')});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "error: --work-path: the path has more than 255 characters\n  hint: use a shorter path\n");
}

TEST_F(Usage, OneOutputForSeveralDocuments)
{
    const std::string one = write("one.xml", "<top><name>1</name></top>");
    const std::string two = write("two.xml", "<top><name>2</name></top>");
    for (const std::vector<std::string> &output :
         std::vector<std::vector<std::string>>{{}, {"-o", path("out.gpb")}, {"--text"}})
    {
        std::vector<std::string> arguments = {one, two};
        arguments.insert(arguments.end(), output.begin(), output.end());
        const ProcessResult result = encode(arguments);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, "error: several documents cannot share one output\n"
                              "  hint: give --out-dir DIR to get one file for each\n");
    }
    EXPECT_FALSE(gpbtest::exists(path("out.gpb")));
}

TEST_F(Usage, TwoDocumentsOfTheSameName)
{
    const std::string one = write("a/doc.xml", "<top><name>1</name></top>");
    const std::string two = write("b/doc.xml", "<top><name>2</name></top>");
    const ProcessResult result = encode({one, two, "--out-dir", path("out")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "error: " + two + ": another document would be written to " + path("out/doc.gpb") +
                              " too\n  hint: encode documents of the same name in separate calls\n");
    EXPECT_FALSE(gpbtest::exists(path("out")));
}

TEST_F(Usage, NoMemoryIsAnErrorOfItsOwn)
{
    gpbtest::ProcessSetup process = setup("modules", {});
    process.environment = {{PRELOAD_VARIABLE, PRELOAD_NO_MEMORY_PLATFORM},
                           {"ASAN_OPTIONS", "verify_asan_link_order=0"}};
    const ProcessResult result = gpbtest::runProcess(process);
    EXPECT_EQ(result.exitCode, 7);
    EXPECT_EQ(result.err, "error: the library cannot be initialised\n  hint: is there enough memory?\n");
}

} // namespace
