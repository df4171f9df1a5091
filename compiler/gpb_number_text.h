// Numbers from texts, as the C library reads them.
#ifndef GPB_COMPILER_GPB_NUMBER_TEXT_H
#define GPB_COMPILER_GPB_NUMBER_TEXT_H

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <langinfo.h>
#include <limits>
#include <system_error>
#include <type_traits>

#include "compiler/gpb_enum_text.h"

/// What `read`, std::strtol or its like, reads in base 10; asked only for a text that is no plain number.
template <typename Number>
Number GpbReadInteger(const char *text, Number (*read)(const char *, char **, int))
{
    constexpr int DECIMAL = 10;
    const bool isNegative = std::is_signed_v<Number> && *text == '-';
    const char *const first = isNegative ? text + 1 : text;
    const char *const longest = first + std::numeric_limits<Number>::digits10; // so many digits always fit
    const char *digit = first;
    Number value = 0;
    for (; digit != longest && GpbIsDigit(*digit); ++digit)
    {
        value = value * DECIMAL + static_cast<Number>(*digit - '0');
    }
    // Blanks, other signs and longer numbers are left to the C library.
    if (digit == first || digit == longest)
    {
        return read(text, nullptr, DECIMAL);
    }
    return isNegative ? static_cast<Number>(0 - value) : value;
}

/// Whether the locale has a point in numbers, and nothing else.
inline bool GpbPointIsDot()
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing of the answer is kept
    return std::strcmp(nl_langinfo(RADIXCHAR), ".") == 0;
}

/// What std::strtod reads; asked only for a text that is no plain number, and where the decimal point is another one.
inline double GpbReadDouble(const char *text)
{
    const char digit = *text == '-' ? text[1] : *text;
    if (GpbIsDigit(digit) && GpbPointIsDot())
    {
        double value = 0;
        const char *const end = text + std::strlen(text);
        const std::from_chars_result read = std::from_chars(text, end, value);
        if (read.ec == std::errc() && read.ptr == end)
        {
            return value;
        }
    }
    return std::strtod(text, nullptr);
}

#endif
