// Reading single nodes, and content into the stacks of a caller.
#include "support/platform_fixture.h"
#include "tree_support.h"

namespace gpbtest
{
namespace
{

class NodeReaderTest : public PlatformFixture
{
protected:
    void TearDown() override
    {
        m_tree.reset();
        PlatformFixture::TearDown();
    }

    ObjTree tree() const { return m_tree.get(); }
    ObjNode *newNode() const { return GPBLIB_ObjTree_CreateNode(tree(), nullptr, 0, 0); }

    TreePtr m_tree{GPBLIB_ObjTree_Create(0, kModuleId)};
};

TEST_F(NodeReaderTest, FixedWidthsNeedAllTheirBytes)
{
    const Bytes bytes = fromHex("01 02 03 04 05 06 07 08 09");
    ObjNode *node = newNode();
    for (uint32_t length = 0; length <= 9; ++length)
    {
        EXPECT_EQ(length < 8 ? 0u : 8u, GPBLIB_ObjNode_Read_FIXED64(node, bytes.data(), length)) << length;
    }
    EXPECT_EQ(GPB_OBJNODE_INTLEAF, node->nodeType);
    EXPECT_EQ(0x0807060504030201u, node->value);
    for (uint32_t length = 0; length <= 5; ++length)
    {
        EXPECT_EQ(length < 4 ? 0u : 4u, GPBLIB_ObjNode_Read_FIXED32(node, bytes.data(), length)) << length;
    }
    EXPECT_EQ(0x04030201u, node->value);
}

TEST_F(NodeReaderTest, AContainerKeepsARootARoot)
{
    const Bytes bytes = fromHex("AC 02");
    ObjNode *node = newNode();
    EXPECT_EQ(2u, GPBLIB_ObjNode_Read_NODE(tree(), node, bytes.data(), 2));
    EXPECT_EQ(GPB_OBJNODE_CONTAIN, node->nodeType);
    EXPECT_EQ(300u, node->objLen);
    node->nodeType = GPB_OBJNODE_ROOTDOC;
    EXPECT_EQ(2u, GPBLIB_ObjNode_Read_NODE(tree(), node, bytes.data(), 2));
    EXPECT_EQ(GPB_OBJNODE_ROOTDOC, node->nodeType);
    EXPECT_EQ(2u, GPBLIB_ObjNode_Read_NODE(tree(), tree(), bytes.data(), 2));
    EXPECT_EQ(GPB_OBJNODE_ROOTDOC, tree()->nodeType);
    node->nodeType = GPB_OBJNODE_CONTAIN;
}

TEST_F(NodeReaderTest, AStringIsCopiedUnderTheTreesModuleId)
{
    ObjNode *node = newNode();
    const Bytes bytes = fromHex("0A 03 61 62 63 FF");
    EXPECT_EQ(5u, GPBLIB_ObjNode_Read(tree(), node, bytes.data(), 6));
    EXPECT_EQ("S1='abc'", describe(node));
    EXPECT_EQ(3u, events().ofKind(GPB_HOST_EVENT_MALLOC).back().size);
    EXPECT_EQ(kModuleId, events().ofKind(GPB_HOST_EVENT_MALLOC).back().moduleId);
}

TEST_F(NodeReaderTest, AFailedCopyIsReported)
{
    ObjNode *node = newNode();
    const Bytes bytes = fromHex("01 61");
    GpbHost_FailCall(GPB_HOST_MEMCPY, 1);
    EXPECT_EQ(2u, GPBLIB_ObjNode_Read_LENGTH_DELIMITED(tree(), node, bytes.data(), 2));
    EXPECT_EQ(1u, takeAsserts().size());
    EXPECT_EQ(0, node->pucString[0]);
}

TEST_F(NodeReaderTest, NullArgumentsReadNothing)
{
    const Bytes bytes = fromHex("0A 01 61 00 00 00 00 00");
    ObjNode *node = newNode();
    EXPECT_EQ(0u, GPBLIB_ObjNode_Read(nullptr, node, bytes.data(), 3)) << "no tree to allocate from";
    EXPECT_EQ(0u, GPBLIB_ObjNode_Read(tree(), nullptr, bytes.data(), 3));
    EXPECT_EQ(0u, GPBLIB_ObjNode_Read(tree(), node, nullptr, 3));
    EXPECT_EQ(0u, GPBLIB_ObjNode_Read_VARINT(nullptr, bytes.data(), 3));
    EXPECT_EQ(0u, GPBLIB_ObjNode_Read_FIXED64(nullptr, bytes.data(), 8));
    EXPECT_EQ(0u, GPBLIB_ObjNode_Read_FIXED32(node, nullptr, 8));
    EXPECT_EQ(0u, GPBLIB_ObjNode_Read_LENGTH_DELIMITED(tree(), nullptr, bytes.data() + 1, 2));
    EXPECT_EQ(0u, GPBLIB_ObjNode_Read_NODE(tree(), nullptr, bytes.data(), 3));
}

TEST_F(NodeReaderTest, ContentIsReadIntoTheStacksOfItsCaller)
{
    // The stacks have just one place for each container that is accepted, and the one that is one too many.
    std::vector<ObjNode *> nodes(GPB_OBJTREE_MAX_NESTING + 2);
    std::vector<uint32_t> counters(GPB_OBJTREE_MAX_NESTING + 2);
    GpbObjTreeReadState state = {tree(), nodes.data(), counters.data(), 0};
    tree()->objLen = 4;
    const Bytes bytes = fromHex("0E 02 08 01 FF");
    EXPECT_EQ(bytes.data() + 4, GPBLIB_ObjTree_ReadContent_(&state, bytes.data(), 5, nullptr));
    EXPECT_EQ("R0(C1(I1=1))", describe(tree()));
    EXPECT_EQ(1u, state.uiStackNum);
    EXPECT_EQ(bytes.data(), GPBLIB_ObjTree_ReadContent_(&state, bytes.data(), 0, nullptr));
    EXPECT_EQ(1u, state.uiStackNum);
    EXPECT_EQ(bytes.data(), GPBLIB_ObjTree_ReadContent_(nullptr, bytes.data(), 5, nullptr));
}

TEST_F(NodeReaderTest, AFailedReadOfContentDeletesTheTree)
{
    std::vector<ObjNode *> nodes(GPB_OBJTREE_READ_STACK);
    std::vector<uint32_t> counters(GPB_OBJTREE_READ_STACK);
    GpbObjTreeReadState state = {m_tree.release(), nodes.data(), counters.data(), 0};
    state.pstTree->objLen = 100;
    const Bytes bytes = fromHex("0E 02 0B 01");
    EXPECT_EQ(bytes.data() + 2, GPBLIB_ObjTree_ReadContent_(&state, bytes.data(), 4, nullptr));
    EXPECT_EQ(nullptr, state.pstTree);
    EXPECT_EQ(2u, state.uiStackNum);
    EXPECT_EQ(bytes.data(), GPBLIB_ObjTree_ReadContent_(&state, bytes.data(), 4, nullptr));
}

} // namespace
} // namespace gpbtest
