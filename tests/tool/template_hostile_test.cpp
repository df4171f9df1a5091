/** Files that are no template, or a damaged one: an error with a message, never a crash. */
#include <gmock/gmock.h>

#include "template_fixture.h"

namespace
{

using gpbtest::ProcessResult;
using ::testing::StartsWith;

class TemplateHostile : public gpbtest::TemplateTest
{
protected:
    void expectRefused(const std::string &file, const std::string &why) const
    {
        for (const std::vector<std::string> &arguments :
             {std::vector<std::string>{file}, std::vector<std::string>{file, "--hex"}, {file, "--dot"}})
        {
            const ProcessResult result = show(arguments);
            EXPECT_EQ(result.exitCode, 3);
            EXPECT_EQ(result.out, "");
            EXPECT_EQ(result.err, "error: " + file + ": no template: " + why +
                                      "\n  hint: give a file that \"gpbtool template build\" or the library's "
                                      "template dump wrote\n");
        }
    }
};

TEST_F(TemplateHostile, WhatIsNoTemplate)
{
    expectRefused(write("empty.bin", ""), "it is empty");
    expectRefused(writeHex("message.bin", "0a 03 61 62 63 "), "it does not begin with the root of one");
    expectRefused(writeHex("varint.bin", "ff ff ff ff ff ff ff ff ff ff ff 01 "),
                  "it does not begin with the root of one");
    expectRefused(writeHex("more.bin", "06 00 00 "), "1 bytes follow its end at byte 2");
    expectRefused(writeHex("group.bin", "06 01 0b "), "unreadable at byte 2 of 3, or nested too deeply there");
}

TEST_F(TemplateHostile, LengthsThatLie)
{
    expectRefused(writeHex("root.bin", "06 05 08 01 "), "cut off or damaged; byte 1 does not fit the rest");
    expectRefused(writeHex("inner.bin", "06 04 0e 7f 08 01 "), "cut off or damaged; byte 3 does not fit the rest");
    expectRefused(writeHex("huge.bin", "06 ff ff ff ff ff ff ff ff ff 01 08 01 "),
                  "it does not begin with the root of one");
    expectRefused(writeHex("text.bin", "06 06 0a ff ff ff ff 0f "),
                  "unreadable at byte 2 of 8, or nested too deeply there");
}

TEST_F(TemplateHostile, FormsThatTheLibraryDoesNotWrite)
{
    expectRefused(writeHex("long.bin", "06 03 08 81 00 "), "cut off or damaged; byte 1 does not fit the rest");
    expectRefused(writeHex("fixed.bin", "06 05 0d 01 00 00 00 "), "cut off or damaged; byte 1 does not fit the rest");
}

TEST_F(TemplateHostile, NestingHasALimit)
{
    const auto nested = [](int depth)
    {
        std::string bytes;
        for (int i = 0; i <= depth; ++i)
        {
            std::string length;
            std::size_t size = bytes.size();
            for (; size >= 0x80; size >>= 7)
            {
                length += static_cast<char>(0x80 | (size & 0x7f));
            }
            length += static_cast<char>(size);
            bytes = (i == depth ? "\x06" : "\x0e") + length + bytes;
        }
        return bytes;
    };
    const std::string accepted = write("253.bin", nested(253));
    for (const std::vector<std::string> &arguments :
         {std::vector<std::string>{accepted}, std::vector<std::string>{accepted, "--hex"}, {accepted, "--dot"}})
    {
        EXPECT_EQ(show(arguments).exitCode, 0);
    }
    expectRefused(write("254.bin", nested(254)), "unreadable at byte 701 of 701, or nested too deeply there");
}

TEST_F(TemplateHostile, EachPrefixIsRefused)
{
    ASSERT_EQ(build("/top/row/one", "t.bin").exitCode, 0);
    const std::string bytes = gpbtest::readFile(path("t.bin"));
    for (std::size_t size = 0; size < bytes.size(); ++size)
    {
        const ProcessResult result = run("show", {"-"}, bytes.substr(0, size));
        EXPECT_EQ(result.exitCode, 3) << size;
        EXPECT_THAT(result.err, StartsWith("error: -: no template: ")) << size;
    }
}

TEST_F(TemplateHostile, EachDamagedByteIsShownOrRefused)
{
    ASSERT_EQ(build("/top/row/one", "t.bin").exitCode, 0);
    const std::string bytes = gpbtest::readFile(path("t.bin"));
    for (std::size_t at = 0; at < bytes.size(); ++at)
    {
        for (const char change : {'\x01', '\x80', '\xff'})
        {
            std::string damaged = bytes;
            damaged[at] = static_cast<char>(damaged[at] ^ change);
            const ProcessResult result = run("show", {"-", at % 2 == 0 ? "--hex" : "--dot"}, damaged);
            EXPECT_TRUE(result.exitCode == 0 || result.exitCode == 3) << at << ": " << result.exitCode;
            EXPECT_EQ(result.out.empty(), result.exitCode == 3) << at;
        }
    }
}

} // namespace
