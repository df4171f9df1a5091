// Loading proto files into the registry.
#include <google/protobuf/compiler/importer.h>
#include <optional>

#include "core/gpb_barrier.h"
#include "core/gpb_log.h"
#include "core/gpb_memory.h"
#include "core/gpb_source_tree.h"
#include "core/gpb_template_proto_file.h"
#include "core/gpb_template_tag.h"
#include "gpb_templatelib/gpb_lib.h"
#include "platform/zmp.h"

namespace
{

constexpr uint32_t LINE_ALLOC_RECORD = 443;
constexpr uint32_t LINE_ZERO_RECORD = 448;
constexpr uint32_t LINE_FREE_NOT_STORED = 458;

// A new record of a file that was not tried before; null without memory.
GpbProtoFileInfo *NewRecord(GpbLibContext *context)
{
    auto *info = static_cast<GpbProtoFileInfo *>(
        GpbMalloc(context->uiModuleId, sizeof(GpbProtoFileInfo), GPB_TEMPLATE_TAG, LINE_ALLOC_RECORD));
    if (info == nullptr)
    {
        GPB_LOG(context, GPB_LOG_PROGRESS, __LINE__, "failed to malloc memory for save protofile");
        return nullptr;
    }
    GpbZero(info, sizeof(*info), GPB_TEMPLATE_TAG, LINE_ZERO_RECORD);
    return info;
}

// What the importer answers, null for a file that it cannot read; nothing when it threw.
std::optional<const GpbPbFileDescriptor *> Import(GpbLibContext *context, const char *fileName)
{
    using Answer = std::optional<const GpbPbFileDescriptor *>;
    return GpbNoThrow(Answer(), [&] { return Answer(context->pstImporter->Import(fileName)); });
}

uint32_t LoadNewFile(GpbLibContext *context, const char *fileName)
{
    GpbProtoFileInfo *info = NewRecord(context);
    if (info == nullptr)
    {
        return 1;
    }
    // The importer may be another one by now, at the place of the last: hosts can put one of their own there. Whatever
    // was derived from its descriptors is made anew.
    GpbDropDerived(context);
    const std::optional<const GpbPbFileDescriptor *> answer = Import(context, fileName);
    if (!answer.has_value())
    {
        // A lack of memory says nothing about the file: without a record the next load tries again.
        GPB_LOG(context, GPB_LOG_ERROR, __LINE__, "load protofile failed");
        ZMP_Free_F(info, GPB_TEMPLATE_TAG, LINE_FREE_NOT_STORED);
        return 1;
    }
    info->pstFileDesc = *answer;
    uint8_t state = GPB_PROTO_LOADED;
    if (info->pstFileDesc == nullptr)
    {
        GPB_LOG(context, GPB_LOG_ERROR, __LINE__, "load protofile failed");
        state = GPB_PROTO_LOAD_FAILED;
    }
    // A failure is stored too, so that the file is not read again and again.
    if (GPBLIB_AddProtoFile_(context, info, fileName, state) != 0)
    {
        ZMP_Free_F(info, GPB_TEMPLATE_TAG, LINE_FREE_NOT_STORED);
        return 1;
    }
    GPB_LOG(context, GPB_LOG_PROGRESS, __LINE__, "GPBLIB_LoadProtoFile end ");
    return state == GPB_PROTO_LOADED ? 0 : 1;
}

uint32_t LoadFile(GpbLibContext *context, const char *moduleName)
{
    if (GPBLIB_ProtoTreeInitial_(context) != 0)
    {
        return 1;
    }
    const GpbProtoFileName fileName(moduleName);
    GPB_LOG(context, GPB_LOG_PROGRESS, __LINE__, "protofile name = %s", fileName.Text());
    const GpbProtoFileInfo *known = GPBLIB_GetProtoFdByFileName(fileName.Text(), context);
    if (known != nullptr && known->ucLoadState == GPB_PROTO_LOADED)
    {
        GPB_LOG(context, GPB_LOG_PROGRESS, __LINE__, "this protofile has been loaded");
        return 0;
    }
    if (known != nullptr && known->ucLoadState == GPB_PROTO_LOAD_FAILED)
    {
        GPB_LOG(context, GPB_LOG_PROGRESS, __LINE__, "this protofile has been load failed");
        return 1;
    }
    return LoadNewFile(context, fileName.Text());
}

} // namespace

uint32_t GPBLIB_ProtobufLoad(GpbLibContext *pstCtx, const char *pcModuleName, uint32_t uiArg)
{
    char directory[GPB_PATH_SIZE] = {};
    // The directory only proves that the file exists: the importer finds it again by its own mappings.
    if (GPBLIB_GetProtoAppPath(pstCtx, pcModuleName, directory) != 0 &&
        GPBLIB_GetProtoFilePath(pstCtx, directory, pcModuleName) != 0)
    {
        return 1;
    }
    return GPBLIB_LoadProtoFile(pstCtx, pcModuleName, uiArg, directory);
}

uint32_t GPBLIB_LoadProtoFile(GpbLibContext *pstCtx, const char *pcModuleName, uint32_t /*uiArg*/,
                              const char *pcDirectory)
{
    GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "GPBLIB_LoadProtoFile begin ");
    if (pstCtx == nullptr || pcModuleName == nullptr || pcDirectory == nullptr)
    {
        return 1;
    }
    return GpbNoThrow(1U, [&] { return LoadFile(pstCtx, pcModuleName); });
}
