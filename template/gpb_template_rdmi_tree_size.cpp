// Measuring an object tree.
#include "gpb_templatelib/gpb_objtree.h"
#include "platform/cmf_tree.h"
#include "template/gpb_template_rdmi_tree_links.h"
#include "template/gpb_template_rdmi_tree_wire.h"

namespace
{

bool IsLeaf(const ObjNode *node)
{
    return node->nodeType == GPB_OBJNODE_INTLEAF || node->nodeType == GPB_OBJNODE_STRLEAF;
}

// Two words of the link header are the same in every tree service, so measuring a whole tree need not call for them:
// the parent comes first, then the first child.
ObjNode *ParentLinkOf(const ObjNode *node)
{
    return GpbNodeOfLink(node->stTree.pstParent);
}

ObjNode *FirstChildLinkOf(const ObjNode *node)
{
    return GpbNodeOfLink(node->stTree.pstFirstChild);
}

// The size of a node whose length is known.
[[gnu::always_inline]] inline uint32_t SizeByLength(const ObjNode *node)
{
    const uint32_t tagSize = GpbVarintSize(GpbWireTag(node, 0));
    if (node->nodeType == GPB_OBJNODE_INTLEAF)
    {
        return tagSize + GpbVarintSize(node->value);
    }
    return tagSize + GpbVarintSize(node->objLen) + node->objLen;
}

// Begins a node; false when it is measured at once, since it has no children.
bool BeginContainer(ObjNode *node)
{
    const bool hasChildren = FirstChildLinkOf(node) != nullptr;
    if (hasChildren || !IsLeaf(node))
    {
        // Also for a container without children: it may have lost them since it was measured last.
        node->objLen = 0;
    }
    return hasChildren;
}

// Measures a node whose children are measured, and every ancestor that it completes; the next node to begin with, null
// when `top` is complete.
ObjNode *Complete(ObjNode *node, const ObjNode *top)
{
    for (;;)
    {
        node->gpbSize = SizeByLength(node);
        if (node == top)
        {
            return nullptr;
        }
        ObjNode *parent = ParentLinkOf(node);
        if (!IsLeaf(parent))
        {
            parent->objLen += node->gpbSize;
        }
        if (ObjNode *next = GpbNextSiblingOf(node))
        {
            return next;
        }
        node = parent;
    }
}

} // namespace

uint32_t GPBLIB_Encoding_GetValueSizeOfInteger(uint64_t ulValue)
{
    return GpbVarintSize(ulValue);
}

uint32_t GPBLIB_ObjNode_GetEncodingSize(ObjNode *pstNode)
{
    if (pstNode == nullptr)
    {
        return 0;
    }
    if (!IsLeaf(pstNode))
    {
        // Adds to what is there, deliberately: clearing is left to whoever measures a tree anew.
        for (const ObjNode *child = GpbFirstChildOf(pstNode); child != nullptr; child = GpbNextSiblingOf(child))
        {
            pstNode->objLen += child->gpbSize;
        }
    }
    return SizeByLength(pstNode);
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
    // Each node adds itself to its parent when it is complete, so that no container has to go through its children once
    // more.
    for (ObjNode *node = pstTree; node != nullptr;)
    {
        node = BeginContainer(node) ? FirstChildLinkOf(node) : Complete(node, pstTree);
    }
    // For a tree that hangs below another node.
    GPBLIB_ObjTree_CalcParentBufLen(pstTree);
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
