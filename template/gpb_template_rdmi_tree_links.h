// Walking an object tree: the tree service's links, as nodes.
#ifndef GPB_TEMPLATE_GPB_TEMPLATE_RDMI_TREE_LINKS_H
#define GPB_TEMPLATE_GPB_TEMPLATE_RDMI_TREE_LINKS_H

#include "gpb_templatelib/gpb_objtree.h"
#include "platform/cmf_tree.h"

// The link header is the node's first member, so a link is its node.
inline ObjNode *GpbNodeOfLink(CmfTreeNode *link)
{
    return reinterpret_cast<ObjNode *>(link);
}

inline ObjNode *GpbParentOf(const ObjNode *node)
{
    return GpbNodeOfLink(CMF_TREE_GetParent(&node->stTree, 0));
}

inline ObjNode *GpbFirstChildOf(const ObjNode *node)
{
    return GpbNodeOfLink(CMF_TREE_GetFirstChild(&node->stTree, 0));
}

inline ObjNode *GpbNextSiblingOf(const ObjNode *node)
{
    return GpbNodeOfLink(CMF_TREE_GetNextSibling(&node->stTree, 0));
}

#endif
