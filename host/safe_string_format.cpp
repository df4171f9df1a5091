/**
 * Bounds-checked formatters. They differ in what they do with a text that does not fit; a format that cannot be
 * carried out, and a call that is ordered to fail, give -1 and an empty text in all of them.
 */
#include <climits>
#include <cstdio>

#include "faults.h"
#include "plain_text.h"

namespace
{

constexpr int kFailed = -1;

/** Whether this stands behind the point of "%.14g". */
bool isFourteenDigits(const char *precision)
{
    return precision[0] == '1' && precision[1] == '4' && precision[2] == 'g';
}

// Every caller hands over a list that it has started, which the analyzer does not see.
// NOLINTBEGIN(clang-analyzer-valist.Uninitialized)

/**
 * Formats as vsnprintf does, if there is nothing in the format but text, %s, %d, %u and %.14g, no number in the
 * arguments that takes more than a moment, and room for the text.
 *
 * Nearly all that the library formats is of this kind: file names, put together several times for every compiler, and
 * the numbers of JSON documents.
 *
 * @return the end of the text; null, with the start of the text in the destination, when it is left to vsnprintf
 */
GPB_PRINTF_LIKE(3, 0)
char *formatPlainly(char *destination, size_t room, const char *formatText, va_list args)
{
    host::PlainText text(destination, room);
    while (*formatText != '\0')
    {
        bool isDone = false;
        if (*formatText != '%')
        {
            const char *const conversion = strchrnul(formatText, '%');
            isDone = text.add(formatText, static_cast<size_t>(conversion - formatText));
            formatText = conversion;
        }
        else
        {
            switch (formatText[1])
            {
            case 's':
                isDone = text.addArgument(va_arg(args, const char *));
                formatText += std::strlen("%s");
                break;
            case 'd':
                isDone = text.addArgument(va_arg(args, int));
                formatText += std::strlen("%d");
                break;
            case 'u':
                isDone = text.addArgument(va_arg(args, unsigned));
                formatText += std::strlen("%u");
                break;
            case '.':
                isDone = isFourteenDigits(formatText + 2) && text.addArgument(va_arg(args, double));
                formatText += std::strlen("%.14g");
                break;
            default:
                break;
            }
        }
        if (!isDone)
        {
            return nullptr;
        }
    }
    return text.finish();
}

/**
 * Formats into a buffer of `room` bytes; the text is cut to one character less.
 *
 * @return characters of the whole text, which may be more than fit, or -1
 */
GPB_PRINTF_LIKE(3, 0)
int format(char *destination, size_t room, const char *formatText, va_list args, bool isToFail)
{
    if (destination == nullptr || room == 0 || formatText == nullptr)
    {
        return kFailed;
    }
    int length = kFailed;
    if (!isToFail)
    {
        va_list plainArgs;
        va_copy(plainArgs, args);
        // A text that is longer than an int can tell is an error of vsnprintf.
        const char *const end = room <= INT_MAX ? formatPlainly(destination, room, formatText, plainArgs) : nullptr;
        va_end(plainArgs);
        if (end != nullptr)
        {
            return static_cast<int>(end - destination);
        }
        length = vsnprintf(destination, room, formatText, args);
    }
    if (length < 0)
    {
        *destination = '\0';
        return kFailed;
    }
    return length;
}

// NOLINTEND(clang-analyzer-valist.Uninitialized)

bool isCut(int length, size_t room)
{
    return length >= 0 && static_cast<size_t>(length) >= room;
}

GPB_PRINTF_LIKE(3, 0)
int formatTruncated(char *destination, size_t size, const char *formatText, va_list args, bool isToFail)
{
    const int length = format(destination, size, formatText, args, isToFail);
    return isCut(length, size) ? static_cast<int>(size - 1) : length;
}

} // namespace

int sprintf_s(char *pcDest, size_t uiSize, const char *pcFormat, ...)
{
    va_list args;
    va_start(args, pcFormat);
    const int length = format(pcDest, uiSize, pcFormat, args, host::callFails(GPB_HOST_SPRINTF));
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
    const int length = format(pcDest, room, pcFormat, args, host::callFails(GPB_HOST_SNPRINTF));
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
