#include "support/json_walk.h"

#include <string_view>

#include <cjson/cJSON.h>

#include "support/dom.h"
#include "support/proto_text.h"

namespace gpbbench
{

namespace
{

constexpr size_t LEAF_DIGIT = 5; // in "leaf-N"

size_t LeafNumber(const char *name)
{
    const auto first = static_cast<size_t>(name[LEAF_DIGIT] - '0');
    return name[LEAF_DIGIT + 1] == '\0' ? first : 10 + static_cast<size_t>(name[LEAF_DIGIT + 1] - '0');
}

cJSON *LeafItem(LeafKind kind, const xmlNode *leaf)
{
    switch (kind)
    {
    case LeafKind::UINT32:
    case LeafKind::DOUBLE:
        return cJSON_CreateNumber(XmlDom::Double(leaf));
    case LeafKind::BOOL:
        return cJSON_CreateBool(std::string_view(XmlDom::Text(leaf)) == "true" ? 1 : 0);
    case LeafKind::EMPTY:
        return cJSON_CreateTrue();
    case LeafKind::STRING:
    case LeafKind::ENUM:
    case LeafKind::INT64:
    case LeafKind::UINT64:
        break;
    }
    return cJSON_CreateString(XmlDom::Text(leaf));
}

void AddLeaves(const xmlNode *container, cJSON *object)
{
    XmlDom::ForEachNode(container, [&](const char *name, const xmlNode *leaf)
                        { cJSON_AddItemToObject(object, name, LeafItem(LeafKindOf(LeafNumber(name)), leaf)); });
}

class TelemetryWalk
{
public:
    void AddSubscription(const char *listName, const xmlNode *entry, cJSON *parent)
    {
        cJSON *object = AddEntry(listName, subscriptions_, parent);
        XmlDom::ForEachNode(entry,
                            [&](const char *name, const xmlNode *node)
                            {
                                const std::string_view text = name;
                                if (text == "subscription-name")
                                {
                                    cJSON_AddItemToObject(object, name, LeafItem(LeafKind::STRING, node));
                                }
                                else if (text == "config")
                                {
                                    AddLeaves(node, cJSON_AddObjectToObject(object, name));
                                }
                                else if (text == "sensor-profiles")
                                {
                                    AddProfiles(node, cJSON_AddObjectToObject(object, name));
                                }
                            });
    }

private:
    static cJSON *AddEntry(const char *name, cJSON *&list, cJSON *parent)
    {
        if (list == nullptr)
        {
            list = cJSON_AddArrayToObject(parent, name);
        }
        cJSON *object = cJSON_CreateObject();
        cJSON_AddItemToArray(list, object);
        return object;
    }

    void AddProfiles(const xmlNode *container, cJSON *parent)
    {
        XmlDom::ForEachNode(container, [&](const char *name, const xmlNode *profile)
                            { AddLeaves(profile, AddEntry(name, profiles_, parent)); });
    }

    cJSON *subscriptions_ = nullptr;
    cJSON *profiles_ = nullptr;
};

} // namespace

JsonText WriteTelemetryJson(const xmlNode *root)
{
    cJSON *document = cJSON_CreateObject();
    cJSON *system = cJSON_AddObjectToObject(document, reinterpret_cast<const char *>(root->name));
    TelemetryWalk walk;
    XmlDom::ForEachNode(root,
                        [&](const char *name, const xmlNode *subscriptions)
                        {
                            cJSON *container = cJSON_AddObjectToObject(system, name);
                            XmlDom::ForEachNode(subscriptions, [&](const char *listName, const xmlNode *entry)
                                                { walk.AddSubscription(listName, entry, container); });
                        });
    JsonText text(cJSON_PrintUnformatted(document));
    cJSON_Delete(document);
    return text;
}

} // namespace gpbbench
