// Making nodes: what they hold, under which module they are allocated, and where none can be made.
#include <cstring>

#include "platform/zmp.h"
#include "support/platform_fixture.h"
#include "tree_support.h"

namespace gpbtest
{
namespace
{

class NodeTest : public PlatformFixture
{
protected:
    TreePtr m_tree{GPBLIB_ObjTree_Create(0, kModuleId)};

    void TearDown() override
    {
        m_tree.reset();
        PlatformFixture::TearDown();
    }
};

TEST_F(NodeTest, ANewTreeIsARootWithItsModuleId)
{
    const TreePtr tree(GPBLIB_ObjTree_Create(7, 0xFFFFFFFF));
    ASSERT_NE(nullptr, tree);
    EXPECT_EQ(GPB_OBJNODE_ROOTDOC, tree->nodeType);
    EXPECT_EQ(7u, tree->id);
    EXPECT_EQ(0u, tree->gpbSize);
    EXPECT_EQ(0u, tree->gpbFlg);
    EXPECT_EQ(0u, tree->objLen);
    EXPECT_EQ(0xFFFFFFFFu, tree->value);
    EXPECT_EQ(nullptr, tree->pNodeAttr);
    EXPECT_EQ(nullptr, tree->pFieldAttr);
}

TEST_F(NodeTest, EveryAllocationIsMadeUnderTheTreesModuleIdAndPartition)
{
    ObjNode *node = GPBLIB_ObjTree_CreateNode(m_tree.get(), nullptr, 1, 1);
    GPBLIB_ObjTree_CreateInteger(m_tree.get(), node, 2, 3, 1);
    GPBLIB_ObjTree_CreateString(m_tree.get(), node, 3, 2, "ab", 1);
    const std::vector<PlatformEvent> mallocs = events().ofKind(GPB_HOST_EVENT_MALLOC);
    ASSERT_EQ(5u, mallocs.size()); // root, container, integer, and the string with its content
    for (const PlatformEvent &event : mallocs)
    {
        EXPECT_EQ(kModuleId, event.moduleId);
        EXPECT_EQ(mallocs.front().partition, event.partition);
        EXPECT_EQ("gpb_template_rdmi_tree", event.file);
    }
    EXPECT_EQ(2u, mallocs[3].size) << "the content comes before its node";
}

TEST_F(NodeTest, NodesAreAppendedInTheOrderOfTheirMaking)
{
    ObjNode *outer = GPBLIB_ObjTree_CreateNode(m_tree.get(), m_tree.get(), 1, 1);
    GPBLIB_ObjTree_CreateInteger(m_tree.get(), outer, 16, ~0ULL, 0);
    ObjNode *inner = GPBLIB_ObjTree_CreateNode(m_tree.get(), outer, 2, 0);
    GPBLIB_ObjTree_CreateString(m_tree.get(), inner, 3, 3, "x-y", 1);
    GPBLIB_ObjTree_CreateInteger(m_tree.get(), nullptr, 4, 5, 1);
    EXPECT_EQ("R0(C1(I16-=18446744073709551615 C2-(S3='x-y')) I4=5)", describe(m_tree.get(), true));
}

TEST_F(NodeTest, ANewNodeIsZeroButForTypeAndId)
{
    const ObjNode *node = GPBLIB_ObjTree_MallocNode(m_tree.get(), nullptr, GPB_OBJNODE_INVALID, 9);
    ASSERT_NE(nullptr, node);
    EXPECT_EQ(GPB_OBJNODE_INVALID, node->nodeType);
    EXPECT_EQ(9u, node->id);
    EXPECT_EQ(0u, node->gpbFlg);
    EXPECT_EQ(0u, node->gpbSize);
    EXPECT_EQ(0u, node->objLen);
    EXPECT_EQ(0u, node->value);
    EXPECT_EQ(nullptr, node->pNodeAttr);
    EXPECT_EQ(nullptr, node->pFieldAttr);
}

TEST_F(NodeTest, StringContentIsAnUnterminatedCopy)
{
    char content[] = {'a', '\0', 'b'};
    const ObjNode *node = GPBLIB_ObjTree_CreateString(m_tree.get(), nullptr, 1, 3, content, 1);
    content[0] = 'z';
    ASSERT_NE(nullptr, node);
    EXPECT_EQ(3u, node->objLen);
    EXPECT_EQ(1u, node->gpbFlg);
    EXPECT_EQ(0, std::memcmp("a\0b", node->pucString, 3));
}

TEST_F(NodeTest, AStringNeedsContent)
{
    EXPECT_EQ(nullptr, GPBLIB_ObjTree_CreateString(m_tree.get(), nullptr, 1, 0, "a", 1));
    EXPECT_EQ(nullptr, GPBLIB_ObjTree_CreateString(m_tree.get(), nullptr, 1, 1, nullptr, 1));
    EXPECT_EQ("R0()", describe(m_tree.get()));
}

TEST_F(NodeTest, LeavesHaveNoChildren)
{
    ObjNode *integer = GPBLIB_ObjTree_CreateInteger(m_tree.get(), nullptr, 1, 1, 1);
    ObjNode *string = GPBLIB_ObjTree_CreateString(m_tree.get(), nullptr, 2, 1, "a", 1);
    ObjNode *invalid = GPBLIB_ObjTree_MallocNode(m_tree.get(), nullptr, GPB_OBJNODE_INVALID, 3);
    for (ObjNode *parent : {integer, string, invalid})
    {
        EXPECT_EQ(nullptr, GPBLIB_ObjTree_MallocNode(m_tree.get(), parent, GPB_OBJNODE_INTLEAF, 1));
        EXPECT_EQ(nullptr, GPBLIB_ObjTree_CreateNode(m_tree.get(), parent, 1, 1));
        EXPECT_EQ(nullptr, GPBLIB_ObjTree_CreateInteger(m_tree.get(), parent, 1, 1, 1));
        EXPECT_EQ(nullptr, GPBLIB_ObjTree_CreateString(m_tree.get(), parent, 1, 1, "a", 1));
    }
}

TEST_F(NodeTest, NothingIsMadeWithoutATree)
{
    ObjNode *node = GPBLIB_ObjTree_CreateNode(m_tree.get(), nullptr, 1, 1);
    EXPECT_EQ(nullptr, GPBLIB_ObjTree_MallocNode(nullptr, nullptr, GPB_OBJNODE_CONTAIN, 1));
    EXPECT_EQ(nullptr, GPBLIB_ObjTree_MallocNode(nullptr, node, GPB_OBJNODE_CONTAIN, 1));
    EXPECT_EQ(nullptr, GPBLIB_ObjTree_CreateNode(nullptr, nullptr, 1, 1));
    EXPECT_EQ(nullptr, GPBLIB_ObjTree_CreateInteger(nullptr, nullptr, 1, 1, 1));
    EXPECT_EQ(nullptr, GPBLIB_ObjTree_CreateString(nullptr, nullptr, 1, 1, "a", 1));
    EXPECT_EQ(nullptr, GPBLIB_ObjTree_Malloc(nullptr, 1));
    EXPECT_EQ(nullptr, GPBLIB_ObjTree_Malloc(node, 1)) << "a container is no tree";
    EXPECT_EQ(nullptr, GPBLIB_ObjTree_MallocNode(node, nullptr, GPB_OBJNODE_CONTAIN, 1));
}

TEST_F(NodeTest, MemoryOfATreeIsFreedByItsCaller)
{
    void *mem = GPBLIB_ObjTree_Malloc(m_tree.get(), 17);
    ASSERT_NE(nullptr, mem);
    const PlatformEvent event = events().ofKind(GPB_HOST_EVENT_MALLOC).back();
    EXPECT_EQ(17u, event.size);
    EXPECT_EQ(kModuleId, event.moduleId);
    ZMP_Free_F(mem, "test", 1);
}

TEST_F(NodeTest, AFailingAllocationGivesNull)
{
    const uint64_t calls = failEachCallOf(GPB_HOST_MALLOC,
                                          [](const FaultRun &run)
                                          {
                                              const TreePtr tree(GPBLIB_ObjTree_Create(0, kModuleId));
                                              ASSERT_EQ(run.failingCall == 1, tree == nullptr);
                                              ObjTree t = tree.get();
                                              ObjNode *node = GPBLIB_ObjTree_CreateNode(t, nullptr, 1, 1);
                                              EXPECT_EQ(run.failingCall == 1 || run.failingCall == 2, node == nullptr);
                                              const ObjNode *leaf = GPBLIB_ObjTree_CreateInteger(t, nullptr, 1, 1, 1);
                                              EXPECT_EQ(run.failingCall == 1 || run.failingCall == 3, leaf == nullptr);
                                              const ObjNode *text =
                                                  GPBLIB_ObjTree_CreateString(t, nullptr, 1, 1, "a", 1);
                                              EXPECT_EQ(run.failingCall == 1 || run.failingCall >= 4, text == nullptr);
                                          });
    EXPECT_EQ(5u, calls);
}

TEST_F(NodeTest, AFailingServiceLeavesNothingUndefined)
{
    failEachCall(
        [](const FaultRun &)
        {
            const TreePtr tree(GPBLIB_ObjTree_Create(0, kModuleId));
            const ObjNode *node = GPBLIB_ObjTree_CreateString(tree.get(), nullptr, 1, 2, "ab", 1);
            if (node != nullptr)
            {
                const std::string content(reinterpret_cast<const char *>(node->pucString), node->objLen);
                EXPECT_TRUE(content == "ab" || content == std::string(2, '\0'));
            }
        });
}

} // namespace
} // namespace gpbtest
