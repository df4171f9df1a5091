// Numbers from texts, as the C library reads them.
#ifndef GPB_COMPILER_GPB_NUMBER_TEXT_H
#define GPB_COMPILER_GPB_NUMBER_TEXT_H

#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <langinfo.h>
#include <limits>
#include <system_error>
#include <type_traits>

#include "compiler/gpb_enum_text.h"

inline constexpr unsigned GPB_DECIMAL = 10;

/// The digits at the begin of a text.
struct GpbDigits
{
    uint64_t value; ///< cut when they are more than fit
    const char *end;
};

/// A function of its own, so that its loop has the registers to itself.
[[gnu::noinline]] inline GpbDigits GpbReadDigits(const char *text)
{
    uint64_t value = 0;
    const char *end = text;
    for (; GpbIsDigit(*end); ++end)
    {
        value = value * GPB_DECIMAL + (static_cast<unsigned>(*end) - '0');
    }
    return {value, end};
}

/// What `read`, std::strtol or its like, reads in base 10; asked only for a text that is no plain number.
template <typename Number>
Number GpbReadInteger(const char *text, Number (*read)(const char *, char **, int))
{
    const bool isNegative = std::is_signed_v<Number> && *text == '-';
    const char *const first = isNegative ? text + 1 : text;
    const GpbDigits digits = GpbReadDigits(first);
    // Blanks, other signs and numbers that may not fit are left to the C library.
    if (digits.end == first || digits.end - first > std::numeric_limits<Number>::digits10)
    {
        return read(text, nullptr, GPB_DECIMAL);
    }
    return static_cast<Number>(isNegative ? 0 - digits.value : digits.value);
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
