#include <gmock/gmock.h>

#include "tool_fixture.h"

namespace
{

using gpbtest::ProcessResult;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;

class EncodeBatch : public gpbtest::ToolTest
{
protected:
    std::string good(const std::string &name) const
    {
        return write(name + ".xml", "<top><name>" + name + "</name></top>");
    }
};

TEST_F(EncodeBatch, EachDocumentHasItsFile)
{
    const ProcessResult result = encode({good("a"), good("b"), "--out-dir", path("new/out"), "--text"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err,
                MatchesRegex("2 of 2 documents encoded\n"
                             "50 bytes in, 20 bytes out, [0-9]+\\.[0-9]+ s, [0-9.]+ documents/s, [0-9.]+ MB/s\n"));
    EXPECT_EQ(list("new/out"), (std::vector<std::string>{"a.txt", "b.txt"}));
    EXPECT_EQ(gpbtest::readFile(path("new/out/a.txt")), "name: \"a\"\n");
    EXPECT_EQ(gpbtest::readFile(path("new/out/b.txt")), "name: \"b\"\n");
}

TEST_F(EncodeBatch, OneDocumentHasNoSummary)
{
    const ProcessResult result = encode({good("a"), "--out-dir", path("out")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(gpbtest::readFile(path("out/a.gpb")), "\x0a\x01"
                                                    "a");
}

TEST_F(EncodeBatch, ABadDocumentDoesNotStopTheOthers)
{
    const std::string cut = write("cut.xml", "<top><name>a");
    const std::string foreign = write("foreign.xml", "<other><name>a</name></other>");
    const std::string unknown = write("unknown.xml", "<top><zz>a</zz></top>");
    const ProcessResult result =
        encode({good("a"), unknown, cut, good("b"), foreign, good("c"), "--out-dir", path("out")});
    EXPECT_EQ(result.exitCode, 6) << "the code of the first that failed";
    EXPECT_EQ(list("out"), (std::vector<std::string>{"a.gpb", "b.gpb", "c.gpb"}));
    EXPECT_THAT(result.err, HasSubstr("error: " + cut));
    EXPECT_THAT(result.err, HasSubstr("error: " + foreign));
    EXPECT_THAT(result.err, HasSubstr("error: " + unknown));
    EXPECT_THAT(result.err, HasSubstr("\n3 of 6 documents encoded, 3 failed\n75 bytes in, 9 bytes out, "));

    EXPECT_EQ(encode({good("a"), cut, unknown, "--out-dir", path("out")}).exitCode, 3);
    EXPECT_EQ(encode({good("a"), foreign, unknown, "--out-dir", path("out")}).exitCode, 4);
}

TEST_F(EncodeBatch, OutDirThatCannotBeMade)
{
    write("file", "text");
    const ProcessResult result = encode({good("a"), good("b"), "--out-dir", path("file/out")});
    EXPECT_EQ(result.exitCode, 5);
    EXPECT_THAT(result.err, HasSubstr("error: " + path("file/out") + ": cannot be made: "));
}

} // namespace
