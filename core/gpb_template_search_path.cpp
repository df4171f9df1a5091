// Where proto files are looked for below the system work path.
#include "core/gpb_log.h"
#include "core/gpb_template_tag.h"
#include "core/gpb_template_work_dir.h"
#include "gpb_templatelib/gpb_lib.h"
#include "platform/safe_string.h"
#include "platform/yos.h"
#include "platform/zmp.h"

namespace
{

constexpr uint32_t LINE_FIND_APPEND_PATCH = 262;
constexpr uint32_t LINE_FIND_PATCH_CANDIDATE = 265;
constexpr uint32_t LINE_FIND_APPEND_FIXED = 272;
constexpr uint32_t LINE_FIND_FIXED_CANDIDATE = 275;
constexpr uint32_t LINE_FIND_COPY_OUT = 284;
constexpr uint32_t LINE_PATCH_DIR_TOO_LONG = 1578;

const char *LastComponent(const char *path)
{
    const char *slash = YOS_StrRChr(path, '/');
    return slash == nullptr ? path : slash + 1;
}

} // namespace

uint32_t GPBLIB_SetPatchDir(GpbLibContext *pstCtx, const char *pcDir)
{
    char *buffer = GPBLIB_GetPatchDir(pstCtx);
    if (buffer == nullptr)
    {
        return 0;
    }
    if (pcDir == nullptr)
    {
        return static_cast<uint32_t>(memset_s(buffer, GPB_PATH_SIZE, 0, GPB_PATH_SIZE));
    }
    if (strcpy_s(buffer, GPB_PATH_SIZE, pcDir) != 0)
    {
        return ZMP_Assert(GPB_TEMPLATE_TAG, LINE_PATCH_DIR_TOO_LONG, 0);
    }
    return 0;
}

char *GPBLIB_GetPatchDir(GpbLibContext *pstCtx)
{
    return pstCtx == nullptr ? nullptr : pstCtx->pcPatchDir;
}

uint32_t GPBLIB_GetProtoFilePath(GpbLibContext *pstCtx, char *pcOut, const char *pcModuleName)
{
    if (pstCtx == nullptr || pcOut == nullptr || pcModuleName == nullptr)
    {
        return 1;
    }
    GpbWorkDir directory;
    char candidate[GPB_PATH_SIZE] = {};
    if (ZMP_GetSysWorkPath(directory.text, GPB_PATH_SIZE) != 0)
    {
        GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "Get current work path fail!");
        return 1;
    }
    const uint32_t workLength = YOS_StrLen(directory.text);
    if (workLength > GPB_PATH_SIZE - 1)
    {
        GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "Work path tool long (%u)!", workLength);
        return 1;
    }
    const char *patchDir = pstCtx->pcPatchDir;
    if (patchDir != nullptr && patchDir[0] != '\0')
    {
        // A count below the room cuts a long patch directory; the source tree's mapping of the same directory does not.
        GpbAssertIf(strncpy_s(directory.text + workLength, GPB_PATH_SIZE - workLength, patchDir,
                              GPB_PATH_SIZE - 1 - workLength) != 0,
                    LINE_FIND_APPEND_PATCH);
        GpbAssertIf(snprintf_truncated_s(candidate, sizeof(candidate), "%s%s.proto", directory.text, pcModuleName) < 0,
                    LINE_FIND_PATCH_CANDIDATE);
    }
    if (YOS_VFS_IsFileExist(candidate) != 1)
    {
        GpbAppendFixedDir(directory, workLength, LINE_FIND_APPEND_FIXED);
        GpbAssertIf(snprintf_truncated_s(candidate, sizeof(candidate), "%s/%s.proto", directory.text, pcModuleName) < 0,
                    LINE_FIND_FIXED_CANDIDATE);
        if (YOS_VFS_IsFileExist(candidate) != 1)
        {
            GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "File (%s) not exists!", LastComponent(candidate));
            return 1;
        }
    }
    GpbAssertIf(memcpy_s(pcOut, GPB_PATH_SIZE, directory.text, GPB_PATH_SIZE) != 0, LINE_FIND_COPY_OUT);
    return 0;
}
