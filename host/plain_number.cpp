#include "plain_number.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <langinfo.h>

namespace
{

/** The first number that has more than fourteen digits before the point. */
constexpr double kFifteenDigits = 1e14;

/** Whether the locale has a point in numbers, and nothing else. */
bool isPointDot()
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing of the answer is kept
    return std::strcmp(nl_langinfo(RADIXCHAR), ".") == 0;
}

/**
 * Writes a number with one to four digits behind the point and fourteen at most; null for one that has more. Of all
 * decimals of so few digits, only one is read as this number: that is the one which printf writes, too.
 */
const char *writeShortDecimal(double number, char *out, char *end)
{
    constexpr uint64_t kScales[] = {10, 100, 1000, 10000};
    const double size = std::fabs(number);
    for (const uint64_t scale : kScales)
    {
        const double scaled = size * static_cast<double>(scale);
        if (!(scaled < kFifteenDigits - 1))
        {
            return nullptr;
        }
        const auto digits = static_cast<uint64_t>(scaled + 1.0 / 2);
        if (static_cast<double>(digits) / static_cast<double>(scale) != size)
        {
            continue;
        }
        if (std::signbit(number))
        {
            *out++ = '-';
        }
        // The digit before the fraction, which keeps its zeros behind it, makes room for the point.
        char *const point = std::to_chars(out, end, digits / scale).ptr;
        const char *const fractionEnd = std::to_chars(point, end, scale + digits % scale).ptr;
        *point = '.';
        return fractionEnd;
    }
    return nullptr;
}

} // namespace

namespace host
{

const char *writePlainNumber(double number, char (&out)[kPlainNumberSize])
{
    const bool isNegativeZero = number == 0 && std::signbit(number);
    if (!(number > -kFifteenDigits && number < kFifteenDigits) || isNegativeZero)
    {
        return nullptr;
    }
    const auto whole = static_cast<int64_t>(number);
    if (static_cast<double>(whole) == number)
    {
        return writePlainNumber(whole, out);
    }
    return isPointDot() ? writeShortDecimal(number, std::begin(out), std::end(out)) : nullptr;
}

} // namespace host
