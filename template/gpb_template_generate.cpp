// Templates of a context: making one for a class, storing it, and finding it again.
#include <string>

#include "core/gpb_barrier.h"
#include "core/gpb_log.h"
#include "core/gpb_template_proto_file.h"
#include "core/gpb_template_tag.h"
#include "gpb_templatelib/gpb_template.h"
#include "platform/vec.h"
#include "platform/yos.h"
#include "platform/zmp.h"
#include "template/gpb_template_text.h"

namespace
{

constexpr uint32_t LINE_FREE_NOT_UPDATED = 1398;
constexpr uint32_t LINE_FREE_NOT_STORED = 1409;

// The platform's stack, deleted exactly once.
class PathStack
{
public:
    explicit PathStack(uint32_t moduleId)
        : stack_(YOS_CreateStackByHandle(ZMP_GetRelHandle(moduleId), GPB_TEMPLATE_STACK_DEPTH))
    {
    }
    ~PathStack() { Delete(); }
    PathStack(const PathStack &) = delete;
    PathStack &operator=(const PathStack &) = delete;

    void *Get() const { return stack_; }

    // The node and its ancestors, so that the top node comes out first.
    [[nodiscard]] bool PushPath(const GpbYangNode *node)
    {
        for (; node != nullptr; node = node->pstParent)
        {
            if (YOS_Push(stack_, const_cast<GpbYangNode *>(node)) != 0)
            {
                return false;
            }
        }
        return true;
    }

    const GpbYangNode *PopTop()
    {
        void *item = nullptr;
        return YOS_Pop(stack_, &item) == 0 ? static_cast<const GpbYangNode *>(item) : nullptr;
    }

    void Delete()
    {
        if (stack_ != nullptr)
        {
            YOS_DeleteStack(stack_);
            stack_ = nullptr;
        }
    }

private:
    void *stack_;
};

void DeleteTemplate(GpbTemplateInfo *info, uint32_t line)
{
    GPBLIB_ObjTree_Delete(&info->pstObjTree);
    ZMP_Free_F(info, GPB_TEMPLATE_TAG, line);
}

// The template of the top node; null, with the line that hosts know for it, when it cannot be had.
GpbTemplateInfo *StartTemplate(GpbLibContext *context, const GpbYangNode *target, PathStack *stack,
                               const GpbPbFileDescriptor *file, const GpbPbDescriptor **topMessage)
{
    GpbTemplateInfo *info = nullptr;
    const GpbYangNode *top = stack->PopTop();
    if (top != nullptr)
    {
        *topMessage = GPBLIB_ProcSubTreeNodeGetDestriptor(context, file, top);
    }
    if (*topMessage != nullptr)
    {
        info = GPBLIB_ProcSubTreeNodeCreateGpbTemplate(context, target, top, *topMessage);
    }
    if (info == nullptr)
    {
        // One text for three failures, kept as it is: hosts know it.
        GPB_LOG(context, GPB_LOG_PROGRESS, __LINE__, "failed to pop node from stack");
    }
    return info;
}

uint32_t ClassInfoOfLoadedFile(GpbLibContext *context, const char *moduleName, const char *path,
                               const GpbYangNode *node)
{
    const GpbProtoFileName fileName(moduleName);
    const GpbProtoFileInfo *file = GPBLIB_GetProtoFdByFileName(fileName.Text(), context);
    // A file that failed to load has a record, but no descriptor.
    if (file == nullptr || file->pstFileDesc == nullptr)
    {
        GPB_LOG(context, GPB_LOG_ERROR, __LINE__, "failed to get proto file descriptor, filename=%s", fileName.Text());
        return 1;
    }
    const uint32_t ret = GRBLIB_ProcSubTreeNode(context, node, file->pstFileDesc);
    if (ret != 0)
    {
        GPB_LOG(context, GPB_LOG_ERROR, __LINE__, "failed to generate gpb template");
        return ret;
    }
    GPB_LOG(context, GPB_LOG_PROGRESS, __LINE__, "gpblib updates protofile class info end (path=%s)", GpbShown(path));
    return 0;
}

} // namespace

uint32_t GPBLIB_UpdateProtoFileClassInfo(GpbLibContext *pstCtx, const char *pcModuleName, uint32_t /*uiArg*/,
                                         const char *pcPath, const GpbYangNode *pstNode)
{
    if (pstCtx == nullptr || pcModuleName == nullptr || pstNode == nullptr)
    {
        return 1;
    }
    GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "gpblib updates protofile class info begin (path=%s)",
            GpbShown(pcPath));
    uint32_t classId = 0;
    const uint32_t ret = GPBLIB_GetClassIdFromYangNode(pstCtx, pstNode, &classId);
    if (ret != 0)
    {
        GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "[GPBLIB_GetClassIdFromYangNode] failed");
        return ret;
    }
    if (GPBLIB_GetGpbTemplate(classId, pstCtx) != nullptr)
    {
        GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "gpblib local has the same gpb template");
        return 0;
    }
    return GpbNoThrow<uint32_t>(1, [&] { return ClassInfoOfLoadedFile(pstCtx, pcModuleName, pcPath, pstNode); });
}

uint32_t GRBLIB_ProcSubTreeNode(GpbLibContext *pstCtx, const GpbYangNode *pstNode,
                                const GpbPbFileDescriptor *pstFileDesc)
{
    if (pstCtx == nullptr || pstNode == nullptr)
    {
        return 1;
    }
    GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "process subtree node begin");
    PathStack stack(pstCtx->uiModuleId);
    if (stack.Get() == nullptr)
    {
        GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "failed to malloc stack");
        return 1;
    }
    if (!stack.PushPath(pstNode))
    {
        GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "failed to push father node to stack");
        return 1;
    }
    const GpbPbDescriptor *topMessage = nullptr;
    GpbTemplateInfo *info = StartTemplate(pstCtx, pstNode, &stack, pstFileDesc, &topMessage);
    if (info == nullptr)
    {
        return 1;
    }
    const uint32_t ret = GPBLIB_ProcSubTreeNodeUpdateGpbTemplate(pstCtx, info, pstNode, stack.Get(), topMessage);
    if (ret != 0)
    {
        GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "failed to update Gpb template");
        stack.Delete();
        DeleteTemplate(info, LINE_FREE_NOT_UPDATED);
        return ret;
    }
    if (VEC_VectorSet(pstCtx->pstTemplateVec, info) == VEC_INVALID_INDEX)
    {
        GPB_LOG(pstCtx, GPB_LOG_ERROR, __LINE__, "failed to save gpb template, classid=0x%x", info->uiClassId);
        stack.Delete();
        DeleteTemplate(info, LINE_FREE_NOT_STORED);
        return 1;
    }
    stack.Delete();
    GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "process subtree node end");
    return 0;
}

GpbTemplateInfo *GPBLIB_GetGpbTemplate(uint32_t uiClassId, const GpbLibContext *pstCtx)
{
    const VecVector *templates = pstCtx != nullptr ? pstCtx->pstTemplateVec : nullptr;
    const uint32_t count = VEC_VectorCount(templates);
    for (uint32_t i = 0; i < count; ++i)
    {
        auto *info = static_cast<GpbTemplateInfo *>(templates->ppvSlot[i]);
        if (info != nullptr && info->uiClassId == uiClassId)
        {
            return info;
        }
    }
    return nullptr;
}
