// Files by module name, fields by schema path, and the values of an enumeration leaf.
#include <google/protobuf/descriptor.h>
#include <string>

#include "core/gpb_barrier.h"
#include "core/gpb_memory.h"
#include "core/gpb_protobuf_compat.h"
#include "core/gpb_template_proto_file.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "gpb_templatelib/gpb_lib.h"
#include "platform/safe_string.h"
#include "platform/yos.h"
#include "platform/zmp.h"

using google::protobuf::Descriptor;
using google::protobuf::EnumDescriptor;
using google::protobuf::FieldDescriptor;
using google::protobuf::FileDescriptor;

namespace
{

constexpr char MODULE_ADAPT_TAG[] = "gpb_module_adapt";

// Results of the enum list.
constexpr uint32_t ENUM_LIST_FAILED = 1;
constexpr uint32_t ENUM_LIST_NO_FIELD = 3;
constexpr uint32_t ENUM_LIST_NOT_AN_ENUM = 4;

const FieldDescriptor *FindByPath(const FileDescriptor *file, const char *schemaPath, const char *leafName)
{
    char plainPath[GPB_SCHEMA_PATH_SIZE] = {};
    Gpb_Util_RemoveModuleName(plainPath, sizeof(plainPath), schemaPath);
    char path[GPB_SCHEMA_PATH_SIZE] = {};
    if (snprintf_s(path, sizeof(path), sizeof(path) - 1, "%s/%s", plainPath, leafName) < 1)
    {
        ZMP_Assert(MODULE_ADAPT_TAG, __LINE__, 0);
    }
    Gpb_Util_ConverDashToUnderline(path);

    char *end = YOS_StrChr(path, '/');
    if (end == nullptr)
    {
        return nullptr;
    }
    *end = '\0';
    Gpb_Util_ConvertTopLayerName(path);
    const Descriptor *message = file->FindMessageTypeByName(path);
    if (message == nullptr)
    {
        return nullptr;
    }
    const char *segment = end + 1;
    while ((end = YOS_StrChr(segment, '/')) != nullptr)
    {
        *end = '\0';
        message = Gpb_ModuleAdapt_GetMessageDescOfField_(message, segment);
        if (message == nullptr)
        {
            return nullptr;
        }
        segment = end + 1;
    }
    return message->FindFieldByName(segment);
}

bool FillEnumList(const EnumDescriptor *type, GpbYangEnumItem *items)
{
    for (int i = 0; i < type->value_count(); ++i)
    {
        items[i].iValue = type->value(i)->number();
        if (Gpb_Util_ConvertProtoEnumToYangEnum(GpbPbName(*type->value(i)).c_str(), items[i].acName,
                                                sizeof(items[i].acName)) != 0)
        {
            return false;
        }
    }
    return true;
}

} // namespace

const FileDescriptor *Gpb_ModuleAdapt_GetFileHandle(const GpbLibContext *pstCtx, const char *pcModuleName)
{
    if (pstCtx == nullptr || pcModuleName == nullptr || *pcModuleName == '\0')
    {
        return nullptr;
    }
    return GpbNoThrow<const FileDescriptor *>(nullptr,
                                              [&]() -> const FileDescriptor *
                                              {
                                                  const GpbProtoFileName fileName(pcModuleName);
                                                  const GpbProtoFileInfo *info =
                                                      GPBLIB_GetProtoFdByFileName(fileName.Text(), pstCtx);
                                                  return info == nullptr ? nullptr : info->pstFileDesc;
                                              });
}

const FieldDescriptor *Gpb_ModuleAdapt_GetFieldHandle(const GpbLibContext * /*pstCtx*/, const FileDescriptor *pstFile,
                                                      const char *pcPath, const char *pcLeafName)
{
    if (pstFile == nullptr || pcPath == nullptr || *pcPath == '\0' || pcLeafName == nullptr)
    {
        return nullptr;
    }
    return GpbNoThrow<const FieldDescriptor *>(nullptr, [&] { return FindByPath(pstFile, pcPath, pcLeafName); });
}

const Descriptor *Gpb_ModuleAdapt_GetMessageDescOfField_(const Descriptor *pstMessage, const char *pcFieldName)
{
    if (pstMessage == nullptr || pcFieldName == nullptr)
    {
        return nullptr;
    }
    return GpbNoThrow<const Descriptor *>(nullptr,
                                          [&]() -> const Descriptor *
                                          {
                                              const FieldDescriptor *field = pstMessage->FindFieldByName(pcFieldName);
                                              return field == nullptr ||
                                                             field->cpp_type() != FieldDescriptor::CPPTYPE_MESSAGE
                                                         ? nullptr
                                                         : field->message_type();
                                          });
}

uint32_t Gpb_ModuleAdapt_GetEnumList(const GpbLibContext *pstCtx, const FileDescriptor *pstFile, const char *pcPath,
                                     const char *pcLeafName, GpbYangEnumItem **ppstItems, uint32_t *puiCount)
{
    if (ppstItems == nullptr || puiCount == nullptr)
    {
        return ENUM_LIST_FAILED;
    }
    const FieldDescriptor *field = Gpb_ModuleAdapt_GetFieldHandle(pstCtx, pstFile, pcPath, pcLeafName);
    if (field == nullptr)
    {
        return ENUM_LIST_NO_FIELD;
    }
    if (field->cpp_type() != FieldDescriptor::CPPTYPE_ENUM)
    {
        return ENUM_LIST_NOT_AN_ENUM;
    }
    const EnumDescriptor *type = field->enum_type();
    if (type == nullptr)
    {
        return ENUM_LIST_FAILED;
    }
    const size_t size = static_cast<size_t>(type->value_count()) * sizeof(GpbYangEnumItem);
    auto *items =
        static_cast<GpbYangEnumItem *>(GpbMalloc(GPBLIB_GetMemHandle(pstCtx), size, MODULE_ADAPT_TAG, __LINE__));
    if (items == nullptr)
    {
        return ENUM_LIST_FAILED;
    }
    if (!FillEnumList(type, items))
    {
        ZMP_Free_F(items, MODULE_ADAPT_TAG, __LINE__);
        return ENUM_LIST_FAILED;
    }
    *ppstItems = items;
    *puiCount = static_cast<uint32_t>(type->value_count());
    return 0;
}
