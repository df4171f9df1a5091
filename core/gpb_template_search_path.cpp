// Where proto files are looked for below the system work path, and the protobuf source tree over all places.
#include <google/protobuf/compiler/importer.h>
#include <memory>

#include "core/gpb_barrier.h"
#include "core/gpb_log.h"
#include "core/gpb_source_tree.h"
#include "core/gpb_template_pkg_path.h"
#include "core/gpb_template_tag.h"
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
constexpr uint32_t LINE_MAP_APPEND_PATCH = 334;
constexpr uint32_t LINE_MAP_APPEND_FIXED = 340;
constexpr uint32_t LINE_PATCH_DIR_TOO_LONG = 1578;

// The fixed place of proto files, below the work path; copied with its terminator.
constexpr char FIXED_DIR[] = "reslink/protobuf";

// Bytes behind those that the platform may fill: a text that fills its room is terminated by them, and a platform that
// writes a little too much overwrites nothing else.
constexpr size_t DIRECTORY_SLACK = 8;

struct DirectoryBuffer
{
    char text[GPB_PATH_SIZE + DIRECTORY_SLACK] = {};
};

void AssertIf(bool failed, uint32_t line)
{
    if (failed)
    {
        ZMP_Assert(GPB_TEMPLATE_TAG, line, 0);
    }
}

void AppendFixedDir(DirectoryBuffer &directory, uint32_t workLength, uint32_t line)
{
    AssertIf(strncpy_s(directory.text + workLength, GPB_PATH_SIZE - workLength, FIXED_DIR, sizeof(FIXED_DIR)) != 0,
             line);
}

// Maps the install paths. May throw, as may the next function.
void MapAppPaths(GpbLibContext *context, GpbPbSourceTree &tree)
{
    for (const GpbPkgPathNode *node = GpbFirstPkgPath(context); node != nullptr && node->pcPath != nullptr;
         node = GpbNextPkgPath(context, node))
    {
        tree.MapPath("", node->pcPath);
    }
}

void MapAllPaths(GpbLibContext *context, GpbPbSourceTree &tree)
{
    MapAppPaths(context, tree);
    DirectoryBuffer directory;
    if (ZMP_GetSysWorkPath(directory.text, GPB_PATH_SIZE) != 0)
    {
        return;
    }
    const uint32_t workLength = YOS_StrLen(directory.text);
    if (workLength > GPB_PATH_SIZE)
    {
        return;
    }
    const char *patchDir = context->pcPatchDir;
    if (patchDir != nullptr && patchDir[0] != '\0')
    {
        AssertIf(strncpy_s(directory.text + workLength, GPB_PATH_SIZE - workLength, patchDir, YOS_StrLen(patchDir)) !=
                     0,
                 LINE_MAP_APPEND_PATCH);
        tree.MapPath("", directory.text);
    }
    AppendFixedDir(directory, workLength, LINE_MAP_APPEND_FIXED);
    tree.MapPath("", directory.text);
}

void GpbDropDerived(const GpbLibContext *context)
{
    auto *tree = dynamic_cast<GpbSourceTree *>(context->pstSourceTree);
    if (tree != nullptr)
    {
        tree->DropDerived();
    }
}

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
    DirectoryBuffer directory;
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
        AssertIf(strncpy_s(directory.text + workLength, GPB_PATH_SIZE - workLength, patchDir,
                           GPB_PATH_SIZE - 1 - workLength) != 0,
                 LINE_FIND_APPEND_PATCH);
        AssertIf(snprintf_truncated_s(candidate, sizeof(candidate), "%s%s.proto", directory.text, pcModuleName) < 0,
                 LINE_FIND_PATCH_CANDIDATE);
    }
    if (YOS_VFS_IsFileExist(candidate) != 1)
    {
        AppendFixedDir(directory, workLength, LINE_FIND_APPEND_FIXED);
        AssertIf(snprintf_truncated_s(candidate, sizeof(candidate), "%s/%s.proto", directory.text, pcModuleName) < 0,
                 LINE_FIND_FIXED_CANDIDATE);
        if (YOS_VFS_IsFileExist(candidate) != 1)
        {
            GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "File (%s) not exists!", LastComponent(candidate));
            return 1;
        }
    }
    AssertIf(memcpy_s(pcOut, GPB_PATH_SIZE, directory.text, GPB_PATH_SIZE) != 0, LINE_FIND_COPY_OUT);
    return 0;
}

std::shared_ptr<void> GpbDerivedOf(const GpbLibContext *context, const GpbPbImporter *importer,
                                   const std::function<std::shared_ptr<void>()> &make)
{
    if (context == nullptr || context->pstImporter != importer)
    {
        return make();
    }
    auto *tree = dynamic_cast<GpbSourceTree *>(context->pstSourceTree);
    return tree == nullptr ? make() : tree->Derived(make);
}

uint32_t GPBLIB_ProtoTreeInitial_(GpbLibContext *pstCtx)
{
    if (pstCtx == nullptr)
    {
        return 1;
    }
    return GpbNoThrow(1U,
                      [&]
                      {
                          if (pstCtx->pstSourceTree == nullptr)
                          {
                              // A tree without all of its mappings would be kept and miss files for good.
                              auto tree = std::make_unique<GpbSourceTree>();
                              MapAllPaths(pstCtx, *tree);
                              pstCtx->pstSourceTree = tree.release();
                          }
                          if (pstCtx->pstImporter == nullptr)
                          {
                              // What was derived from an importer that a host has taken away is of no use any more.
                              GpbDropDerived(pstCtx);
                              pstCtx->pstImporter =
                                  new google::protobuf::compiler::Importer(pstCtx->pstSourceTree, nullptr);
                          }
                          return 0U;
                      });
}

void GPBLIB_AddDiskTreeMapPath(GpbLibContext *pstCtx)
{
    if (pstCtx == nullptr || pstCtx->pstSourceTree == nullptr)
    {
        return;
    }
    GpbNoThrow([&] { MapAllPaths(pstCtx, *pstCtx->pstSourceTree); });
}

void GPBLIB_AddAppPathToDiskTree(GpbLibContext *pstCtx)
{
    if (pstCtx == nullptr || pstCtx->pstSourceTree == nullptr)
    {
        return;
    }
    GpbNoThrow([&] { MapAppPaths(pstCtx, *pstCtx->pstSourceTree); });
}

void GPBLIB_ProtoTreeUninitial_(GpbLibContext *pstCtx)
{
    if (pstCtx == nullptr)
    {
        return;
    }
    // The importer reads through the tree, so it goes first; what points into it, before both.
    GpbDropDerived(pstCtx);
    delete pstCtx->pstImporter;
    pstCtx->pstImporter = nullptr;
    delete pstCtx->pstSourceTree;
    pstCtx->pstSourceTree = nullptr;
}

GpbPbImporter *GPBLIB_GetImporter(const GpbLibContext *pstCtx)
{
    return pstCtx == nullptr ? nullptr : pstCtx->pstImporter;
}
