// The protobuf source tree over all places of proto files, and the importer that reads through it.
#include <google/protobuf/compiler/importer.h>
#include <memory>
#include <typeinfo>

#include "core/gpb_barrier.h"
#include "core/gpb_source_tree.h"
#include "core/gpb_template_pkg_path.h"
#include "core/gpb_template_tag.h"
#include "core/gpb_template_work_dir.h"
#include "gpb_templatelib/gpb_lib.h"
#include "platform/safe_string.h"
#include "platform/yos.h"
#include "platform/zmp.h"

namespace
{

constexpr uint32_t LINE_MAP_APPEND_PATCH = 334;
constexpr uint32_t LINE_MAP_APPEND_FIXED = 340;

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
    GpbWorkDir directory;
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
        GpbAssertIf(
            strncpy_s(directory.text + workLength, GPB_PATH_SIZE - workLength, patchDir, YOS_StrLen(patchDir)) != 0,
            LINE_MAP_APPEND_PATCH);
        tree.MapPath("", directory.text);
    }
    GpbAppendFixedDir(directory, workLength, LINE_MAP_APPEND_FIXED);
    tree.MapPath("", directory.text);
}

// The context's source tree when it is the library's own; null for a host's.
GpbSourceTree *OwnTreeOf(const GpbLibContext *context)
{
    GpbPbSourceTree *tree = context->pstSourceTree;
    return tree != nullptr && typeid(*tree) == typeid(GpbSourceTree) ? static_cast<GpbSourceTree *>(tree) : nullptr;
}

} // namespace

void GpbDropDerived(const GpbLibContext *context)
{
    GpbSourceTree *tree = OwnTreeOf(context);
    if (tree != nullptr)
    {
        tree->DropDerived();
    }
}

std::shared_ptr<void> GpbDerivedOf(const GpbLibContext *context, const GpbPbImporter *importer, GpbMakeDerived make)
{
    if (context == nullptr || context->pstImporter != importer)
    {
        return make();
    }
    GpbSourceTree *tree = OwnTreeOf(context);
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
