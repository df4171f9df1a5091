#include "data_match.h"

#include <google/protobuf/descriptor.h>
#include <google/protobuf/message.h>
#include <libyang/libyang.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <sstream>

#include "support/message_values.h"
#include "yang/proto_builder.h"
#include "yang/proto_names.h"
#include "yang/proto_types.h"

namespace gpbtest
{

namespace
{

namespace pb = google::protobuf;

/** A prefix of a name in a value says another thing in XML, in JSON and in libyang; the name stays. */
std::string withoutPrefixes(const std::string &value)
{
    std::string text;
    for (const char c : value)
    {
        if (c == ':')
        {
            while (!text.empty() && (std::isalnum(static_cast<unsigned char>(text.back())) != 0 ||
                                     std::string("-_.").find(text.back()) != std::string::npos))
            {
                text.pop_back();
            }
        }
        else
        {
            text += c;
        }
    }
    return text;
}

bool hasPrefixes(const lysc_node &schema)
{
    const lysc_type *type = gpbyang::LeafType(schema);
    return type->basetype == LY_TYPE_IDENT || type->basetype == LY_TYPE_INST || type->basetype == LY_TYPE_UNION;
}

/** The value at an index, or the singular one for -1, as text. */
std::string valueText(const pb::Message &message, const pb::FieldDescriptor &field, int index)
{
    const pb::Reflection &r = *message.GetReflection();
    const bool one = index < 0;
    switch (field.cpp_type())
    {
    case pb::FieldDescriptor::CPPTYPE_INT32:
        return std::to_string(one ? r.GetInt32(message, &field) : r.GetRepeatedInt32(message, &field, index));
    case pb::FieldDescriptor::CPPTYPE_UINT32:
        return std::to_string(one ? r.GetUInt32(message, &field) : r.GetRepeatedUInt32(message, &field, index));
    case pb::FieldDescriptor::CPPTYPE_INT64:
        return std::to_string(one ? r.GetInt64(message, &field) : r.GetRepeatedInt64(message, &field, index));
    case pb::FieldDescriptor::CPPTYPE_UINT64:
        return std::to_string(one ? r.GetUInt64(message, &field) : r.GetRepeatedUInt64(message, &field, index));
    case pb::FieldDescriptor::CPPTYPE_DOUBLE:
        return std::to_string(one ? r.GetDouble(message, &field) : r.GetRepeatedDouble(message, &field, index));
    case pb::FieldDescriptor::CPPTYPE_BOOL:
        return (one ? r.GetBool(message, &field) : r.GetRepeatedBool(message, &field, index)) ? "true" : "false";
    case pb::FieldDescriptor::CPPTYPE_ENUM:
        return (one ? r.GetEnum(message, &field) : r.GetRepeatedEnum(message, &field, index))->name();
    default:
        return one ? r.GetString(message, &field) : r.GetRepeatedString(message, &field, index);
    }
}

/** What a leaf's field should hold, one text for each value. */
std::vector<std::string> expectedTexts(const lyd_node &node, const pb::FieldDescriptor &field)
{
    const std::string value = lyd_get_value(&node);
    switch (field.cpp_type())
    {
    case pb::FieldDescriptor::CPPTYPE_DOUBLE:
        return {std::to_string(std::strtod(value.c_str(), nullptr))};
    case pb::FieldDescriptor::CPPTYPE_BOOL:
        return {value.empty() ? "true" : value};
    case pb::FieldDescriptor::CPPTYPE_ENUM:
    {
        std::vector<std::string> names;
        std::istringstream stream(value);
        for (std::string token; stream >> token;)
        {
            names.push_back(gpbyang::EnumValueName(token, field.enum_type()->name()).value_or("?"));
        }
        return names;
    }
    default:
        return {value};
    }
}

} // namespace

std::size_t countLeaves(const lyd_node &node)
{
    if ((node.flags & LYD_DEFAULT) != 0)
    {
        return 0;
    }
    if ((node.schema->nodetype & (LYS_LEAF | LYS_LEAFLIST)) != 0)
    {
        std::istringstream stream(lyd_get_value(&node));
        const auto bits = std::distance(std::istream_iterator<std::string>(stream), {});
        return gpbyang::IsBitsEnum(*node.schema) ? static_cast<std::size_t>(bits) : 1;
    }
    std::size_t count = 0;
    for (const lyd_node *child = lyd_child(&node); child != nullptr; child = child->next)
    {
        count += countLeaves(*child);
    }
    return count;
}

Difference differenceOf(const lyd_node &node, const std::string &text)
{
    const char *value = lyd_get_value(&node);
    return {gpbyang::SchemaPath(*node.schema), std::string(node.schema->name) + " " + text,
            value != nullptr ? value : "", node.schema->nodetype == LYS_LEAFLIST};
}

bool isSameValue(const lysc_node &schema, const std::string &a, const std::string &b)
{
    return hasPrefixes(schema) ? withoutPrefixes(a) == withoutPrefixes(b) : a == b;
}

void DataMatch::compare(const lyd_node &top, const Message &message)
{
    const auto found = std::find_if(m_file.messages.begin(), m_file.messages.end(),
                                    [&](const auto &type) { return type->node == top.schema; });
    if (found == m_file.messages.end())
    {
        report(top, "has no message");
        return;
    }
    const std::size_t before = m_leaves;
    const std::size_t had = m_differences.size();
    children(top, **found, message);
    const std::size_t values = countValues(message);
    // A value that went astray is told by the place where it is missing; this finds what nobody misses.
    if (values != m_leaves - before && m_differences.size() == had)
    {
        report(top, "has " + std::to_string(values) + " values in the message and " +
                        std::to_string(m_leaves - before) + " in the document");
    }
}

void DataMatch::report(const lyd_node &node, const std::string &text)
{
    m_differences.push_back(differenceOf(node, text));
}

void DataMatch::missing(const lyd_node &node)
{
    const std::size_t leaves = countLeaves(node);
    m_leaves += leaves;
    m_lost += leaves;
    report(node, "is not in the message");
}

void DataMatch::children(const lyd_node &parent, const gpbyang::ProtoMessage &type, const Message &message)
{
    std::map<const gpbyang::ProtoField *, int> seen;
    for (const lyd_node *node = lyd_child(&parent); node != nullptr; node = node->next)
    {
        // libyang adds what the document does not say, and bits of which none is set say nothing.
        if ((node->flags & LYD_DEFAULT) != 0 || (gpbyang::IsBitsEnum(*node->schema) && *lyd_get_value(node) == '\0'))
        {
            continue;
        }
        const Place place = find(*node, type, message);
        if (place.field == nullptr)
        {
            missing(*node);
            continue;
        }
        const pb::FieldDescriptor &field = *place.message->GetDescriptor()->FindFieldByName(place.field->name);
        const pb::Reflection &reflection = *place.message->GetReflection();
        const bool isRepeated = node->schema->nodetype == LYS_LIST || node->schema->nodetype == LYS_LEAFLIST;
        const int index = isRepeated ? seen[place.field]++ : -1;
        const bool isThere = field.is_repeated() ? reflection.FieldSize(*place.message, &field) > std::max(index, 0)
                                                 : reflection.HasField(*place.message, &field);
        const bool isLeaf = place.field->message == nullptr;
        if (!isThere)
        {
            missing(*node);
        }
        else if (isLeaf)
        {
            leaf(*node, place, index);
        }
        else
        {
            children(*node, *place.field->message,
                     field.is_repeated() ? reflection.GetRepeatedMessage(*place.message, &field, index)
                                         : reflection.GetMessage(*place.message, &field));
        }
    }
}

DataMatch::Place DataMatch::find(const lyd_node &node, const gpbyang::ProtoMessage &type, const Message &message) const
{
    for (const gpbyang::ProtoField &field : type.fields)
    {
        if (field.node == node.schema)
        {
            return {&field, &message};
        }
        if (field.oneof != gpbyang::kNoOneof)
        {
            const Place inner = find(
                node, *field.message,
                message.GetReflection()->GetMessage(message, message.GetDescriptor()->FindFieldByName(field.name)));
            if (inner.field != nullptr)
            {
                return inner;
            }
        }
    }
    return {};
}

void DataMatch::leaf(const lyd_node &node, const Place &place, int index)
{
    const pb::FieldDescriptor &field = *place.message->GetDescriptor()->FindFieldByName(place.field->name);
    const std::vector<std::string> expected = expectedTexts(node, field);
    m_leaves += expected.size();
    const bool isBits = field.is_repeated() && index < 0;
    const int size = field.is_repeated() ? place.message->GetReflection()->FieldSize(*place.message, &field) : 1;
    if (isBits && static_cast<std::size_t>(size) != expected.size())
    {
        m_lost += expected.size();
        report(node, "has " + std::to_string(size) + " bits");
        return;
    }
    for (std::size_t i = 0; i < expected.size(); ++i)
    {
        const std::string value = valueText(*place.message, field, isBits ? static_cast<int>(i) : index);
        if (!isSameValue(*node.schema, value, expected[i]))
        {
            ++m_lost;
            report(node, "is \"" + value + "\", not \"" + expected[i] + "\"");
        }
    }
}

} // namespace gpbtest
