/** Numbers written without the C library. */
#ifndef GPB_HOST_PLAIN_NUMBER_H
#define GPB_HOST_PLAIN_NUMBER_H

#include <charconv>
#include <cstddef>
#include <iterator>

namespace host
{

/** Room for any number that is written here. */
constexpr size_t kPlainNumberSize = 24;

/** Writes a whole number; returns where its characters end. */
template <typename Whole>
[[nodiscard]] const char *writePlainNumber(Whole number, char (&out)[kPlainNumberSize])
{
    return std::to_chars(std::begin(out), std::end(out), number).ptr;
}

/**
 * Writes a number as printf does with "%.14g", if it is whole or has at most four digits behind the point. Programs
 * that round otherwise than to the nearest number get the nearest text all the same.
 *
 * @return where its characters end; null for a number that is left to printf
 */
[[nodiscard]] const char *writePlainNumber(double number, char (&out)[kPlainNumberSize]);

} // namespace host

#endif
