// The leaves of a YANG node, and of the cases among its children.
#include <google/protobuf/descriptor.h>

#include "core/gpb_barrier.h"
#include "core/gpb_log.h"
#include "core/gpb_template_tag.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "gpb_templatelib/gpb_template.h"
#include "platform/safe_string.h"
#include "platform/vec.h"
#include "platform/zmp.h"
#include "template/gpb_template_text.h"

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

namespace
{

constexpr uint32_t LINE_COPY_LEAF_NAME_FAILED = 1010;

constexpr uint32_t FIELD_FOUND = 0;

// Inserts one leaf; false when the whole insertion must stop.
bool InsertLeaf(const GpbYangNode *node, const GpbYangLeaf *leaf, const Descriptor *message, ObjTree tree,
                ObjNode *parent, uint32_t allLeaves, const GpbLibContext *context)
{
    if (leaf->uiIsKey == 0 && allLeaves != 1)
    {
        return true;
    }
    const FieldDescriptor *field = nullptr;
    const uint32_t found = GPBLIB_CheckYangLeafInProtobuf(message, leaf, &field, context);
    if (found != FIELD_FOUND)
    {
        return found == GPB_YANG_LEAF_NOT_IN_MESSAGE;
    }
    if (leaf->uiFieldId == 0 && context->pfnFieldNameMap == nullptr)
    {
        GPB_LOG(context, GPB_LOG_PROGRESS, __LINE__, "this field id=%u, name=%s, need not to insert into gpb template",
                leaf->uiFieldId, leaf->pcName);
        return true;
    }
    GpbCidFid ids = {};
    if (GPBLIB_ConvertField(node, leaf, allLeaves, &ids, context) != 0)
    {
        return true;
    }
    (void)GPBLIB_CreateNode(node, tree, field, &ids, parent, allLeaves, leaf, context);
    GPB_LOG(context, GPB_LOG_PROGRESS, __LINE__, "insert leaf node (%s)", leaf->pcName);
    return true;
}

// The leaves below a case, in a message of its own.
uint32_t FillCase(const GpbLibContext *context, const GpbYangNode *node, const GpbLeafFill *fill)
{
    char name[GPB_TEMPLATE_NODE_NAME_SIZE] = {};
    uint8_t depth = 0;
    if (GPBLIB_YangContainerNodeName2Protobuf(context, node, name, &depth) != 0)
    {
        return 1;
    }
    const FieldDescriptor *caseField = nullptr;
    const FieldDescriptor *field = GPB_FindFieldDescByNodeName(fill->pstMessage, name, depth, &caseField);
    if (field == nullptr)
    {
        GPB_LOG(context, GPB_LOG_ERROR, __LINE__, "failed to find gpb node %s", name);
        return 0;
    }
    ObjNode *objNode = GPBLIB_CreateGpbChildObjNode(context, fill->pstTree, fill->pstObjNode, field, node);
    if (objNode == nullptr)
    {
        GPB_LOG(context, GPB_LOG_ERROR, __LINE__, "failed to fill Container fieldAttr");
        return 1;
    }
    GpbLeafFill inner = *fill;
    inner.pstMessage = field->message_type() != nullptr ? field->message_type() : fill->pstMessage;
    inner.pstObjNode = objNode;
    if (GPBLIB_FillLeafAttr(context, node, &inner) != 0)
    {
        GPB_LOG(context, GPB_LOG_ERROR, __LINE__, "2.failed to insert leaf node to sub container");
        return 1;
    }
    return 0;
}

} // namespace

uint32_t GPBLIB_FillLeafAttr(const GpbLibContext *pstCtx, const GpbYangNode *pstNode, const GpbLeafFill *pstFill)
{
    if (pstCtx == nullptr || pstNode == nullptr || pstFill == nullptr)
    {
        return 1;
    }
    if (pstNode->pstLeafVec != nullptr &&
        GPBLIB_InsertLeafNodeInfo(pstNode, pstFill->pstMessage, pstFill->pstTree, pstFill->pstObjNode,
                                  pstFill->uiAllLeaves, pstCtx) != 0)
    {
        GPB_LOG(pstCtx, GPB_LOG_ERROR, __LINE__, "2.failed to insert leaf node to sub container");
        return 1;
    }
    if (pstFill->uiAllLeaves == 1 && GPBLIB_FillCaseLeafAttr(pstCtx, pstNode->pstFirstChild, pstFill) != 0)
    {
        GPB_LOG(pstCtx, GPB_LOG_ERROR, __LINE__, "Failed to insert case leaf node to sub container");
        return 1;
    }
    return 0;
}

uint32_t GPBLIB_FillCaseLeafAttr(const GpbLibContext *pstCtx, const GpbYangNode *pstFirstChild,
                                 const GpbLeafFill *pstFill)
{
    if (pstCtx == nullptr || pstFill == nullptr)
    {
        return 1;
    }
    for (const GpbYangNode *child = pstFirstChild; child != nullptr; child = child->pstNextSibling)
    {
        uint32_t ret = 0;
        if (child->ucNodeKind == GPB_YANG_CHOICE)
        {
            ret = GPBLIB_FillCaseLeafAttr(pstCtx, child->pstFirstChild, pstFill);
        }
        else if (child->ucNodeKind == GPB_YANG_CASE)
        {
            ret = FillCase(pstCtx, child, pstFill);
        }
        if (ret != 0)
        {
            return ret;
        }
    }
    return 0;
}

uint32_t GPBLIB_InsertLeafNodeInfo(const GpbYangNode *pstNode, const Descriptor *pstMessage, ObjTree pstTree,
                                   ObjNode *pstParent, uint32_t uiAllLeaves, const GpbLibContext *pstCtx)
{
    if (pstCtx == nullptr || pstNode == nullptr || pstMessage == nullptr || pstParent == nullptr)
    {
        return 1;
    }
    GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "insert (%s) leaf node (field count %u) begin",
            GpbShown(pstNode->pcName), static_cast<uint32_t>(pstMessage->field_count()));
    if (pstNode->pstLeafVec == nullptr)
    {
        return 1;
    }
    const uint32_t count = VEC_VectorCount(pstNode->pstLeafVec);
    for (uint32_t i = 0; i < count; ++i)
    {
        const auto *leaf = static_cast<const GpbYangLeaf *>(pstNode->pstLeafVec->ppvSlot[i]);
        if (leaf != nullptr && !InsertLeaf(pstNode, leaf, pstMessage, pstTree, pstParent, uiAllLeaves, pstCtx))
        {
            return 1;
        }
    }
    GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "insert (%s) leaf node end", GpbShown(pstNode->pcName));
    return 0;
}

uint32_t GPBLIB_CheckYangLeafInProtobuf(const Descriptor *pstMessage, const GpbYangLeaf *pstLeaf,
                                        const FieldDescriptor **ppstField, const GpbLibContext *pstCtx)
{
    if (pstMessage == nullptr || pstLeaf == nullptr || pstLeaf->pcName == nullptr || ppstField == nullptr)
    {
        return 1;
    }
    char name[GPB_PATH_SIZE] = {};
    if (strncpy_s(name, sizeof(name), pstLeaf->pcName, sizeof(name) - 1) != 0)
    {
        ZMP_Assert(GPB_TEMPLATE_TAG, LINE_COPY_LEAF_NAME_FAILED, 0);
    }
    (void)GPBLIB_ChrReplace(name, '-', '_');
    // Exact, unlike the lookup of containers: a leaf's case is significant.
    const auto *field = GpbNoThrow<const FieldDescriptor *>(nullptr, [&] { return pstMessage->FindFieldByName(name); });
    if (field != nullptr)
    {
        *ppstField = field;
        return FIELD_FOUND;
    }
    GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "protofile has not this field = %s", pstLeaf->pcName);
    return GPB_YANG_LEAF_NOT_IN_MESSAGE;
}
