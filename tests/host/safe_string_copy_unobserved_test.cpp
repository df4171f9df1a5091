/**
 * Checked copies and fills of every short length while nobody observes the platform and nothing is to fail, which is
 * how programs other than tests call them: what most calls need is done on a way of its own then.
 */
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "gpb_templatelib/gpb_host.h"
#include "platform/safe_string.h"

namespace
{

constexpr size_t kMaxLength = 40;
constexpr size_t kAround = 20;
constexpr char kUntouched = '#';

/** A text whose every character differs from its neighbours. */
std::string textOf(size_t length)
{
    std::string text;
    for (size_t index = 0; index < length; ++index)
    {
        text += static_cast<char>('a' + index % 26);
    }
    return text;
}

std::string untouched(size_t length)
{
    return std::string(length, kUntouched);
}

TEST(SafeStringCopyUnobserved, EveryLengthIsCopiedAndNoByteMore)
{
    for (size_t length = 0; length <= kMaxLength; ++length)
    {
        const std::string text = textOf(length);
        std::string bytes = untouched(length + 2 * kAround);
        EXPECT_EQ(0, memcpy_s(bytes.data() + kAround, length + 1, text.data(), length)) << length;
        EXPECT_EQ(untouched(kAround) + text + untouched(kAround), bytes) << length;
    }
}

TEST(SafeStringCopyUnobserved, EveryLengthMayOverlapInEitherDirection)
{
    for (size_t length = 1; length <= kMaxLength; ++length)
    {
        for (size_t distance = 0; distance <= length; ++distance)
        {
            const std::string text = textOf(length + distance);
            std::string up = text;
            EXPECT_EQ(0, memcpy_s(up.data() + distance, length, up.data(), length));
            EXPECT_EQ(text.substr(0, distance) + text.substr(0, length), up) << length << " by " << distance;
            std::string down = text;
            EXPECT_EQ(0, memcpy_s(down.data(), length, down.data() + distance, length));
            EXPECT_EQ(text.substr(distance) + text.substr(length), down) << length << " by " << distance;
        }
    }
}

TEST(SafeStringCopyUnobserved, EveryLengthIsFilledAndNoByteMore)
{
    for (size_t length = 0; length <= kMaxLength; ++length)
    {
        std::string bytes = untouched(length + 2 * kAround);
        EXPECT_EQ(0, memset_s(bytes.data() + kAround, length + 1, 0x100 + 0xE9, length)) << length;
        EXPECT_EQ(untouched(kAround) + std::string(length, '\xE9') + untouched(kAround), bytes) << length;
    }
}

TEST(SafeStringCopyUnobserved, EveryLengthIsRefusedWhereItDoesNotFitOrSomethingIsMissing)
{
    for (size_t length = 1; length <= kMaxLength; ++length)
    {
        const std::string text = textOf(length);
        std::string bytes = untouched(length);
        EXPECT_NE(0, memcpy_s(bytes.data(), length - 1, text.data(), length)) << length;
        EXPECT_NE(0, memcpy_s(bytes.data(), length, nullptr, length)) << length;
        EXPECT_NE(0, memcpy_s(nullptr, length, text.data(), length)) << length;
        EXPECT_NE(0, memset_s(bytes.data(), length - 1, 'x', length)) << length;
        EXPECT_NE(0, memset_s(nullptr, length, 'x', length)) << length;
        EXPECT_EQ(untouched(length), bytes) << length;
    }
    std::string bytes = untouched(1);
    EXPECT_NE(0, memcpy_s(bytes.data(), 0, "a", 0));
    EXPECT_NE(0, memset_s(bytes.data(), 0, 'x', 0));
    EXPECT_EQ(untouched(1), bytes);
}

TEST(SafeStringCopyUnobserved, EveryCallIsCountedAndEachCanBeOrderedToFail)
{
    const uint64_t copiesBefore = GpbHost_CallCount(GPB_HOST_MEMCPY);
    const uint64_t fillsBefore = GpbHost_CallCount(GPB_HOST_MEMSET);
    char bytes[8] = {};
    for (size_t length = 0; length <= sizeof(bytes) + 1; ++length) // the last one fails
    {
        (void)memcpy_s(bytes, sizeof(bytes), "12345678", length);
        (void)memset_s(bytes, sizeof(bytes), 0, length);
    }
    EXPECT_EQ(copiesBefore + 10, GpbHost_CallCount(GPB_HOST_MEMCPY));
    EXPECT_EQ(fillsBefore + 10, GpbHost_CallCount(GPB_HOST_MEMSET));

    GpbHost_FailCall(GPB_HOST_MEMCPY, 2);
    EXPECT_EQ(0, memcpy_s(bytes, sizeof(bytes), "1", 1));
    EXPECT_NE(0, memcpy_s(bytes, sizeof(bytes), "2", 1));
    EXPECT_EQ('1', bytes[0]);
    GpbHost_Reset();
    EXPECT_EQ(0, memcpy_s(bytes, sizeof(bytes), "3", 1));
    EXPECT_EQ('3', bytes[0]);
    EXPECT_EQ(copiesBefore + 13, GpbHost_CallCount(GPB_HOST_MEMCPY));
}

} // namespace
