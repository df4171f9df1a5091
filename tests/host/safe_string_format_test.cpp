/** Bounds-checked formatters, at the limit and one beyond. */
#include <algorithm>
#include <array>
#include <climits>
#include <clocale>
#include <cmath>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <string>
#include <vector>

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

/** Compares a text, in every room up to one that is larger than needed, with what the C library makes of it. */
__attribute__((format(printf, 1, 2))) void expectLikeCLibrary(const char *format, ...)
{
    constexpr size_t kEnough = 64;
    va_list args;
    va_start(args, format);
    for (size_t room = 1; room <= kEnough; ++room)
    {
        std::array<char, kEnough> expected;
        std::array<char, kEnough> formatted;
        expected.fill(kUntouched);
        formatted.fill(kUntouched);
        va_list copy;
        va_copy(copy, args);
        const int length = std::vsnprintf(expected.data(), room, format, copy);
        va_end(copy);
        ASSERT_GE(length, 0) << format;
        ASSERT_LT(static_cast<size_t>(length), kEnough) << format << ": too long to be compared";
        va_copy(copy, args);
        EXPECT_EQ(std::min(length, static_cast<int>(room) - 1),
                  vsnprintf_truncated_s(formatted.data(), room, format, copy));
        va_end(copy);
        ASSERT_EQ(expected, formatted) << format << ": the text, or what is behind it";
    }
    va_end(args);
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

TEST_F(SafeStringFormatTest, FormatsAsTheCLibraryDoes)
{
    const char *volatile const noText = nullptr; // volatile: unknown to the compiler's own check of formats
    expectLikeCLibrary("text");
    expectLikeCLibrary("100%%");
    expectLikeCLibrary("%s", "");
    expectLikeCLibrary("%s", "a text");
    expectLikeCLibrary("%s%s.proto", "/opt/models/", "acme-box");
    expectLikeCLibrary("[%s] type %u", "n", 4294967295U);
    expectLikeCLibrary("%d,%d,%d,%d", 0, -1, INT_MAX, INT_MIN);
    expectLikeCLibrary("%u-%s-%d", 0U, "between", 7);
    expectLikeCLibrary("%.3s|%5s|%-5s|", "abcdef", "ab", "ab");
    expectLikeCLibrary("%02x %lld %c %5d %i", 10U, -1LL, 'c', 3, 4);
    expectLikeCLibrary("%s is left to it after %5.2f", "all", 1.005);
    expectLikeCLibrary("%.14g %.14f %.1g", 0.25, 0.25, 0.25);
    expectLikeCLibrary("(%s)", noText);
}

TEST_F(SafeStringFormatTest, FormatsWholeNumbersOfEveryLengthAsTheCLibraryDoes)
{
    for (uint64_t power = 1; power <= 100000000000000; power *= 10)
    {
        for (const uint64_t number : {power - 1, power, power + 1, power * 5 + power / 7})
        {
            ASSERT_NO_FATAL_FAILURE(expectLikeCLibrary("%u", static_cast<unsigned>(number)));
            ASSERT_NO_FATAL_FAILURE(expectLikeCLibrary("%d", static_cast<int>(number)));
            ASSERT_NO_FATAL_FAILURE(expectLikeCLibrary("%.14g", static_cast<double>(number)));
            ASSERT_NO_FATAL_FAILURE(expectLikeCLibrary("%.14g", -static_cast<double>(number)));
        }
    }
}

TEST_F(SafeStringFormatTest, FormatsFractionsOfEveryLengthAsTheCLibraryDoes)
{
    for (int fraction = 1; fraction < 100000; fraction += 97)
    {
        ASSERT_NO_FATAL_FAILURE(expectLikeCLibrary("%.14g", 12 + fraction / 100000.0));
        ASSERT_NO_FATAL_FAILURE(expectLikeCLibrary("<%.14g>", -fraction / 10000.0));
        ASSERT_NO_FATAL_FAILURE(expectLikeCLibrary("%.14g", 9999999999 + fraction / 10000.0));
    }
}

TEST_F(SafeStringFormatTest, FormatsNumbersWithFourteenDigitsAsTheCLibraryDoes)
{
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    std::vector<double> numbers = {0.0,
                                   1.0,
                                   0.5,
                                   0.1,
                                   0.0001,
                                   0.00001,
                                   0.00005,
                                   1.00005,
                                   4.35,
                                   2.675,
                                   0.1 + 0.2,
                                   123.4567,
                                   10.01,
                                   99999999999.999,
                                   9999999999.9999,
                                   99999999999.9999,
                                   9999999999999.9,
                                   9999999999999.95,
                                   99999999999999.0,
                                   99999999999999.4,
                                   99999999999999.5,
                                   1e14,
                                   1e15,
                                   1e300,
                                   1e-7,
                                   5e-324,
                                   9007199254740993.0,
                                   std::numeric_limits<double>::max(),
                                   kInfinity,
                                   std::numeric_limits<double>::quiet_NaN()};
    std::mt19937_64 random(14);
    for (const double scale : {1.0, 10.0, 100.0, 1000.0, 10000.0, 100000.0})
    {
        for (int i = 0; i < 2000; ++i)
        {
            const uint64_t digits = random() % 1000000000000000 >> random() % 40;
            numbers.push_back(static_cast<double>(digits) / scale);
            numbers.push_back(std::nextafter(static_cast<double>(digits) / scale, kInfinity));
        }
    }
    for (const double number : numbers)
    {
        ASSERT_NO_FATAL_FAILURE(expectLikeCLibrary("%.14g", number));
        ASSERT_NO_FATAL_FAILURE(expectLikeCLibrary("%.14g", -number));
    }
}

TEST_F(SafeStringFormatTest, RoomMayBeMoreThanAnIntTells)
{
    for (const size_t room : {size_t{INT_MAX}, size_t{INT_MAX} + 1, size_t{SIZE_MAX}})
    {
        fill();
        EXPECT_EQ(4, sprintf_s(out(), room, "%s-%d", "ab", 7));
        EXPECT_STREQ("ab-7", out());
        EXPECT_TRUE(isUntouchedFrom(5));
    }
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
