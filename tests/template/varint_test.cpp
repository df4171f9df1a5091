// Base-128 varints: sizes, bytes, rooms, and what is no varint.
#include "support/platform_fixture.h"
#include "tree_support.h"

namespace gpbtest
{
namespace
{

struct VarintCase
{
    uint64_t value;
    const char *hex;
};

constexpr VarintCase kCases[] = {
    {0, "00"},
    {1, "01"},
    {(1ULL << 7) - 1, "7F"},
    {1ULL << 7, "80 01"},
    {300, "AC 02"},
    {(1ULL << 14) - 1, "FF 7F"},
    {1ULL << 14, "80 80 01"},
    {(1ULL << 21) - 1, "FF FF 7F"},
    {1ULL << 21, "80 80 80 01"},
    {(1ULL << 28) - 1, "FF FF FF 7F"},
    {1ULL << 28, "80 80 80 80 01"},
    {0xFFFFFFFFULL, "FF FF FF FF 0F"},
    {1ULL << 32, "80 80 80 80 10"},
    {(1ULL << 35) - 1, "FF FF FF FF 7F"},
    {1ULL << 35, "80 80 80 80 80 01"},
    {(1ULL << 42) - 1, "FF FF FF FF FF 7F"},
    {1ULL << 42, "80 80 80 80 80 80 01"},
    {(1ULL << 49) - 1, "FF FF FF FF FF FF 7F"},
    {1ULL << 49, "80 80 80 80 80 80 80 01"},
    {(1ULL << 56) - 1, "FF FF FF FF FF FF FF 7F"},
    {1ULL << 56, "80 80 80 80 80 80 80 80 01"},
    {(1ULL << 63) - 1, "FF FF FF FF FF FF FF FF 7F"},
    {1ULL << 63, "80 80 80 80 80 80 80 80 80 01"},
    {~0ULL, "FF FF FF FF FF FF FF FF FF 01"},
};

class VarintTest : public PlatformFixture, public ::testing::WithParamInterface<VarintCase>
{
};

TEST_P(VarintTest, HasTheSizeOfItsBytes)
{
    EXPECT_EQ(fromHex(GetParam().hex).size(), GPBLIB_Encoding_GetValueSizeOfInteger(GetParam().value));
}

TEST_P(VarintTest, IsWrittenIntoEveryRoomThatHoldsIt)
{
    const Bytes expected = fromHex(GetParam().hex);
    for (uint32_t room = 0; room <= expected.size() + 1; ++room)
    {
        Bytes buffer(expected.size() + 2, 0xAA);
        const uint32_t count = GPBLIB_Encoding_WriteVarInt(GetParam().value, buffer.data(), room);
        Bytes wanted(buffer.size(), 0xAA);
        if (room >= expected.size())
        {
            std::copy(expected.begin(), expected.end(), wanted.begin());
        }
        EXPECT_EQ(room >= expected.size() ? expected.size() : 0, count) << "room " << room;
        EXPECT_EQ(toHex(wanted), toHex(buffer)) << "room " << room;
    }
}

TEST_P(VarintTest, IsReadWhenItsLastByteIsThere)
{
    const Bytes bytes = fromHex(GetParam().hex);
    for (size_t length = 0; length <= bytes.size(); ++length)
    {
        const Bytes prefix(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length));
        uint64_t value = 0x1234;
        const uint32_t count = GPBLIB_Encoding_ReadVarInt(&value, prefix.data(), static_cast<uint32_t>(prefix.size()));
        EXPECT_EQ(length == bytes.size() ? bytes.size() : 0, count) << length;
        EXPECT_EQ(length == bytes.size() ? GetParam().value : 0x1234, value) << length;
    }
}

INSTANTIATE_TEST_SUITE_P(Boundaries, VarintTest, ::testing::ValuesIn(kCases));

class VarintEdgeTest : public PlatformFixture
{
protected:
    static uint32_t readHex(const char *hex, uint64_t *value)
    {
        const Bytes bytes = fromHex(hex);
        return GPBLIB_Encoding_ReadVarInt(value, bytes.data(), static_cast<uint32_t>(bytes.size()));
    }
};

TEST_F(VarintEdgeTest, ElevenBytesAreNoVarint)
{
    uint64_t value = 7;
    EXPECT_EQ(0u, readHex("80 80 80 80 80 80 80 80 80 80 01", &value));
    EXPECT_EQ(0u, readHex("FF FF FF FF FF FF FF FF FF FF", &value));
    EXPECT_EQ(7u, value);
}

TEST_F(VarintEdgeTest, LongFormsOfASmallValueAreRead)
{
    uint64_t value = 7;
    EXPECT_EQ(3u, readHex("81 80 00", &value));
    EXPECT_EQ(1u, value);
}

TEST_F(VarintEdgeTest, BitsAboveTheSixtyFourthAreLost)
{
    uint64_t value = 7;
    EXPECT_EQ(10u, readHex("80 80 80 80 80 80 80 80 80 7F", &value));
    EXPECT_EQ(1ULL << 63, value);
}

TEST_F(VarintEdgeTest, ReadingStopsBehindTheVarint)
{
    uint64_t value = 0;
    EXPECT_EQ(2u, readHex("AC 02 FF", &value));
    EXPECT_EQ(300u, value);
}

TEST_F(VarintEdgeTest, NullArgumentsReadAndWriteNothing)
{
    const uint8_t byte = 0;
    uint64_t value = 7;
    EXPECT_EQ(0u, GPBLIB_Encoding_ReadVarInt(nullptr, &byte, 1));
    EXPECT_EQ(0u, GPBLIB_Encoding_ReadVarInt(&value, nullptr, 1));
    EXPECT_EQ(0u, GPBLIB_Encoding_WriteVarInt(1, nullptr, 10));
}

TEST_F(VarintEdgeTest, AFailedCopyIsReportedAndCountedAllTheSame)
{
    GpbHost_FailCall(GPB_HOST_MEMCPY, 1);
    uint8_t buffer[2] = {0xAA, 0xAA};
    EXPECT_EQ(2u, GPBLIB_Encoding_WriteVarInt(300, buffer, sizeof(buffer)));
    EXPECT_EQ("gpb_template_rdmi_tree:60\n", takeAssertText());
}

} // namespace
} // namespace gpbtest
