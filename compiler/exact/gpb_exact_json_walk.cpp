#include "compiler/exact/gpb_exact_json_walk.h"

#include <google/protobuf/descriptor.h>
#include <vector>

#include "compiler/exact/gpb_exact_json_number.h"
#include "compiler/exact/gpb_exact_open.h"
#include "compiler/gpb_json_log.h"
#include "compiler/gpb_json_node.h"
#include "compiler/gpb_layer.h"
#include "compiler/gpb_module_plan.h"
#include "descriptor/gpb_exact_module.h"

GpbExactJsonWalk::GpbExactJsonWalk(GpbJsonCompiler &compiler, cJSON *root, cJSON *item)
    : compiler_(compiler), root_(root), item_(item), names_(compiler.pstPlan->exactNames),
      moduleName_(GpbModuleOf(*compiler.pstFileDesc)), around_(NameOf(root, {"", "", moduleName_}))
{
}

GpbExactJsonWalk::Name GpbExactJsonWalk::NameOf(const cJSON *item, const Name &around)
{
    const char *key = GpbLib_Json_GetObjectName(item);
    if (key == nullptr)
    {
        return around;
    }
    const GpbQualifiedName name = GpbSplitName(key, around.module);
    return {key, name.name, name.module};
}

unsigned int GpbExactJsonWalk::Prepare(GpbCompilerStack &stack)
{
    // The type goes by the key alone, and that of the root has its prefix in front of it.
    cJSON top = {};
    top.string = GpbLib_Json_GetObjectName(root_) == nullptr ? nullptr : const_cast<char *>(around_.text.data());
    if (compiler_.GPB_CompilerStackInitTop(&top, stack.astLayer[0]) != GPB_COMPILER_OK)
    {
        return GPB_COMPILER_ERR;
    }
    stack.uiLayerNum = 1;
    const unsigned int result = item_ == root_ ? GPB_COMPILER_OK : OpenAncestors(stack);
    if (result != GPB_COMPILER_OK)
    {
        GpbReportJsonAncestorsFailed(compiler_.pvLibHandle, GpbJsonLogKey(item_));
    }
    return result;
}

unsigned int GpbExactJsonWalk::OpenAncestors(GpbCompilerStack &stack)
{
    std::vector<cJSON *> ancestors(GPB_JSON_MAX_DEPTH);
    if (GpbJsonCompiler::GPB_GetItemAncestors(root_, item_, ancestors.data(), GPB_JSON_MAX_DEPTH, 0) == nullptr)
    {
        return GPB_COMPILER_OK;
    }
    for (auto ancestor = ancestors.begin(); ancestor != ancestors.end() && *ancestor != nullptr; ++ancestor)
    {
        around_ = NameOf(*ancestor, around_);
        // What opens a layer is an entry, not its list.
        if (cJSON_IsArray(*ancestor) != 0)
        {
            continue;
        }
        const GpbExactField *field = FindForObject(around_, stack);
        const unsigned int result = field == nullptr ? GPB_COMPILER_ERR : OpenObject(*field, around_, stack);
        if (result != GPB_COMPILER_OK)
        {
            return result;
        }
    }
    return GPB_COMPILER_OK;
}

unsigned int GpbExactJsonWalk::Run(GpbCompilerStack &stack)
{
    if (item_ == root_)
    {
        return WalkSiblings(root_->child, around_, stack);
    }
    if (cJSON_IsObject(item_) == 0)
    {
        resultLayer_ = stack.uiLayerNum - 1;
        return WalkSiblings(item_, around_, stack);
    }
    resultLayer_ = stack.uiLayerNum;
    const Name name = NameOf(item_, around_);
    const GpbExactField *field = FindForObject(name, stack);
    if (field == nullptr)
    {
        GpbReportNoJsonField(compiler_.pvLibHandle, name.key, GpbTopLayer(stack));
        return GPB_COMPILER_OK;
    }
    const unsigned int result = OpenObject(*field, name, stack);
    if (result != GPB_COMPILER_OK)
    {
        return result;
    }
    // The layer stays open, and the siblings, which might switch the choice that the message lies in, stay out.
    resultLayer_ = stack.uiLayerNum - 1;
    return WalkSiblings(item_->child, name, stack);
}

unsigned int GpbExactJsonWalk::WalkSiblings(const cJSON *first, const Name &around, GpbCompilerStack &stack)
{
    for (const cJSON *item = first; item != nullptr; item = item->next)
    {
        const unsigned int result = WalkItem(item, around, stack);
        if (result != GPB_COMPILER_OK)
        {
            return result;
        }
    }
    return GPB_COMPILER_OK;
}

unsigned int GpbExactJsonWalk::WalkItem(const cJSON *item, const Name &around, GpbCompilerStack &stack)
{
    const Name name = NameOf(item, around);
    if (cJSON_IsArray(item) != 0)
    {
        return WalkArray(item, name, stack);
    }
    return cJSON_IsObject(item) != 0 ? WalkObject(item, name, stack) : FillLeaf(item, name, stack);
}

unsigned int GpbExactJsonWalk::WalkArray(const cJSON *array, const Name &name, GpbCompilerStack &stack)
{
    if (array->child == nullptr)
    {
        return GPB_COMPILER_OK;
    }
    // One line for them all.
    if (Find(name, GpbExactKind::ANY, stack) == nullptr)
    {
        GpbReportNoJsonField(compiler_.pvLibHandle, name.key, GpbTopLayer(stack));
        return GPB_COMPILER_OK;
    }
    // The members of an array in an array are those of the outer one. It opens no layer, so that these do not end it.
    if (arrays_ == GPB_JSON_MAX_DEPTH)
    {
        return GPB_COMPILER_JSON_STACK_FULL;
    }
    ++arrays_;
    const unsigned int result = WalkSiblings(array->child, name, stack);
    --arrays_;
    return result;
}

unsigned int GpbExactJsonWalk::WalkObject(const cJSON *object, const Name &name, GpbCompilerStack &stack)
{
    const GpbExactField *field = FindForObject(name, stack);
    if (field == nullptr)
    {
        GpbReportNoJsonField(compiler_.pvLibHandle, name.key, GpbTopLayer(stack));
        return GPB_COMPILER_OK;
    }
    const GpbLayerScope scope(stack);
    const unsigned int result = OpenObject(*field, name, stack);
    return result == GPB_COMPILER_OK ? WalkSiblings(object->child, name, stack) : result;
}

unsigned int GpbExactJsonWalk::OpenObject(const GpbExactField &field, const Name &name, GpbCompilerStack &stack)
{
    const unsigned int result = GpbOpenExactCases(field, stack);
    if (result != GPB_COMPILER_OK)
    {
        GpbReportJsonContainerCaseFailed(compiler_.pvLibHandle, name.key);
        return result;
    }
    return GpbPushRecordLayer(compiler_.pvLibHandle, stack, field.field) ? GPB_COMPILER_OK
                                                                         : compiler_.PushLayer(field.field, stack);
}

unsigned int GpbExactJsonWalk::FillLeaf(const cJSON *item, const Name &name, GpbCompilerStack &stack)
{
    const bool isMember = item->string == nullptr;
    const GpbExactField *field = Find(name, GpbExactKind::LEAF, stack);
    // A value for a container fails, but values in its array are passed over, as in the default.
    if (field == nullptr && !isMember)
    {
        field = Find(name, GpbExactKind::MESSAGE, stack);
    }
    if (field == nullptr)
    {
        GpbReportNoJsonField(compiler_.pvLibHandle, name.key, GpbTopLayer(stack));
        return GPB_COMPILER_OK;
    }
    const GpbLayerScope scope(stack);
    const unsigned int result = GpbOpenExactCases(*field, stack);
    if (result != GPB_COMPILER_OK)
    {
        if (isMember)
        {
            GpbReportJsonLeafListCaseFailed(compiler_.pvLibHandle, GpbJsonLogKey(item));
        }
        else
        {
            GpbReportJsonLeafCaseFailed(compiler_.pvLibHandle, name.key, GpbTopLayer(stack));
        }
        return result;
    }
    // A copy, so that the steps find the key on members of arrays, too, and a number as the text that it is to them.
    cJSON value = *item;
    char number[GPB_JSON_NUMBER_SIZE] = {};
    value.string = const_cast<char *>(name.key);
    if (cJSON_IsNull(item) != 0)
    {
        return compiler_.ProcJsonEmptyLeafNode(&value, stack, field->field);
    }
    if (cJSON_IsNumber(item) != 0)
    {
        if (!GpbWriteExactNumber(item->valuedouble, number))
        {
            return GPB_COMPILER_ERR;
        }
        value.type = cJSON_String;
        value.valuestring = number;
    }
    return compiler_.FillLeafField(GpbTopLayer(stack), field->field, &value);
}

const GpbExactField *GpbExactJsonWalk::Find(const Name &name, GpbExactKind kind, const GpbCompilerStack &stack)
{
    const GpbCompilerStackLayer &top = stack.astLayer[stack.uiLayerNum - 1];
    return names_.TableOf(top.pstDescriptor, stack.uiLayerNum + 1).Find(name.text, kind, name.module);
}

const GpbExactField *GpbExactJsonWalk::FindForObject(const Name &name, const GpbCompilerStack &stack)
{
    const GpbExactField *field = Find(name, GpbExactKind::MESSAGE, stack);
    return field == nullptr ? Find(name, GpbExactKind::LEAF, stack) : field;
}
