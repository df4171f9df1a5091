#include "compiler/gpb_json_text.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <charconv>
#include <cjson/cJSON.h>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "compiler/gpb_json_node.h"

namespace
{

constexpr size_t FIRST_CAPACITY = 1024;

constexpr double INTEGER_LIMIT = 1e15; // integers below have no more digits than SHORT_DIGITS
constexpr int SHORT_DIGITS = 15;
constexpr int FULL_DIGITS = 17;
constexpr size_t MOST_OF_NUMBER = 32;

constexpr size_t CODES = 256;
constexpr size_t FIRST_PRINTABLE = 0x20;
constexpr size_t MOST_OF_ESCAPE = 6; // "\u001f"
constexpr ptrdiff_t PIECE = 256;     // of a string, for which there has to be room when all of it is escaped

// What follows the backslash, for each character that cannot stand in a string; 'u' is followed by its code.
constexpr std::array<char, CODES> MakeEscapes()
{
    std::array<char, CODES> escapes = {};
    for (size_t code = 0; code < FIRST_PRINTABLE; ++code)
    {
        escapes[code] = 'u';
    }
    escapes['"'] = '"';
    escapes['\\'] = '\\';
    escapes['\b'] = 'b';
    escapes['\f'] = 'f';
    escapes['\n'] = 'n';
    escapes['\r'] = 'r';
    escapes['\t'] = 't';
    return escapes;
}

constexpr std::array<char, CODES> ESCAPES = MakeEscapes();

char *WriteEscape(char *out, unsigned char code, char escape)
{
    constexpr char HEX[] = "0123456789abcdef";
    constexpr unsigned DIGIT_BITS = 4;
    *out++ = '\\';
    *out++ = escape;
    if (escape == 'u')
    {
        *out++ = '0';
        *out++ = '0';
        *out++ = HEX[code >> DIGIT_BITS];
        *out++ = HEX[code & ((1U << DIGIT_BITS) - 1)];
    }
    return out;
}

// Whether the digits stand for the number, as cJSON compares them.
bool ReadsBackAs(const char *begin, const char *end, double number)
{
    double read = 0;
    if (std::from_chars(begin, end, read).ec == std::errc::result_out_of_range)
    {
        // The greatest numbers are rounded to beyond the range, and infinity is within any tolerance of infinity.
        return true;
    }
    return std::fabs(read - number) <= std::fmax(std::fabs(read), std::fabs(number)) * DBL_EPSILON;
}

bool IsShortInteger(double number)
{
    const bool isNegativeZero = number == 0 && std::signbit(number);
    return std::fabs(number) < INTEGER_LIMIT && number == std::trunc(number) && !isNegativeZero;
}

// As printf writes it with "%1.15g", or with "%1.17g" when that does not read back.
char *WriteNumber(char *out, double number)
{
    char *const limit = out + MOST_OF_NUMBER;
    if (IsShortInteger(number))
    {
        return std::to_chars(out, limit, static_cast<int64_t>(number)).ptr;
    }
    char *const end = std::to_chars(out, limit, number, std::chars_format::general, SHORT_DIGITS).ptr;
    return ReadsBackAs(out, end, number)
               ? end
               : std::to_chars(out, limit, number, std::chars_format::general, FULL_DIGITS).ptr;
}

} // namespace

bool GpbJsonText::Append(const cJSON *item)
{
    switch (GpbJsonType(item))
    {
    case cJSON_NULL:
        AppendPlain("null");
        return true;
    case cJSON_False:
        AppendPlain("false");
        return true;
    case cJSON_True:
        AppendPlain("true");
        return true;
    case cJSON_Number:
        AppendNumber(item->valuedouble);
        return true;
    case cJSON_String:
        AppendString(item->valuestring);
        return true;
    case cJSON_Raw:
        AppendPlain(item->valuestring == nullptr ? "" : item->valuestring);
        return item->valuestring != nullptr;
    case cJSON_Array:
        return AppendArray(item);
    case cJSON_Object:
        return AppendObject(item);
    default:
        return false;
    }
}

const char *GpbJsonText::Terminated()
{
    *Begin(1) = '\0';
    RefuseTooLong();
    return buffer_.get();
}

bool GpbJsonText::AppendObject(const cJSON *object)
{
    Put('{');
    for (const cJSON *member = object->child; member != nullptr; member = member->next)
    {
        if (member != object->child)
        {
            Put(',');
        }
        AppendString(member->string);
        Put(':');
        if (!Append(member))
        {
            return false;
        }
    }
    Put('}');
    return true;
}

bool GpbJsonText::AppendArray(const cJSON *array)
{
    Put('[');
    for (const cJSON *member = array->child; member != nullptr; member = member->next)
    {
        if (member != array->child)
        {
            Put(',');
        }
        if (!Append(member))
        {
            return false;
        }
    }
    Put(']');
    return true;
}

void GpbJsonText::AppendNumber(double number)
{
    if (!std::isfinite(number))
    {
        AppendPlain("null");
        return;
    }
    Finish(WriteNumber(Begin(MOST_OF_NUMBER), number));
}

// A null string is an empty one.
void GpbJsonText::AppendString(const char *string)
{
    const char *next = string == nullptr ? "" : string;
    Put('"');
    while (*next != '\0')
    {
        char *out = Begin(PIECE + MOST_OF_ESCAPE);
        for (const char *const stop = out + PIECE; out < stop && *next != '\0'; ++next)
        {
            const auto code = static_cast<unsigned char>(*next);
            const char escape = ESCAPES[code];
            if (escape == 0)
            {
                *out++ = *next;
                continue;
            }
            out = WriteEscape(out, code, escape);
        }
        Finish(out);
    }
    Put('"');
}

void GpbJsonText::AppendPlain(const char *string)
{
    const size_t length = std::strlen(string);
    Finish(std::copy_n(string, length, Begin(length)));
}

void GpbJsonText::RefuseTooLong() const
{
    if (size_ >= MAX_SIZE)
    {
        throw std::length_error("JSON text");
    }
}

void GpbJsonText::Grow(size_t most)
{
    RefuseTooLong();
    const size_t capacity = std::max({FIRST_CAPACITY, capacity_ * 2, size_ + most});
    std::unique_ptr<char[]> buffer(new char[capacity]);
    std::copy_n(buffer_.get(), size_, buffer.get());
    buffer_ = std::move(buffer);
    capacity_ = capacity;
}
