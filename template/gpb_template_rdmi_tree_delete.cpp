// Deletion of an object tree or of a subtree.
#include <cstddef>

#include "gpb_templatelib/gpb_objtree.h"
#include "platform/cmf_tree.h"
#include "platform/zmp.h"
#include "template/gpb_template_rdmi_tree_links.h"
#include "template/gpb_template_rdmi_tree_tag.h"

static_assert(offsetof(ObjNode, stTree) == 0, "the tree service takes a node by its link header");

namespace
{

constexpr uint32_t LINE_FREE_CONTENT = 214;

// The children of `owner` that are described by `attr`, or by something in it, must forget their description.
void ForgetFieldAttributes(const ObjNode *owner, const ObjNode *attr)
{
    for (ObjNode *child = GpbFirstChildOf(owner); child != nullptr; child = GpbNextSiblingOf(child))
    {
        const ObjNode *described = child->pFieldAttr;
        if (described != nullptr && (described == attr || GpbParentOf(described) == attr))
        {
            child->pFieldAttr = nullptr;
        }
    }
}

// Not only the attribute that the owner points at: a node may have got a second one, and its children may still be
// described below the first.
bool IsNodeAttribute(const ObjNode *node, const ObjNode *owner)
{
    return owner->pNodeAttr == node || node->id == GPB_RDMI_ID_NODE_ATTR;
}

// Attribute containers are owned by the tree but pointed at by the nodes they describe: a node attribute by its parent,
// a field attribute, which lies below the node attribute, by the siblings of the latter. Other nodes, leaves above all,
// are not looked for: their siblings may be many.
void ForgetAttributesIn(const ObjNode *subtree)
{
    ObjNode *parent = GpbParentOf(subtree);
    if (parent == nullptr || subtree->nodeType != GPB_OBJNODE_CONTAIN)
    {
        return;
    }
    if (IsNodeAttribute(subtree, parent))
    {
        ForgetFieldAttributes(parent, subtree);
    }
    if (parent->pNodeAttr == subtree)
    {
        parent->pNodeAttr = nullptr;
    }
    const ObjNode *owner = GpbParentOf(parent);
    if (owner != nullptr && IsNodeAttribute(parent, owner))
    {
        ForgetFieldAttributes(owner, subtree);
    }
}

// The size of the tree that `node` is taken from is no longer known.
void ForgetWriteLength(ObjNode *node)
{
    ObjNode *top = node;
    while (ObjNode *parent = GpbParentOf(top))
    {
        top = parent;
    }
    if (top->nodeType == GPB_OBJNODE_ROOTDOC)
    {
        top->gpbSize = 0;
    }
}

} // namespace

void GPBLIB_ObjTree_Delete(ObjNode **ppstNode)
{
    if (ppstNode == nullptr || *ppstNode == nullptr)
    {
        return;
    }
    ObjNode *node = *ppstNode;
    if (node->nodeType != GPB_OBJNODE_ROOTDOC)
    {
        ForgetWriteLength(node);
        ForgetAttributesIn(node);
        CMF_TREE_DetachNode(&node->stTree, 0);
    }
    CMF_TREE_FreeTree(&node->stTree, GPBLIB_ObjNode_FreeCallback, 0);
    *ppstNode = nullptr;
}

void GPBLIB_ObjNode_FreeCallback(void *pvNode)
{
    auto *node = static_cast<ObjNode *>(pvNode);
    if (node == nullptr || node->nodeType != GPB_OBJNODE_STRLEAF || node->pucString == nullptr)
    {
        return;
    }
    ZMP_Free_F(node->pucString, GPB_RDMI_TREE_TAG, LINE_FREE_CONTENT);
    node->pucString = nullptr;
}
