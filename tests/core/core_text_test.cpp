/** The two small text functions of the core. */
#include <string>

#include <gtest/gtest.h>

#include "gpb_templatelib/gpb_lib.h"

namespace
{

std::string replaced(std::string text, char from, char to)
{
    EXPECT_EQ(0u, GPBLIB_ChrReplace(text.data(), from, to));
    return text;
}

TEST(ChrReplace, OverwritesEveryOccurrence)
{
    EXPECT_EQ("a_b__c_", replaced("a-b--c-", '-', '_'));
    EXPECT_EQ("____", replaced("----", '-', '_'));
    EXPECT_EQ("abc", replaced("abc", '-', '_'));
    EXPECT_EQ("x\xFFy", replaced("x\xE9y", '\xE9', '\xFF'));
}

TEST(ChrReplace, LeavesAnEmptyTextAlone)
{
    char text[] = {'\0', '-', '\0'};
    EXPECT_EQ(0u, GPBLIB_ChrReplace(text, '-', '_'));
    EXPECT_EQ('\0', text[0]);
    EXPECT_EQ('-', text[1]) << "what lies behind the terminator is not the text's";
}

TEST(ChrReplace, StopsAtTheTerminatorEvenWhenThatIsToBeReplaced)
{
    char text[] = {'a', 'b', '\0', 'c'};
    EXPECT_EQ(0u, GPBLIB_ChrReplace(text, '\0', 'x'));
    EXPECT_STREQ("ab", text);
    EXPECT_EQ('c', text[3]);
}

TEST(ChrReplace, GoesThroughTheWholeTextWhenItWritesTerminators)
{
    char text[] = "a-b-c";
    EXPECT_EQ(0u, GPBLIB_ChrReplace(text, '-', '\0'));
    EXPECT_EQ(std::string("a\0b\0c", 5), std::string(text, 5));
}

TEST(ChrReplace, FailsForNull)
{
    EXPECT_EQ(1u, GPBLIB_ChrReplace(nullptr, 'a', 'b'));
}

TEST(JsonFieldName, IsTheNameItself)
{
    const char name[] = "Some-Name_1";
    const GpbLibContext context = {};
    EXPECT_EQ(name, GPBLIB_GetJsonFieldName(&context, name));
    EXPECT_EQ(name, GPBLIB_GetJsonFieldName(nullptr, name));
    EXPECT_EQ(nullptr, GPBLIB_GetJsonFieldName(&context, nullptr));
    EXPECT_STREQ("Some-Name_1", name);
}

} // namespace
