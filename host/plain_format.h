/** Formats of the plain kind, made without the C library. */
#ifndef GPB_HOST_PLAIN_FORMAT_H
#define GPB_HOST_PLAIN_FORMAT_H

#include <cstdarg>
#include <cstddef>

#include "platform/safe_string.h"

namespace host
{

/** What formatPlainly gives where it leaves a text to vsnprintf. */
constexpr int kNotPlain = -1;

/**
 * Formats as vsnprintf does, if there is nothing in the format but text, %s, %d, %u and %.14g, and no number in the
 * arguments that takes more than a moment.
 *
 * Nearly all that the library formats is of this kind: file names, put together several times for every compiler, and
 * the numbers of JSON documents. The C library takes hundreds of instructions to set itself up for a format.
 *
 * @param room  bytes of the destination, at least 1; the text is cut to one character less
 * @return characters of the whole text, which may be more than fit; kNotPlain with anything in the destination when it
 *         is left to vsnprintf
 */
[[nodiscard]] GPB_PRINTF_LIKE(3, 0) int formatPlainly(char *destination, size_t room, const char *formatText,
                                                      va_list args);

} // namespace host

#endif
