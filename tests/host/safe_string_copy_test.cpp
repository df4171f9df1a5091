/** Bounds-checked copies, at the limit and one beyond. */
#include <array>
#include <cstring>
#include <string>

#include "platform/safe_string.h"
#include "support/platform_fixture.h"

namespace
{

constexpr char kUntouched = '#';

/** A destination whose every byte is known, longer than the sizes that the tests pass on. */
struct Destination
{
    std::array<char, 16> bytes;

    Destination() { bytes.fill(kUntouched); }

    char *data() { return bytes.data(); }

    bool isUntouchedFrom(size_t offset) const
    {
        return std::string(bytes.data() + offset, bytes.size() - offset) ==
               std::string(bytes.size() - offset, kUntouched);
    }
};

class SafeStringCopyTest : public gpbtest::PlatformFixture
{
protected:
    Destination m_out;
};

TEST_F(SafeStringCopyTest, MemcpyFillsItsDestination)
{
    EXPECT_EQ(0, memcpy_s(m_out.data(), 4, "abcdef", 4));
    EXPECT_EQ("abcd", std::string(m_out.data(), 4));
    EXPECT_TRUE(m_out.isUntouchedFrom(4));
}

TEST_F(SafeStringCopyTest, MemcpyLeavesADestinationThatIsOneTooSmall)
{
    EXPECT_NE(0, memcpy_s(m_out.data(), 4, "abcdef", 5));
    EXPECT_TRUE(m_out.isUntouchedFrom(0));
}

TEST_F(SafeStringCopyTest, MemcpyOfNothingSucceeds)
{
    EXPECT_EQ(0, memcpy_s(m_out.data(), 4, "abc", 0));
    EXPECT_TRUE(m_out.isUntouchedFrom(0));
}

TEST_F(SafeStringCopyTest, MemcpyOfOverlappingBytesIsExact)
{
    char text[] = "abcdef";
    EXPECT_EQ(0, memcpy_s(text + 1, 5, text, 5));
    EXPECT_STREQ("aabcde", text);
}

TEST_F(SafeStringCopyTest, MemcpyRejectsNullAndNoRoom)
{
    EXPECT_NE(0, memcpy_s(nullptr, 4, "abc", 1));
    EXPECT_NE(0, memcpy_s(m_out.data(), 4, nullptr, 1));
    EXPECT_NE(0, memcpy_s(m_out.data(), 0, "abc", 0));
    EXPECT_TRUE(m_out.isUntouchedFrom(0));
}

TEST_F(SafeStringCopyTest, MemsetFillsItsDestination)
{
    EXPECT_EQ(0, memset_s(m_out.data(), 4, 'x', 4));
    EXPECT_EQ("xxxx", std::string(m_out.data(), 4));
    EXPECT_TRUE(m_out.isUntouchedFrom(4));
}

TEST_F(SafeStringCopyTest, MemsetLeavesADestinationThatIsOneTooSmall)
{
    EXPECT_NE(0, memset_s(m_out.data(), 4, 'x', 5));
    EXPECT_TRUE(m_out.isUntouchedFrom(0));
}

TEST_F(SafeStringCopyTest, MemsetRejectsNullAndNoRoom)
{
    EXPECT_NE(0, memset_s(nullptr, 4, 'x', 1));
    EXPECT_NE(0, memset_s(m_out.data(), 0, 'x', 0));
    EXPECT_TRUE(m_out.isUntouchedFrom(0));
}

TEST_F(SafeStringCopyTest, StrcpyTakesATextThatFitsWithItsTerminator)
{
    EXPECT_EQ(0, strcpy_s(m_out.data(), 4, "abc"));
    EXPECT_STREQ("abc", m_out.data());
    EXPECT_TRUE(m_out.isUntouchedFrom(4));
}

TEST_F(SafeStringCopyTest, StrcpyEmptiesADestinationThatIsOneTooSmall)
{
    EXPECT_NE(0, strcpy_s(m_out.data(), 3, "abc"));
    EXPECT_STREQ("", m_out.data());
    EXPECT_TRUE(m_out.isUntouchedFrom(1));
}

TEST_F(SafeStringCopyTest, StrcpyOfAnEmptyTextNeedsOneByte)
{
    EXPECT_EQ(0, strcpy_s(m_out.data(), 1, ""));
    EXPECT_STREQ("", m_out.data());
    EXPECT_NE(0, strcpy_s(m_out.data(), 1, "a"));
    EXPECT_TRUE(m_out.isUntouchedFrom(1));
}

TEST_F(SafeStringCopyTest, StrcpyRejectsNullAndNoRoom)
{
    EXPECT_NE(0, strcpy_s(nullptr, 4, "abc"));
    EXPECT_NE(0, strcpy_s(m_out.data(), 4, nullptr));
    EXPECT_NE(0, strcpy_s(m_out.data(), 0, ""));
    EXPECT_TRUE(m_out.isUntouchedFrom(0));
}

TEST_F(SafeStringCopyTest, StrncpyCutsToItsCount)
{
    EXPECT_EQ(0, strncpy_s(m_out.data(), 4, "abcdef", 3));
    EXPECT_STREQ("abc", m_out.data());
    EXPECT_TRUE(m_out.isUntouchedFrom(4));
}

TEST_F(SafeStringCopyTest, StrncpyEmptiesADestinationThatIsOneTooSmallForItsCount)
{
    EXPECT_NE(0, strncpy_s(m_out.data(), 4, "abcdef", 4));
    EXPECT_STREQ("", m_out.data());
    EXPECT_TRUE(m_out.isUntouchedFrom(1));
}

TEST_F(SafeStringCopyTest, StrncpyWithALargeCountTakesTheWholeText)
{
    EXPECT_EQ(0, strncpy_s(m_out.data(), 4, "abc", 17));
    EXPECT_STREQ("abc", m_out.data());
    EXPECT_NE(0, strncpy_s(m_out.data(), 3, "abc", SIZE_MAX));
    EXPECT_STREQ("", m_out.data());
    EXPECT_TRUE(m_out.isUntouchedFrom(4));
}

TEST_F(SafeStringCopyTest, StrncpyWithoutACountGivesAnEmptyText)
{
    EXPECT_EQ(0, strncpy_s(m_out.data(), 1, "abc", 0));
    EXPECT_STREQ("", m_out.data());
    EXPECT_TRUE(m_out.isUntouchedFrom(1));
}

TEST_F(SafeStringCopyTest, StrncpyReadsNoFurtherThanItsCount)
{
    const std::string heapText(3, 'a'); // a memory checker watches what is behind
    const std::unique_ptr<char[]> unterminated(new char[3]);
    std::memcpy(unterminated.get(), heapText.data(), 3);
    EXPECT_EQ(0, strncpy_s(m_out.data(), 8, unterminated.get(), 3));
    EXPECT_STREQ("aaa", m_out.data());
}

TEST_F(SafeStringCopyTest, StrncpyRejectsNullAndNoRoom)
{
    EXPECT_NE(0, strncpy_s(nullptr, 4, "abc", 1));
    EXPECT_NE(0, strncpy_s(m_out.data(), 4, nullptr, 1));
    EXPECT_NE(0, strncpy_s(m_out.data(), 0, "abc", 0));
    EXPECT_TRUE(m_out.isUntouchedFrom(0));
}

TEST_F(SafeStringCopyTest, ProvokedFailuresLeaveMemoryAloneAndTextsEmpty)
{
    GpbHost_FailCall(GPB_HOST_MEMCPY, 1);
    EXPECT_NE(0, memcpy_s(m_out.data(), 4, "abc", 4));
    GpbHost_FailCall(GPB_HOST_MEMSET, 1);
    EXPECT_NE(0, memset_s(m_out.data(), 4, 'x', 4));
    EXPECT_TRUE(m_out.isUntouchedFrom(0));

    GpbHost_FailCall(GPB_HOST_STRCPY, 1);
    EXPECT_NE(0, strcpy_s(m_out.data(), 4, "abc"));
    EXPECT_STREQ("", m_out.data());
    EXPECT_TRUE(m_out.isUntouchedFrom(1));

    m_out = Destination();
    GpbHost_FailCall(GPB_HOST_STRNCPY, 1);
    EXPECT_NE(0, strncpy_s(m_out.data(), 4, "abc", 2));
    EXPECT_STREQ("", m_out.data());
    EXPECT_TRUE(m_out.isUntouchedFrom(1));
}

} // namespace
