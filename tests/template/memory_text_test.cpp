// Memory as text: printable text or hexadecimal digits.
#include "support/platform_fixture.h"
#include "tree_support.h"

namespace gpbtest
{
namespace
{

class MemoryTextTest : public PlatformFixture
{
protected:
    static std::string dump(const std::string &hex, uint32_t room)
    {
        const Bytes bytes = fromHex(hex);
        std::vector<char> text(room + 1, '#');
        GPBLIB_DBG_DumpMemToString(bytes.data(), static_cast<uint32_t>(bytes.size()), text.data(), room);
        EXPECT_EQ('#', text[room]);
        EXPECT_EQ('\0', text[room - 1]);
        return text.data();
    }

    static uint32_t isString(const std::string &hex)
    {
        const Bytes bytes = fromHex(hex);
        return GPBLIB_DBG_CheckIsString_(bytes.data(), static_cast<uint32_t>(bytes.size()));
    }
};

TEST_F(MemoryTextTest, ATerminatedPrintableTextIsAString)
{
    EXPECT_EQ(1u, isString("61 62 00 00"));
    EXPECT_EQ(1u, isString("20 7F 00"));
    EXPECT_EQ(1u, isString("00"));
    EXPECT_EQ(0u, isString("61 62 63"));
    EXPECT_EQ(0u, isString("61 00 62"));
    EXPECT_EQ(0u, isString("61 00 62 00"));
    EXPECT_EQ(0u, isString("1F 00"));
    EXPECT_EQ(0u, isString("80 00"));
    EXPECT_EQ(0u, isString("FF 00"));
    EXPECT_EQ(0u, isString(""));
    EXPECT_EQ(0u, GPBLIB_DBG_CheckIsString_(nullptr, 3));
    const uint8_t byte = 0;
    EXPECT_EQ(0u, GPBLIB_DBG_CheckIsString_(&byte, 0));
}

TEST_F(MemoryTextTest, BytesBecomeTextOrDigits)
{
    EXPECT_EQ("[str]ab", dump("61 62 00 00", 256));
    EXPECT_EQ("[str]", dump("00", 256));
    EXPECT_EQ("[mem]616263", dump("61 62 63", 256));
    EXPECT_EQ("[mem]ff00", dump("FF 00", 256));
}

TEST_F(MemoryTextTest, DigitsFillTheRoomInPairs)
{
    const char *const expected[] = {"",          "[",           "[m",          "[me",           "[mem",
                                    "[mem]",     "[mem]",       "[mem]01",     "[mem]01",       "[mem]0102",
                                    "[mem]0102", "[mem]010203", "[mem]010203", "[mem]01020304", "[mem]01020304"};
    for (uint32_t room = 1; room <= 15; ++room)
    {
        EXPECT_EQ(expected[room - 1], dump("01 02 03 04", room)) << room;
    }
}

TEST_F(MemoryTextTest, ARoomOf256Shows125Bytes)
{
    std::string hex;
    std::string digits;
    for (int i = 0; i < 126; ++i)
    {
        hex += "AB ";
        digits += "ab";
    }
    EXPECT_EQ("[mem]" + digits.substr(0, 250), dump(hex, 256));
    EXPECT_EQ("[mem]" + digits.substr(0, 250), dump(hex, 257));
    EXPECT_EQ("[mem]" + digits, dump(hex, 258));
}

TEST_F(MemoryTextTest, AStringIsCutToTheRoom)
{
    EXPECT_EQ("[str]a", dump("61 62 00", 7));
    EXPECT_EQ("[st", dump("61 62 00", 4));
}

TEST_F(MemoryTextTest, NullArgumentsWriteNothing)
{
    const uint8_t byte = 1;
    char text[10] = "untouched";
    GPBLIB_DBG_DumpMemToString(nullptr, 1, text, sizeof(text));
    GPBLIB_DBG_DumpMemToString(&byte, 0, text, sizeof(text));
    GPBLIB_DBG_DumpMemToString(&byte, 1, text, 0);
    GPBLIB_DBG_DumpMemToString(&byte, 1, nullptr, sizeof(text));
    EXPECT_STREQ("untouched", text);
}

TEST_F(MemoryTextTest, AFailingFormatterIsReported)
{
    GpbHost_FailCall(GPB_HOST_SNPRINTF_TRUNCATED, 1);
    EXPECT_EQ("", dump("61 62 63", 20));
    EXPECT_EQ(1u, takeAsserts().size());
    GpbHost_FailCall(GPB_HOST_SPRINTF, 2);
    EXPECT_EQ("[mem]61", dump("61 62 63", 20));
    EXPECT_EQ(1u, takeAsserts().size());
}

} // namespace
} // namespace gpbtest
