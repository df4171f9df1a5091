#include "json_match.h"

#include <libyang/libyang.h>

#include <cstdlib>

#include "yang/proto_builder.h"
#include "yang/proto_types.h"

namespace gpbtest
{

namespace
{

/** The member that stands for a node: the one with the node's module in front of its name, if there is one. */
const cJSON *memberOf(const cJSON &object, const lyd_node &node)
{
    const std::string qualified = std::string(node.schema->module->name) + ":" + node.schema->name;
    const cJSON *member = cJSON_GetObjectItemCaseSensitive(&object, qualified.c_str());
    return member != nullptr ? member : cJSON_GetObjectItemCaseSensitive(&object, node.schema->name);
}

bool holds(const cJSON &value, const gpbyang::ProtoField &field, const lyd_node &node)
{
    const std::string text = lyd_get_value(&node);
    if (field.type == "bool")
    {
        return cJSON_IsBool(&value) != 0 && (cJSON_IsTrue(&value) != 0) == (text != "false");
    }
    if (field.type == "int32" || field.type == "uint32" || field.type == "double")
    {
        return cJSON_IsNumber(&value) != 0 && value.valuedouble == std::strtod(text.c_str(), nullptr);
    }
    return cJSON_IsString(&value) != 0 && isSameValue(*node.schema, value.valuestring, text);
}

std::size_t countValues(const cJSON &value)
{
    if (cJSON_IsObject(&value) == 0 && cJSON_IsArray(&value) == 0)
    {
        return 1;
    }
    std::size_t count = 0;
    for (const cJSON *child = value.child; child != nullptr; child = child->next)
    {
        count += countValues(*child);
    }
    return count;
}

} // namespace

JsonMatch::JsonMatch(const gpbyang::ProtoFile &file) : m_file(file)
{
    for (const auto &message : m_file.messages)
    {
        mapFields(*message);
    }
}

void JsonMatch::mapFields(const gpbyang::ProtoMessage &message)
{
    for (const gpbyang::ProtoField &field : message.fields)
    {
        m_fields.emplace(field.node, &field);
    }
    for (const auto &nested : message.messages)
    {
        mapFields(*nested);
    }
}

void JsonMatch::compare(const lyd_node &top, const cJSON &document)
{
    const cJSON *root = memberOf(document, top);
    if (root == nullptr)
    {
        missing(top);
        return;
    }
    children(top, *root);
    // What stands in a wrong place is missing in its own; this finds what nobody misses.
    if (m_differences.empty() && countValues(*root) != m_leaves)
    {
        report(top, "has " + std::to_string(countValues(*root)) + " values in JSON and " + std::to_string(m_leaves) +
                        " in the document");
    }
}

void JsonMatch::children(const lyd_node &parent, const cJSON &object)
{
    std::map<const lysc_node *, int> seen;
    for (const lyd_node *child = lyd_child(&parent); child != nullptr; child = child->next)
    {
        // libyang adds what the document does not say, and bits of which none is set say nothing.
        if ((child->flags & LYD_DEFAULT) != 0 || (gpbyang::IsBitsEnum(*child->schema) && *lyd_get_value(child) == '\0'))
        {
            continue;
        }
        const bool isRepeated = (child->schema->nodetype & (LYS_LIST | LYS_LEAFLIST)) != 0;
        // Bits that the library does not know by their names stand in an array.
        const bool isInArray = isRepeated || gpbyang::IsBitsEnum(*child->schema);
        const cJSON *value = memberOf(object, *child);
        if (isInArray && cJSON_IsArray(value) != 0)
        {
            value = cJSON_GetArrayItem(value, seen[child->schema]++);
        }
        else if (isRepeated)
        {
            value = nullptr;
        }
        if (value == nullptr)
        {
            missing(*child);
        }
        else
        {
            node(*child, *value);
        }
    }
}

void JsonMatch::node(const lyd_node &node, const cJSON &value)
{
    if ((node.schema->nodetype & (LYS_LEAF | LYS_LEAFLIST)) == 0)
    {
        if (cJSON_IsObject(&value) != 0)
        {
            children(node, value);
        }
        else
        {
            missing(node);
        }
        return;
    }
    ++m_leaves;
    const auto field = m_fields.find(node.schema);
    if (field == m_fields.end() || !holds(value, *field->second, node))
    {
        ++m_lost;
        report(node, std::string("is not \"") + lyd_get_value(&node) + "\" in JSON");
    }
}

void JsonMatch::missing(const lyd_node &node)
{
    const std::size_t leaves = countLeaves(node);
    m_leaves += leaves;
    m_lost += leaves;
    report(node, "is not in the JSON document");
}

void JsonMatch::report(const lyd_node &node, const std::string &text)
{
    m_differences.push_back(differenceOf(node, text));
}

} // namespace gpbtest
