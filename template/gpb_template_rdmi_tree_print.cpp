// Printing an object tree.
#include "core/gpb_log.h"
#include "gpb_templatelib/gpb_objtree.h"
#include "platform/cmf_tree.h"
#include "platform/safe_string.h"
#include "platform/zmp.h"
#include "template/gpb_template_rdmi_tree_links.h"
#include "template/gpb_template_rdmi_tree_tag.h"

namespace
{

constexpr uint32_t LINE_FORMAT_NODE_FAILED = 902;
constexpr uint32_t LINE_COPY_VALUE_FAILED = 915;

// By node type. The blank after "Unknow" and its spelling are old and stay: hosts filter their logs by these names.
constexpr const char *TYPE_NAMES[] = {"Invalid", "IntLeaf", "StrLeaf", "Contain", "RootDoc", "Unknow "};
constexpr uint32_t TYPE_NAME_NUM = sizeof(TYPE_NAMES) / sizeof(TYPE_NAMES[0]);

// The content of a string leaf, which has no terminator, as a text.
void FormatString(const ObjNode *node, char *out, uint32_t room)
{
    const char *text = "NULL";
    size_t length = sizeof("NULL") - 1;
    if (node->pucString != nullptr)
    {
        const bool fits = node->objLen < room;
        text = fits ? reinterpret_cast<const char *>(node->pucString) : "Too Long string";
        length = fits ? node->objLen : sizeof("Too Long string") - 1;
    }
    if (strncpy_s(out, room, text, length) != 0)
    {
        ZMP_Assert(GPB_RDMI_TREE_TAG, LINE_COPY_VALUE_FAILED, 0);
    }
}

int FormatNode(const ObjNode *node, char *out, uint32_t room)
{
    const char *name = TYPE_NAMES[node->nodeType];
    if (node->nodeType == GPB_OBJNODE_STRLEAF)
    {
        char value[GPB_OBJNODE_VALUE_TEXT_SIZE] = {};
        FormatString(node, value, sizeof(value));
        return snprintf_truncated_s(out, room, "%s: { id:%u, gpbFlg:%u, objLen:%u, gpbSize:%u, value:%s }", name,
                                    node->id, node->gpbFlg, node->objLen, node->gpbSize, value);
    }
    return snprintf_truncated_s(out, room, "%s: { id:%u, gpbFlg:%u, objLen:%u, gpbSize:%u, value:0x%llx }", name,
                                node->id, node->gpbFlg, node->objLen, node->gpbSize,
                                static_cast<unsigned long long>(node->value));
}

// One line: the text of `node`, indented by the depth of `owner`.
void PrintLine(const GpbLibContext *context, const ObjNode *owner, const ObjNode *node)
{
    char line[GPB_LOG_TEXT_SIZE] = {};
    const uint32_t indent = GPBLIB_OutputObjNodePrefixSpace(line, sizeof(line), owner);
    GPBLIB_OutputObjNodeBaseContent(line + indent, static_cast<uint32_t>(sizeof(line)) - indent, node);
    GPB_LOG(context, GPB_LOG_PROGRESS, __LINE__, "%s", line);
}

} // namespace

void GPBLIB_ObjTree_Print(ObjNode *pstNode, const GpbLibContext *pstCtx)
{
    if (pstNode == nullptr || !GpbLogOpen(pstCtx, GPB_LOG_PROGRESS))
    {
        return;
    }
    GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "gpb obj tree output begin:");
    CmfTreeIter iter;
    for (CmfTreeNode *link = CMF_TREE_GetPreOrderIter(&pstNode->stTree, &iter, 0); link != nullptr;
         link = CMF_TREE_GetNextByPreOrder(&iter, 0))
    {
        GPBLIB_OutputObjNodeContent(pstCtx, GpbNodeOfLink(link));
    }
    GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "gpb obj tree output end");
}

void GPBLIB_OutputObjNodeContent(const GpbLibContext *pstCtx, const ObjNode *pstNode)
{
    if (pstNode == nullptr || !GpbLogOpen(pstCtx, GPB_LOG_PROGRESS))
    {
        return;
    }
    PrintLine(pstCtx, pstNode, pstNode);
    if (pstNode->pNodeAttr != nullptr)
    {
        PrintLine(pstCtx, pstNode, pstNode->pNodeAttr);
    }
    if (pstNode->pFieldAttr != nullptr)
    {
        PrintLine(pstCtx, pstNode, pstNode->pFieldAttr);
    }
}

uint32_t GPBLIB_OutputObjNodePrefixSpace(char *pcOut, uint32_t uiRoom, const ObjNode *pstNode)
{
    if (pcOut == nullptr || uiRoom == 0)
    {
        return 0;
    }
    uint32_t count = 0;
    const ObjNode *ancestor = pstNode == nullptr ? nullptr : GpbParentOf(pstNode);
    for (; ancestor != nullptr && count < uiRoom - 1; ancestor = GpbParentOf(ancestor))
    {
        pcOut[count++] = ' ';
    }
    pcOut[count] = '\0';
    return count;
}

void GPBLIB_OutputObjNodeBaseContent(char *pcOut, uint32_t uiRoom, const ObjNode *pstNode)
{
    if (pcOut == nullptr || uiRoom == 0)
    {
        return;
    }
    pcOut[0] = '\0';
    if (pstNode == nullptr || pstNode->nodeType >= TYPE_NAME_NUM)
    {
        return;
    }
    if (FormatNode(pstNode, pcOut, uiRoom) < 0)
    {
        ZMP_Assert(GPB_RDMI_TREE_TAG, LINE_FORMAT_NODE_FAILED, 0);
    }
}
