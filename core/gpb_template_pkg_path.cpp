// The package install paths: a platform list, searched in the order in which the host added them.
#include "core/gpb_template_pkg_path.h"

#include "core/gpb_log.h"
#include "core/gpb_memory.h"
#include "core/gpb_template_tag.h"
#include "gpb_templatelib/gpb_lib.h"
#include "platform/dll.h"
#include "platform/yos.h"
#include "platform/zmp.h"

#include <cstddef>

namespace
{

constexpr uint32_t LINE_FREE_ALL = 1655;
constexpr uint32_t LINE_ALLOC_NODE = 1688;
constexpr uint32_t LINE_ZERO_NODE = 1693;
constexpr uint32_t LINE_FREE_COPY_FAILED = 1699;
constexpr uint32_t LINE_FREE_DELETED = 1719;
constexpr uint32_t LINE_CANDIDATE_FAILED = 1737;
constexpr uint32_t LINE_COPY_PATH_FAILED = 1740;

// The list links records that start with the fields of its own node type.
static_assert(offsetof(GpbPkgPathNode, pstNext) == offsetof(DllNode, pstNext) &&
                  offsetof(GpbPkgPathNode, pstPrev) == offsetof(DllNode, pstPrev) &&
                  offsetof(GpbPkgPathNode, ulHandle) == offsetof(DllNode, ulHandle) &&
                  offsetof(DllHead, pstFirst) == offsetof(DllNode, pstNext) &&
                  offsetof(DllHead, pstLast) == offsetof(DllNode, pstPrev),
              "path nodes and the list head must start like a list node");

DllNode *AsNode(DllHead &list)
{
    return reinterpret_cast<DllNode *>(&list);
}

DllNode *AsNode(GpbPkgPathNode *node)
{
    return reinterpret_cast<DllNode *>(node);
}

GpbPkgPathNode *AsPath(DllNode *node)
{
    return reinterpret_cast<GpbPkgPathNode *>(node);
}

DllNode *FindPath(GpbLibContext *context, const char *path)
{
    return DLL_Find(&context->stPkgPathList, path, GPBLIB_PkgDllCompare);
}

} // namespace

GpbPkgPathNode *GpbFirstPkgPath(GpbLibContext *context)
{
    DllHead &list = context->stPkgPathList;
    return list.uiCount == 0 || list.pstFirst == nullptr ? nullptr : AsPath(list.pstFirst);
}

GpbPkgPathNode *GpbNextPkgPath(GpbLibContext *context, const GpbPkgPathNode *node)
{
    return node->pstNext == AsNode(context->stPkgPathList) ? nullptr : AsPath(node->pstNext);
}

uint32_t GPBLIB_InitPkgSearchPath(GpbLibContext *pstCtx)
{
    if (pstCtx == nullptr)
    {
        return 0;
    }
    DllHead &list = pstCtx->stPkgPathList;
    list.uiCount = 0;
    list.pstFirst = AsNode(list);
    list.pstLast = AsNode(list);
    return 0;
}

void GPBLIB_DeInitPkgSearchPath(GpbLibContext *pstCtx)
{
    if (pstCtx == nullptr)
    {
        return;
    }
    while (GpbPkgPathNode *node = GpbFirstPkgPath(pstCtx))
    {
        DLL_Delete(&pstCtx->stPkgPathList, AsNode(node));
        ZMP_Free_F(node, GPB_TEMPLATE_TAG, LINE_FREE_ALL);
    }
}

int GPBLIB_PkgDllCompare(const void *pvKey, const void *pvNode)
{
    return YOS_StrCmp(static_cast<const GpbPkgPathNode *>(pvNode)->pcPath, static_cast<const char *>(pvKey));
}

uint32_t GPBLIB_PkgAddInstallPath(GpbLibContext *pstCtx, const char *pcPath)
{
    if (pstCtx == nullptr || pcPath == nullptr)
    {
        return 1;
    }
    const uint32_t length = YOS_StrLen(pcPath);
    // A host that adds a path twice, or before the package is there, has done nothing wrong: both succeed.
    if (FindPath(pstCtx, pcPath) != nullptr)
    {
        GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "The app already install.");
        return 0;
    }
    if (YOS_VFS_IsDirExist(pcPath) != 1)
    {
        GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "The install path not exist.");
        return 0;
    }
    const size_t textSize = static_cast<size_t>(length) + 1;
    const size_t blockSize = sizeof(GpbPkgPathNode) + textSize;
    void *block = GpbMalloc(pstCtx->uiModuleId, blockSize, GPB_TEMPLATE_TAG, LINE_ALLOC_NODE);
    if (block == nullptr)
    {
        return 1;
    }
    GpbZero(block, blockSize, GPB_TEMPLATE_TAG, LINE_ZERO_NODE);
    auto *node = static_cast<GpbPkgPathNode *>(block);
    node->pcPath = reinterpret_cast<char *>(node + 1);
    if (strcpy_s(node->pcPath, textSize, pcPath) != 0)
    {
        ZMP_Free_F(node, GPB_TEMPLATE_TAG, LINE_FREE_COPY_FAILED);
        return 1;
    }
    DllHead &list = pstCtx->stPkgPathList;
    DLL_Insert_In_Middle(&list, list.pstLast, AsNode(list), AsNode(node));
    return 0;
}

uint32_t GPBLIB_PkgDelUnInstallPath(GpbLibContext *pstCtx, const char *pcPath)
{
    if (pstCtx == nullptr || pcPath == nullptr)
    {
        return 0;
    }
    DllNode *node = FindPath(pstCtx, pcPath);
    if (node == nullptr)
    {
        GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "The path not install.");
        return 0;
    }
    DLL_Delete(&pstCtx->stPkgPathList, node);
    ZMP_Free_F(node, GPB_TEMPLATE_TAG, LINE_FREE_DELETED);
    return 0;
}

uint32_t GPBLIB_GetProtoAppPath(GpbLibContext *pstCtx, const char *pcModuleName, char *pcOut)
{
    if (pstCtx == nullptr || pcModuleName == nullptr || pcOut == nullptr)
    {
        return 1;
    }
    for (const GpbPkgPathNode *node = GpbFirstPkgPath(pstCtx); node != nullptr; node = GpbNextPkgPath(pstCtx, node))
    {
        if (node->pcPath == nullptr)
        {
            return 1;
        }
        char candidate[GPB_PATH_SIZE] = {};
        if (snprintf_truncated_s(candidate, sizeof(candidate), "%s%s.proto", node->pcPath, pcModuleName) < 0)
        {
            ZMP_Assert(GPB_TEMPLATE_TAG, LINE_CANDIDATE_FAILED, 0);
        }
        if (YOS_VFS_IsFileExist(candidate) == 1)
        {
            if (strncpy_s(pcOut, GPB_PATH_SIZE, node->pcPath, YOS_StrLen(node->pcPath)) != 0)
            {
                ZMP_Assert(GPB_TEMPLATE_TAG, LINE_COPY_PATH_FAILED, 0);
            }
            return 0;
        }
    }
    return 1;
}
