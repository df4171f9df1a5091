#include "yang/json_names.h"

#include <libyang/libyang.h>

#include <algorithm>
#include <map>

#include "yang/proto_names.h"

namespace gpbyang
{

namespace
{

/** Fields of the data nodes that stand in a document where those of `message` stand: its own and those of its cases. */
void Collect(ProtoMessage &message, std::vector<ProtoField *> &fields)
{
    for (ProtoField &field : message.fields)
    {
        if (field.oneof == kNoOneof)
        {
            fields.push_back(&field);
        }
    }
    for (const std::unique_ptr<ProtoMessage> &nested : message.messages)
    {
        if (nested->node->nodetype == LYS_CASE)
        {
            Collect(*nested, fields);
        }
    }
}

/** The name that a field's name is read as. */
std::string Restored(std::string name)
{
    std::replace(name.begin(), name.end(), '_', '-');
    return name;
}

void SetNames(const std::vector<ProtoField *> &fields)
{
    std::map<std::string, int> nodes;
    std::map<std::string, int> names;
    for (const ProtoField *field : fields)
    {
        ++nodes[field->node->name];
        ++names[field->name];
    }
    for (ProtoField *field : fields)
    {
        const std::string node = field->node->name;
        // Another field that has the name that is looked for must not be taken for the node's.
        const bool isSought = names[FieldName(node)] > (field->name == FieldName(node) ? 1 : 0);
        if (nodes[node] > 1)
        {
            field->jsonName = std::string(field->node->module->name) + ":" + node;
        }
        else if (Restored(field->name) != node || isSought)
        {
            field->jsonName = node;
        }
    }
}

} // namespace

void SetJsonNames(ProtoMessage &message)
{
    if (message.node->nodetype != LYS_CASE)
    {
        std::vector<ProtoField *> fields;
        Collect(message, fields);
        SetNames(fields);
    }
    for (const std::unique_ptr<ProtoMessage> &nested : message.messages)
    {
        SetJsonNames(*nested);
    }
}

} // namespace gpbyang
