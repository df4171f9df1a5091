#include "yang/proto_types.h"

#include <libyang/libyang.h>

#include <map>

#include "yang/proto_names.h"

namespace gpbyang
{

namespace
{

/** The values of an enumeration or bits, else null. */
const lysc_type_bitenum_item *Items(const lysc_type &type)
{
    switch (type.basetype)
    {
    case LY_TYPE_ENUM:
        return reinterpret_cast<const lysc_type_enum &>(type).enums;
    case LY_TYPE_BITS:
        return reinterpret_cast<const lysc_type_bits &>(type).bits;
    default:
        return nullptr;
    }
}

/** A leaf-list of bits would run its entries together in one repeated field. */
bool IsListOfBits(const lysc_node &leaf, const lysc_type &type)
{
    return leaf.nodetype == LYS_LEAFLIST && type.basetype == LY_TYPE_BITS;
}

/** Protobuf wants value names to differ in this form, in which "A_B" is "AB" and "AB" is "Ab". */
std::string PascalForm(const std::string &name)
{
    std::string form;
    bool upper = true;
    for (const char c : name)
    {
        if (c != '_')
        {
            const bool isUpper = c >= 'A' && c <= 'Z';
            form += upper || !isUpper ? c : static_cast<char>(c - 'A' + 'a');
        }
        upper = c == '_';
    }
    return form;
}

/** Adds the value to the enumeration; the reason why not, empty for success. */
std::string AddValue(const lysc_type_bitenum_item &item, std::map<std::string, std::string> &taken, ProtoEnum &result)
{
    const std::optional<std::string> name = EnumValueName(item.name, result.name);
    if (!name)
    {
        return std::string("its value \"") + item.name + "\" has a blank, other characters than ASCII, or is too long";
    }
    const auto [earlier, isNew] = taken.emplace(PascalForm(name->substr(result.name.size() + 1)), item.name);
    if (!isNew)
    {
        return "its values \"" + earlier->second + "\" and \"" + item.name + "\" have the same name in protobuf";
    }
    ProtoEnumValue &value = result.values.emplace_back();
    value.name = *name;
    value.description = item.dsc != nullptr ? item.dsc : "";
    // A bit's position may be beyond the largest number of an enum; as a negative one it stays a number of its own.
    value.wanted = (item.flags & LYS_IS_ENUM) != 0 ? item.value : static_cast<std::int32_t>(item.position);
    return "";
}

std::string FillEnum(const lysc_node &leaf, ProtoEnum &result)
{
    const lysc_type *type = LeafType(leaf);
    const lysc_type_bitenum_item *items = type != nullptr ? Items(*type) : nullptr;
    if (items != nullptr && IsListOfBits(leaf, *type))
    {
        return "a field cannot tell where the bits of one entry end";
    }
    std::map<std::string, std::string> taken;
    for (LY_ARRAY_COUNT_TYPE i = 0; i < LY_ARRAY_COUNT(items); ++i)
    {
        std::string reason = AddValue(items[i], taken, result);
        if (!reason.empty())
        {
            return reason;
        }
    }
    return "";
}

std::string UnionType(const lysc_type_union &type, Decimals decimals)
{
    std::string common;
    for (LY_ARRAY_COUNT_TYPE i = 0; i < LY_ARRAY_COUNT(type.types); ++i)
    {
        const std::string member = ScalarType(*type.types[i], decimals);
        if (i > 0 && member != common)
        {
            return "string";
        }
        common = member;
    }
    return common;
}

} // namespace

const lysc_type *LeafType(const lysc_node &node)
{
    const lysc_type *type = nullptr;
    if (node.nodetype == LYS_LEAF)
    {
        type = reinterpret_cast<const lysc_node_leaf &>(node).type;
    }
    else if (node.nodetype == LYS_LEAFLIST)
    {
        type = reinterpret_cast<const lysc_node_leaflist &>(node).type;
    }
    while (type != nullptr)
    {
        const auto *members =
            type->basetype == LY_TYPE_UNION ? reinterpret_cast<const lysc_type_union *>(type)->types : nullptr;
        if (type->basetype == LY_TYPE_LEAFREF)
        {
            type = reinterpret_cast<const lysc_type_leafref *>(type)->realtype;
        }
        else if (members != nullptr && LY_ARRAY_COUNT(members) == 1)
        {
            type = members[0];
        }
        else
        {
            break;
        }
    }
    return type;
}

std::string ScalarType(const lysc_type &type, Decimals decimals)
{
    switch (type.basetype)
    {
    case LY_TYPE_INT8:
    case LY_TYPE_INT16:
    case LY_TYPE_INT32:
        return "int32";
    case LY_TYPE_UINT8:
    case LY_TYPE_UINT16:
    case LY_TYPE_UINT32:
        return "uint32";
    case LY_TYPE_INT64:
        return "int64";
    case LY_TYPE_UINT64:
        return "uint64";
    case LY_TYPE_DEC64:
        return decimals == Decimals::Double ? "double" : "string";
    case LY_TYPE_BOOL:
    case LY_TYPE_EMPTY:
        return "bool";
    case LY_TYPE_BINARY:
        return "bytes";
    case LY_TYPE_LEAFREF:
        return ScalarType(*reinterpret_cast<const lysc_type_leafref &>(type).realtype, decimals);
    case LY_TYPE_UNION:
        return UnionType(reinterpret_cast<const lysc_type_union &>(type), decimals);
    default:
        return "string";
    }
}

bool MakeEnum(const lysc_node &leaf, const std::string &name, ProtoEnum &result)
{
    result = ProtoEnum();
    result.name = name;
    return FillEnum(leaf, result).empty() && !result.values.empty();
}

std::string NoEnumReason(const lysc_node &leaf)
{
    ProtoEnum ignored;
    ignored.name = EnumTypeName(leaf.name);
    return FillEnum(leaf, ignored);
}

bool IsBitsEnum(const lysc_node &leaf)
{
    const lysc_type *type = LeafType(leaf);
    return type != nullptr && type->basetype == LY_TYPE_BITS && NoEnumReason(leaf).empty();
}

} // namespace gpbyang
