/** Numbers written without the C library. */
#ifndef GPB_HOST_PLAIN_NUMBER_H
#define GPB_HOST_PLAIN_NUMBER_H

#include <cstddef>

namespace host
{

/** Room for any number that is written here: a sign, fourteen digits and the point. */
constexpr size_t kPlainNumberSize = 16;

/**
 * Writes a whole number.
 *
 * @param out  room for kPlainNumberSize characters; one behind the number, where a text goes on or ends, may be written
 * @return where the characters of the number end
 */
[[nodiscard]] char *writePlainNumber(unsigned number, char *out);
[[nodiscard]] char *writePlainNumber(int number, char *out);

/**
 * Writes a number as printf does with "%.14g", if it is whole and has at most fourteen digits, or has at most ten
 * before the point and four behind it. Programs that round otherwise than to the nearest number get the nearest text
 * all the same, and those that take denormal numbers for zero get a zero.
 *
 * @param out  as above
 * @return as above; null, with no more than the sign written, for a number that is left to printf
 */
[[nodiscard]] char *writePlainNumber(double number, char *out);

} // namespace host

#endif
