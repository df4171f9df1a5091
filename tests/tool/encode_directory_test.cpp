/** A directory stands for its documents. */
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>

#include "tool_fixture.h"

namespace
{

using gpbtest::ProcessResult;
using ::testing::HasSubstr;
using ::testing::StartsWith;

using Names = std::vector<std::string>;

class EncodeDirectory : public gpbtest::ToolTest
{
protected:
    void good(const std::string &relative) const
    {
        const bool json = std::filesystem::path(relative).extension() == ".json";
        write(relative, json ? R"({"top":{"i32":1}})" : "<top><i32>1</i32></top>");
    }

    ProcessResult encodeDirectory(const std::vector<std::string> &more = {}) const
    {
        std::vector<std::string> arguments = {path("in"), "--out-dir", path("out")};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return encode(arguments);
    }
};

TEST_F(EncodeDirectory, StandsForItsDocuments)
{
    for (const char *name :
         {"in/b.xml", "in/a.xml", "in/c.json", "in/notes.txt", "in/.hidden.xml", "in/more/d.xml", "in/dir.xml/e.xml"})
    {
        good(name);
    }
    const ProcessResult result = encodeDirectory();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.err, StartsWith("3 of 3 documents encoded\n"));
    EXPECT_EQ(list("out"), (Names{"a.gpb", "b.gpb", "c.gpb"}));
    EXPECT_EQ(gpbtest::readFile(path("out/a.gpb")), "\x10\x01");
    EXPECT_EQ(gpbtest::readFile(path("out/c.gpb")), "\x10\x01");
}

TEST_F(EncodeDirectory, StandsForThemInTheOrderOfTheirNames)
{
    for (const char *name : {"c.xml", "a.json", "b.xml", "B.xml"})
    {
        write(std::string("in/") + name, "nothing");
    }
    const ProcessResult result = encodeDirectory({"--jobs", "3"});
    EXPECT_EQ(result.exitCode, 3);
    const std::size_t capital = result.err.find("error: " + path("in/B.xml:1"));
    const std::size_t first = result.err.find("error: " + path("in/a.json:1:1"));
    const std::size_t second = result.err.find("error: " + path("in/b.xml:1"));
    const std::size_t third = result.err.find("error: " + path("in/c.xml:1"));
    EXPECT_LT(capital, first) << result.err;
    EXPECT_LT(first, second) << result.err;
    EXPECT_LT(second, third) << result.err;
    EXPECT_LT(third, result.err.size()) << result.err;
    EXPECT_EQ(list("out"), Names{});
}

TEST_F(EncodeDirectory, StandsBesideDocuments)
{
    good("in/a.xml");
    good("one.xml");
    EXPECT_EQ(encodeDirectory({write("two.json", R"({"top":{"i32":1}})"), path("one.xml")}).exitCode, 0);
    EXPECT_EQ(list("out"), (Names{"a.gpb", "one.gpb", "two.gpb"}));
}

TEST_F(EncodeDirectory, GivesTheDocumentsOfAFormat)
{
    good("in/a.xml");
    good("in/a.json");
    good("in/b.json");
    EXPECT_EQ(encodeDirectory({"--format", "xml"}).exitCode, 0);
    EXPECT_EQ(list("out"), Names{"a.gpb"});
    EXPECT_EQ(encodeDirectory({"--format", "json"}).exitCode, 0);
    EXPECT_EQ(list("out"), (Names{"a.gpb", "b.gpb"}));
}

TEST_F(EncodeDirectory, OfOneDocumentIsADirectoryAllTheSame)
{
    good("in/a.xml");
    EXPECT_THAT(encodeDirectory().err, StartsWith("1 of 1 documents encoded\n"));
    EXPECT_EQ(list("out"), Names{"a.gpb"});
    const ProcessResult result = encode({path("in")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "error: several documents cannot share one output\n"
                          "  hint: give --out-dir DIR to get one file for each\n");
}

TEST_F(EncodeDirectory, WithoutDocuments)
{
    m_dir.makeDirectory("in/more.xml");
    write("in/notes.txt", "text");
    const ProcessResult result = encodeDirectory();
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.err, "error: " + path("in") +
                              ": no documents in this directory\n"
                              "  hint: they are files named *.xml or *.json; directories below it are not searched\n");
    EXPECT_FALSE(gpbtest::exists(path("out")));

    good("in/a.json");
    const ProcessResult none = encodeDirectory({"--format", "xml"});
    EXPECT_EQ(none.exitCode, 3);
    EXPECT_THAT(none.err, HasSubstr("hint: they are files named *.xml; "));
}

TEST_F(EncodeDirectory, WithADocumentThatCannotBeRead)
{
    good("in/a.xml");
    std::filesystem::create_symlink("nowhere", path("in/b.xml"));
    ASSERT_EQ(mkfifo(path("in/pipe.xml").c_str(), 0600), 0);
    const ProcessResult result = encodeDirectory();
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(result.err, StartsWith("error: " + path("in/b.xml") + ": cannot be read: No such file"));
    EXPECT_THAT(result.err, HasSubstr("\n1 of 2 documents encoded, 1 failed\n")) << "a pipe is no document";
    EXPECT_EQ(list("out"), Names{"a.gpb"});
}

TEST_F(EncodeDirectory, TwoDocumentsOfOneOutput)
{
    good("in/a.json");
    good("in/a.xml");
    const ProcessResult result = encodeDirectory();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "error: " + path("in/a.xml") + ": another document would be written to " + path("out/a.gpb") +
                              " too\n"
                              "  hint: encode documents of the same name in separate calls; --format takes one kind of "
                              "a directory's documents\n");
    EXPECT_FALSE(gpbtest::exists(path("out")));

    good("in2/b.xml");
    EXPECT_EQ(encode({path("in2"), path("in2/b.xml"), "--out-dir", path("out")}).exitCode, 1);
    EXPECT_FALSE(gpbtest::exists(path("out")));
}

} // namespace
