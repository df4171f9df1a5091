#include "compiler/exact/gpb_exact_json_number.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <iterator>

#include "compiler/gpb_number_text.h"
#include "platform/safe_string.h"

namespace
{

// One more than the largest numbers of 63 and of 64 bits.
constexpr double SIGNED_END = 9223372036854775808.0;
constexpr double UNSIGNED_END = 18446744073709551616.0;

template <typename Whole>
bool WriteWhole(double value, char (&text)[GPB_JSON_NUMBER_SIZE])
{
    const auto whole = static_cast<Whole>(value);
    if (static_cast<double>(whole) != value)
    {
        return false;
    }
    *std::to_chars(std::begin(text), std::end(text) - 1, whole).ptr = '\0';
    return true;
}

} // namespace

bool GpbWriteExactNumber(double value, char (&text)[GPB_JSON_NUMBER_SIZE])
{
    if (value >= -SIGNED_END && value < SIGNED_END && !(value == 0 && std::signbit(value)) &&
        WriteWhole<int64_t>(value, text))
    {
        return true;
    }
    if (value >= SIGNED_END && value < UNSIGNED_END && WriteWhole<uint64_t>(value, text))
    {
        return true;
    }
    // The largest number of 64 bits is one more in a tree, and clamped again where it is read.
    if (value == UNSIGNED_END)
    {
        return sprintf_s(text, sizeof(text), "%.0f", value) >= 0;
    }
    // Most numbers that people write have fewer digits than all.
    if (sprintf_s(text, sizeof(text), "%.14g", value) < 0)
    {
        return false;
    }
    return GpbReadDouble(text) == value || sprintf_s(text, sizeof(text), "%.17g", value) >= 0;
}
