/** Text services. */
#include <gtest/gtest.h>

#include "platform/yos.h"

namespace
{

TEST(YosTextTest, ComparesByteByByte)
{
    EXPECT_EQ(0, YOS_StrCmp("abc", "abc"));
    EXPECT_LT(YOS_StrCmp("abc", "abd"), 0);
    EXPECT_GT(YOS_StrCmp("abd", "abc"), 0);
    EXPECT_LT(YOS_StrCmp("ab", "abc"), 0);
    EXPECT_GT(YOS_StrCmp("abc", "ab"), 0);
    EXPECT_NE(0, YOS_StrCmp("abc", "ABC"));
    EXPECT_LT(YOS_StrCmp("a", "\xFF"), 0); // bytes are unsigned
    EXPECT_EQ(0, YOS_StrCmp("", ""));
}

TEST(YosTextTest, ComparesWithoutCaseOfAsciiLetters)
{
    EXPECT_EQ(0, YOS_StrICmp("TrUe", "tRuE"));
    EXPECT_EQ(0, YOS_StrICmp("AZaz", "azAZ"));
    EXPECT_LT(YOS_StrICmp("ABC", "abd"), 0);
    EXPECT_GT(YOS_StrICmp("ABD", "abc"), 0);
    EXPECT_LT(YOS_StrICmp("AB", "abc"), 0);
    EXPECT_GT(YOS_StrICmp("ABC", "ab"), 0);
    EXPECT_NE(0, YOS_StrICmp("@[", "`{")); // next to the letters
    EXPECT_NE(0, YOS_StrICmp("\xC4", "\xE4"));
    EXPECT_LT(YOS_StrICmp("a", "\xFF"), 0);
    EXPECT_EQ(0, YOS_StrICmp("", ""));
}

TEST(YosTextTest, NullComesBeforeEveryText)
{
    for (const auto compare : {YOS_StrCmp, YOS_StrICmp})
    {
        EXPECT_EQ(0, compare(nullptr, nullptr));
        EXPECT_LT(compare(nullptr, ""), 0);
        EXPECT_GT(compare("", nullptr), 0);
    }
}

TEST(YosTextTest, MeasuresBytes)
{
    EXPECT_EQ(0u, YOS_StrLen(nullptr));
    EXPECT_EQ(0u, YOS_StrLen(""));
    EXPECT_EQ(3u, YOS_StrLen("abc"));
    EXPECT_EQ(2u, YOS_StrLen("\xC3\xA4"));
}

TEST(YosTextTest, FindsTheFirstCharacter)
{
    const char *const text = "a/b/c";
    EXPECT_EQ(text + 1, YOS_StrChr(text, '/'));
    EXPECT_EQ(text, YOS_StrChr(text, 'a'));
    EXPECT_EQ(text + 5, YOS_StrChr(text, '\0'));
    EXPECT_EQ(nullptr, YOS_StrChr(text, 'x'));
    EXPECT_EQ(nullptr, YOS_StrChr(nullptr, 'x'));
}

TEST(YosTextTest, FindsTheLastCharacter)
{
    const char *const text = "a/b/c";
    EXPECT_EQ(text + 3, YOS_StrRChr(text, '/'));
    EXPECT_EQ(text, YOS_StrRChr(text, 'a'));
    EXPECT_EQ(text + 5, YOS_StrRChr(text, '\0'));
    EXPECT_EQ(nullptr, YOS_StrRChr(text, 'x'));
    EXPECT_EQ(nullptr, YOS_StrRChr(nullptr, 'x'));
}

TEST(YosTextTest, FindsTheFirstText)
{
    const char *const text = "abcabc";
    EXPECT_EQ(text + 1, YOS_StrStr(text, "bc"));
    EXPECT_EQ(text + 2, YOS_StrStr(text, "ca"));
    EXPECT_EQ(text, YOS_StrStr(text, ""));
    EXPECT_EQ(nullptr, YOS_StrStr(text, "ac"));
    EXPECT_EQ(nullptr, YOS_StrStr(nullptr, "a"));
    EXPECT_EQ(nullptr, YOS_StrStr(text, nullptr));
}

} // namespace
