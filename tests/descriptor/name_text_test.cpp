/** The small text steps: separators, case, prefixes, copies. */
#include <string>
#include <vector>

#include "gpb_templatelib/gpb_descriptor.h"
#include "platform/zmp.h"
#include "support/platform_fixture.h"
#include "support/text_lines.h"

namespace
{

constexpr uint32_t kUntouched = 0xAAAAAAAA;
constexpr uint32_t kTestLine = 1;
constexpr char kFile[] = "gpb_util";

class NameText : public gpbtest::PlatformFixture
{
protected:
    using InPlace = void (*)(char *);

    static std::string changed(InPlace function, std::string text)
    {
        function(text.data());
        return text.c_str();
    }

    /** A path without its module prefixes, in a buffer of that size whose end is guarded. */
    static std::string withoutModules(const std::string &source, uint32_t size)
    {
        std::string room(size + 1, '#');
        Gpb_Util_RemoveModuleName(room.data(), size, source.c_str());
        EXPECT_EQ('#', room[size]) << "written behind the room";
        return room.c_str();
    }

    /** Result and text of the node name conversion; the buffer is filled before. */
    static std::string fieldName(const std::string &source, uint32_t size)
    {
        std::string room(size + 1, '#');
        const uint32_t result = GPB_ConvertXmlNodeName(source.c_str(), room.data(), size);
        EXPECT_EQ('#', room[size]) << "written behind the room";
        return std::to_string(result) + " " + room.c_str();
    }

    static std::string enumName(const std::string &source, uint32_t size)
    {
        std::string room(size + 1, '#');
        const uint32_t result = Gpb_Util_ConvertProtoEnumToYangEnum(source.c_str(), room.data(), size);
        EXPECT_EQ('#', room[size]) << "written behind the room";
        return std::to_string(result) + " " + room.c_str();
    }
};

class NameTextDeliberateOddities : public NameText
{
};

TEST_F(NameText, SeparatorsAreExchanged)
{
    EXPECT_EQ("a_b__c_", changed(Gpb_Util_ConverDashToUnderline, "a-b_-c-"));
    EXPECT_EQ("a-b--c-", changed(Gpb_Util_ConverUnderlineToDash, "a_b-_c_"));
    EXPECT_EQ("A.b", changed(Gpb_Util_ConverDashToUnderline, "A.b"));
}

TEST_F(NameText, OnlyAsciiLettersBecomeLowerCase)
{
    EXPECT_EQ("azaz09@[`{-_", changed(Gpb_Util_StrToLowcase, "AZaz09@[`{-_"));
    EXPECT_EQ("\xC3\x84\xC4\xFF", changed(Gpb_Util_StrToLowcase, "\xC3\x84\xC4\xFF"));
}

TEST_F(NameText, FirstCharacterIsCutOff)
{
    EXPECT_EQ("bc", changed(Gpb_Util_CutFirstChar, "abc"));
    EXPECT_EQ("", changed(Gpb_Util_CutFirstChar, "a"));
}

TEST_F(NameText, NullAndEmptyTextsAreLeftAlone)
{
    for (const InPlace function :
         {Gpb_Util_ConverDashToUnderline, Gpb_Util_ConverUnderlineToDash, Gpb_Util_StrToLowcase, Gpb_Util_CutFirstChar,
          Gpb_Util_ConvertTopLayerName, InPlace([](char *text) { Gpb_util_ConverContainerName(text, 0); })})
    {
        function(nullptr);
        char text[] = {'\0', '-', '_', 'A', '\0'};
        function(text);
        EXPECT_EQ(std::string("\0-_A", 4), std::string(text, 4));
    }
}

TEST_F(NameText, PathLosesTheModuleOfEverySegment)
{
    constexpr uint32_t kRoom = 64;
    EXPECT_EQ("top/child", withoutModules("mod:top/mod:child", kRoom));
    EXPECT_EQ("c", withoutModules("a:b:c", kRoom));
    EXPECT_EQ("top/child", withoutModules("top/child", kRoom));
    EXPECT_EQ("x/c/y", withoutModules("x/a:b:c/y", kRoom));
    EXPECT_EQ("/top", withoutModules("/m:top", kRoom));
    EXPECT_EQ("//", withoutModules("a:/b:/c:", kRoom));
    EXPECT_EQ("", withoutModules("a:", kRoom));
    EXPECT_EQ("", withoutModules(":", kRoom));
    EXPECT_EQ("", withoutModules("", kRoom));
}

TEST_F(NameText, PathIsCutToTheRoom)
{
    EXPECT_EQ("abc", withoutModules("abc", 4));
    EXPECT_EQ("ab", withoutModules("abc", 3));
    EXPECT_EQ("", withoutModules("abc", 1));
    EXPECT_EQ("a/b", withoutModules("mod:a/b", 8));
    EXPECT_EQ("a/b", withoutModules("mod:a/b", 5));
}

TEST_F(NameTextDeliberateOddities, PrefixThatFillsTheRoomEndsTheCopy)
{
    EXPECT_EQ("mod", withoutModules("mod:a/b", 4));
    EXPECT_EQ("a/mod", withoutModules("a/mod:b", 6));
    EXPECT_EQ("a/b", withoutModules("a/mod:b", 7));
}

TEST_F(NameText, PathNeedsSourceDestinationAndRoom)
{
    char room[] = "##";
    Gpb_Util_RemoveModuleName(nullptr, sizeof(room), "a");
    Gpb_Util_RemoveModuleName(room, sizeof(room), nullptr);
    Gpb_Util_RemoveModuleName(room, 0, "a");
    EXPECT_STREQ("##", room);
}

TEST_F(NameText, EnumNameIsWhatFollowsTheFirstUnderline)
{
    EXPECT_EQ("0 UP", enumName("STATE_UP", 16));
    EXPECT_EQ("0 B_C", enumName("A_B_C", 16));
    EXPECT_EQ("0 ", enumName("A_", 16));
    EXPECT_EQ("0 A", enumName("_A", 16));
    EXPECT_EQ("0 _A", enumName("__A", 16));
    EXPECT_EQ("1", enumName("PLAIN", 16).substr(0, 1));
    EXPECT_EQ("1", enumName("", 16).substr(0, 1));
}

TEST_F(NameText, EnumNameMustFit)
{
    EXPECT_EQ("0 ABC", enumName("E_ABC", 4));
    EXPECT_EQ("1 ", enumName("E_ABC", 3));
    EXPECT_EQ("1", enumName("E_ABC", 0).substr(0, 1));
    char room[8] = {};
    EXPECT_EQ(1u, Gpb_Util_ConvertProtoEnumToYangEnum(nullptr, room, sizeof(room)));
    EXPECT_EQ(1u, Gpb_Util_ConvertProtoEnumToYangEnum("E_A", nullptr, sizeof(room)));
    GpbHost_FailCall(GPB_HOST_STRCPY, 1);
    EXPECT_EQ(1u, Gpb_Util_ConvertProtoEnumToYangEnum("E_A", room, sizeof(room)));
}

TEST_F(NameText, FieldNameIsInLowerCaseWithUnderlines)
{
    EXPECT_EQ("0 foo_bar", fieldName("Foo-Bar", 16));
    EXPECT_EQ("0 a_b_c9.", fieldName("A-b_C9.", 16));
    EXPECT_EQ("0 ", fieldName("", 1));
    EXPECT_EQ("0 abc", fieldName("ABC", 4));
    EXPECT_EQ("1 ", fieldName("ABC", 3));
    char room[8] = {};
    EXPECT_EQ(1u, GPB_ConvertXmlNodeName(nullptr, room, sizeof(room)));
    EXPECT_EQ(1u, GPB_ConvertXmlNodeName("a", nullptr, sizeof(room)));
    EXPECT_EQ(1u, GPB_ConvertXmlNodeName("a", room, 0));
    GpbHost_FailCall(GPB_HOST_STRCPY, 1);
    EXPECT_EQ(1u, GPB_ConvertXmlNodeName("a", room, sizeof(room)));
}

TEST_F(NameText, CopyBelongsToTheModule)
{
    uint32_t length = kUntouched;
    char *const copy = Gpb_util_StrDup(kModuleId, "some text", &length);
    ASSERT_NE(nullptr, copy);
    EXPECT_STREQ("some text", copy);
    EXPECT_EQ(9u, length);
    const std::vector<gpbtest::PlatformEvent> &made = events().events();
    ASSERT_EQ(1u, made.size());
    EXPECT_EQ(GPB_HOST_EVENT_MALLOC, made[0].kind);
    EXPECT_EQ(kFile, made[0].file);
    EXPECT_EQ(10u, made[0].size);
    EXPECT_EQ(kModuleId, made[0].moduleId);
    EXPECT_EQ(g_aucZmpMemPt[0], made[0].partition);
    ZMP_Free_F(copy, "name_text", kTestLine);
}

TEST_F(NameText, CopyOfAnEmptyTextAndWithoutLength)
{
    char *const copy = Gpb_util_StrDup(kModuleId, "", nullptr);
    ASSERT_NE(nullptr, copy);
    EXPECT_STREQ("", copy);
    ZMP_Free_F(copy, "name_text", kTestLine);
}

TEST_F(NameText, CopyOfNullOrWithoutMemoryIsNull)
{
    uint32_t length = kUntouched;
    EXPECT_EQ(nullptr, Gpb_util_StrDup(kModuleId, nullptr, &length));
    GpbHost_FailCall(GPB_HOST_MALLOC, 1);
    EXPECT_EQ(nullptr, Gpb_util_StrDup(kModuleId, "text", &length));
    EXPECT_EQ(kUntouched, length);
}

TEST_F(NameText, CopyThatFailsIsAssertedAndTerminated)
{
    uint32_t length = kUntouched;
    GpbHost_FailCall(GPB_HOST_STRCPY, 1);
    char *const copy = Gpb_util_StrDup(kModuleId, "text", &length);
    ASSERT_NE(nullptr, copy);
    EXPECT_STREQ("", copy);
    EXPECT_EQ('\0', copy[4]);
    EXPECT_EQ(4u, length);
    const std::vector<std::string> asserts = takeAsserts();
    ASSERT_EQ(1u, asserts.size());
    EXPECT_EQ(kFile, asserts[0].substr(0, asserts[0].find(':')));
    ZMP_Free_F(copy, "name_text", kTestLine);
}

TEST_F(NameText, CopyLeavesNothingBehindWhicheverCallFails)
{
    failEachCall(
        [](const gpbtest::FaultRun &run)
        {
            char *const copy = Gpb_util_StrDup(kModuleId, "text", nullptr);
            EXPECT_TRUE(run.fails() || copy != nullptr);
            ZMP_Free_F(copy, "name_text", kTestLine);
        });
}

} // namespace
