#include "json_check.h"

#include <google/protobuf/descriptor.h>

#include "core/gpb_protobuf_compat.h"
#include "gpb_templatelib/gpb_compiler.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "json_words.h"

namespace gpbtool
{

namespace
{

namespace pb = google::protobuf;

/** An open message: its type, and how many layers are open with it. */
struct Level
{
    const pb::Descriptor *type;
    std::uint32_t layers;
};

class Checker
{
public:
    explicit Checker(const cJSON &chosen) : chosen_(chosen) {}

    void Members(cJSON &object, const Level &level)
    {
        for (cJSON *child = object.child; child != nullptr; child = child->next)
        {
            Member(*child, object, level);
        }
    }

    JsonCheckResult result;

private:
    void Report(cJSON &item, cJSON &parent, const std::string &text, bool blocks)
    {
        result.findings.push_back({&item, &parent, text, blocks});
    }

    void Member(cJSON &item, cJSON &parent, Level level)
    {
        const pb::FieldDescriptor *caseField = nullptr;
        const pb::FieldDescriptor *field = GPB_FindFieldDescByNodeName(
            level.type, item.string, static_cast<std::int32_t>(level.layers + 1), &caseField);
        if (field == nullptr)
        {
            Report(item, parent, JsonQuoted(item) + "unknown in message " + GpbPbFullName(*level.type), true);
            return;
        }
        const pb::Descriptor *holder = level.type;
        const pb::Descriptor *opened = field->message_type();
        if (caseField != nullptr && !OpenCase(item, parent, *caseField, level, opened))
        {
            return;
        }
        if (&item == &chosen_)
        {
            // The library takes the first message that the item opens, and for a leaf the one that it was found from.
            result.itemType = IsJsonContainer(item) ? opened : holder;
        }
        if (field->type() == pb::FieldDescriptor::TYPE_MESSAGE)
        {
            Message(item, parent, *field, level);
        }
        else
        {
            Leaf(item, parent, *field);
        }
    }

    /** Goes down to the case's message; `opened` becomes the outermost message on the way there. */
    bool OpenCase(cJSON &item, cJSON &parent, const pb::FieldDescriptor &caseField, Level &level,
                  const pb::Descriptor *&opened)
    {
        const pb::FieldDescriptor *ancestors[GPB_MAX_ANCESTOR_NUM] = {};
        const std::uint32_t count = GPB_GetDescriptorAncestors(&caseField, level.type, ancestors, GPB_MAX_ANCESTOR_NUM);
        if (count == 0)
        {
            Report(item, parent,
                   JsonQuoted(item) + "its case cannot be reached from message " + GpbPbFullName(*level.type), true);
            return false;
        }
        if (level.layers + count > GPB_COMPILER_MAX_LAYERS)
        {
            ReportDepth(item, parent);
            return false;
        }
        opened = ancestors[count - 1]->message_type();
        level.layers += count;
        level.type = caseField.message_type();
        return true;
    }

    void ReportDepth(cJSON &item, cJSON &parent)
    {
        const std::string name = item.string != nullptr ? JsonQuoted(item) : JsonQuoted(parent);
        Report(item, parent, name + "nested deeper than " + std::to_string(GPB_COMPILER_MAX_LAYERS) + " levels", true);
    }

    void Message(cJSON &item, cJSON &parent, const pb::FieldDescriptor &field, const Level &level)
    {
        const bool isArray = cJSON_IsArray(&item) != 0;
        if (!IsJsonContainer(item))
        {
            Report(item, parent, JsonQuoted(item) + JsonKindOf(item) + ", but " + JsonWanted(field) + " in the module",
                   true);
            return;
        }
        if (isArray != field.is_repeated())
        {
            // The library takes both for each other; a document that mixes them up is not of this module all the same.
            Report(item, parent, JsonQuoted(item) + JsonKindOf(item) + ", but " + JsonWanted(field) + " in the module",
                   false);
        }
        if (isArray)
        {
            Entries(item, field, level);
        }
        else
        {
            Enter(item, parent, field, level);
        }
    }

    void Entries(cJSON &array, const pb::FieldDescriptor &field, const Level &level)
    {
        for (cJSON *entry = array.child; entry != nullptr; entry = entry->next)
        {
            if (cJSON_IsObject(entry) != 0)
            {
                Enter(*entry, array, field, level);
            }
            else
            {
                Report(*entry, array, JsonQuoted(array) + JsonKindOf(*entry) + " where an entry, an object, belongs",
                       true);
            }
        }
    }

    void Enter(cJSON &object, cJSON &parent, const pb::FieldDescriptor &field, const Level &level)
    {
        if (level.layers >= GPB_COMPILER_MAX_LAYERS)
        {
            ReportDepth(object, parent);
            return;
        }
        Members(object, {field.message_type(), level.layers + 1});
    }

    void Leaf(cJSON &item, cJSON &parent, const pb::FieldDescriptor &field)
    {
        if (cJSON_IsObject(&item) != 0)
        {
            Report(item, parent, JsonQuoted(item) + "an object, but " + JsonWanted(field) + " in the module", true);
        }
        else if (cJSON_IsArray(&item) != 0)
        {
            LeafList(item, parent, field);
        }
        else if (cJSON_IsNull(&item) != 0)
        {
            const bool takesNull =
                field.type() == pb::FieldDescriptor::TYPE_BOOL || field.type() == pb::FieldDescriptor::TYPE_STRING;
            if (!takesNull)
            {
                Report(item, parent, JsonQuoted(item) + "null, but " + JsonWanted(field) + " in the module", false);
            }
        }
        else
        {
            Scalar(item, parent, item, field);
        }
    }

    void Scalar(cJSON &item, cJSON &parent, const cJSON &named, const pb::FieldDescriptor &field)
    {
        const std::string problem = JsonScalarProblem(field, item, false);
        if (!problem.empty())
        {
            Report(item, parent, JsonQuoted(named) + problem, false);
        }
    }

    void LeafList(cJSON &array, cJSON &parent, const pb::FieldDescriptor &field)
    {
        const bool encoded = field.is_repeated() && field.enum_type() != nullptr;
        if (!field.is_repeated())
        {
            const bool emptyLeaf = field.type() == pb::FieldDescriptor::TYPE_BOOL;
            Report(array, parent,
                   JsonQuoted(array) + "an array, but " + JsonWanted(field) + " in the module" +
                       (emptyLeaf ? "; an empty leaf is null or true" : ""),
                   false);
        }
        else if (!encoded && array.child != nullptr)
        {
            Report(array, parent,
                   JsonQuoted(array) + JsonWanted(field) +
                       ": of leaf-lists only those of enumerations are encoded from JSON",
                   false);
        }
        for (cJSON *value = array.child; value != nullptr; value = value->next)
        {
            if (IsJsonContainer(*value) || (encoded && cJSON_IsNull(value) != 0))
            {
                Report(*value, array, JsonQuoted(array) + JsonKindOf(*value) + " where a value belongs", true);
            }
            else if (encoded)
            {
                Scalar(*value, array, array, field);
            }
        }
    }

    const cJSON &chosen_;
};

} // namespace

JsonCheckResult CheckJson(cJSON &container, const pb::Descriptor &type, const cJSON &item)
{
    Checker checker(item);
    checker.result.itemType = &item == &container ? &type : nullptr;
    checker.Members(container, {&type, 1});
    return checker.result;
}

} // namespace gpbtool
