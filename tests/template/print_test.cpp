// Debug output: trees, nodes and paths as text.
#include "support/library_fixture.h"
#include "tree_support.h"

namespace gpbtest
{
namespace
{

class PrintTest : public LibraryFixture
{
protected:
    void TearDown() override
    {
        m_tree.reset();
        LibraryFixture::TearDown();
    }

    ObjTree tree() const { return m_tree.get(); }

    static std::string nodeText(const ObjNode *node, uint32_t room = 1024)
    {
        std::vector<char> text(room + 1, '#');
        GPBLIB_OutputObjNodeBaseContent(text.data(), room, node);
        EXPECT_EQ('#', text[room]);
        return text.data();
    }

    ObjNode *string(const std::string &content) const
    {
        return GPBLIB_ObjTree_CreateString(tree(), nullptr, 1, static_cast<uint32_t>(content.size()), content.data(),
                                           1);
    }

    // A chain of containers with these ids below the root; the innermost one.
    ObjNode *chain(const std::vector<uint32_t> &ids) const
    {
        ObjNode *node = tree();
        for (const uint32_t id : ids)
        {
            node = GPBLIB_ObjTree_CreateNode(tree(), node, id, 1);
        }
        return node;
    }

    TreePtr m_tree{GPBLIB_ObjTree_Create(0, kModuleId)};
};

TEST_F(PrintTest, EveryTypeHasItsName)
{
    ObjNode *node = GPBLIB_ObjTree_CreateNode(tree(), nullptr, 7, 1);
    const std::string rest = ": { id:7, gpbFlg:1, objLen:0, gpbSize:0, value:0x0 }";
    const char *const names[] = {"Invalid", "IntLeaf", nullptr, "Contain", "RootDoc", "Unknow "};
    for (uint32_t type = 0; type < 6; ++type)
    {
        node->nodeType = type;
        EXPECT_EQ(type == 2 ? "StrLeaf: { id:7, gpbFlg:1, objLen:0, gpbSize:0, value:NULL }" : names[type] + rest,
                  nodeText(node));
    }
    for (const uint32_t type : {6U, 7U, 0xFFFFFFFFU})
    {
        node->nodeType = type;
        EXPECT_EQ("", nodeText(node)) << type;
    }
    node->nodeType = GPB_OBJNODE_CONTAIN;
}

TEST_F(PrintTest, NumbersPrintUnsignedAndValuesInSixtyFourBits)
{
    ObjNode *node = GPBLIB_ObjTree_CreateInteger(tree(), nullptr, 0xFFFFFFFF, 0xFEDCBA9876543210ULL, 0xFFFFFFFE);
    node->objLen = 0xFFFFFFFD;
    node->gpbSize = 0xFFFFFFFC;
    EXPECT_EQ("IntLeaf: { id:4294967295, gpbFlg:4294967294, objLen:4294967293, gpbSize:4294967292, "
              "value:0xfedcba9876543210 }",
              nodeText(node));
    EXPECT_EQ("RootDoc: { id:0, gpbFlg:0, objLen:0, gpbSize:0, value:0x5a0102f3 }", nodeText(tree()));
}

TEST_F(PrintTest, AStringShowsUpTo199Characters)
{
    EXPECT_EQ("StrLeaf: { id:1, gpbFlg:1, objLen:2, gpbSize:0, value:ab }", nodeText(string("ab")));
    const std::string longest(199, 'x');
    EXPECT_EQ("StrLeaf: { id:1, gpbFlg:1, objLen:199, gpbSize:0, value:" + longest + " }", nodeText(string(longest)));
    EXPECT_EQ("StrLeaf: { id:1, gpbFlg:1, objLen:200, gpbSize:0, value:Too Long string }",
              nodeText(string(std::string(200, 'x'))));
    EXPECT_EQ("StrLeaf: { id:1, gpbFlg:1, objLen:3, gpbSize:0, value:a }", nodeText(string(std::string("a\0b", 3))));
}

TEST_F(PrintTest, ANodesTextIsCutToTheRoom)
{
    const ObjNode *node = string("ab");
    EXPECT_EQ("", nodeText(node, 1));
    EXPECT_EQ("StrLe", nodeText(node, 6));
    EXPECT_EQ("StrLeaf: { id:1, gpbFlg:1, objLen:2, gpbSize:0, value:ab ", nodeText(node, 58));
    char untouched = '#';
    GPBLIB_OutputObjNodeBaseContent(&untouched, 0, node);
    EXPECT_EQ('#', untouched);
    GPBLIB_OutputObjNodeBaseContent(nullptr, 10, node);
    GPBLIB_OutputObjNodeBaseContent(&untouched, 1, nullptr);
    EXPECT_EQ('\0', untouched);
}

TEST_F(PrintTest, ANodeIsIndentedByItsAncestors)
{
    const ObjNode *node = chain({1, 2, 3});
    char text[8] = "#######";
    EXPECT_EQ(3u, GPBLIB_OutputObjNodePrefixSpace(text, sizeof(text), node));
    EXPECT_STREQ("   ", text);
    EXPECT_EQ(2u, GPBLIB_OutputObjNodePrefixSpace(text, 3, node));
    EXPECT_STREQ("  ", text);
    EXPECT_EQ(0u, GPBLIB_OutputObjNodePrefixSpace(text, 1, node));
    EXPECT_STREQ("", text);
    EXPECT_EQ(0u, GPBLIB_OutputObjNodePrefixSpace(text, sizeof(text), tree()));
    EXPECT_EQ(0u, GPBLIB_OutputObjNodePrefixSpace(text, 0, node));
    EXPECT_EQ(0u, GPBLIB_OutputObjNodePrefixSpace(nullptr, 8, node));
    EXPECT_EQ(0u, GPBLIB_OutputObjNodePrefixSpace(text, sizeof(text), nullptr));
}

TEST_F(PrintTest, AttributeContainersArePrintedInTheirPlaceAndAfterTheirOwner)
{
    const RdmiNodeAttr nodeAttr = {0x10, "n", 1, 2};
    m_tree.reset(GPBLIB_RDMI_CreateRoot(kModuleId, "r"));
    ObjNode *leaf = GPBLIB_RDMI_CreateInteger(tree(), nullptr, 9, 0x300001234);
    const RdmiFieldAttr fieldAttr = {3, 9, "f", 1, 13, 0};
    leaf->pFieldAttr = GPBLIB_RDMI_AddFieldAttribute(tree(), tree(), &fieldAttr);
    GPBLIB_RDMI_CreateNode(tree(), tree(), 5, &nodeAttr);
    EXPECT_EQ(45u, GPBLIB_ObjTree_GetWriteLen(tree()));
    GPBLIB_ObjTree_Print(tree(), context());
    const std::string rootAttr = "Contain: { id:65535, gpbFlg:1, objLen:20, gpbSize:24, value:0x0 }";
    const std::string innerAttr = "Contain: { id:65535, gpbFlg:1, objLen:7, gpbSize:11, value:0x0 }";
    const std::string field = "Contain: { id:1, gpbFlg:1, objLen:11, gpbSize:13, value:0x0 }";
    EXPECT_LOG(log(), "1: gpb obj tree output begin:",
               "1: RootDoc: { id:0, gpbFlg:0, objLen:43, gpbSize:45, value:0x5a0102f3 }", "1: " + rootAttr,
               "1:  " + rootAttr, "1:   IntLeaf: { id:2, gpbFlg:1, objLen:0, gpbSize:2, value:0x0 }",
               "1:   StrLeaf: { id:3, gpbFlg:1, objLen:1, gpbSize:3, value:r }",
               "1:   IntLeaf: { id:4, gpbFlg:1, objLen:0, gpbSize:2, value:0x0 }", "1:   " + field,
               "1:    IntLeaf: { id:1, gpbFlg:1, objLen:0, gpbSize:2, value:0x3 }",
               "1:    StrLeaf: { id:2, gpbFlg:1, objLen:1, gpbSize:3, value:f }",
               "1:    IntLeaf: { id:3, gpbFlg:1, objLen:0, gpbSize:2, value:0x9 }",
               "1:    IntLeaf: { id:4, gpbFlg:1, objLen:0, gpbSize:2, value:0xd }",
               "1:    IntLeaf: { id:5, gpbFlg:1, objLen:0, gpbSize:2, value:0x0 }",
               "1:  IntLeaf: { id:9, gpbFlg:1, objLen:0, gpbSize:6, value:0x300001234 }", "1:  " + field,
               "1:  Contain: { id:5, gpbFlg:1, objLen:11, gpbSize:13, value:0x0 }", "1:  " + innerAttr,
               "1:   " + innerAttr, "1:    IntLeaf: { id:2, gpbFlg:1, objLen:0, gpbSize:2, value:0x10 }",
               "1:    StrLeaf: { id:3, gpbFlg:1, objLen:1, gpbSize:3, value:n }",
               "1:    IntLeaf: { id:4, gpbFlg:1, objLen:0, gpbSize:2, value:0x2 }", "1: gpb obj tree output end");
}

TEST_F(PrintTest, ASubtreeIsPrintedWithItsOwnIndentation)
{
    ObjNode *node = chain({1, 2});
    GPBLIB_ObjTree_CreateInteger(tree(), nullptr, 3, 1, 1);
    GPBLIB_ObjTree_Print(node, context());
    EXPECT_LOG(log(),
               "1: gpb obj tree output begin:", "1:   Contain: { id:2, gpbFlg:1, objLen:0, gpbSize:0, value:0x0 }",
               "1: gpb obj tree output end");
}

TEST_F(PrintTest, VeryDeepNodesAreAllIndentation)
{
    ObjNode *node = chain(std::vector<uint32_t>(1022, 1));
    GPBLIB_OutputObjNodeContent(context(), node);
    EXPECT_LOG(log(), "1: " + std::string(1022, ' ') + "C");
    node = GPBLIB_ObjTree_CreateNode(tree(), node, 1, 1);
    GPBLIB_OutputObjNodeContent(context(), node);
    node = GPBLIB_ObjTree_CreateNode(tree(), node, 1, 1);
    GPBLIB_OutputObjNodeContent(context(), node);
    EXPECT_LOG(log(), "1: " + std::string(1023, ' '), "1: " + std::string(1023, ' '));
}

TEST_F(PrintTest, NothingIsPrintedForNullAndForNobody)
{
    GPBLIB_ObjTree_Print(nullptr, context());
    GPBLIB_ObjTree_Print(tree(), nullptr);
    GPBLIB_OutputObjNodeContent(context(), nullptr);
    GPBLIB_OutputObjNodeContent(nullptr, tree());
    GPBLIB_DBG_PrintPath(nullptr, context());
    GPBLIB_DBG_PrintPath(tree(), nullptr);
    EXPECT_EQ("", log().take());
    recreateContext({GPB_LOG_PROGRESS});
    GPBLIB_ObjTree_Print(tree(), context());
    GPBLIB_OutputObjNodeContent(context(), tree());
    GPBLIB_DBG_PrintPath(tree(), context());
    EXPECT_EQ("", log().take());
}

TEST_F(PrintTest, APathRunsFromTheRootToTheNode)
{
    GPBLIB_DBG_PrintPath(tree(), context());
    EXPECT_LOG(log(), "1: Node: 0.");
    GPBLIB_DBG_PrintPath(chain({65535, 3}), context());
    EXPECT_LOG(log(), "1: Node: 0.65535.3.");
}

TEST_F(PrintTest, APathEndsWhenItIsLong)
{
    std::string text = "Node: 0.";
    for (int i = 0; i < 123; ++i) // the text has 246 characters then
    {
        text += i < 122 ? "1." : "";
    }
    for (const size_t depth : {122U, 123U, 200U, 5000U})
    {
        m_tree.reset(GPBLIB_ObjTree_Create(0, kModuleId));
        GPBLIB_DBG_PrintPath(chain(std::vector<uint32_t>(depth, 1)), context());
        EXPECT_LOG(log(), "1: " + text);
    }
    m_tree.reset(GPBLIB_ObjTree_Create(0, kModuleId));
    GPBLIB_DBG_PrintPath(chain(std::vector<uint32_t>(121, 1)), context());
    EXPECT_LOG(log(), "1: " + text.substr(0, text.size() - 2));
}

TEST_F(PrintTest, TheLastPieceOfALongPathMayBeItsLongest)
{
    std::vector<uint32_t> ids(121, 1); // 244 characters with the root's
    ids.push_back(12345678);
    ids.push_back(1);
    GPBLIB_DBG_PrintPath(chain(ids), context());
    std::string ones;
    for (int i = 0; i < 121; ++i)
    {
        ones += "1.";
    }
    EXPECT_LOG(log(), "1: Node: 0." + ones + "12345678.");
}

using PrintDeliberateOddityTest = PrintTest;

TEST_F(PrintDeliberateOddityTest, IdsOfAPathPrintSignedAndLongOnesEndIt)
{
    // Readers of these lines take them as they are.
    GPBLIB_DBG_PrintPath(chain({99999999, 1}), context());
    EXPECT_LOG(log(), "1: Node: 0.99999999.1.");
    GPBLIB_DBG_PrintPath(chain({100000000, 1}), context());
    EXPECT_LOG(log(), "1: Node: 0.");
    GPBLIB_DBG_PrintPath(chain({0xFFFFFFFF, 1}), context());
    EXPECT_LOG(log(), "1: Node: 0.-1.1.");
    GPBLIB_DBG_PrintPath(chain({static_cast<uint32_t>(-9999999), 1}), context());
    EXPECT_LOG(log(), "1: Node: 0.-9999999.1.");
    GPBLIB_DBG_PrintPath(chain({static_cast<uint32_t>(-10000000), 1}), context());
    EXPECT_LOG(log(), "1: Node: 0.");
}

} // namespace
} // namespace gpbtest
