// Making the nodes of an object tree.
#include "core/gpb_memory.h"
#include "gpb_templatelib/gpb_objtree.h"
#include "platform/cmf_tree.h"
#include "platform/safe_string.h"
#include "platform/zmp.h"
#include "template/gpb_template_rdmi_tree_tag.h"

namespace
{

constexpr uint32_t LINE_ALLOC_ROOT = 240;
constexpr uint32_t LINE_ALLOC_FROM_TREE = 262;
constexpr uint32_t LINE_COPY_CONTENT_FAILED = 335;
constexpr uint32_t LINE_FREE_CONTENT_WITHOUT_NODE = 341;

bool CanHaveChildren(const ObjNode *node)
{
    return node->nodeType == GPB_OBJNODE_CONTAIN || node->nodeType == GPB_OBJNODE_ROOTDOC;
}

// Turns fresh memory into a node. Not by the platform's memset_s: links and pointers must be null whatever it says. And
// field by field: compilers clear a record of this size as a whole by an instruction that is slow to start.
ObjNode *InitNode(void *mem, uint32_t type, uint32_t id)
{
    auto *node = static_cast<ObjNode *>(mem);
    node->stTree.pstParent = nullptr;
    node->stTree.pstFirstChild = nullptr;
    node->stTree.pstLastChild = nullptr;
    node->stTree.pstNextSibling = nullptr;
    node->stTree.pstPrevSibling = nullptr;
    node->nodeType = type;
    node->gpbSize = 0;
    node->gpbFlg = 0;
    node->id = id;
    node->objLen = 0;
    node->value = 0;
    node->pNodeAttr = nullptr;
    node->pFieldAttr = nullptr;
    return node;
}

} // namespace

ObjTree GPBLIB_ObjTree_Create(uint32_t uiId, uint32_t uiModuleId)
{
    void *mem = GpbMalloc(uiModuleId, sizeof(ObjNode), GPB_RDMI_TREE_TAG, LINE_ALLOC_ROOT);
    if (mem == nullptr)
    {
        return nullptr;
    }
    ObjTree tree = InitNode(mem, GPB_OBJNODE_ROOTDOC, uiId);
    tree->value = uiModuleId;
    return tree;
}

void *GPBLIB_ObjTree_Malloc(const ObjNode *pstTree, uint32_t uiSize)
{
    if (pstTree == nullptr || pstTree->nodeType != GPB_OBJNODE_ROOTDOC)
    {
        return nullptr;
    }
    return GpbMalloc(static_cast<uint32_t>(pstTree->value), uiSize, GPB_RDMI_TREE_TAG, LINE_ALLOC_FROM_TREE);
}

ObjNode *GPBLIB_ObjTree_MallocNode(ObjTree pstTree, ObjNode *pstParent, uint32_t uiType, uint32_t uiId)
{
    ObjNode *parent = pstParent != nullptr ? pstParent : pstTree;
    if (parent == nullptr || !CanHaveChildren(parent))
    {
        return nullptr;
    }
    void *mem = GPBLIB_ObjTree_Malloc(pstTree, sizeof(ObjNode));
    if (mem == nullptr)
    {
        return nullptr;
    }
    ObjNode *node = InitNode(mem, uiType, uiId);
    CMF_TREE_AddChildLast(&parent->stTree, &node->stTree, 0);
    pstTree->gpbSize = 0;
    return node;
}

ObjNode *GPBLIB_ObjTree_CreateNode(ObjTree pstTree, ObjNode *pstParent, uint32_t uiId, uint32_t uiGpbFlg)
{
    ObjNode *node = GPBLIB_ObjTree_MallocNode(pstTree, pstParent, GPB_OBJNODE_CONTAIN, uiId);
    if (node != nullptr)
    {
        node->gpbFlg = uiGpbFlg;
    }
    return node;
}

ObjNode *GPBLIB_ObjTree_CreateInteger(ObjTree pstTree, ObjNode *pstParent, uint32_t uiId, uint64_t ulValue,
                                      uint32_t uiGpbFlg)
{
    ObjNode *node = GPBLIB_ObjTree_MallocNode(pstTree, pstParent, GPB_OBJNODE_INTLEAF, uiId);
    if (node != nullptr)
    {
        node->gpbFlg = uiGpbFlg;
        node->value = ulValue;
    }
    return node;
}

ObjNode *GPBLIB_ObjTree_CreateString(ObjTree pstTree, ObjNode *pstParent, uint32_t uiId, uint32_t uiLen,
                                     const void *pvContent, uint32_t uiGpbFlg)
{
    if (pvContent == nullptr || uiLen == 0)
    {
        return nullptr;
    }
    // The content comes before the node: a node that is in the tree always has what it needs.
    auto *content = static_cast<uint8_t *>(GPBLIB_ObjTree_Malloc(pstTree, uiLen));
    if (content == nullptr)
    {
        return nullptr;
    }
    GpbZero(content, uiLen, GPB_RDMI_TREE_TAG, LINE_COPY_CONTENT_FAILED);
    ObjNode *node = GPBLIB_ObjTree_MallocNode(pstTree, pstParent, GPB_OBJNODE_STRLEAF, uiId);
    if (node == nullptr)
    {
        ZMP_Free_F(content, GPB_RDMI_TREE_TAG, LINE_FREE_CONTENT_WITHOUT_NODE);
        return nullptr;
    }
    if (memcpy_s(content, uiLen, pvContent, uiLen) != 0)
    {
        ZMP_Assert(GPB_RDMI_TREE_TAG, LINE_COPY_CONTENT_FAILED, 0);
    }
    node->gpbFlg = uiGpbFlg;
    node->objLen = uiLen;
    node->pucString = content;
    return node;
}
