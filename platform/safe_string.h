/**
 * @file
 * Bounds-checked memory and text functions of the device platform.
 *
 * Imported by the library, provided by the host process. Sizes and counts are in bytes. What each function
 * returns, and what it leaves in the destination when the result does not fit:
 *
 * | function              | fits                 | does not fit                                            |
 * |-----------------------|----------------------|---------------------------------------------------------|
 * | memcpy_s, memset_s    | 0                    | non-zero; the destination is untouched                  |
 * | strcpy_s, strncpy_s   | 0                    | non-zero; an empty text (nothing when the size is 0)    |
 * | sprintf_s             | number of characters | -1; an empty text                                       |
 * | snprintf_s            | number of characters | -1; the first `uiCount` (at most size - 1) characters   |
 * | snprintf_truncated_s, | number of characters | size - 1, with the text cut to size - 1 characters      |
 * | vsnprintf_truncated_s |                      |                                                         |
 *
 * A null destination, source or format, or a destination size of 0, is an error: non-zero, or -1 from the
 * formatting functions, and nothing is written.
 */
#ifndef GPB_TEMPLATELIB_PLATFORM_SAFE_STRING_H
#define GPB_TEMPLATELIB_PLATFORM_SAFE_STRING_H

#include <stdarg.h>
#include <stddef.h>

/** Lets the compiler compare a format with its arguments. */
#if defined(__GNUC__)
#define GPB_PRINTF_LIKE(formatArg, firstArg) __attribute__((format(printf, formatArg, firstArg)))
#else
#define GPB_PRINTF_LIKE(formatArg, firstArg)
#endif

#ifdef __cplusplus
extern "C"
{
#endif

/** Copies bytes. */
int memcpy_s(void *pvDest, size_t uiSize, const void *pvSrc, size_t uiCount);
/** Fills bytes. */
int memset_s(void *pvDest, size_t uiSize, int iValue, size_t uiCount);

/** Copies a text with its terminator. */
int strcpy_s(char *pcDest, size_t uiSize, const char *pcSrc);

/** Copies at most `uiCount` characters of a text and terminates. */
int strncpy_s(char *pcDest, size_t uiSize, const char *pcSrc, size_t uiCount);

/** Formats; a text that does not fit is a failure. */
int sprintf_s(char *pcDest, size_t uiSize, const char *pcFormat, ...) GPB_PRINTF_LIKE(3, 4);
/** Formats at most `uiCount` characters. */
int snprintf_s(char *pcDest, size_t uiSize, size_t uiCount, const char *pcFormat, ...) GPB_PRINTF_LIKE(4, 5);
/** Formats; a text that does not fit is cut. */
int snprintf_truncated_s(char *pcDest, size_t uiSize, const char *pcFormat, ...) GPB_PRINTF_LIKE(3, 4);
/** The same with a list of arguments. */
int vsnprintf_truncated_s(char *pcDest, size_t uiSize, const char *pcFormat, va_list stArgs) GPB_PRINTF_LIKE(3, 0);

#ifdef __cplusplus
}
#endif

#endif
