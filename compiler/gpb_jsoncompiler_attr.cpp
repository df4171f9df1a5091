// JSON to GPB: model attributes, the names and data types of a message's leaves.
#include <cjson/cJSON.h>
#include <google/protobuf/descriptor.h>
#include <google/protobuf/message.h>

#include "compiler/gpb_factory_guard.h"
#include "compiler/gpb_layer.h"
#include "compiler/gpb_source_tag.h"
#include "core/gpb_log.h"
#include "core/gpb_memory.h"
#include "core/gpb_protobuf_compat.h"
#include "gpb_templatelib/gpb_compiler.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "gpb_templatelib/gpb_lib.h"
#include "platform/safe_string.h"
#include "platform/zmp.h"

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

namespace
{

constexpr char GET_MDL_ATTR[] = "GetMdlAttr";
constexpr uint32_t LINE_ALLOC_NAME = 389;
constexpr uint32_t LINE_FREE_UNCOPIED_NAME = 395;
constexpr uint32_t LINE_FREE_STORED_NAME = 407;
constexpr uint32_t LINE_PREPARE_FAILED = 717;
constexpr uint32_t LINE_NO_TOP_MESSAGE = 741;

void ReportPrepareFailed(void *libHandle, unsigned int result)
{
    GPB_LOG_AS(libHandle, GPB_LOG_ERROR, GET_MDL_ATTR, LINE_PREPARE_FAILED, "Gpb compiler prepare fail %u.", result);
}

struct DataType
{
    FieldDescriptor::Type fieldType;
    uint32_t code;
};

// A double deliberately has no code, so it is no leaf to the hosts' data model.
constexpr DataType DATA_TYPES[] = {
    {FieldDescriptor::TYPE_FLOAT, GPB_MDL_TYPE_FLOAT},  {FieldDescriptor::TYPE_INT64, GPB_MDL_TYPE_INT},
    {FieldDescriptor::TYPE_UINT64, GPB_MDL_TYPE_UINT},  {FieldDescriptor::TYPE_INT32, GPB_MDL_TYPE_INT},
    {FieldDescriptor::TYPE_FIXED64, GPB_MDL_TYPE_UINT}, {FieldDescriptor::TYPE_FIXED32, GPB_MDL_TYPE_UINT},
    {FieldDescriptor::TYPE_BOOL, GPB_MDL_TYPE_BOOL},    {FieldDescriptor::TYPE_STRING, GPB_MDL_TYPE_STRING},
    {FieldDescriptor::TYPE_BYTES, GPB_MDL_TYPE_STRING}, {FieldDescriptor::TYPE_UINT32, GPB_MDL_TYPE_UINT},
    {FieldDescriptor::TYPE_ENUM, GPB_MDL_TYPE_STRING},  {FieldDescriptor::TYPE_SFIXED32, GPB_MDL_TYPE_INT},
    {FieldDescriptor::TYPE_SFIXED64, GPB_MDL_TYPE_INT}, {FieldDescriptor::TYPE_SINT32, GPB_MDL_TYPE_INT},
    {FieldDescriptor::TYPE_SINT64, GPB_MDL_TYPE_INT},
};

// The host's copy of a name; null without memory.
char *CopyName(uint32_t moduleId, const std::string &name)
{
    const size_t size = name.size() + 1;
    auto *copy = static_cast<char *>(GpbMalloc(moduleId, size, GPB_JSON_COMPILER_TAG, LINE_ALLOC_NAME));
    if (copy != nullptr && strcpy_s(copy, size, name.c_str()) != 0)
    {
        ZMP_Free_F(copy, GPB_JSON_COMPILER_TAG, LINE_FREE_UNCOPIED_NAME);
        return nullptr;
    }
    return copy;
}

// Frees names that the host would not find any more.
void FreeNames(char **names, uint32_t count)
{
    for (uint32_t i = 0; i < count; ++i)
    {
        ZMP_Free_F(names[i], GPB_JSON_COMPILER_TAG, LINE_FREE_STORED_NAME);
        names[i] = nullptr;
    }
}

} // namespace

unsigned int GpbJsonCompiler::GetMdlAttr(const void *pvHandle, cJSON *pstRoot, cJSON *pstItem, void *pvMdlAttr)
{
    if (pstRoot == nullptr || pstItem == nullptr || pvMdlAttr == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    return GpbGuardFactory(
        ucFactoryBroken, GPB_COMPILER_ERR, [&] { return FillMdlAttr(pvHandle, pstRoot, pstItem, pvMdlAttr); },
        [this] { ReportPrepareFailed(pvLibHandle, GPB_COMPILER_ERR); });
}

unsigned int GpbJsonCompiler::FillMdlAttr(const void *pvHandle, cJSON *pstRoot, cJSON *pstItem, void *pvMdlAttr)
{
    GpbCompilerStack stack;
    GpbTopMessage top(stack);
    unsigned int result = GPB_CompilerStackPrepare(pstRoot, pstItem, stack);
    if (result != GPB_COMPILER_OK)
    {
        ReportPrepareFailed(pvLibHandle, result);
        return result;
    }
    result = GPB_PushItemDescriptor(GpbLib_Json_GetObjectName(pstItem), stack);
    if (result != GPB_COMPILER_OK)
    {
        return result;
    }
    const Descriptor *descriptor = GpbTopLayer(stack).pstDescriptor;
    if (descriptor == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    KeepTopMessage(top.Release());
    if (pstMessage == nullptr)
    {
        GPB_LOG_AS(pvLibHandle, GPB_LOG_SKIP, GET_MDL_ATTR, LINE_NO_TOP_MESSAGE, "Gpb compiler encode fail to encode.");
    }
    return GPB_FillLeafMdlAttr(pvHandle, descriptor, *static_cast<GpbMdlAttr *>(pvMdlAttr));
}

unsigned int GpbJsonCompiler::GPB_FillLeafMdlAttr(const void *pvHandle, const Descriptor *pstDescriptor,
                                                  GpbMdlAttr &stMdlAttr)
{
    const uint32_t moduleId = GPBLIB_GetMemHandle(static_cast<const GpbLibContext *>(pvHandle));
    uint8_t count = 0;
    for (int i = 0; i < pstDescriptor->field_count(); ++i)
    {
        const FieldDescriptor *field = pstDescriptor->field(i);
        uint32_t dataType = 0;
        if (GPB_ConvertDataType(field->type(), dataType) != 0)
        {
            continue;
        }
        if (stMdlAttr.ppcName == nullptr || stMdlAttr.puiType == nullptr)
        {
            return GPB_COMPILER_ERR;
        }
        stMdlAttr.puiType[count] = dataType;
        char *name = CopyName(moduleId, field->has_json_name() ? GpbPbJsonName(*field) : GpbPbName(*field));
        if (name == nullptr)
        {
            FreeNames(stMdlAttr.ppcName, count);
            return GPB_COMPILER_ERR;
        }
        GPB_ConvertGpbNameToJson(field, name);
        stMdlAttr.ppcName[count] = name;
        ++count;
        // The count of the record has eight bits and starts over: names that no count reaches must not stay allocated.
        if (count == 0)
        {
            FreeNames(stMdlAttr.ppcName, UINT8_MAX + 1U);
        }
    }
    stMdlAttr.ucCount = count;
    return GPB_COMPILER_OK;
}

unsigned int GpbJsonCompiler::GPB_ConvertDataType(unsigned int uiFieldType, uint32_t &uiDataType)
{
    for (const DataType &row : DATA_TYPES)
    {
        if (static_cast<unsigned int>(row.fieldType) == uiFieldType)
        {
            uiDataType = row.code;
            return GPB_COMPILER_OK;
        }
    }
    return GPB_COMPILER_ERR;
}

void GpbJsonCompiler::GPB_ConvertGpbNameToJson(const FieldDescriptor *pstField, char *pcName)
{
    if (!pstField->has_json_name())
    {
        Gpb_Util_ConverUnderlineToDash(pcName);
    }
}
