/**
 * @file
 * Generic trees of the device platform.
 *
 * Imported by the library, provided by the host process. A record becomes a tree node by starting with the link
 * header CmfTreeNode. The library relies on two of its words only: the first is the parent, the second is null
 * exactly when the node has no children. The trailing flags argument of every function is 0.
 */
#ifndef GPB_TEMPLATELIB_PLATFORM_CMF_TREE_H
#define GPB_TEMPLATELIB_PLATFORM_CMF_TREE_H

#include <stdint.h>

#ifdef __cplusplus
extern "C"
{
#endif

/** The links with which a tree node begins. */
typedef struct CmfTreeNode
{
    struct CmfTreeNode *pstParent;      /**< null at the root */
    struct CmfTreeNode *pstFirstChild;  /**< null without children */
    struct CmfTreeNode *pstLastChild;   /**< null without children */
    struct CmfTreeNode *pstNextSibling; /**< null at the last child */
    struct CmfTreeNode *pstPrevSibling; /**< null at the first child */
} CmfTreeNode;

/** State of a pre-order walk, kept by the caller. */
typedef struct CmfTreeIter
{
    CmfTreeNode *pstStart;   /**< root of the subtree that is walked */
    CmfTreeNode *pstCurrent; /**< node that the walk is at; null at its end */
} CmfTreeIter;

/** Called with each node before its memory is released. */
typedef void (*CmfTreeFreeFunc)(void *pvNode);

/** Appends a node (with its subtree) as the last child of a parent. */
void CMF_TREE_AddChildLast(CmfTreeNode *pstParent, CmfTreeNode *pstChild, uint32_t uiFlags);

/** First child, or null without children. */
CmfTreeNode *CMF_TREE_GetFirstChild(const CmfTreeNode *pstNode, uint32_t uiFlags);
/** Next child of the same parent, or null at the last. */
CmfTreeNode *CMF_TREE_GetNextSibling(const CmfTreeNode *pstNode, uint32_t uiFlags);
/** Parent, or null at the root. */
CmfTreeNode *CMF_TREE_GetParent(const CmfTreeNode *pstNode, uint32_t uiFlags);

/** Starts a pre-order walk of the subtree of `pstStart`; returns `pstStart`. */
CmfTreeNode *CMF_TREE_GetPreOrderIter(CmfTreeNode *pstStart, CmfTreeIter *pstIter, uint32_t uiFlags);

/** Next node of the walk, or null at its end; never leaves the subtree of the start node. */
CmfTreeNode *CMF_TREE_GetNextByPreOrder(CmfTreeIter *pstIter, uint32_t uiFlags);

/** Takes a node with its subtree out of its parent; harmless for a node without parent. */
void CMF_TREE_DetachNode(CmfTreeNode *pstNode, uint32_t uiFlags);

/**
 * Releases a node and all its descendants with ZMP_Free_F, each after `pfnFree` was called with it. The parent's links
 * are left alone: the caller detaches a node that has a parent first.
 */
void CMF_TREE_FreeTree(CmfTreeNode *pstNode, CmfTreeFreeFunc pfnFree, uint32_t uiFlags);

#ifdef __cplusplus
}
#endif

#endif
