#include "yang/id_map.h"

#include <initializer_list>
#include <limits>
#include <set>

#include "yang/json_text.h"
#include "yang/record_path.h"

namespace gpbyang
{

namespace
{

constexpr std::uint32_t kMostClass = std::numeric_limits<std::uint32_t>::max();
/** A field attribute keeps 16 bits. */
constexpr std::uint32_t kMostField = std::numeric_limits<std::uint16_t>::max();

class IdMapReader
{
public:
    IdMapReader(const RecordTree &tree, const JsonText &json) : tree_(tree), json_(json) {}

    void Read()
    {
        const cJSON &root = json_.Root();
        CheckMembers(root, {"module", "classes"});
        const cJSON &module = Required(root, "module");
        if (cJSON_IsString(&module) == 0 || tree_.Module() != module.valuestring)
        {
            throw json_.ErrorAt(module, "the map is not for module " + tree_.Module());
        }
        const cJSON &classes = Required(root, "classes");
        CheckObject(classes);
        for (const cJSON *entry = classes.child; entry != nullptr; entry = entry->next)
        {
            ReadClass(*entry);
        }
    }

private:
    /** An object, each of whose names comes once. */
    void CheckObject(const cJSON &object) const
    {
        if (cJSON_IsObject(&object) == 0)
        {
            throw json_.ErrorAt(object, "an object is needed here");
        }
        std::set<std::string> names;
        for (const cJSON *member = object.child; member != nullptr; member = member->next)
        {
            if (!names.insert(member->string).second)
            {
                throw json_.ErrorAt(*member, "\"" + std::string(member->string) + "\" is there already");
            }
        }
    }

    void CheckMembers(const cJSON &object, std::initializer_list<std::string> known) const
    {
        CheckObject(object);
        for (const cJSON *member = object.child; member != nullptr; member = member->next)
        {
            bool isKnown = false;
            std::string names;
            for (const std::string &name : known)
            {
                isKnown = isKnown || name == member->string;
                names += (names.empty() ? "" : ", ") + name;
            }
            if (!isKnown)
            {
                throw json_.ErrorAt(*member,
                                    "\"" + std::string(member->string) + "\" is not known; there is: " + names);
            }
        }
    }

    const cJSON &Required(const cJSON &object, const char *name) const
    {
        const cJSON *member = cJSON_GetObjectItemCaseSensitive(&object, name);
        if (member == nullptr)
        {
            throw json_.ErrorAt(object, "\"" + std::string(name) + "\" is missing");
        }
        return *member;
    }

    std::uint32_t Id(const cJSON &value, std::uint32_t most) const
    {
        const std::optional<std::uint32_t> number = json_.Number(value, most);
        if (!number)
        {
            throw json_.ErrorAt(value, "a number from 1 to " + std::to_string(most) + " is needed here");
        }
        return *number;
    }

    GpbYangNode &NodeOf(const cJSON &entry) const
    {
        try
        {
            return FindNode(tree_, entry.string);
        }
        catch (const YangError &error)
        {
            throw json_.ErrorAt(entry, error.what());
        }
    }

    void ReadClass(const cJSON &entry)
    {
        CheckMembers(entry, {"class", "fields", "skip"});
        GpbYangNode &node = NodeOf(entry);
        if (!named_.insert(&node).second)
        {
            throw json_.ErrorAt(entry, PathOf(node) + " is there already, by another path");
        }
        if (node.ucNodeKind == GPB_YANG_CHOICE)
        {
            throw json_.ErrorAt(entry, PathOf(node) + " is a choice; its cases can be classes");
        }
        if (IsSkipped(entry))
        {
            if (node.pstParent == nullptr)
            {
                throw json_.ErrorAt(entry, PathOf(node) + " is a top-level node, which cannot be skipped");
            }
            node.ucSkip = 1;
            return;
        }
        node.uiClassId = Id(Required(entry, "class"), kMostClass);
        if (const cJSON *fields = cJSON_GetObjectItemCaseSensitive(&entry, "fields"); fields != nullptr)
        {
            ReadFields(node, *fields);
        }
    }

    bool IsSkipped(const cJSON &entry) const
    {
        const cJSON *skip = cJSON_GetObjectItemCaseSensitive(&entry, "skip");
        if (skip == nullptr)
        {
            return false;
        }
        if (cJSON_IsTrue(skip) == 0)
        {
            throw json_.ErrorAt(*skip, "\"skip\" is true or not there");
        }
        if (cJSON_GetArraySize(&entry) != 1)
        {
            throw json_.ErrorAt(entry, "a skipped node has no class and no fields");
        }
        return true;
    }

    void ReadFields(const GpbYangNode &node, const cJSON &fields) const
    {
        CheckObject(fields);
        std::set<std::uint32_t> ids;
        for (const cJSON *field = fields.child; field != nullptr; field = field->next)
        {
            GpbYangLeaf &leaf = LeafOf(node, *field);
            ReadField(leaf, *field);
            if (!ids.insert(leaf.uiFieldId).second)
            {
                throw json_.ErrorAt(*field, "another field of " + PathOf(node) + " has id " +
                                                std::to_string(leaf.uiFieldId) + " already");
            }
        }
    }

    GpbYangLeaf &LeafOf(const GpbYangNode &node, const cJSON &field) const
    {
        for (GpbYangLeaf *leaf : tree_.Leaves(node))
        {
            if (std::string(leaf->pcName) == field.string)
            {
                return *leaf;
            }
        }
        throw json_.ErrorAt(field, PathOf(node) + " has no leaf " + field.string);
    }

    void ReadField(GpbYangLeaf &leaf, const cJSON &field) const
    {
        if (cJSON_IsObject(&field) == 0)
        {
            leaf.uiFieldId = Id(field, kMostField);
            return;
        }
        CheckMembers(field, {"id", "map"});
        leaf.uiFieldId = Id(Required(field, "id"), kMostField);
        if (const cJSON *map = cJSON_GetObjectItemCaseSensitive(&field, "map"); map != nullptr)
        {
            leaf.uiMapFieldId = Id(*map, kMostField);
        }
    }

    const RecordTree &tree_;
    const JsonText &json_;
    std::set<const GpbYangNode *> named_;
};

} // namespace

void ApplyIdMap(const RecordTree &tree, const std::string &text, const std::string &source)
{
    const JsonText json(text, source);
    IdMapReader(tree, json).Read();
}

} // namespace gpbyang
