// The registry of proto files: one record per file that was tried, in the order of loading.
#include "core/gpb_barrier.h"
#include "core/gpb_log.h"
#include "core/gpb_memory.h"
#include "core/gpb_template_proto_file.h"
#include "core/gpb_template_tag.h"
#include "gpb_templatelib/gpb_lib.h"
#include "gpb_templatelib/gpb_template.h"
#include "platform/vec.h"
#include "platform/yos.h"
#include "platform/zmp.h"

namespace
{

constexpr uint32_t LINE_COPY_NAME_FAILED = 394;
constexpr uint32_t LINE_FREE_UNLOADED = 505;
constexpr uint32_t LINE_FREE_ALL_RECORDS = 1500;
constexpr uint32_t LINE_FREE_ALL_TEMPLATES = 1511;
constexpr uint32_t LINE_ALLOC_ARRAY = 1541;
constexpr uint32_t LINE_FREE_COPY_FAILED = 1552;

GpbProtoFileInfo *RecordAt(const GpbLibContext *context, uint32_t index)
{
    return static_cast<GpbProtoFileInfo *>(context->pstProtoFileVec->ppvSlot[index]);
}

// Frees the first record of a file name; without one nothing happens.
void ForgetFile(GpbLibContext *context, const GpbProtoFileName &fileName)
{
    VecVector *files = context->pstProtoFileVec;
    for (uint32_t i = 0; i < VEC_VectorCount(files); ++i)
    {
        GpbProtoFileInfo *info = RecordAt(context, i);
        if (info != nullptr && YOS_StrCmp(info->acFileName, fileName.Text()) == 0)
        {
            GPB_LOG(context, GPB_LOG_PROGRESS, __LINE__, "find protofile %s, unload from vector", info->acFileName);
            ZMP_Free_F(info, GPB_TEMPLATE_TAG, LINE_FREE_UNLOADED);
            files->ppvSlot[i] = nullptr;
            VEC_VectorZipEmptySlot(files);
            return;
        }
    }
}

void ReleaseRecords(GpbLibContext *context)
{
    VecVector *files = context->pstProtoFileVec;
    for (uint32_t i = 0; i < VEC_VectorCount(files); ++i)
    {
        GpbProtoFileInfo *info = RecordAt(context, i);
        if (info == nullptr)
        {
            continue;
        }
        ZMP_Free_F(info, GPB_TEMPLATE_TAG, LINE_FREE_ALL_RECORDS);
        files->ppvSlot[i] = nullptr;
    }
    VEC_VectorZipEmptySlot(files);
}

void ReleaseTemplates(GpbLibContext *context)
{
    VecVector *templates = context->pstTemplateVec;
    for (uint32_t i = 0; i < VEC_VectorCount(templates); ++i)
    {
        auto *info = static_cast<GpbTemplateInfo *>(templates->ppvSlot[i]);
        if (info == nullptr)
        {
            continue;
        }
        GPBLIB_ObjTree_Delete(&info->pstObjTree);
        ZMP_Free_F(info, GPB_TEMPLATE_TAG, LINE_FREE_ALL_TEMPLATES);
        templates->ppvSlot[i] = nullptr;
    }
    VEC_VectorZipEmptySlot(templates);
}

} // namespace

uint32_t GPBLIB_AddProtoFile_(GpbLibContext *pstCtx, GpbProtoFileInfo *pstInfo, const char *pcFileName, uint8_t ucState)
{
    if (pstCtx == nullptr || pstInfo == nullptr || pcFileName == nullptr)
    {
        return 1;
    }
    if (strncpy_s(pstInfo->acFileName, GPB_PATH_SIZE, pcFileName, YOS_StrLen(pcFileName)) != 0)
    {
        ZMP_Assert(GPB_TEMPLATE_TAG, LINE_COPY_NAME_FAILED, 0);
        // A name that does not fit is kept cut, so that the host's listing still shows which file it was.
        (void)strncpy_s(pstInfo->acFileName, GPB_PATH_SIZE, pcFileName, GPB_PATH_SIZE - 1);
    }
    pstInfo->ucLoadState = ucState;
    if (VEC_VectorSet(pstCtx->pstProtoFileVec, pstInfo) == VEC_INVALID_INDEX)
    {
        GPB_LOG(pstCtx, GPB_LOG_ERROR, __LINE__, "failed to save protofile fd to local");
        return 1;
    }
    return 0;
}

GpbProtoFileInfo *GPBLIB_GetProtoFdByFileName(const char *pcFileName, const GpbLibContext *pstCtx)
{
    if (pcFileName == nullptr || pstCtx == nullptr)
    {
        return nullptr;
    }
    for (uint32_t i = 0; i < VEC_VectorCount(pstCtx->pstProtoFileVec); ++i)
    {
        GpbProtoFileInfo *info = RecordAt(pstCtx, i);
        if (info != nullptr && YOS_StrCmp(info->acFileName, pcFileName) == 0)
        {
            return info;
        }
    }
    return nullptr;
}

void GPBLIB_UnloadProtoFile(GpbLibContext *pstCtx, const char *pcModuleName)
{
    if (pstCtx == nullptr)
    {
        return;
    }
    if (pcModuleName == nullptr)
    {
        GPB_LOG(pstCtx, GPB_LOG_ERROR, __LINE__, "unload protofile err, param pcModuleName is null");
        return;
    }
    GpbNoThrow([&] { ForgetFile(pstCtx, GpbProtoFileName(pcModuleName)); });
}

void GPBLIB_UnloadProtoFileAll(GpbLibContext *pstCtx, uint32_t /*uiArg*/)
{
    if (pstCtx == nullptr)
    {
        return;
    }
    ReleaseRecords(pstCtx);
    ReleaseTemplates(pstCtx);
    GPBLIB_ProtoTreeUninitial_(pstCtx);
}

uint32_t GPBLIB_GetAllProtoFileInfo(GpbLibContext *pstCtx, GpbProtoFileInfo **ppstInfo, uint32_t *puiCount)
{
    if (pstCtx == nullptr || ppstInfo == nullptr || puiCount == nullptr)
    {
        return 1;
    }
    if (pstCtx->pstProtoFileVec == nullptr)
    {
        GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "the vec protofile is empty");
        return 1;
    }
    const uint32_t count = VEC_VectorCount(pstCtx->pstProtoFileVec);
    *puiCount = count;
    if (count == 0)
    {
        return 0;
    }
    auto *array = static_cast<GpbProtoFileInfo *>(
        GpbMalloc(pstCtx->uiModuleId, count * sizeof(GpbProtoFileInfo), GPB_TEMPLATE_TAG, LINE_ALLOC_ARRAY));
    *ppstInfo = array;
    if (array == nullptr)
    {
        GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "failed to malloc memory for get protofile info");
        return 1;
    }
    for (uint32_t i = 0; i < count; ++i)
    {
        // Byte for byte: the host sees the record's padding, which is zero since records are zeroed when made.
        if (memcpy_s(&array[i], sizeof(GpbProtoFileInfo), RecordAt(pstCtx, i), sizeof(GpbProtoFileInfo)) != 0)
        {
            ZMP_Free_F(array, GPB_TEMPLATE_TAG, LINE_FREE_COPY_FAILED);
            *ppstInfo = nullptr;
            return 1;
        }
    }
    return 0;
}
