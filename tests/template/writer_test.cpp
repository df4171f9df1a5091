// Writing trees: bytes in both modes, rooms, and the lines in the log.
#include "support/library_fixture.h"
#include "tree_support.h"

namespace gpbtest
{
namespace
{

constexpr const char *kExampleTemplate = "06 0C FE FF 1F 08 10 00 1A 02 61 62 20 00";
constexpr const char *kExamplePlain = "FA FF 1F 08 10 00 1A 02 61 62 20 00";

class WriterTest : public LibraryFixture
{
protected:
    void TearDown() override
    {
        m_tree.reset();
        LibraryFixture::TearDown();
    }

    ObjTree tree() const { return m_tree.get(); }

    // Writes into a room with a sentinel behind it; the bytes written.
    Bytes writeInto(uint32_t room, uint32_t mode)
    {
        Bytes buffer(room + 1, 0xAA);
        const uint32_t count = GPBLIB_ObjTree_Write(tree(), buffer.data(), room, mode, context());
        EXPECT_EQ(0xAA, buffer[room]);
        EXPECT_LE(count, room);
        buffer.resize(count);
        return buffer;
    }

    // One node's own bytes, by a writer of single nodes, in every room.
    template <typename Writer>
    void expectNodeBytes(const char *hex, const ObjNode *node, Writer writer)
    {
        const Bytes expected = fromHex(hex);
        for (uint32_t room = 0; room <= expected.size() + 1; ++room)
        {
            Bytes buffer(expected.size() + 2, 0xAA);
            const uint32_t count = writer(node, buffer.data(), room);
            EXPECT_EQ(0xAA, buffer[room]) << "room " << room;
            ASSERT_EQ(room < expected.size() ? 0 : expected.size(), count) << "room " << room;
            buffer.resize(count);
            EXPECT_EQ(room < expected.size() ? "" : hex, toHex(buffer)) << "room " << room;
        }
        EXPECT_EQ(0u, writer(node, nullptr, 100));
    }

    TreePtr m_tree{GPBLIB_RDMI_CreateRoot(kModuleId, "ab")};
};

TEST_F(WriterTest, TheWorkedExampleIsWrittenInBothModes)
{
    EXPECT_EQ(kExampleTemplate, toHex(write(tree(), GPB_OBJTREE_MODE_TEMPLATE)));
    EXPECT_EQ(kExamplePlain, toHex(write(tree(), GPB_OBJTREE_MODE_PLAIN)));
    EXPECT_EQ(kExamplePlain, toHex(write(tree(), 2))) << "every mode but 1 is plain";
    EXPECT_EQ(kExamplePlain, toHex(write(tree(), 0xFFFFFFFF)));
}

TEST_F(WriterTest, EveryRoomUpToTheLengthIsRefusedInSilence)
{
    for (uint32_t room = 0; room < 14; ++room)
    {
        EXPECT_EQ("", toHex(writeInto(room, GPB_OBJTREE_MODE_TEMPLATE))) << room;
        EXPECT_EQ("", toHex(writeInto(room, GPB_OBJTREE_MODE_PLAIN))) << room;
    }
    EXPECT_EQ("", log().take());
    for (uint32_t room = 14; room < 17; ++room)
    {
        EXPECT_EQ(kExampleTemplate, toHex(writeInto(room, GPB_OBJTREE_MODE_TEMPLATE))) << room;
        EXPECT_EQ(kExamplePlain, toHex(writeInto(room, GPB_OBJTREE_MODE_PLAIN))) << room;
    }
}

TEST_F(WriterTest, NullArgumentsAreRefusedInSilence)
{
    uint8_t buffer[20] = {};
    EXPECT_EQ(0u, GPBLIB_ObjTree_Write(nullptr, buffer, 20, 1, context()));
    EXPECT_EQ(0u, GPBLIB_ObjTree_Write(tree(), nullptr, 20, 1, context()));
    EXPECT_EQ(0u, GPBLIB_ObjTree_Write(tree(), buffer, 0, 1, context()));
    EXPECT_EQ("", log().take());
}

TEST_F(WriterTest, AGoodWritePrintsTheTreeBetweenItsLines)
{
    write(tree(), GPB_OBJTREE_MODE_TEMPLATE, context());
    const std::string attr = "Contain: { id:65535, gpbFlg:1, objLen:8, gpbSize:12, value:0x0 }";
    EXPECT_LOG(log(), "1: gpb obj tree write begin", "1: gpb obj tree output begin:",
               "1: RootDoc: { id:0, gpbFlg:0, objLen:12, gpbSize:14, value:0x5a0102f3 }", "1: " + attr, "1:  " + attr,
               "1:   IntLeaf: { id:2, gpbFlg:1, objLen:0, gpbSize:2, value:0x0 }",
               "1:   StrLeaf: { id:3, gpbFlg:1, objLen:2, gpbSize:4, value:ab }",
               "1:   IntLeaf: { id:4, gpbFlg:1, objLen:0, gpbSize:2, value:0x0 }", "1: gpb obj tree output end",
               "1: gpb obj tree write end");
}

TEST_F(WriterTest, WithoutListenersTheBytesAreTheSame)
{
    recreateContext({GPB_LOG_PROGRESS});
    EXPECT_EQ(kExampleTemplate, toHex(write(tree(), GPB_OBJTREE_MODE_TEMPLATE, context())));
    EXPECT_EQ("", log().take());
}

TEST_F(WriterTest, WithoutListenersPrintingFormatsNothing)
{
    recreateContext({GPB_LOG_PROGRESS});
    const uint64_t before = GpbHost_CallCount(GPB_HOST_SNPRINTF_TRUNCATED);
    const uint64_t copies = GpbHost_CallCount(GPB_HOST_STRNCPY);
    write(tree(), GPB_OBJTREE_MODE_TEMPLATE, context());
    EXPECT_EQ(before, GpbHost_CallCount(GPB_HOST_SNPRINTF_TRUNCATED));
    EXPECT_EQ(copies, GpbHost_CallCount(GPB_HOST_STRNCPY));
}

TEST_F(WriterTest, AnEmptyRootIsTwoBytesOrNone)
{
    m_tree.reset(GPBLIB_ObjTree_Create(0, kModuleId));
    EXPECT_EQ("06 00", toHex(write(tree(), GPB_OBJTREE_MODE_TEMPLATE)));
    EXPECT_EQ("", toHex(write(tree(), GPB_OBJTREE_MODE_PLAIN, context())));
    EXPECT_EQ("1: gpb obj tree write end", log().texts().back());
}

TEST_F(WriterTest, NodesWithoutEncodeFlagAreWrittenInTemplateModeOnly)
{
    m_tree.reset(GPBLIB_ObjTree_Create(0, kModuleId));
    ObjNode *node = GPBLIB_ObjTree_CreateNode(tree(), nullptr, 1, 0);
    GPBLIB_ObjTree_CreateInteger(tree(), node, 2, 3, 1);
    GPBLIB_ObjTree_CreateInteger(tree(), node, 3, 4, 0);
    EXPECT_EQ("06 06 0E 04 10 03 18 04", toHex(write(tree(), GPB_OBJTREE_MODE_TEMPLATE)));
    EXPECT_EQ("10 03", toHex(write(tree(), GPB_OBJTREE_MODE_PLAIN))) << "its children are not passed over";
    node->gpbFlg = 1;
    EXPECT_EQ("0A 04 10 03", toHex(write(tree(), GPB_OBJTREE_MODE_PLAIN))) << "the length counts the passed-over leaf";
}

TEST_F(WriterTest, ANodeThatCannotBeWrittenIsAFailureOnlyWithEncodeFlagOne)
{
    m_tree.reset(GPBLIB_ObjTree_Create(0, kModuleId));
    ObjNode *leaf = GPBLIB_ObjTree_MallocNode(tree(), nullptr, GPB_OBJNODE_INVALID, 1);
    GPBLIB_ObjTree_CreateInteger(tree(), nullptr, 2, 3, 2);
    leaf->gpbFlg = 2;
    EXPECT_EQ("10 03", toHex(write(tree(), GPB_OBJTREE_MODE_PLAIN, context()))) << "any flag but 0 is written";
    EXPECT_EQ("1: gpb obj tree write end", log().texts().back());
    leaf->gpbFlg = 1;
    EXPECT_EQ("", toHex(write(tree(), GPB_OBJTREE_MODE_PLAIN, context())));
    EXPECT_EQ("1: Node: 0.1.", log().texts().back());
}

TEST_F(WriterTest, APlainTreeWithoutEncodedNodesIsNoError)
{
    m_tree.reset(GPBLIB_ObjTree_Create(0, kModuleId));
    GPBLIB_ObjTree_CreateInteger(tree(), nullptr, 1, 1, 0);
    uint8_t buffer[4];
    EXPECT_EQ(0u, GPBLIB_ObjTree_Write(tree(), buffer, 4, GPB_OBJTREE_MODE_PLAIN, context()));
    EXPECT_EQ("1: gpb obj tree write end", log().texts().back());
}

TEST_F(WriterTest, ANodeLargerThanTheRoomLeftIsReportedWithItsPath)
{
    ObjNode *leaf = childAt(childAt(tree(), 0), 1);
    EXPECT_EQ(14u, GPBLIB_ObjTree_GetWriteLen(tree()));
    leaf->gpbSize = 9; // 8 bytes are left when its turn comes
    log().clear();
    EXPECT_EQ("", toHex(writeInto(16, GPB_OBJTREE_MODE_TEMPLATE)));
    const std::vector<std::string> lines = log().texts();
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ("1: RDMI ObjTree failed to write to Buf[16]", lines[lines.size() - 2]);
    EXPECT_EQ("1: Node: 0.65535.3.", lines.back());
}

TEST_F(WriterTest, ANodeThatCannotBeWrittenIsReportedWithItsPath)
{
    ObjNode *leaf = childAt(childAt(tree(), 0), 1);
    GPBLIB_ObjTree_GetWriteLen(tree());
    leaf->objLen = 1000; // its remembered size still fits
    log().clear();
    EXPECT_EQ("", toHex(writeInto(14, GPB_OBJTREE_MODE_TEMPLATE)));
    const std::vector<std::string> lines = log().texts();
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ("1: RDMI ObjTree failed to write to Buf[14], nodetype=2, encodeflag=1", lines[lines.size() - 2]);
    EXPECT_EQ("1: Node: 0.65535.3.", lines.back());
}

TEST_F(WriterTest, ANodeOfUnknownTypeIsAFailureOnlyWhenItIsEncoded)
{
    m_tree.reset(GPBLIB_ObjTree_Create(0, kModuleId));
    ObjNode *node = GPBLIB_ObjTree_MallocNode(tree(), nullptr, GPB_OBJNODE_INVALID, 1);
    EXPECT_EQ("06 02", toHex(write(tree(), GPB_OBJTREE_MODE_TEMPLATE)));
    node->gpbFlg = 1;
    EXPECT_EQ("", toHex(write(tree(), GPB_OBJTREE_MODE_TEMPLATE, context())));
    EXPECT_EQ("1: RDMI ObjTree failed to write to Buf[4], nodetype=0, encodeflag=1", log().texts()[5]);
    node->nodeType = 5;
    EXPECT_EQ("", toHex(write(tree(), GPB_OBJTREE_MODE_PLAIN)));
}

TEST_F(WriterTest, NoWriteGoesPastTheRoomWhateverTheSizesSay)
{
    // Sizes that wrap around 2^32 promise a tiny tree; the content would not fit.
    ObjNode *leaf = childAt(childAt(tree(), 0), 1);
    for (const uint32_t objLen : {0x80000000U, 0xFFFFFFF0U, 0xFFFFFFFAU, 0xFFFFFFFFU})
    {
        leaf->objLen = objLen;
        GPBLIB_ObjTree_RefreshBufLen(tree());
        EXPECT_EQ("", toHex(writeInto(64, GPB_OBJTREE_MODE_TEMPLATE))) << objLen;
        EXPECT_EQ("", toHex(writeInto(64, GPB_OBJTREE_MODE_PLAIN))) << objLen;
    }
    leaf->objLen = 2;
}

TEST_F(WriterTest, SingleNodesAreWrittenIntoEveryRoomThatHoldsThem)
{
    ObjNode *integer = GPBLIB_ObjTree_CreateInteger(tree(), nullptr, 16, 300, 1);
    ObjNode *string = GPBLIB_ObjTree_CreateString(tree(), nullptr, 1, 3, "abc", 1);
    ObjNode *node = GPBLIB_ObjTree_CreateNode(tree(), nullptr, 65535, 1);
    node->objLen = 200;
    expectNodeBytes("80 01 AC 02", integer, GPBLIB_ObjNode_WriteVarint);
    expectNodeBytes("0A 03 61 62 63", string, GPBLIB_ObjNode_WriteString);
    expectNodeBytes("FA FF 1F C8 01", node, GPBLIB_ObjNode_WriteNode);
    expectNodeBytes("FE FF 1F C8 01", node, GPBLIB_ObjNode_WriteNodeTemplate);
    expectNodeBytes("80 01 AC 02", integer, GPBLIB_ObjNode_Write);
    expectNodeBytes("0A 03 61 62 63", string, GPBLIB_ObjNode_Write);
    expectNodeBytes("FA FF 1F C8 01", node, GPBLIB_ObjNode_Write);
    expectNodeBytes("80 01 AC 02", integer, GPBLIB_ObjNode_TemplateWrite);
    expectNodeBytes("0A 03 61 62 63", string, GPBLIB_ObjNode_TemplateWrite);
    expectNodeBytes("FE FF 1F C8 01", node, GPBLIB_ObjNode_TemplateWrite);
    tree()->objLen = 9;
    expectNodeBytes("06 09", tree(), GPBLIB_ObjNode_TemplateWrite);
}

TEST_F(WriterTest, IdsKeepTheirHighBitsInTheTag)
{
    expectNodeBytes("80 80 80 80 10 05", GPBLIB_ObjTree_CreateInteger(tree(), nullptr, 1U << 29, 5, 1),
                    GPBLIB_ObjNode_WriteVarint);
    expectNodeBytes("F8 FF FF FF 7F 05", GPBLIB_ObjTree_CreateInteger(tree(), nullptr, 0xFFFFFFFF, 5, 1),
                    GPBLIB_ObjNode_WriteVarint);
}

TEST_F(WriterTest, AStringWithoutBytesIsItsHeader)
{
    ObjNode *string = GPBLIB_ObjTree_CreateString(tree(), nullptr, 1, 3, "abc", 1);
    string->objLen = 0;
    expectNodeBytes("0A 00", string, GPBLIB_ObjNode_WriteString);
}

TEST_F(WriterTest, DispatchLooksAtTypeAndFlag)
{
    uint8_t buffer[16];
    ObjNode *node = GPBLIB_ObjTree_CreateInteger(tree(), nullptr, 1, 1, 0);
    EXPECT_EQ(0u, GPBLIB_ObjNode_Write(node, buffer, 16));
    EXPECT_EQ(2u, GPBLIB_ObjNode_TemplateWrite(node, buffer, 16));
    node->gpbFlg = 1;
    for (const uint32_t type : {0U, 5U, 0xFFFFFFFFU})
    {
        node->nodeType = type;
        EXPECT_EQ(0u, GPBLIB_ObjNode_Write(node, buffer, 16)) << type;
        EXPECT_EQ(0u, GPBLIB_ObjNode_TemplateWrite(node, buffer, 16)) << type;
    }
    node->nodeType = GPB_OBJNODE_INTLEAF;
    tree()->gpbFlg = 1;
    EXPECT_EQ(0u, GPBLIB_ObjNode_Write(tree(), buffer, 16)) << "a root has no bytes in plain mode";
    tree()->gpbFlg = 0;
    EXPECT_EQ(0u, GPBLIB_ObjNode_Write(nullptr, buffer, 16));
    EXPECT_EQ(0u, GPBLIB_ObjNode_TemplateWrite(nullptr, buffer, 16));
    EXPECT_EQ(0u, GPBLIB_ObjNode_WriteVarint(nullptr, buffer, 16));
    EXPECT_EQ(0u, GPBLIB_ObjNode_WriteString(nullptr, buffer, 16));
    EXPECT_EQ(0u, GPBLIB_ObjNode_WriteNode(nullptr, buffer, 16));
    EXPECT_EQ(0u, GPBLIB_ObjNode_WriteNodeTemplate(nullptr, buffer, 16));
}

TEST_F(WriterTest, AFailedCopyOfContentIsReportedAndCountedAllTheSame)
{
    ObjNode *string = GPBLIB_ObjTree_CreateString(tree(), nullptr, 1, 3, "abc", 1);
    uint8_t buffer[8] = {};
    GpbHost_FailCall(GPB_HOST_MEMCPY, 3); // after tag and length
    EXPECT_EQ(5u, GPBLIB_ObjNode_WriteString(string, buffer, sizeof(buffer)));
    EXPECT_EQ("gpb_template_rdmi_tree:136\n", takeAssertText());
}

TEST_F(WriterTest, ADeepTreeIsWrittenWithoutRecursion)
{
    m_tree = nestedTree(kModuleId, 20000);
    const Bytes bytes = write(tree(), GPB_OBJTREE_MODE_TEMPLATE);
    EXPECT_EQ(GPBLIB_ObjTree_GetWriteLen(tree()), bytes.size());
}

} // namespace
} // namespace gpbtest
