/**
 * Bounds-checked copies. A call that is ordered to fail does what it would do if its text did not fit: it leaves an
 * empty text, or memory as it was.
 */
#include <algorithm>
#include <cstring>

#include "faults.h"

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

} // namespace

int memcpy_s(void *pvDest, size_t uiSize, const void *pvSrc, size_t uiCount)
{
    if (host::callFails(GPB_HOST_MEMCPY) || pvDest == nullptr || uiSize == 0 || pvSrc == nullptr || uiCount > uiSize)
    {
        return kFailed;
    }
    std::memmove(pvDest, pvSrc, uiCount);
    return 0;
}

int memset_s(void *pvDest, size_t uiSize, int iValue, size_t uiCount)
{
    if (host::callFails(GPB_HOST_MEMSET) || pvDest == nullptr || uiSize == 0 || uiCount > uiSize)
    {
        return kFailed;
    }
    std::memset(pvDest, iValue, uiCount);
    return 0;
}

int strcpy_s(char *pcDest, size_t uiSize, const char *pcSrc)
{
    return copyText(pcDest, uiSize, pcSrc, SIZE_MAX, host::callFails(GPB_HOST_STRCPY));
}

int strncpy_s(char *pcDest, size_t uiSize, const char *pcSrc, size_t uiCount)
{
    return copyText(pcDest, uiSize, pcSrc, uiCount, host::callFails(GPB_HOST_STRNCPY));
}
