/**
 * Bounds-checked copies. A call that is ordered to fail does what it would do if its text did not fit: it leaves an
 * empty text, or memory as it was.
 */
#include <algorithm>
#include <cstring>

#include "faults.h"
#include "likely.h"

namespace
{

constexpr int kFailed = 1;

/** Copies at most `count` characters; fails when they and the terminator need more than `size` bytes. */
int copyText(char *destination, size_t size, const char *source, size_t count, bool isToFail)
{
    if (destination == nullptr || size == 0 || source == nullptr)
    {
        return kFailed;
    }
    // No further than the destination reaches: the rest of a longer source need not be readable.
    const size_t length = strnlen(source, std::min(count, size));
    if (isToFail || length == size)
    {
        *destination = '\0';
        return kFailed;
    }
    std::memmove(destination, source, length);
    destination[length] = '\0';
    return 0;
}

/** Two parts that overlap make any length between one part and two. Both are read before either is written. */
template <typename Part>
[[gnu::always_inline]] inline void moveInParts(unsigned char *destination, const unsigned char *source, size_t count)
{
    Part first;
    Part last;
    std::memcpy(&first, source, sizeof(Part));
    std::memcpy(&last, source + count - sizeof(Part), sizeof(Part));
    std::memcpy(destination, &first, sizeof(Part));
    std::memcpy(destination + count - sizeof(Part), &last, sizeof(Part));
}

/** The count is at most that of two parts. */
template <typename Part>
[[gnu::always_inline]] inline void fillInParts(unsigned char *destination, Part pattern, size_t count)
{
    std::memcpy(destination, &pattern, sizeof(Part));
    std::memcpy(destination + count - sizeof(Part), &pattern, sizeof(Part));
}

/** The checked copy of any count. Kept out of line with all that is seldom done: without it, calls save no registers.
 */
[[gnu::noinline]] int copyAny(void *destination, size_t size, const void *source, size_t count)
{
    if (destination == nullptr || size == 0 || source == nullptr || count > size)
    {
        return kFailed;
    }
    std::memmove(destination, source, count);
    return 0;
}

/** copyAny, short for the few bytes that most of the library's copies have. */
[[gnu::always_inline]] inline int copyBytes(void *destination, size_t size, const void *source, size_t count)
{
    auto *const to = static_cast<unsigned char *>(destination);
    const auto *const from = static_cast<const unsigned char *>(source);
    if (count > size)
    {
        return kFailed;
    }
    if (to == nullptr || from == nullptr)
    {
        return kFailed;
    }
    if (host::isLikely(count == 1))
    {
        *to = *from;
        return 0;
    }
    if (count - 8 <= 8)
    {
        moveInParts<uint64_t>(to, from, count);
        return 0;
    }
    if (count - 4 < 4)
    {
        moveInParts<uint32_t>(to, from, count);
        return 0;
    }
    if (count - 2 < 2)
    {
        moveInParts<uint16_t>(to, from, count);
        return 0;
    }
    return copyAny(destination, size, source, count);
}

[[gnu::noinline]] int fillAny(void *destination, size_t size, int value, size_t count)
{
    if (destination == nullptr || size == 0 || count > size)
    {
        return kFailed;
    }
    std::memset(destination, value, count);
    return 0;
}

/** fillAny, short for the contents of most strings. */
[[gnu::always_inline]] inline int fillBytes(void *destination, size_t size, int value, size_t count)
{
    constexpr uint64_t kEachByte = 0x0101010101010101;
    if (destination != nullptr && count <= size && count - 8 <= 8)
    {
        const uint64_t pattern = static_cast<unsigned char>(value) * kEachByte;
        fillInParts(static_cast<unsigned char *>(destination), pattern, count);
        return 0;
    }
    return fillAny(destination, size, value, count);
}

[[gnu::noinline]] int copyUnlessOrdered(void *destination, size_t size, const void *source, size_t count)
{
    return host::callFails(GPB_HOST_MEMCPY) ? kFailed : copyAny(destination, size, source, count);
}

[[gnu::noinline]] int fillUnlessOrdered(void *destination, size_t size, int value, size_t count)
{
    return host::callFails(GPB_HOST_MEMSET) ? kFailed : fillAny(destination, size, value, count);
}

} // namespace

int memcpy_s(void *pvDest, size_t uiSize, const void *pvSrc, size_t uiCount)
{
    return host::isCallOnlyCounted(GPB_HOST_MEMCPY) ? copyBytes(pvDest, uiSize, pvSrc, uiCount)
                                                    : copyUnlessOrdered(pvDest, uiSize, pvSrc, uiCount);
}

int memset_s(void *pvDest, size_t uiSize, int iValue, size_t uiCount)
{
    return host::isCallOnlyCounted(GPB_HOST_MEMSET) ? fillBytes(pvDest, uiSize, iValue, uiCount)
                                                    : fillUnlessOrdered(pvDest, uiSize, iValue, uiCount);
}

int strcpy_s(char *pcDest, size_t uiSize, const char *pcSrc)
{
    return copyText(pcDest, uiSize, pcSrc, SIZE_MAX, host::callFails(GPB_HOST_STRCPY));
}

int strncpy_s(char *pcDest, size_t uiSize, const char *pcSrc, size_t uiCount)
{
    return copyText(pcDest, uiSize, pcSrc, uiCount, host::callFails(GPB_HOST_STRNCPY));
}
