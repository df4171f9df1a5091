// Deleting trees and subtrees.
#include "support/platform_fixture.h"
#include "tree_support.h"

namespace gpbtest
{
namespace
{

class DeleteTest : public PlatformFixture
{
protected:
    // A root with a node attribute, a leaf that is described there, and a container with a string.
    static TreePtr describedTree()
    {
        TreePtr tree(GPBLIB_RDMI_CreateRoot(kModuleId, "top"));
        ObjNode *leaf = GPBLIB_RDMI_CreateInteger(tree.get(), nullptr, 2, 1);
        const RdmiFieldAttr attr = {1, 2, "leaf", 4, 13, 0};
        leaf->pFieldAttr = GPBLIB_RDMI_AddFieldAttribute(tree.get(), tree.get(), &attr);
        ObjNode *node = GPBLIB_ObjTree_CreateNode(tree.get(), nullptr, 3, 1);
        GPBLIB_ObjTree_CreateString(tree.get(), node, 1, 2, "ab", 1);
        return tree;
    }
};

TEST_F(DeleteTest, NothingIsDeletedThroughNull)
{
    GPBLIB_ObjTree_Delete(nullptr);
    ObjNode *node = nullptr;
    GPBLIB_ObjTree_Delete(&node);
    EXPECT_EQ(nullptr, node);
    GPBLIB_ObjNode_FreeCallback(nullptr);
    EXPECT_TRUE(events().events().empty());
}

TEST_F(DeleteTest, ARootGoesWithAllNodesAndContents)
{
    const LedgerSnapshot before;
    ObjNode *tree = describedTree().release();
    EXPECT_FALSE(before.added().empty());
    GPBLIB_ObjTree_Delete(&tree);
    EXPECT_EQ(nullptr, tree);
    EXPECT_TRUE(before.added().empty());
}

TEST_F(DeleteTest, ASubtreeIsTakenOutFirst)
{
    const TreePtr tree = describedTree();
    ObjNode *node = childAt(tree.get(), 2);
    GPBLIB_ObjTree_GetWriteLen(tree.get());
    const size_t live = GpbHost_LiveCount();
    GPBLIB_ObjTree_Delete(&node);
    EXPECT_EQ(nullptr, node);
    EXPECT_EQ(live - 3, GpbHost_LiveCount());
    EXPECT_EQ(0u, tree->gpbSize);
    EXPECT_EQ(nullptr, childAt(tree.get(), 2));
    EXPECT_NE(nullptr, childAt(tree.get(), 1));
}

TEST_F(DeleteTest, NoNodePointsAtADeletedNodeAttribute)
{
    const TreePtr tree = describedTree();
    ObjNode *attr = tree->pNodeAttr;
    GPBLIB_ObjTree_Delete(&attr);
    EXPECT_EQ(nullptr, tree->pNodeAttr);
    EXPECT_EQ(nullptr, childAt(tree.get(), 0)->pFieldAttr);
    EXPECT_EQ("R0(I2=1 C3(S1='ab'))", describe(tree.get()));
}

TEST_F(DeleteTest, NoNodePointsAtADeletedFieldAttribute)
{
    const TreePtr tree = describedTree();
    ObjNode *attr = childAt(tree.get(), 1)->pFieldAttr;
    GPBLIB_ObjTree_Delete(&attr);
    EXPECT_EQ(nullptr, childAt(tree.get(), 1)->pFieldAttr);
    EXPECT_NE(nullptr, tree->pNodeAttr);
}

TEST_F(DeleteTest, TheReleaseCallbackFreesContentOnce)
{
    const TreePtr tree = describedTree();
    ObjNode *string = childAt(childAt(tree.get(), 2), 0);
    const size_t live = GpbHost_LiveCount();
    GPBLIB_ObjNode_FreeCallback(string);
    EXPECT_EQ(live - 1, GpbHost_LiveCount());
    EXPECT_EQ(nullptr, string->pucString);
    GPBLIB_ObjNode_FreeCallback(string);
    GPBLIB_ObjNode_FreeCallback(tree.get());
    EXPECT_EQ(live - 1, GpbHost_LiveCount());
    EXPECT_EQ(kModuleId, tree->value);
}

TEST_F(DeleteTest, ADeepTreeIsDeletedWithoutRecursion)
{
    const size_t live = GpbHost_LiveCount();
    nestedTree(kModuleId, 200000).reset();
    EXPECT_EQ(live, GpbHost_LiveCount());
}

} // namespace
} // namespace gpbtest
