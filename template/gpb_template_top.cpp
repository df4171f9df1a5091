// The start of a template: the top node's message, and a tree for it.
#include <google/protobuf/descriptor.h>

#include "core/gpb_log.h"
#include "core/gpb_memory.h"
#include "core/gpb_protobuf_compat.h"
#include "core/gpb_template_tag.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "gpb_templatelib/gpb_template.h"
#include "platform/safe_string.h"
#include "platform/yos.h"
#include "platform/zmp.h"
#include "template/gpb_template_text.h"

using google::protobuf::Descriptor;

namespace
{

constexpr uint32_t LINE_COPY_TOP_NAME_FAILED = 1208;
constexpr uint32_t LINE_ALLOC_TEMPLATE = 1254;
constexpr uint32_t LINE_ZERO_TEMPLATE = 1260;
constexpr uint32_t LINE_FREE_TEMPLATE = 1275;

// The conversion of a name may append "_1".
constexpr size_t NAME_SUFFIX_ROOM = 2;

GpbTemplateInfo *NewTemplate(const GpbLibContext *context, const char *topName)
{
    auto *info = static_cast<GpbTemplateInfo *>(
        GpbMalloc(context->uiModuleId, sizeof(GpbTemplateInfo), GPB_TEMPLATE_TAG, LINE_ALLOC_TEMPLATE));
    if (info == nullptr)
    {
        GPB_LOG(context, GPB_LOG_ERROR, __LINE__, "failed to malloc memory for saving gpb template");
        return nullptr;
    }
    GpbZero(info, sizeof(*info), GPB_TEMPLATE_TAG, LINE_ZERO_TEMPLATE);
    // A root that cannot be made is no failure yet: whoever adds the first leaf or container finds no parent for it,
    // and the class of a top node without leaves has a template without content.
    info->pstObjTree = GPBLIB_RDMI_CreateRoot(context->uiModuleId, topName);
    return info;
}

bool FillTemplate(GpbLibContext *context, GpbTemplateInfo *info, const GpbYangNode *target, const GpbYangNode *top,
                  const Descriptor *topMessage)
{
    if (GPBLIB_GetClassIdFromYangNode(context, target, &info->uiClassId) != 0)
    {
        GPB_LOG(context, GPB_LOG_PROGRESS, __LINE__, "[GPBLIB_GetClassIdFromYangNode] failed");
        return false;
    }
    const uint32_t allLeaves = top->pstFirstChild == nullptr ? 1 : 0;
    if (top->pstLeafVec != nullptr &&
        GPBLIB_InsertLeafNodeInfo(top, topMessage, info->pstObjTree, info->pstObjTree, allLeaves, context) != 0)
    {
        GPB_LOG(context, GPB_LOG_ERROR, __LINE__, "failed to insert leaf node to root");
        return false;
    }
    return true;
}

} // namespace

const Descriptor *GPBLIB_ProcSubTreeNodeGetDestriptor(const GpbLibContext *pstCtx,
                                                      const GpbPbFileDescriptor *pstFileDesc, const GpbYangNode *pstTop)
{
    if (pstTop == nullptr)
    {
        return nullptr;
    }
    if (pstFileDesc == nullptr)
    {
        GPB_LOG(pstCtx, GPB_LOG_ERROR, __LINE__, "failed to get message descriptor from protofile = %s, nodeName = %s",
                GpbShown(nullptr), GpbShown(pstTop->pcName));
        return nullptr;
    }
    char name[GPB_PATH_SIZE + NAME_SUFFIX_ROOM] = {};
    if (strcpy_s(name, GPB_PATH_SIZE, pstTop->pcName) != 0)
    {
        ZMP_Assert(GPB_TEMPLATE_TAG, LINE_COPY_TOP_NAME_FAILED, 0);
    }
    (void)Gpb_util_ConverContainerName(name, pstTop->pstParent == nullptr ? 1 : 0);
    const int count = pstFileDesc->message_type_count();
    if (count == 0)
    {
        GPB_LOG(pstCtx, GPB_LOG_ERROR, __LINE__, "this file has no message, filename = %s, nodeName = %s",
                GpbPbName(*pstFileDesc).c_str(), GpbShown(pstTop->pcName));
        return nullptr;
    }
    for (int i = 0; i < count; ++i)
    {
        const Descriptor *message = pstFileDesc->message_type(i);
        if (YOS_StrCmp(GpbPbName(*message).c_str(), name) == 0)
        {
            return message;
        }
    }
    GPB_LOG(pstCtx, GPB_LOG_ERROR, __LINE__, "failed to get message from proto file, nodeName = %s, uiMsgCnt = %d",
            GpbShown(pstTop->pcName), count);
    return nullptr;
}

GpbTemplateInfo *GPBLIB_ProcSubTreeNodeCreateGpbTemplate(GpbLibContext *pstCtx, const GpbYangNode *pstTarget,
                                                         const GpbYangNode *pstTop, const Descriptor *pstTopMessage)
{
    if (pstCtx == nullptr || pstTarget == nullptr || pstTop == nullptr)
    {
        return nullptr;
    }
    GpbTemplateInfo *info = NewTemplate(pstCtx, pstTop->pcName);
    if (info != nullptr && !FillTemplate(pstCtx, info, pstTarget, pstTop, pstTopMessage))
    {
        GPBLIB_ObjTree_Delete(&info->pstObjTree);
        ZMP_Free_F(info, GPB_TEMPLATE_TAG, LINE_FREE_TEMPLATE);
        info = nullptr;
    }
    return info;
}
