/** Generic trees. Every walk is a loop, so that a tree may be as deep as memory allows. */
#include "likely.h"
#include "platform_exports.h"

namespace
{

constexpr const char *kFileTag = "cmf_tree";
constexpr uint32_t kLineFreeTree = 1;

/** True when adding `child` below `parent` would close a ring. */
bool wouldCloseRing(const CmfTreeNode *parent, const CmfTreeNode *child)
{
    if (parent == child)
    {
        return true;
    }
    if (host::isLikely(child->pstFirstChild == nullptr))
    {
        return false; // the ancestor of nothing; this keeps building a deep chain linear
    }
    for (const CmfTreeNode *node = parent; node != nullptr; node = node->pstParent)
    {
        if (node == child)
        {
            return true;
        }
    }
    return false;
}

/** Takes the first child out of its parent's children; returns the node to go on with, the parent after its last. */
CmfTreeNode *unlinkFirstChild(const CmfTreeNode *node)
{
    CmfTreeNode *const parent = node->pstParent;
    CmfTreeNode *const next = node->pstNextSibling;
    parent->pstFirstChild = next;
    if (host::isLikely(next != nullptr))
    {
        next->pstPrevSibling = nullptr;
        return next;
    }
    parent->pstLastChild = nullptr;
    return parent;
}

/** Takes a node out of its parent's children; its own links stay as they are. */
void unlink(const CmfTreeNode *node)
{
    CmfTreeNode *const parent = node->pstParent;
    (node->pstPrevSibling != nullptr ? node->pstPrevSibling->pstNextSibling : parent->pstFirstChild) =
        node->pstNextSibling;
    (node->pstNextSibling != nullptr ? node->pstNextSibling->pstPrevSibling : parent->pstLastChild) =
        node->pstPrevSibling;
}

void detach(CmfTreeNode *node)
{
    if (host::isLikely(node == nullptr || node->pstParent == nullptr))
    {
        return;
    }
    unlink(node);
    node->pstParent = nullptr;
    node->pstNextSibling = nullptr;
    node->pstPrevSibling = nullptr;
}

/** The node that follows a node and all its descendants, in the subtree of `start`; null when that ends. */
[[gnu::always_inline]] inline CmfTreeNode *nextBehind(const CmfTreeNode *node, const CmfTreeNode *start)
{
    while (host::isLikely(node != start && node != nullptr))
    {
        if (host::isLikely(node->pstNextSibling != nullptr))
        {
            return node->pstNextSibling;
        }
        node = node->pstParent;
    }
    return nullptr;
}

} // namespace

void CMF_TREE_AddChildLast(CmfTreeNode *pstParent, CmfTreeNode *pstChild, uint32_t)
{
    if (pstParent == nullptr || pstChild == nullptr || wouldCloseRing(pstParent, pstChild))
    {
        return;
    }
    detach(pstChild);
    CmfTreeNode *const last = pstParent->pstLastChild;
    pstChild->pstParent = pstParent;
    pstChild->pstPrevSibling = last;
    (last != nullptr ? last->pstNextSibling : pstParent->pstFirstChild) = pstChild;
    pstParent->pstLastChild = pstChild;
}

CmfTreeNode *CMF_TREE_GetFirstChild(const CmfTreeNode *pstNode, uint32_t)
{
    return pstNode == nullptr ? nullptr : pstNode->pstFirstChild;
}

CmfTreeNode *CMF_TREE_GetNextSibling(const CmfTreeNode *pstNode, uint32_t)
{
    return pstNode == nullptr ? nullptr : pstNode->pstNextSibling;
}

CmfTreeNode *CMF_TREE_GetParent(const CmfTreeNode *pstNode, uint32_t)
{
    return pstNode == nullptr ? nullptr : pstNode->pstParent;
}

CmfTreeNode *CMF_TREE_GetPreOrderIter(CmfTreeNode *pstStart, CmfTreeIter *pstIter, uint32_t)
{
    if (pstIter != nullptr)
    {
        *pstIter = {pstStart, pstStart};
    }
    return pstStart;
}

CmfTreeNode *CMF_TREE_GetNextByPreOrder(CmfTreeIter *pstIter, uint32_t)
{
    if (pstIter == nullptr || pstIter->pstCurrent == nullptr)
    {
        return nullptr;
    }
    const CmfTreeNode *node = pstIter->pstCurrent;
    CmfTreeNode *next = node->pstFirstChild;
    if (host::isLikely(next == nullptr))
    {
        next = nextBehind(node, pstIter->pstStart);
    }
    pstIter->pstCurrent = next;
    return next;
}

void CMF_TREE_DetachNode(CmfTreeNode *pstNode, uint32_t)
{
    detach(pstNode);
}

void CMF_TREE_FreeTree(CmfTreeNode *pstNode, CmfTreeFreeFunc pfnFree, uint32_t)
{
    // What lies above `pstNode` stays as it is: taking it out of its parent is the caller's.
    CmfTreeNode *node = pstNode;
    while (node != nullptr)
    {
        while (node->pstFirstChild != nullptr)
        {
            node = node->pstFirstChild;
        }
        // Out of its parent before it goes: the callback of the parent then sees no released child. Those before it
        // went already, so that it is the first.
        CmfTreeNode *const next = host::isLikely(node != pstNode) ? unlinkFirstChild(node) : nullptr;
        if (pfnFree != nullptr)
        {
            pfnFree(node);
        }
        ZMP_Free_F(node, kFileTag, kLineFreeTree);
        node = next;
    }
}
