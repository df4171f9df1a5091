#include <gmock/gmock.h>

#include "template_fixture.h"

namespace
{

using gpbtest::ProcessResult;
using ::testing::HasSubstr;

class TemplateDiff : public gpbtest::TemplateTest
{
};

TEST_F(TemplateDiff, EqualTemplatesGiveZeroAndNothing)
{
    ASSERT_EQ(build("/top/row", "a.bin").exitCode, 0);
    ASSERT_EQ(build("/top/row", "b.bin").exitCode, 0);
    const ProcessResult result = diff({path("a.bin"), path("b.bin")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "");
}

TEST_F(TemplateDiff, DifferentTemplatesGiveOneAndTheirDifferences)
{
    const std::string map = write("map.json", R"({"module": "t", "classes": {
        "/top/row": {"class": 2, "fields": {"k": 1, "num": 7}},
        "/top/row/one": {"class": 3, "fields": {"x-y": 1}},
        "/top/row/two": {"class": 4, "fields": {"z": 1}}}})");
    ASSERT_EQ(build("/top/row", "a.bin").exitCode, 0);
    ASSERT_EQ(build("/top/row", "b.bin", {"--ids", map}).exitCode, 0);
    const ProcessResult result = diff({path("a.bin"), path("b.bin")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out, "- top/row/num = 2  int32  field 2  2.2\n"
                          "+ top/row/num = 2  int32  field 7  2.7\n"
                          "- top/row/many = 3  uint32 repeated packable  field 3  2.3\n");
    const ProcessResult reverse = diff({path("b.bin"), path("a.bin")});
    EXPECT_EQ(reverse.exitCode, 1);
    EXPECT_EQ(reverse.out, "- top/row/num = 2  int32  field 7  2.7\n"
                           "+ top/row/num = 2  int32  field 2  2.2\n"
                           "+ top/row/many = 3  uint32 repeated packable  field 3  2.3\n");
}

TEST_F(TemplateDiff, NodesInAnotherOrderDiffer)
{
    const std::string a = writeHex("a.bin", "06 04 08 01 10 02 ");
    const std::string b = writeHex("b.bin", "06 04 10 02 08 01 ");
    const ProcessResult result = diff({a, b});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "- ?/? = 1  not described  1.0\n"
                          "+ ?/? = 2  not described  2.0\n"
                          "- ?/?[2] = 2  not described  2.0\n"
                          "+ ?/?[2] = 1  not described  1.0\n");
}

TEST_F(TemplateDiff, DescriptionsWithoutFieldsDiffer)
{
    // A description of field 1, which is not there.
    const std::string a = writeHex("a.bin", "06 11 fe ff 1f 0d 10 00 1a 03 74 6f 70 20 00 0e 02 18 01 ");
    const std::string b = writeHex("b.bin", "06 0d fe ff 1f 09 10 00 1a 03 74 6f 70 20 00 ");
    const ProcessResult result = diff({a, b});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "the same nodes, in another order or with other descriptions beside them\n");
}

TEST_F(TemplateDiff, StandardInput)
{
    ASSERT_EQ(build("/top", "a.bin").exitCode, 0);
    EXPECT_EQ(run("diff", {"-", path("a.bin")}, gpbtest::readFile(path("a.bin"))).exitCode, 0);
    EXPECT_EQ(run("diff", {path("a.bin"), "-"}, gpbtest::readFile(path("a.bin"))).exitCode, 0);
}

TEST_F(TemplateDiff, ErrorsGiveTwo)
{
    const std::string good = writeHex("good.bin", "06 00 ");
    const std::string bad = write("bad.bin", "no template");
    EXPECT_EQ(diff({}).exitCode, 2);
    EXPECT_EQ(diff({good}).exitCode, 2);
    EXPECT_EQ(diff({good, good, good}).exitCode, 2);
    EXPECT_EQ(diff({good, good, "--unknown"}).exitCode, 2);
    EXPECT_EQ(diff({good, path("none.bin")}).exitCode, 2);
    for (const std::vector<std::string> &files : {std::vector<std::string>{good, bad}, {bad, good}, {bad, bad}})
    {
        const ProcessResult result = diff(files);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.out, "");
        EXPECT_THAT(result.err, HasSubstr("error: " + bad + ": no template: "));
    }
}

TEST_F(TemplateDiff, HelpNamesItsOwnExitCodes)
{
    const ProcessResult result = diff({"--help"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, HasSubstr("  0  the templates are equal\n  1  they differ\n  2  an error"));
}

} // namespace
