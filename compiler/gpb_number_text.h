// Numbers from texts, as the C library reads them.
#ifndef GPB_COMPILER_GPB_NUMBER_TEXT_H
#define GPB_COMPILER_GPB_NUMBER_TEXT_H

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <langinfo.h>
#include <system_error>

/// What `read`, std::strtol or its like, reads in base 10; asked only for a text that is no plain number.
template <typename Number>
Number GpbReadInteger(const char *text, Number (*read)(const char *, char **, int))
{
    constexpr int DECIMAL = 10;
    Number value = 0;
    // Blanks, signs and numbers out of range are left to the C library.
    return std::from_chars(text, text + std::strlen(text), value).ec == std::errc() ? value
                                                                                    : read(text, nullptr, DECIMAL);
}

/// What std::strtod reads; asked only for a text that is no plain number, and where the decimal point is another one.
inline double GpbReadDouble(const char *text)
{
    const char digit = *text == '-' ? text[1] : *text;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): strtod looks at the same locale, and nothing of the answer is kept
    if (digit >= '0' && digit <= '9' && *nl_langinfo(RADIXCHAR) == '.')
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
