/** Bounds-checked formatters, at the limit and one beyond. */
#include <array>
#include <clocale>
#include <cstdint>
#include <string>

#include "platform/safe_string.h"
#include "support/platform_fixture.h"

namespace
{

constexpr char kUntouched = '#';

__attribute__((format(printf, 3, 4))) int formatWithList(char *destination, size_t size, const char *format, ...)
{
    va_list args;
    va_start(args, format);
    const int length = vsnprintf_truncated_s(destination, size, format, args);
    va_end(args);
    return length;
}

class SafeStringFormatTest : public gpbtest::PlatformFixture
{
protected:
    SafeStringFormatTest() { fill(); }

    void fill() { m_bytes.fill(kUntouched); }

    char *out() { return m_bytes.data(); }

    bool isUntouchedFrom(size_t offset) const
    {
        return std::string(m_bytes.data() + offset, m_bytes.size() - offset) ==
               std::string(m_bytes.size() - offset, kUntouched);
    }

    /** A character that no multi-byte text of the "C" locale has: the C library's formatter fails on it. */
    const wchar_t m_unprintable[2] = {0xFFFFF, 0};

private:
    std::array<char, 16> m_bytes;
};

TEST_F(SafeStringFormatTest, SprintfReturnsTheNumberOfCharacters)
{
    EXPECT_EQ(4, sprintf_s(out(), 5, "%s-%d", "ab", 7));
    EXPECT_STREQ("ab-7", out());
    EXPECT_TRUE(isUntouchedFrom(5));
    EXPECT_EQ(0, sprintf_s(out(), 1, "%s", ""));
    EXPECT_STREQ("", out());
}

TEST_F(SafeStringFormatTest, SprintfEmptiesADestinationThatIsOneTooSmall)
{
    EXPECT_EQ(-1, sprintf_s(out(), 4, "%s-%d", "ab", 7));
    EXPECT_STREQ("", out());
    EXPECT_TRUE(isUntouchedFrom(4));
}

TEST_F(SafeStringFormatTest, SnprintfReturnsTheNumberOfCharacters)
{
    EXPECT_EQ(4, snprintf_s(out(), 5, 4, "%s-%d", "ab", 7));
    EXPECT_STREQ("ab-7", out());
    EXPECT_TRUE(isUntouchedFrom(5));
}

TEST_F(SafeStringFormatTest, SnprintfCutsToItsCountAndFails)
{
    EXPECT_EQ(-1, snprintf_s(out(), 8, 3, "%s-%d", "ab", 7));
    EXPECT_STREQ("ab-", out());
    EXPECT_TRUE(isUntouchedFrom(4));
}

TEST_F(SafeStringFormatTest, SnprintfCutsToItsSizeAndFails)
{
    EXPECT_EQ(-1, snprintf_s(out(), 4, 4, "%s-%d", "ab", 7));
    EXPECT_STREQ("ab-", out());
    EXPECT_TRUE(isUntouchedFrom(4));
    fill();
    EXPECT_EQ(-1, snprintf_s(out(), 4, SIZE_MAX, "%s-%d", "ab", 7));
    EXPECT_STREQ("ab-", out());
    EXPECT_TRUE(isUntouchedFrom(4));
}

TEST_F(SafeStringFormatTest, SnprintfWithACountOfNothingTakesAnEmptyTextOnly)
{
    EXPECT_EQ(0, snprintf_s(out(), 4, 0, "%s", ""));
    EXPECT_STREQ("", out());
    EXPECT_EQ(-1, snprintf_s(out(), 4, 0, "%s", "a"));
    EXPECT_STREQ("", out());
    EXPECT_TRUE(isUntouchedFrom(1));
}

TEST_F(SafeStringFormatTest, SnprintfTruncatedReturnsTheNumberOfCharacters)
{
    EXPECT_EQ(4, snprintf_truncated_s(out(), 5, "%s-%d", "ab", 7));
    EXPECT_STREQ("ab-7", out());
    EXPECT_TRUE(isUntouchedFrom(5));
}

TEST_F(SafeStringFormatTest, SnprintfTruncatedCutsAndSucceeds)
{
    EXPECT_EQ(3, snprintf_truncated_s(out(), 4, "%s-%d", "ab", 7));
    EXPECT_STREQ("ab-", out());
    EXPECT_TRUE(isUntouchedFrom(4));
    EXPECT_EQ(0, snprintf_truncated_s(out(), 1, "%s", "abc"));
    EXPECT_STREQ("", out());
}

TEST_F(SafeStringFormatTest, VsnprintfTruncatedReturnsTheNumberOfCharacters)
{
    EXPECT_EQ(4, formatWithList(out(), 5, "%s-%d", "ab", 7));
    EXPECT_STREQ("ab-7", out());
    EXPECT_TRUE(isUntouchedFrom(5));
}

TEST_F(SafeStringFormatTest, VsnprintfTruncatedCutsAndSucceeds)
{
    EXPECT_EQ(3, formatWithList(out(), 4, "%s-%d", "ab", 7));
    EXPECT_STREQ("ab-", out());
    EXPECT_TRUE(isUntouchedFrom(4));
}

TEST_F(SafeStringFormatTest, NullAndNoRoomAreErrorsThatWriteNothing)
{
    const char *volatile const noFormat = nullptr; // volatile: unknown to the compiler's own check of formats
    EXPECT_EQ(-1, sprintf_s(nullptr, 4, "a"));
    EXPECT_EQ(-1, sprintf_s(out(), 0, "a"));
    EXPECT_EQ(-1, sprintf_s(out(), 4, noFormat, 0));
    EXPECT_EQ(-1, snprintf_s(nullptr, 4, 4, "a"));
    EXPECT_EQ(-1, snprintf_s(out(), 0, 4, "a"));
    EXPECT_EQ(-1, snprintf_s(out(), 0, 0, "a"));
    EXPECT_EQ(-1, snprintf_s(out(), 4, 4, noFormat, 0));
    EXPECT_EQ(-1, snprintf_truncated_s(nullptr, 4, "a"));
    EXPECT_EQ(-1, snprintf_truncated_s(out(), 0, "a"));
    EXPECT_EQ(-1, snprintf_truncated_s(out(), 4, noFormat, 0));
    EXPECT_EQ(-1, formatWithList(nullptr, 4, "a"));
    EXPECT_EQ(-1, formatWithList(out(), 0, "a"));
    EXPECT_EQ(-1, formatWithList(out(), 4, noFormat, 0));
    EXPECT_TRUE(isUntouchedFrom(0));
}

TEST_F(SafeStringFormatTest, FormatThatCannotBeCarriedOutGivesAnEmptyText)
{
    ASSERT_STREQ("C", std::setlocale(LC_CTYPE, nullptr));
    EXPECT_EQ(-1, sprintf_s(out(), 8, "ab%ls", m_unprintable));
    EXPECT_STREQ("", out());
    fill();
    EXPECT_EQ(-1, snprintf_s(out(), 8, 7, "ab%ls", m_unprintable));
    EXPECT_STREQ("", out());
    fill();
    EXPECT_EQ(-1, snprintf_truncated_s(out(), 8, "ab%ls", m_unprintable));
    EXPECT_STREQ("", out());
    fill();
    EXPECT_EQ(-1, formatWithList(out(), 8, "ab%ls", m_unprintable));
    EXPECT_STREQ("", out());
}

TEST_F(SafeStringFormatTest, ProvokedFailuresGiveAnEmptyText)
{
    GpbHost_FailCall(GPB_HOST_SPRINTF, 1);
    EXPECT_EQ(-1, sprintf_s(out(), 4, "%d", 7));
    EXPECT_STREQ("", out());
    EXPECT_TRUE(isUntouchedFrom(1));
    fill();
    GpbHost_FailCall(GPB_HOST_SNPRINTF, 1);
    EXPECT_EQ(-1, snprintf_s(out(), 4, 3, "%d", 7));
    EXPECT_STREQ("", out());
    EXPECT_TRUE(isUntouchedFrom(1));
    fill();
    GpbHost_FailCall(GPB_HOST_SNPRINTF_TRUNCATED, 1);
    EXPECT_EQ(-1, snprintf_truncated_s(out(), 4, "%d", 7));
    EXPECT_STREQ("", out());
    EXPECT_TRUE(isUntouchedFrom(1));
    fill();
    GpbHost_FailCall(GPB_HOST_VSNPRINTF_TRUNCATED, 1);
    EXPECT_EQ(-1, formatWithList(out(), 4, "%d", 7));
    EXPECT_STREQ("", out());
    EXPECT_TRUE(isUntouchedFrom(1));
}

} // namespace
