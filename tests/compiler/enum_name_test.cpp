/** Names of enum values: the characters that become "X_", and the bound that only ordinary characters respect. */
#include <cstring>
#include <set>

#include "compiler/compiler_fixture.h"

namespace
{

const char kSpecialCharacters[] = "!\"#\\$%&,-()*+/:<>=.?[]{}|^~`@'; ";

class EnumNameTest : public gpbtest::CompilerFixture
{
protected:
    static constexpr unsigned int kSize = 128;

    void SetUp() override
    {
        CompilerFixture::SetUp();
        addDataModule("enums");
        open("enums"); // fills the table
    }

    static std::string convert(const std::string &value, const std::string &typeName = "T", unsigned int size = kSize)
    {
        char out[1024] = {};
        EXPECT_EQ(out, GpbXmlCompilerBase_EnumYang2Proto(value.c_str(), typeName.c_str(), out, size));
        return out;
    }
};

TEST_F(EnumNameTest, TableMarksTheSpecialCharactersAndTheTerminator)
{
    ASSERT_EQ(32u, std::strlen(kSpecialCharacters));
    std::set<int> expected = {0};
    for (const char *c = kSpecialCharacters; *c != '\0'; ++c)
    {
        expected.insert(static_cast<unsigned char>(*c));
    }
    ASSERT_EQ(33u, expected.size());
    for (int code = 0; code < 256; ++code)
    {
        EXPECT_EQ(expected.count(code), GpbXmlCompilerBase::aucSpecialCharTable[code]) << "character " << code;
    }
}

TEST_F(EnumNameTest, EverySpecialCharacterBecomesX_)
{
    for (const char *c = kSpecialCharacters; *c != '\0'; ++c)
    {
        EXPECT_EQ("T_AX_B", convert(std::string("a") + *c + "b"));
        EXPECT_EQ("T_X_", convert(std::string(1, *c)));
    }
}

TEST_F(EnumNameTest, OtherCharactersStandOrBecomeUpperCase)
{
    EXPECT_EQ("T_ABCXYZ_019\t\n\x7f\xc3\xa4\xff", convert("abcXyZ_019\t\n\x7f\xc3\xa4\xff"));
    EXPECT_EQ("Status_UPX_2", convert("up-2", "Status"));
    EXPECT_EQ("Mixed_case_UP", convert("up", "Mixed_case"));
    EXPECT_EQ("T_", convert(""));
    EXPECT_EQ("_A", convert("a", ""));
}

TEST_F(EnumNameTest, LeadingDigitGetsX_)
{
    EXPECT_EQ("Status_X_10G", convert("10g", "Status"));
    EXPECT_EQ("T_X_0", convert("0"));
    EXPECT_EQ("T_X_9", convert("9"));
    EXPECT_EQ("T_A1", convert("a1"));
    EXPECT_EQ("T_X_1", convert("-1")); // the minus, not the digit
}

// What the conversion gives in a buffer of a size: an ordinary character that reaches the bound ends it.
std::string expectedName(const std::string &value, const std::string &typeName, size_t size)
{
    std::string name = (typeName + "_").substr(0, size - 1);
    if (!value.empty() && std::isdigit(static_cast<unsigned char>(value[0])))
    {
        name += "X_";
    }
    for (const char c : value)
    {
        if (std::strchr(kSpecialCharacters, c) != nullptr)
        {
            name += "X_";
            continue;
        }
        if (name.size() >= size - 1)
        {
            break;
        }
        name += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        if (name.size() == size - 1)
        {
            break;
        }
    }
    return name;
}

TEST_F(EnumNameTest, EveryBufferSize)
{
    for (const std::string value : {"abcdef", "a-b-c", "1ab", "--", "-a-", "", "9", "ab-"})
    {
        for (unsigned int size = 1; size <= 20; ++size)
        {
            SCOPED_TRACE("'" + value + "' in " + std::to_string(size));
            EXPECT_EQ(expectedName(value, "Type", size), convert(value, "Type", size));
        }
    }
}

TEST_F(EnumNameTest, OrdinaryTextStaysInsideTheBuffer)
{
    for (unsigned int size = 1; size <= 20; ++size)
    {
        std::vector<char> out(size); // exactly: a byte more is an overrun for the sanitizer
        EXPECT_EQ(out.data(), GpbXmlCompilerBase_EnumYang2Proto("abcdefghijkl", "Type", out.data(), size));
        EXPECT_EQ(std::string("Type_ABCDEFGHIJKL").substr(0, size - 1), out.data());
    }
}

using EnumNameOddities = EnumNameTest;

// Two-character writes do not look at the bound; callers give room for them.
TEST_F(EnumNameOddities, SpecialCharactersAndDigitPrefixPassTheBound)
{
    EXPECT_EQ("T_X_X_X_X_", convert("----", "T", 4));
    EXPECT_EQ("T_AX_X_", convert("a--", "T", 5));
    EXPECT_EQ("T_A", convert("a--", "T", 4)); // the ordinary character reaches the bound and ends it
    EXPECT_EQ("T_X_", convert("1", "T", 4));
    EXPECT_EQ("TX_X_", convert("--", "Type", 2));
    const std::string many(127, '-');
    EXPECT_EQ(2u + 2 * 127, convert(many).size());
}

TEST_F(EnumNameTest, PrefixThatCannotBeWrittenGivesNull)
{
    char out[8] = "before";
    EXPECT_EQ(nullptr, GpbXmlCompilerBase_EnumYang2Proto("a", "T", out, 0));
    EXPECT_STREQ("before", out);
    EXPECT_EQ("gpb_xmlcompilerbase.cpp:80\n", takeAssertText());

    GpbHost_FailCall(GPB_HOST_SNPRINTF_TRUNCATED, 1);
    EXPECT_EQ(nullptr, GpbXmlCompilerBase_EnumYang2Proto("a", "T", out, sizeof(out)));
    EXPECT_EQ("gpb_xmlcompilerbase.cpp:80\n", takeAssertText());
}

TEST_F(EnumNameTest, NullArgumentGivesNull)
{
    char out[8] = {};
    EXPECT_EQ(nullptr, GpbXmlCompilerBase_EnumYang2Proto(nullptr, "T", out, sizeof(out)));
    EXPECT_EQ(nullptr, GpbXmlCompilerBase_EnumYang2Proto("a", nullptr, out, sizeof(out)));
    EXPECT_EQ(nullptr, GpbXmlCompilerBase_EnumYang2Proto("a", "T", nullptr, sizeof(out)));
}

} // namespace
