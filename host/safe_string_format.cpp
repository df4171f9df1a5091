/**
 * Bounds-checked formatters. They differ in what they do with a text that does not fit; a format that cannot be
 * carried out, and a call that is ordered to fail, give -1 and an empty text in all of them.
 */
#include <algorithm>
#include <cstdio>

#include "faults.h"
#include "plain_format.h"

namespace
{

constexpr int kFailed = -1;

/** As vsnprintf. */
GPB_PRINTF_LIKE(3, 0)
int formatAny(char *destination, size_t room, const char *formatText, va_list args)
{
    // Every caller hands over a list that it has started, which the analyzer does not see.
    // NOLINTBEGIN(clang-analyzer-valist.Uninitialized)
    va_list plainArgs;
    va_copy(plainArgs, args);
    const int length = host::formatPlainly(destination, room, formatText, plainArgs);
    va_end(plainArgs);
    return length != host::kNotPlain ? length : vsnprintf(destination, room, formatText, args);
    // NOLINTEND(clang-analyzer-valist.Uninitialized)
}

/**
 * Formats into a buffer of `room` bytes at most, whose whole size is `size`; the text is cut to `room` - 1 characters.
 *
 * @return characters of the whole text, which may be more than fit, or -1
 */
GPB_PRINTF_LIKE(4, 0)
int format(char *destination, size_t size, size_t room, const char *formatText, va_list args, bool isToFail)
{
    if (destination == nullptr || size == 0 || formatText == nullptr)
    {
        return kFailed;
    }
    const int length = isToFail ? kFailed : formatAny(destination, room, formatText, args);
    if (length < 0)
    {
        *destination = '\0';
        return kFailed;
    }
    return length;
}

bool isCut(int length, size_t room)
{
    return length >= 0 && static_cast<size_t>(length) >= room;
}

GPB_PRINTF_LIKE(3, 0)
int formatTruncated(char *destination, size_t size, const char *formatText, va_list args, bool isToFail)
{
    const int length = format(destination, size, size, formatText, args, isToFail);
    return isCut(length, size) ? static_cast<int>(size - 1) : length;
}

} // namespace

int sprintf_s(char *pcDest, size_t uiSize, const char *pcFormat, ...)
{
    va_list args;
    va_start(args, pcFormat);
    const int length = format(pcDest, uiSize, uiSize, pcFormat, args, host::callFails(GPB_HOST_SPRINTF));
    va_end(args);
    if (isCut(length, uiSize))
    {
        *pcDest = '\0';
        return kFailed;
    }
    return length;
}

int snprintf_s(char *pcDest, size_t uiSize, size_t uiCount, const char *pcFormat, ...)
{
    const size_t room = uiCount < uiSize ? uiCount + 1 : uiSize;
    va_list args;
    va_start(args, pcFormat);
    const int length = format(pcDest, uiSize, room, pcFormat, args, host::callFails(GPB_HOST_SNPRINTF));
    va_end(args);
    return isCut(length, room) ? kFailed : length;
}

int snprintf_truncated_s(char *pcDest, size_t uiSize, const char *pcFormat, ...)
{
    va_list args;
    va_start(args, pcFormat);
    const int length = formatTruncated(pcDest, uiSize, pcFormat, args, host::callFails(GPB_HOST_SNPRINTF_TRUNCATED));
    va_end(args);
    return length;
}

int vsnprintf_truncated_s(char *pcDest, size_t uiSize, const char *pcFormat, va_list stArgs)
{
    return formatTruncated(pcDest, uiSize, pcFormat, stArgs, host::callFails(GPB_HOST_VSNPRINTF_TRUNCATED));
}
