#include "yang/check_values.h"

#include <libyang/libyang.h>

#include <algorithm>

#include "yang/proto_types.h"

namespace gpbyang
{

namespace
{

/** The largest number, without its decimal point, of which a double keeps all digits: 15 of them. */
constexpr std::int64_t kMostDecimal = 999999999999999;

/** Whether a type, or a member of it when it is a union, is of one of these base types. */
template <typename... Base>
bool Has(const lysc_type &type, Base... bases)
{
    if (type.basetype == LY_TYPE_LEAFREF)
    {
        return Has(*reinterpret_cast<const lysc_type_leafref &>(type).realtype, bases...);
    }
    if (type.basetype == LY_TYPE_UNION)
    {
        const auto *members = reinterpret_cast<const lysc_type_union &>(type).types;
        return std::any_of(members, members + LY_ARRAY_COUNT(members),
                           [&](const lysc_type *member) { return Has(*member, bases...); });
    }
    return ((type.basetype == bases) || ...);
}

bool HasTooManyDigits(const lysc_type &type)
{
    const lysc_range *range = reinterpret_cast<const lysc_type_dec &>(type).range;
    if (range == nullptr)
    {
        return true;
    }
    const auto *last = range->parts + LY_ARRAY_COUNT(range->parts) - 1;
    return range->parts->min_64 < -kMostDecimal || last->max_64 > kMostDecimal;
}

/** The first value whose name in the enumeration list is not the YANG value in upper case. */
std::string FirstEscaped(const ProtoMessage &message, const ProtoField &field)
{
    const auto made = std::find_if(message.enums.begin(), message.enums.end(),
                                   [&](const ProtoEnum &other) { return other.name == field.type; });
    for (const ProtoEnumValue &value : made->values)
    {
        std::string listed = value.name.substr(made->name.size() + 1);
        if (listed.find("X_") != std::string::npos)
        {
            return listed;
        }
    }
    return "";
}

} // namespace

bool MayBeText(const lysc_node &leaf, const std::string &text)
{
    return lyd_value_validate(leaf.module->ctx, &leaf, text.c_str(), text.size(), nullptr, nullptr, nullptr) !=
           LY_EVALID;
}

bool MayBeginWithLineBreak(const lysc_node &leaf)
{
    // Numbers may have one before them, too, but no document of a device does.
    return Has(*LeafType(leaf), LY_TYPE_STRING, LY_TYPE_BINARY) && (MayBeText(leaf, "\n") || MayBeText(leaf, "\na"));
}

bool MayStandEmpty(const lysc_node &node)
{
    return node.nodetype == LYS_NOTIF || (node.nodetype == LYS_CONTAINER && (node.flags & LYS_PRESENCE) != 0) ||
           (node.nodetype == LYS_LIST && (node.flags & LYS_KEYLESS) != 0);
}

void CheckValues(const ProtoMessage &message, const ProtoField &field, std::vector<CheckFinding> &findings)
{
    const lysc_type &type = *LeafType(*field.node);
    const auto report = [&](CheckKind kind, const std::string &detail = "")
    { findings.emplace_back(kind, field.path, detail); };

    if (type.basetype == LY_TYPE_UNION && field.type != "bool" && Has(type, LY_TYPE_EMPTY))
    {
        findings.emplace_back(CheckKind::UnionEmpty, field.path, "", CheckForms{true, false, false});
    }
    if (field.node->nodetype == LYS_LEAFLIST && !field.isEnum)
    {
        findings.emplace_back(CheckKind::JsonLeafList, field.path, "", CheckForms{false, true, false});
    }
    const std::string noEnum = NoEnumReason(*field.node);
    if (!noEnum.empty())
    {
        report(CheckKind::TextEnum, noEnum);
    }
    if (field.type == "double" && type.basetype == LY_TYPE_DEC64 && HasTooManyDigits(type))
    {
        report(CheckKind::Decimal);
    }
    // Bits of which none is set say no more than that they are there.
    if (!Has(type, LY_TYPE_EMPTY, LY_TYPE_BITS) && MayBeText(*field.node, ""))
    {
        report(CheckKind::EmptyText);
    }
    if (MayBeginWithLineBreak(*field.node))
    {
        report(CheckKind::LineBreak);
    }
    if (Has(type, LY_TYPE_IDENT, LY_TYPE_INST))
    {
        report(CheckKind::ValuePrefix);
    }
    if (Has(type, LY_TYPE_INT64, LY_TYPE_UINT64))
    {
        report(CheckKind::JsonNumber);
    }
    if (Has(type, LY_TYPE_EMPTY))
    {
        report(CheckKind::JsonEmpty);
    }
    if (field.isEnum && type.basetype == LY_TYPE_BITS)
    {
        report(CheckKind::JsonBits);
    }
    if (field.isEnum)
    {
        const std::string escaped = FirstEscaped(message, field);
        if (!escaped.empty())
        {
            report(CheckKind::EnumList, escaped + " is one of its names");
        }
    }
}

} // namespace gpbyang
