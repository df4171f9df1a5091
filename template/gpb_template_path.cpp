// The nodes on a path: from the top node's message down to the target's.
#include <google/protobuf/descriptor.h>

#include "core/gpb_log.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "gpb_templatelib/gpb_template.h"
#include "platform/safe_string.h"
#include "platform/yos.h"
#include "template/gpb_template_text.h"

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

namespace
{

constexpr uint8_t SKIPPED = 1;

// How far a walk along the path has come.
class PathWalk
{
public:
    PathWalk(const GpbLibContext *context, ObjTree tree, const Descriptor *topMessage)
        : context_(context), tree_(tree), parent_(tree), message_(topMessage)
    {
    }

    // Whether a node has nothing to show for itself; a choice goes back to the message that holds its cases.
    bool PassesOver(const GpbYangNode *node)
    {
        if (node->ucSkip == SKIPPED)
        {
            return true;
        }
        if (node->ucNodeKind != GPB_YANG_CHOICE)
        {
            return false;
        }
        if (lastField_ != nullptr)
        {
            message_ = lastField_->message_type();
        }
        return true;
    }

    // Adds a container with its leaves, and goes down into it.
    [[nodiscard]] bool Enter(const GpbYangNode *node, bool isTarget)
    {
        const FieldDescriptor *field = GPBLIB_FindCntrFieldDesc(context_, node, message_);
        if (field == nullptr)
        {
            GPB_LOG(context_, GPB_LOG_ERROR, __LINE__, "protofile has not this node = %s", GpbShown(node->pcName));
            return false;
        }
        ObjNode *objNode = GPBLIB_CreateGpbChildObjNode(context_, tree_, parent_, field, node);
        if (objNode == nullptr)
        {
            GPB_LOG(context_, GPB_LOG_ERROR, __LINE__, "failed to fill Container fieldAttr");
            return false;
        }
        message_ = field->message_type();
        lastField_ = field;
        GpbLeafFill fill = {};
        fill.pstMessage = message_;
        fill.pstTree = tree_;
        fill.pstObjNode = objNode;
        fill.uiAllLeaves = isTarget ? 1 : 0;
        if (GPBLIB_FillLeafAttr(context_, node, &fill) != 0)
        {
            GPB_LOG(context_, GPB_LOG_ERROR, __LINE__, "2.failed to insert leaf node to sub container");
            return false;
        }
        parent_ = objNode;
        return true;
    }

private:
    const GpbLibContext *context_;
    ObjTree tree_;
    ObjNode *parent_;
    const Descriptor *message_;
    const FieldDescriptor *lastField_ = nullptr;
};

// The next node that is not passed over. A passed-over node at the end of the path makes the next pop fail: the class
// has no message of its own then, and no template is better than one of its ancestor.
const GpbYangNode *PopNode(const GpbLibContext *context, void *stack, PathWalk *walk)
{
    const GpbYangNode *node = nullptr;
    do
    {
        void *item = nullptr;
        const uint32_t ret = YOS_Pop(stack, &item);
        if (ret != 0 || item == nullptr)
        {
            GPB_LOG(context, GPB_LOG_ERROR, __LINE__, "failed to pop container, ret = 0x%x", ret);
            return nullptr;
        }
        node = static_cast<const GpbYangNode *>(item);
    } while (walk->PassesOver(node));
    return node;
}

int FormatName(const GpbYangNode *node, char *out)
{
    if (node->pcName == nullptr)
    {
        return -1;
    }
    if (node->ucNodeKind != GPB_YANG_CASE)
    {
        return sprintf_s(out, GPB_TEMPLATE_NODE_NAME_SIZE, "%s", node->pcName);
    }
    if (node->pstParent == nullptr || node->pstParent->pcName == nullptr)
    {
        return -1;
    }
    return sprintf_s(out, GPB_TEMPLATE_NODE_NAME_SIZE, "%s_%s", node->pstParent->pcName, node->pcName);
}

} // namespace

uint32_t GPBLIB_ProcSubTreeNodeUpdateGpbTemplate(GpbLibContext *pstCtx, GpbTemplateInfo *pstInfo,
                                                 const GpbYangNode *pstTarget, void *pvStack,
                                                 const Descriptor *pstTopMessage)
{
    if (pstCtx == nullptr || pstInfo == nullptr || pvStack == nullptr)
    {
        return 1;
    }
    PathWalk walk(pstCtx, pstInfo->pstObjTree, pstTopMessage);
    while (YOS_GetSize(pvStack) != 0)
    {
        const GpbYangNode *node = PopNode(pstCtx, pvStack, &walk);
        if (node == nullptr || !walk.Enter(node, node == pstTarget))
        {
            return 1;
        }
    }
    return 0;
}

const FieldDescriptor *GPBLIB_FindCntrFieldDesc(const GpbLibContext *pstCtx, const GpbYangNode *pstNode,
                                                const Descriptor *pstMessage)
{
    if (pstNode == nullptr)
    {
        return nullptr;
    }
    if (pstMessage == nullptr)
    {
        GPB_LOG(pstCtx, GPB_LOG_ERROR, __LINE__, "protofile node abnormal = %s", GpbShown(pstNode->pcName));
        return nullptr;
    }
    // A name that cannot be formed is empty, and no field has it.
    char name[GPB_TEMPLATE_NODE_NAME_SIZE] = {};
    uint8_t depth = 0;
    (void)GPBLIB_YangContainerNodeName2Protobuf(pstCtx, pstNode, name, &depth);
    const FieldDescriptor *caseField = nullptr;
    const FieldDescriptor *field = GPB_FindFieldDescByNodeName(pstMessage, name, depth, &caseField);
    if (field == nullptr)
    {
        GPB_LOG(pstCtx, GPB_LOG_ERROR, __LINE__, "protofile has not this node = %s", name);
    }
    return field;
}

uint32_t GPBLIB_YangContainerNodeName2Protobuf(const GpbLibContext *pstCtx, const GpbYangNode *pstNode, char *pcName,
                                               uint8_t *pucDepth)
{
    if (pstNode == nullptr || pcName == nullptr || pucDepth == nullptr)
    {
        return 1;
    }
    uint8_t depth = 1;
    for (const GpbYangNode *ancestor = pstNode->pstParent; ancestor != nullptr; ancestor = ancestor->pstParent)
    {
        ++depth;
    }
    *pucDepth = depth;
    if (FormatName(pstNode, pcName) < 0)
    {
        GPB_LOG(pstCtx, GPB_LOG_ERROR, __LINE__, "Gpb switch name = %s failed", GpbShown(pstNode->pcName));
        return 1;
    }
    return 0;
}

ObjNode *GPBLIB_CreateGpbChildObjNode(const GpbLibContext *pstCtx, ObjTree pstTree, ObjNode *pstParent,
                                      const FieldDescriptor *pstField, const GpbYangNode *pstNode)
{
    if (pstField == nullptr || pstNode == nullptr)
    {
        return nullptr;
    }
    RdmiNodeAttr attr = {};
    attr.uiClassId = pstNode->uiClassId;
    attr.pcName = GPBLIB_GetJsonFieldName(pstCtx, pstNode->pcName);
    attr.uiNameLen = YOS_StrLen(attr.pcName);
    attr.uiNodeFlag = pstNode->ucNodeKind;
    ObjNode *objNode = nullptr;
    // A container without a parent would end up below the root.
    if (pstParent != nullptr)
    {
        objNode = GPBLIB_RDMI_CreateNode(pstTree, pstParent, static_cast<uint32_t>(pstField->number()), &attr);
    }
    if (objNode == nullptr)
    {
        GPB_LOG(pstCtx, GPB_LOG_ERROR, __LINE__, "failed to Create Container node[ClassId=%x, ClassName=%s].",
                pstNode->uiClassId, GpbShown(pstNode->pcName));
        return nullptr;
    }
    if (GPBLIB_FieldAttributeAdd(pstCtx, pstTree, pstParent, objNode, pstField, pstNode->pcName, 0, 0) == nullptr)
    {
        GPB_LOG(pstCtx, GPB_LOG_ERROR, __LINE__, "failed to Create Container fieldAttr");
        return nullptr;
    }
    return objNode;
}
