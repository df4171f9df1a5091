// Measuring an object tree.
#include "gpb_templatelib/gpb_objtree.h"
#include "platform/cmf_tree.h"
#include "template/gpb_template_rdmi_tree_links.h"
#include "template/gpb_template_rdmi_tree_wire.h"

namespace
{

uint32_t DelimitedSize(uint32_t tagSize, uint32_t length)
{
    return tagSize + GPBLIB_Encoding_GetValueSizeOfInteger(length) + length;
}

} // namespace

uint32_t GPBLIB_Encoding_GetValueSizeOfInteger(uint64_t ulValue)
{
    uint32_t size = 1;
    while (ulValue > GPB_VARINT_PAYLOAD)
    {
        ulValue >>= GPB_VARINT_PAYLOAD_BITS;
        ++size;
    }
    return size;
}

uint32_t GPBLIB_ObjNode_GetEncodingSize(ObjNode *pstNode)
{
    if (pstNode == nullptr)
    {
        return 0;
    }
    const uint32_t tagSize = GPBLIB_Encoding_GetValueSizeOfInteger(GpbWireTag(pstNode, 0));
    if (pstNode->nodeType == GPB_OBJNODE_INTLEAF)
    {
        return tagSize + GPBLIB_Encoding_GetValueSizeOfInteger(pstNode->value);
    }
    if (pstNode->nodeType != GPB_OBJNODE_STRLEAF)
    {
        // Adds to what is there, deliberately: clearing is left to whoever measures a tree anew.
        for (const ObjNode *child = GpbFirstChildOf(pstNode); child != nullptr; child = GpbNextSiblingOf(child))
        {
            pstNode->objLen += child->gpbSize;
        }
    }
    return DelimitedSize(tagSize, pstNode->objLen);
}

void GPBLIB_ObjTree_CalcParentBufLen(ObjNode *pstNode)
{
    if (pstNode == nullptr)
    {
        return;
    }
    ObjNode *node = pstNode;
    while (GpbNextSiblingOf(node) == nullptr)
    {
        node = GpbParentOf(node);
        if (node == nullptr)
        {
            return;
        }
        node->gpbSize = GPBLIB_ObjNode_GetEncodingSize(node);
    }
}

void GPBLIB_ObjTree_RefreshBufLen(ObjTree pstTree)
{
    if (pstTree == nullptr || pstTree->nodeType != GPB_OBJNODE_ROOTDOC)
    {
        return;
    }
    CmfTreeIter iter;
    for (CmfTreeNode *link = CMF_TREE_GetPreOrderIter(&pstTree->stTree, &iter, 0); link != nullptr;
         link = CMF_TREE_GetNextByPreOrder(&iter, 0))
    {
        ObjNode *node = GpbNodeOfLink(link);
        const bool isLeaf = node->nodeType == GPB_OBJNODE_INTLEAF || node->nodeType == GPB_OBJNODE_STRLEAF;
        if (!isLeaf)
        {
            // Also for a container without children: it may have lost them since it was measured last.
            node->objLen = 0;
        }
        if (GpbFirstChildOf(node) != nullptr)
        {
            node->gpbSize = 0;
            continue;
        }
        node->gpbSize = GPBLIB_ObjNode_GetEncodingSize(node);
        GPBLIB_ObjTree_CalcParentBufLen(node);
    }
}

uint32_t GPBLIB_ObjTree_GetWriteLen(ObjTree pstTree)
{
    if (pstTree == nullptr)
    {
        return 0;
    }
    if (pstTree->gpbSize == 0)
    {
        GPBLIB_ObjTree_RefreshBufLen(pstTree);
    }
    return pstTree->gpbSize;
}
