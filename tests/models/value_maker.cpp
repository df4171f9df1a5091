#include "value_maker.h"

#include <libyang/libyang.h>

#include <algorithm>

#include "models/pattern_text.h"

namespace gpbtest
{

namespace
{

constexpr int kTries = 40;
constexpr std::uint64_t kUsualLength = 12;
constexpr unsigned int kBitChance = 40;
constexpr unsigned int kRareChance = 4;

/** Texts of well-known types, for patterns that are beyond the sampler. */
const std::vector<std::string> kKnownTexts = {"2001:db8::1",
                                              "192.0.2.1",
                                              "2001:db8::/32",
                                              "192.0.2.0/24",
                                              "00:11:22:33:44:55",
                                              "2026-11-21T14:00:00Z",
                                              "65000:1",
                                              "a",
                                              "1",
                                              "eth0",
                                              "example.com",
                                              "49.0001.1720.1600.1001.00",
                                              "1720.1600.1001",
                                              "*",
                                              "/a"};

/** Characters of texts without a pattern, the ones that XML and JSON escape among them. */
constexpr const char *kTextCharacters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJ0123456789 .,-_/<>&()%\\{}";

template <typename Type>
const Type &as(const lysc_type &type)
{
    return reinterpret_cast<const Type &>(type);
}

const lysc_range::lysc_range_part *partOf(const lysc_range *range, Random &random)
{
    return range != nullptr ? &range->parts[random.below(LY_ARRAY_COUNT(range->parts))] : nullptr;
}

std::string signedText(const lysc_type &type, std::int64_t least, std::int64_t most, Random &random)
{
    const auto *part = partOf(as<lysc_type_num>(type).range, random);
    least = part != nullptr ? part->min_64 : least;
    most = part != nullptr ? part->max_64 : most;
    return std::to_string(random.percent(10) ? least : random.percent(10) ? most : random.between(least, most));
}

std::string unsignedText(const lysc_type &type, std::uint64_t most, Random &random)
{
    const auto *part = partOf(as<lysc_type_num>(type).range, random);
    const std::uint64_t least = part != nullptr ? part->min_u64 : 0;
    most = part != nullptr ? part->max_u64 : most;
    const auto made =
        static_cast<std::uint64_t>(random.between(static_cast<std::int64_t>(least), static_cast<std::int64_t>(most)));
    return std::to_string(random.percent(10) ? least : random.percent(10) ? most : made);
}

std::uint64_t lengthOf(const lysc_range *range, Random &random)
{
    const auto *part = partOf(range, random);
    const std::uint64_t least = part != nullptr ? std::max<std::uint64_t>(part->min_u64, 1) : 1;
    const std::uint64_t most = part != nullptr ? std::min(part->max_u64, least + kUsualLength) : kUsualLength;
    return least + random.below(most >= least ? most - least + 1 : 1);
}

bool accepts(const lysc_node &leaf, const std::string &value)
{
    return lyd_value_validate(leaf.module->ctx, &leaf, value.c_str(), value.size(), nullptr, nullptr, nullptr) !=
           LY_EVALID;
}

/** All identities that are derived from one, at any distance, of modules that are part of the schema. */
void collectDerived(const lysc_ident &base, std::vector<const lysc_ident *> &derived)
{
    for (LY_ARRAY_COUNT_TYPE i = 0; i < LY_ARRAY_COUNT(base.derived); ++i)
    {
        const lysc_ident &identity = *base.derived[i];
        if (identity.module->implemented != 0 && std::find(derived.begin(), derived.end(), &identity) == derived.end())
        {
            derived.push_back(&identity);
        }
        collectDerived(identity, derived);
    }
}

} // namespace

/** Nothing, or a text that begins with a line break: what an element without a leaf has, too. */
std::optional<MadeValue> ValueMaker::rareText(const lysc_node &leaf, const lysc_type &type)
{
    const std::string text = m_random.percent(50) ? "" : "\n" + std::string(1 + m_random.sizeBelow(3), 'a');
    const bool isText = type.basetype == LY_TYPE_STRING || type.basetype == LY_TYPE_BITS ||
                        type.basetype == LY_TYPE_BINARY || type.basetype == LY_TYPE_UNION;
    const bool isMade = m_random.percent(kRareChance) && isText && (text.empty() || type.basetype == LY_TYPE_STRING);
    if (!isMade || !accepts(leaf, text))
    {
        return std::nullopt;
    }
    m_made[leaf.name].push_back({text});
    return MadeValue{text};
}

std::optional<MadeValue> ValueMaker::make(const lysc_node &leaf)
{
    const lysc_type &type = leaf.nodetype == LYS_LEAF ? *reinterpret_cast<const lysc_node_leaf &>(leaf).type
                                                      : *reinterpret_cast<const lysc_node_leaflist &>(leaf).type;
    if (const std::optional<MadeValue> rare = rareText(leaf, type))
    {
        return rare;
    }
    for (int i = 0; i < kTries; ++i)
    {
        std::optional<MadeValue> value = ofType(type);
        // An empty text is what the library leaves out of XML; an empty leaf has no text.
        const bool isThere = value && (!value->text.empty() || type.basetype == LY_TYPE_EMPTY);
        if (isThere && accepts(leaf, value->text))
        {
            m_made[leaf.name].push_back(*value);
            return value;
        }
    }
    for (std::size_t i = 0; i < kKnownTexts.size(); ++i)
    {
        const std::string text = m_random.of(kKnownTexts);
        if (type.basetype == LY_TYPE_STRING && accepts(leaf, text))
        {
            m_made[leaf.name].push_back({text});
            return MadeValue{text};
        }
    }
    return std::nullopt;
}

std::optional<MadeValue> ValueMaker::ofType(const lysc_type &type)
{
    switch (type.basetype)
    {
    case LY_TYPE_INT8:
        return MadeValue{signedText(type, INT8_MIN, INT8_MAX, m_random)};
    case LY_TYPE_INT16:
        return MadeValue{signedText(type, INT16_MIN, INT16_MAX, m_random)};
    case LY_TYPE_INT32:
        return MadeValue{signedText(type, INT32_MIN, INT32_MAX, m_random)};
    case LY_TYPE_INT64:
        return MadeValue{signedText(type, INT64_MIN, INT64_MAX, m_random)};
    case LY_TYPE_UINT8:
        return MadeValue{unsignedText(type, UINT8_MAX, m_random)};
    case LY_TYPE_UINT16:
        return MadeValue{unsignedText(type, UINT16_MAX, m_random)};
    case LY_TYPE_UINT32:
        return MadeValue{unsignedText(type, UINT32_MAX, m_random)};
    case LY_TYPE_UINT64:
        return MadeValue{unsignedText(type, UINT64_MAX, m_random)};
    case LY_TYPE_DEC64:
        return MadeValue{decimal(type)};
    case LY_TYPE_BOOL:
        return MadeValue{m_random.percent(50) ? "true" : "false"};
    case LY_TYPE_EMPTY:
        return MadeValue{};
    case LY_TYPE_STRING:
        return MadeValue{string(type)};
    case LY_TYPE_BINARY:
        return MadeValue{binary(type)};
    case LY_TYPE_ENUM:
    {
        const auto *items = as<lysc_type_enum>(type).enums;
        return MadeValue{items[m_random.below(LY_ARRAY_COUNT(items))].name};
    }
    case LY_TYPE_BITS:
    {
        const auto *items = as<lysc_type_bits>(type).bits;
        std::string text = items[0].name;
        for (LY_ARRAY_COUNT_TYPE i = 1; i < LY_ARRAY_COUNT(items); ++i)
        {
            text += m_random.percent(kBitChance) ? std::string(" ") + items[i].name : "";
        }
        return MadeValue{text};
    }
    case LY_TYPE_IDENT:
        return identity(type);
    case LY_TYPE_LEAFREF:
        return reference(type);
    case LY_TYPE_UNION:
    {
        const auto *members = as<lysc_type_union>(type).types;
        return ofType(*members[m_random.below(LY_ARRAY_COUNT(members))]);
    }
    default:
        return std::nullopt;
    }
}

std::string ValueMaker::string(const lysc_type &type)
{
    const auto &string = as<lysc_type_str>(type);
    std::vector<std::string> patterns;
    for (LY_ARRAY_COUNT_TYPE i = 0; i < LY_ARRAY_COUNT(string.patterns); ++i)
    {
        if (string.patterns[i]->inverted == 0)
        {
            patterns.emplace_back(string.patterns[i]->expr);
        }
    }
    if (!patterns.empty())
    {
        return patternText(m_random.of(patterns), m_random);
    }
    const std::string characters = kTextCharacters;
    std::string text;
    for (std::uint64_t i = lengthOf(string.length, m_random); i > 0; --i)
    {
        text += characters[m_random.sizeBelow(characters.size())];
    }
    return text;
}

/** Up to 15 digits: more of them are no loss that anybody could find out here. */
std::string ValueMaker::decimal(const lysc_type &type)
{
    constexpr std::int64_t kMost = 999999999999999;
    const auto &decimal = as<lysc_type_dec>(type);
    const auto *part = partOf(decimal.range, m_random);
    const std::int64_t least = part != nullptr ? std::max(part->min_64, -kMost) : -kMost;
    const std::int64_t most = part != nullptr ? std::min(part->max_64, kMost) : kMost;
    const std::int64_t number = least <= most ? m_random.between(least, most) : least;
    std::string digits = std::to_string(number < 0 ? -number : number);
    const std::size_t fraction = decimal.fraction_digits;
    digits.insert(0, digits.size() <= fraction ? fraction + 1 - digits.size() : 0, '0');
    digits.insert(digits.size() - fraction, ".");
    return (number < 0 ? "-" : "") + digits;
}

std::string ValueMaker::binary(const lysc_type &type)
{
    static const std::string kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const std::uint64_t bytes = lengthOf(as<lysc_type_bin>(type).length, m_random);
    std::string text;
    for (std::uint64_t i = 0; i < bytes; i += 3)
    {
        const std::uint64_t left = bytes - i;
        text += kAlphabet[m_random.sizeBelow(64)];
        // What stands for no byte is zero.
        text += kAlphabet[left == 1 ? m_random.sizeBelow(4) * 16 : m_random.sizeBelow(64)];
        text += left == 1 ? '=' : kAlphabet[left == 2 ? m_random.sizeBelow(16) * 4 : m_random.sizeBelow(64)];
        text += left <= 2 ? '=' : kAlphabet[m_random.sizeBelow(64)];
    }
    return text;
}

std::optional<MadeValue> ValueMaker::identity(const lysc_type &type)
{
    const auto &identityref = as<lysc_type_identityref>(type);
    std::vector<const lysc_ident *> derived;
    collectDerived(*identityref.bases[0], derived);
    if (derived.empty())
    {
        return std::nullopt;
    }
    const lysc_ident &identity = *m_random.of(derived);
    return MadeValue{std::string(identity.module->name) + ":" + identity.name, identity.module};
}

std::optional<MadeValue> ValueMaker::reference(const lysc_type &type)
{
    const std::string path = lyxp_get_expr(as<lysc_type_leafref>(type).path);
    const std::size_t last = path.find_last_of("/:");
    const auto made = m_made.find(path.substr(last == std::string::npos ? 0 : last + 1));
    return made != m_made.end() ? std::optional<MadeValue>(m_random.of(made->second)) : std::nullopt;
}

} // namespace gpbtest
