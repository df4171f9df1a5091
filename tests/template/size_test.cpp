// Measuring trees, and when a measure is taken anew.
#include <random>

#include "support/platform_fixture.h"
#include "tree_support.h"

namespace gpbtest
{
namespace
{

class SizeTest : public PlatformFixture
{
protected:
    void TearDown() override
    {
        m_tree.reset();
        PlatformFixture::TearDown();
    }

    ObjTree tree() const { return m_tree.get(); }

    ObjNode *integer(uint32_t id, uint64_t value) const
    {
        return GPBLIB_ObjTree_CreateInteger(tree(), nullptr, id, value, 1);
    }

    TreePtr m_tree{GPBLIB_ObjTree_Create(0, kModuleId)};
};

TEST_F(SizeTest, ARootWithoutChildrenTakesTwoBytes)
{
    EXPECT_EQ(2u, GPBLIB_ObjTree_GetWriteLen(tree()));
    EXPECT_EQ(2u, tree()->gpbSize);
    EXPECT_EQ(0u, tree()->objLen);
}

TEST_F(SizeTest, AnIntegerLeafTakesTagAndValue)
{
    EXPECT_EQ(2u, GPBLIB_ObjNode_GetEncodingSize(integer(1, 0)));
    EXPECT_EQ(2u, GPBLIB_ObjNode_GetEncodingSize(integer(15, 127)));
    EXPECT_EQ(3u, GPBLIB_ObjNode_GetEncodingSize(integer(16, 127)));
    EXPECT_EQ(3u, GPBLIB_ObjNode_GetEncodingSize(integer(2047, 1)));
    EXPECT_EQ(4u, GPBLIB_ObjNode_GetEncodingSize(integer(2048, 1)));
    EXPECT_EQ(4u, GPBLIB_ObjNode_GetEncodingSize(integer(65535, 1)));
    EXPECT_EQ(10u, GPBLIB_ObjNode_GetEncodingSize(integer(1, (1ULL << 63) - 1)));
    EXPECT_EQ(11u, GPBLIB_ObjNode_GetEncodingSize(integer(1, 1ULL << 63)));
}

TEST_F(SizeTest, IdsAboveTheRangeOfProtobufKeepTheirHighBits)
{
    EXPECT_EQ(6u, GPBLIB_ObjNode_GetEncodingSize(integer((1U << 29) - 1, 0)));
    EXPECT_EQ(6u, GPBLIB_ObjNode_GetEncodingSize(integer(1U << 29, 0)));
    EXPECT_EQ(6u, GPBLIB_ObjNode_GetEncodingSize(integer(0xFFFFFFFF, 0)));
}

TEST_F(SizeTest, AStringLeafTakesTagLengthAndContent)
{
    const std::string content(300, 'x');
    EXPECT_EQ(3u, GPBLIB_ObjNode_GetEncodingSize(GPBLIB_ObjTree_CreateString(tree(), nullptr, 1, 1, "a", 1)));
    EXPECT_EQ(129u,
              GPBLIB_ObjNode_GetEncodingSize(GPBLIB_ObjTree_CreateString(tree(), nullptr, 1, 127, content.data(), 1)));
    EXPECT_EQ(131u,
              GPBLIB_ObjNode_GetEncodingSize(GPBLIB_ObjTree_CreateString(tree(), nullptr, 1, 128, content.data(), 1)));
    EXPECT_EQ(304u,
              GPBLIB_ObjNode_GetEncodingSize(GPBLIB_ObjTree_CreateString(tree(), nullptr, 16, 300, content.data(), 1)));
}

TEST_F(SizeTest, AnEmptyContainerIsMeasuredAsALeaf)
{
    ObjNode *small = GPBLIB_ObjTree_CreateNode(tree(), nullptr, 1, 1);
    ObjNode *large = GPBLIB_ObjTree_CreateNode(tree(), nullptr, 65535, 1);
    EXPECT_EQ(8u, GPBLIB_ObjTree_GetWriteLen(tree()));
    EXPECT_EQ(2u, small->gpbSize);
    EXPECT_EQ(4u, large->gpbSize);
}

TEST_F(SizeTest, TheWorkedExampleHasItsSizes)
{
    m_tree.reset(GPBLIB_RDMI_CreateRoot(kModuleId, "ab"));
    EXPECT_EQ(14u, GPBLIB_ObjTree_GetWriteLen(tree()));
    EXPECT_EQ(12u, tree()->objLen);
    const ObjNode *attr = childAt(tree(), 0);
    EXPECT_EQ(12u, attr->gpbSize);
    EXPECT_EQ(8u, attr->objLen);
    EXPECT_EQ(2u, childAt(attr, 0)->gpbSize);
    EXPECT_EQ(4u, childAt(attr, 1)->gpbSize);
    EXPECT_EQ(2u, childAt(attr, 2)->gpbSize);
    EXPECT_EQ(0u, childAt(attr, 0)->objLen) << "an integer leaf has no length";
}

TEST_F(SizeTest, LastChildrenOnSeveralLevelsCompleteTheirContainersAtOnce)
{
    ObjNode *outer = GPBLIB_ObjTree_CreateNode(tree(), nullptr, 1, 1);
    ObjNode *first = GPBLIB_ObjTree_CreateNode(tree(), outer, 1, 1);
    GPBLIB_ObjTree_CreateInteger(tree(), first, 1, 1, 1);
    ObjNode *second = GPBLIB_ObjTree_CreateNode(tree(), outer, 2, 1);
    GPBLIB_ObjTree_CreateInteger(tree(), second, 1, 1, 1);
    GPBLIB_ObjTree_CreateInteger(tree(), second, 2, 1, 1);
    EXPECT_EQ(14u, GPBLIB_ObjTree_GetWriteLen(tree()));
    EXPECT_EQ(4u, first->gpbSize);
    EXPECT_EQ(6u, second->gpbSize);
    EXPECT_EQ(12u, outer->gpbSize);
}

TEST_F(SizeTest, ANewNodeMakesTheLengthBeComputedAnew)
{
    EXPECT_EQ(2u, GPBLIB_ObjTree_GetWriteLen(tree()));
    integer(1, 1);
    EXPECT_EQ(0u, tree()->gpbSize);
    EXPECT_EQ(4u, GPBLIB_ObjTree_GetWriteLen(tree()));
}

TEST_F(SizeTest, ADeletedSubtreeNoLongerCounts)
{
    integer(1, 1);
    ObjNode *node = GPBLIB_ObjTree_CreateNode(tree(), nullptr, 2, 1);
    GPBLIB_ObjTree_CreateString(tree(), node, 1, 3, "abc", 1);
    EXPECT_EQ(11u, GPBLIB_ObjTree_GetWriteLen(tree()));
    GPBLIB_ObjTree_Delete(&node);
    EXPECT_EQ(0u, tree()->gpbSize);
    EXPECT_EQ(4u, GPBLIB_ObjTree_GetWriteLen(tree()));
}

TEST_F(SizeTest, EveryNodeOfARandomTreeHasTheSizeOfItsBytes)
{
    std::mt19937 engine(4711);
    const auto random = [&engine] { return static_cast<uint32_t>(engine()); };
    for (int round = 0; round < 50; ++round)
    {
        m_tree.reset(GPBLIB_ObjTree_Create(random() % 3, kModuleId));
        std::vector<ObjNode *> containers = {tree()};
        for (int i = 0; i < 200; ++i)
        {
            ObjNode *parent = containers[random() % containers.size()];
            const uint32_t id = random() >> random() % 32;
            const std::string content(random() % 200 + 1, 'x');
            switch (random() % 3)
            {
            case 0:
                GPBLIB_ObjTree_CreateInteger(tree(), parent, id, uint64_t{random()} << random() % 33, 1);
                break;
            case 1:
                GPBLIB_ObjTree_CreateString(tree(), parent, id, static_cast<uint32_t>(content.size()), content.data(),
                                            1);
                break;
            default:
                containers.push_back(GPBLIB_ObjTree_CreateNode(tree(), parent, id, 1));
                containers.back()->objLen = random(); // what an earlier measure may have left
            }
        }
        const Bytes bytes = write(tree(), GPB_OBJTREE_MODE_TEMPLATE);
        EXPECT_EQ(bytes.size(), GPBLIB_ObjTree_GetWriteLen(tree()));
        for (ObjNode *container : containers)
        {
            // A subtree's bytes are those of the nodes in it, each by itself.
            uint32_t size = 0;
            CmfTreeIter iter;
            for (CmfTreeNode *link = CMF_TREE_GetPreOrderIter(&container->stTree, &iter, 0); link != nullptr;
                 link = CMF_TREE_GetNextByPreOrder(&iter, 0))
            {
                Bytes room(300);
                size += GPBLIB_ObjNode_TemplateWrite(reinterpret_cast<ObjNode *>(link), room.data(), 300);
            }
            EXPECT_EQ(size, container->gpbSize);
        }
    }
}

TEST_F(SizeTest, ContainersThatLostTheirChildrenAreEmpty)
{
    ObjNode *node = GPBLIB_ObjTree_CreateNode(tree(), nullptr, 2, 1);
    ObjNode *leaf = GPBLIB_ObjTree_CreateInteger(tree(), node, 1, 1, 1);
    EXPECT_EQ(6u, GPBLIB_ObjTree_GetWriteLen(tree()));
    GPBLIB_ObjTree_Delete(&leaf);
    EXPECT_EQ(4u, GPBLIB_ObjTree_GetWriteLen(tree()));
    EXPECT_EQ(0u, node->objLen);
    GPBLIB_ObjTree_Delete(&node);
    EXPECT_EQ(2u, GPBLIB_ObjTree_GetWriteLen(tree()));
    EXPECT_EQ(0u, tree()->objLen);
}

TEST_F(SizeTest, SizesWrapAtThirtyTwoBits)
{
    const char content = 'a';
    ObjNode *node = GPBLIB_ObjTree_CreateString(tree(), nullptr, 1, 1, &content, 1);
    node->objLen = 0xFFFFFFF0; // a length without the memory: only measured
    EXPECT_EQ(0xFFFFFFF6u, GPBLIB_ObjNode_GetEncodingSize(node));
    node->objLen = 0xFFFFFFFA;
    EXPECT_EQ(0u, GPBLIB_ObjNode_GetEncodingSize(node));
    node->objLen = 0xFFFFFFFF;
    EXPECT_EQ(5u, GPBLIB_ObjNode_GetEncodingSize(node));
}

TEST_F(SizeTest, OnlyATreeIsMeasured)
{
    ObjNode *node = GPBLIB_ObjTree_CreateNode(tree(), nullptr, 2, 1);
    node->gpbSize = 77;
    GPBLIB_ObjTree_RefreshBufLen(node);
    EXPECT_EQ(77u, node->gpbSize);
    EXPECT_EQ(77u, GPBLIB_ObjTree_GetWriteLen(node));
    GPBLIB_ObjTree_RefreshBufLen(nullptr);
    GPBLIB_ObjTree_CalcParentBufLen(nullptr);
    EXPECT_EQ(0u, GPBLIB_ObjTree_GetWriteLen(nullptr));
    EXPECT_EQ(0u, GPBLIB_ObjNode_GetEncodingSize(nullptr));
}

TEST_F(SizeTest, ParentsAreMeasuredFromTheirLastChildOnly)
{
    ObjNode *first = integer(1, 1);
    ObjNode *last = integer(2, 1);
    first->gpbSize = 2;
    last->gpbSize = 2;
    GPBLIB_ObjTree_CalcParentBufLen(first);
    EXPECT_EQ(0u, tree()->gpbSize);
    GPBLIB_ObjTree_CalcParentBufLen(last);
    EXPECT_EQ(6u, tree()->gpbSize);
    EXPECT_EQ(4u, tree()->objLen);
}

TEST_F(SizeTest, ADeepTreeIsMeasuredWithoutRecursion)
{
    // Every level adds a tag and a length: one byte more of it from the level on that encloses 128 bytes.
    m_tree = nestedTree(kModuleId, 63);
    EXPECT_EQ(128u, GPBLIB_ObjTree_GetWriteLen(tree()));
    m_tree = nestedTree(kModuleId, 64);
    EXPECT_EQ(131u, GPBLIB_ObjTree_GetWriteLen(tree()));
    m_tree = nestedTree(kModuleId, 100000);
    EXPECT_GT(GPBLIB_ObjTree_GetWriteLen(tree()), 300000u);
}

using SizeDeliberateOddityTest = SizeTest;

TEST_F(SizeDeliberateOddityTest, TheSizeOfAContainerAddsToItsLength)
{
    // Clearing belongs to whoever measures a whole tree; measuring one node twice counts its children twice.
    ObjNode *leaf = integer(1, 1);
    leaf->gpbSize = 2;
    EXPECT_EQ(4u, GPBLIB_ObjNode_GetEncodingSize(tree()));
    EXPECT_EQ(6u, GPBLIB_ObjNode_GetEncodingSize(tree()));
    EXPECT_EQ(4u, tree()->objLen);
    EXPECT_EQ(4u, GPBLIB_ObjTree_GetWriteLen(tree()));
}

TEST_F(SizeDeliberateOddityTest, AValueChangedInPlaceDoesNotChangeTheRememberedLength)
{
    ObjNode *leaf = integer(1, 1);
    EXPECT_EQ(4u, GPBLIB_ObjTree_GetWriteLen(tree()));
    leaf->value = ~0ULL;
    EXPECT_EQ(4u, GPBLIB_ObjTree_GetWriteLen(tree()));
}

} // namespace
} // namespace gpbtest
