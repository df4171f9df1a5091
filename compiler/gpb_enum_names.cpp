#include "compiler/gpb_enum_names.h"

#include <algorithm>
#include <string>

#include "core/gpb_protobuf_compat.h"

using google::protobuf::Descriptor;
using google::protobuf::EnumDescriptor;

namespace
{

constexpr size_t SPELLINGS = 2;

// Calls `take(rest, number)` for each value whose name begins with the prefix.
template <typename Take>
void ForEachValue(const Descriptor *message, const std::string &prefix, const Take &take)
{
    for (int i = 0; i < message->enum_type_count(); ++i)
    {
        const EnumDescriptor *declared = message->enum_type(i);
        for (int k = 0; k < declared->value_count(); ++k)
        {
            const std::string &name = GpbPbName(*declared->value(k));
            if (name.compare(0, prefix.size(), prefix) == 0)
            {
                take(std::string_view(name).substr(prefix.size()), declared->value(k)->number());
            }
        }
    }
}

std::string PrefixOf(const EnumDescriptor *type)
{
    return std::string(GpbPbName(*type)) + "_";
}

size_t ValueCount(const Descriptor *message, const EnumDescriptor *type)
{
    size_t count = 0;
    ForEachValue(message, PrefixOf(type), [&](std::string_view /*rest*/, int /*number*/) { ++count; });
    return count;
}

size_t ByteCount(const Descriptor *message, const EnumDescriptor *type)
{
    size_t bytes = 0;
    ForEachValue(message, PrefixOf(type), [&](std::string_view rest, int /*number*/) { bytes += rest.size(); });
    return bytes;
}

bool IsEscape(std::string_view text)
{
    return text.substr(0, sizeof(GPB_ENUM_ESCAPE)) == std::string_view(GPB_ENUM_ESCAPE, sizeof(GPB_ENUM_ESCAPE));
}

// A value's name with the dashes and the leading digit that modules write.
std::string WithoutEscapes(std::string_view rest)
{
    const bool isDigitEscaped =
        IsEscape(rest) && rest.size() > sizeof(GPB_ENUM_ESCAPE) && GpbIsDigit(rest[sizeof(GPB_ENUM_ESCAPE)]);
    std::string spelling;
    for (size_t at = isDigitEscaped ? sizeof(GPB_ENUM_ESCAPE) : 0; at < rest.size(); ++at)
    {
        const bool isDash = IsEscape(rest.substr(at));
        spelling.push_back(isDash ? '-' : rest[at]);
        at += isDash ? sizeof(GPB_ENUM_ESCAPE) - 1 : 0;
    }
    return spelling;
}

std::string InLowerCase(std::string_view text)
{
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), GpbToLower);
    return lower;
}

// Every character, and the escape before a digit, may take two places.
constexpr size_t LongestNameOf(size_t length)
{
    return (length + 1) * sizeof(GPB_ENUM_ESCAPE);
}

constexpr size_t LONGEST_VALUE = GPB_NAME_SIZE / sizeof(GPB_ENUM_ESCAPE) - 1;
static_assert(LongestNameOf(LONGEST_VALUE) <= GPB_NAME_SIZE, "a value's name fits its buffer");

} // namespace

GpbEnumNames::GpbEnumNames(const Descriptor *message, const EnumDescriptor *type)
    : prefixLength_(PrefixOf(type).size()), places_(ValueCount(message, type), ByteCount(message, type)),
      spellings_(ValueCount(message, type) * SPELLINGS, ByteCount(message, type) * SPELLINGS)
{
    ForEachValue(message, PrefixOf(type),
                 [&](std::string_view rest, int number)
                 {
                     numbers_.push_back(number);
                     places_.Add(rest, static_cast<uint32_t>(numbers_.size()));
                 });
    // With other special characters than usual, the spellings are never asked for.
    if (GpbAreSpecialCharsAsMade())
    {
        AddSpellings(message, type);
    }
}

void GpbEnumNames::AddSpellings(const Descriptor *message, const EnumDescriptor *type)
{
    uint32_t place = 0;
    ForEachValue(message, PrefixOf(type),
                 [&](std::string_view rest, int /*number*/)
                 {
                     ++place;
                     const std::string upper = WithoutEscapes(rest);
                     const std::string lower = InLowerCase(upper);
                     AddSpelling(upper, place);
                     if (lower != upper)
                     {
                         AddSpelling(lower, place);
                     }
                 });
}

// A spelling that stands for another value, or for none, is left out.
void GpbEnumNames::AddSpelling(const std::string &spelling, uint32_t place)
{
    const Taken taken = Take(spelling.c_str());
    if (!spelling.empty() && taken.number == &numbers_[place - 1] && *taken.rest == '\0')
    {
        spellings_.Add(spelling, place);
    }
}

GpbEnumNames::Taken GpbEnumNames::Take(const char *text) const
{
    constexpr Taken UNKNOWN = {nullptr, nullptr};
    char rest[GPB_NAME_SIZE];
    char *out = rest;
    const char *in = text;
    if (GpbIsDigit(*in))
    {
        out = GpbWriteEnumEscape(out);
    }
    for (; *in != '\0' && *in != ' '; ++in)
    {
        if (in == text + LONGEST_VALUE)
        {
            return UNKNOWN;
        }
        if (GpbIsSpecial(*in))
        {
            out = GpbWriteEnumEscape(out);
        }
        else
        {
            *out++ = GpbToUpper(*in);
        }
    }
    if (prefixLength_ + LongestNameOf(static_cast<size_t>(in - text)) >= GPB_NAME_SIZE)
    {
        return UNKNOWN;
    }
    const uint32_t place = places_.Find(std::string_view(rest, static_cast<size_t>(out - rest)));
    if (place == GpbNameMap::NOTHING)
    {
        return UNKNOWN;
    }
    return {&numbers_[place - 1], *in == '\0' ? in : in + 1};
}

bool GpbEnumNames::AreAllOf(const EnumDescriptor &type) const
{
    // A name that is cut where the prefix ends, or before, might be that of any value.
    return prefixLength_ < GPB_NAME_SIZE - 1 &&
           std::all_of(numbers_.begin(), numbers_.end(),
                       [&](int number) { return type.FindValueByNumber(number) != nullptr; });
}
