/** Follows a JSON document through the module as the library does with the lossless setting. */
#include <google/protobuf/descriptor.h>

#include "core/gpb_protobuf_compat.h"
#include "descriptor/gpb_exact_module.h"
#include "descriptor/gpb_exact_names.h"
#include "gpb_templatelib/gpb_limits.h"
#include "json_check.h"
#include "json_words.h"

namespace gpbtool
{

namespace
{

namespace pb = google::protobuf;

/** An open message: its type, how many layers are open with it, and the module of its node. */
struct Level
{
    const pb::Descriptor *type;
    std::uint32_t layers;
    std::string_view module;
};

class Checker
{
public:
    explicit Checker(const cJSON &chosen) : chosen_(chosen) {}

    void Members(cJSON &object, const Level &level)
    {
        for (cJSON *child = object.child; child != nullptr; child = child->next)
        {
            const GpbQualifiedName name = GpbSplitName(child->string, level.module);
            Member({*child, object, *child, name}, level);
        }
    }

    JsonCheckResult result;

private:
    /** A member of an object, or of an array in one. */
    struct Item
    {
        cJSON &item;
        cJSON &parent;
        const cJSON &named; /**< the member of the object */
        GpbQualifiedName name;
    };

    void Report(const Item &at, const std::string &what, bool blocks)
    {
        result.findings.push_back({&at.item, &at.parent, JsonQuoted(at.named) + what, blocks});
    }

    const GpbExactField *Find(const Item &at, const Level &level, GpbExactKind kind)
    {
        return names_.TableOf(level.type, level.layers + 1).Find(at.name.name, kind, at.name.module);
    }

    void Member(const Item &at, const Level &level)
    {
        if (cJSON_IsArray(&at.item) != 0)
        {
            Array(at, level);
        }
        else if (cJSON_IsObject(&at.item) != 0)
        {
            Object(at, level);
        }
        else
        {
            Leaf(at, level);
        }
    }

    void Array(const Item &at, const Level &level)
    {
        const GpbExactField *found = Find(at, level, GpbExactKind::ANY);
        if (found == nullptr)
        {
            ReportUnknown(at, level);
            return;
        }
        const bool isEmptyLeaf = found->field->type() == pb::FieldDescriptor::TYPE_BOOL && at.item.child != nullptr &&
                                 cJSON_IsNull(at.item.child) != 0;
        if (!found->field->is_repeated() && !isEmptyLeaf && cJSON_GetArraySize(&at.item) > 1)
        {
            Report(at, "an array, but " + JsonWanted(*found->field) + " in the module", false);
        }
        for (cJSON *member = at.item.child; member != nullptr; member = member->next)
        {
            if (cJSON_IsArray(member) != 0)
            {
                Report({*member, at.item, at.named, at.name}, "an array in an array", false);
                continue;
            }
            Member({*member, at.item, at.named, at.name}, level);
        }
        Choose(at, cJSON_IsObject(at.item.child) != 0 ? found->field->message_type() : level.type);
    }

    void Object(const Item &at, const Level &level)
    {
        const GpbExactField *found = Find(at, level, GpbExactKind::MESSAGE);
        if (found == nullptr)
        {
            found = Find(at, level, GpbExactKind::LEAF);
            if (found == nullptr)
            {
                ReportUnknown(at, level);
            }
            else
            {
                Report(at, "an object, but " + JsonWanted(*found->field) + " in the module", true);
            }
            return;
        }
        Choose(at, found->field->message_type());
        const auto layers = level.layers + static_cast<std::uint32_t>(found->cases.size()) + 1;
        if (layers > GPB_COMPILER_MAX_LAYERS)
        {
            Report(at, "nested deeper than " + std::to_string(GPB_COMPILER_MAX_LAYERS) + " levels", true);
            return;
        }
        Members(at.item, {found->field->message_type(), layers, at.name.module});
    }

    void Leaf(const Item &at, const Level &level)
    {
        const GpbExactField *found = Find(at, level, GpbExactKind::LEAF);
        if (found == nullptr)
        {
            const GpbExactField *container = Find(at, level, GpbExactKind::MESSAGE);
            if (container == nullptr)
            {
                ReportUnknown(at, level);
                return;
            }
            Report(at, JsonKindOf(at.item) + (", but " + JsonWanted(*container->field)) + " in the module", true);
            return;
        }
        Choose(at, level.type);
        const pb::FieldDescriptor &field = *found->field;
        if (cJSON_IsNull(&at.item) == 0)
        {
            const std::string problem = JsonScalarProblem(field, at.item, true);
            if (!problem.empty())
            {
                Report(at, problem, false);
            }
        }
        else if (field.type() != pb::FieldDescriptor::TYPE_BOOL && field.type() != pb::FieldDescriptor::TYPE_STRING)
        {
            Report(at, "null, but " + JsonWanted(field) + " in the module", false);
        }
    }

    void ReportUnknown(const Item &at, const Level &level)
    {
        Report(at, "unknown in message " + GpbPbFullName(*level.type), false);
    }

    void Choose(const Item &at, const pb::Descriptor *type)
    {
        if (&at.item == &chosen_)
        {
            result.itemType = type;
        }
    }

    const cJSON &chosen_;
    GpbExactNamePlan names_;
};

} // namespace

JsonCheckResult CheckLosslessJson(cJSON &container, const pb::Descriptor &type, const cJSON &item,
                                  const std::string &module)
{
    Checker checker(item);
    checker.result.itemType = &item == &container ? &type : nullptr;
    checker.Members(container, {&type, 1, GpbSplitName(container.string, module).module});
    return std::move(checker.result);
}

} // namespace gpbtool
