/** Output appears complete or not at all. */
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>

#include "tool_fixture.h"

namespace
{

using gpbtest::ProcessResult;
using ::testing::HasSubstr;

class Output : public gpbtest::ToolTest
{
protected:
    Output() : m_document(write("doc.xml", "<top><name>" + std::string(5000, 'a') + "</name></top>"))
    {
        m_dir.makeDirectory("out");
    }

    ProcessResult writeTo(const std::string &target) const { return encode({m_document, "-o", target}); }

    std::string m_document;
};

TEST_F(Output, ReplacesAnEarlierFileAndKeepsItsMode)
{
    const std::string target = write("out/doc.gpb", "earlier");
    ASSERT_EQ(chmod(target.c_str(), 0640), 0);
    EXPECT_EQ(writeTo(target).exitCode, 0);
    EXPECT_EQ(gpbtest::readFile(target).size(), 5003u);
    struct stat status = {};
    ASSERT_EQ(stat(target.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777u, 0640u);
    EXPECT_EQ(list("out"), std::vector<std::string>{"doc.gpb"});
}

TEST_F(Output, ANewFileHasTheModeOfPlainFiles)
{
    const mode_t mask = umask(022);
    EXPECT_EQ(writeTo(path("out/doc.gpb")).exitCode, 0);
    umask(mask);
    struct stat status = {};
    ASSERT_EQ(stat(path("out/doc.gpb").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777u, 0644u);
}

TEST_F(Output, ALinkStaysALink)
{
    write("out/real.gpb", "earlier");
    std::filesystem::create_symlink("real.gpb", path("out/link.gpb"));
    EXPECT_EQ(writeTo(path("out/link.gpb")).exitCode, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(path("out/link.gpb")));
    EXPECT_EQ(gpbtest::readFile(path("out/real.gpb")).size(), 5003u);
}

TEST_F(Output, ADeviceIsWrittenToAndStays)
{
    EXPECT_EQ(writeTo("/dev/null").exitCode, 0);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    const ProcessResult full = writeTo("/dev/full");
    EXPECT_EQ(full.exitCode, 5);
    EXPECT_EQ(full.err, "error: /dev/full: cannot be written: No space left on device\n"
                        "  hint: is there such a directory, may you write to it, and is there room left?\n");
}

TEST_F(Output, MissingDirectory)
{
    const ProcessResult result = writeTo(path("none/doc.gpb"));
    EXPECT_EQ(result.exitCode, 5);
    EXPECT_THAT(result.err, HasSubstr("error: " + path("none/doc.gpb") + ": cannot be written: No such file"));
    EXPECT_FALSE(gpbtest::exists(path("none")));
}

TEST_F(Output, ADirectoryIsNoFile)
{
    const ProcessResult result = writeTo(path("out"));
    EXPECT_EQ(result.exitCode, 5);
    EXPECT_THAT(result.err, HasSubstr(": cannot be written: Is a directory"));
}

TEST_F(Output, AWriteThatFailsHalfwayLeavesNothing)
{
    const std::string kept = write("out/kept.gpb", "earlier");
    for (const std::string &target : {kept, path("out/new.gpb")})
    {
        gpbtest::ProcessSetup process = setup("encode", {"--module", "m", m_document, "-o", target});
        process.fileSizeLimit = 1000;
        const ProcessResult result = gpbtest::runProcess(process);
        EXPECT_EQ(result.exitCode, 5);
        EXPECT_THAT(result.err, HasSubstr("error: " + target + ": cannot be written: File too large"));
    }
    EXPECT_EQ(list("out"), std::vector<std::string>{"kept.gpb"});
    EXPECT_EQ(gpbtest::readFile(kept), "earlier");
}

TEST_F(Output, BytesAreNotForATerminal)
{
    gpbtest::ProcessSetup process = setup("encode", {"--module", "m", m_document});
    process.outIsTerminal = true;
    const ProcessResult refused = gpbtest::runProcess(process);
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(refused.out, "");
    EXPECT_EQ(refused.err,
              "error: encoded bytes are not for a terminal\n"
              "  hint: give -o FILE, or --text to read them, or -o - if you want them here all the same\n");

    process.arguments.push_back("--text");
    EXPECT_EQ(gpbtest::runProcess(process).exitCode, 0);
    process.arguments.back() = "-o";
    process.arguments.push_back("-");
    EXPECT_EQ(gpbtest::runProcess(process).exitCode, 0);
}

} // namespace
