// Builders of templates: nodes with the attributes that describe them.
#include "support/platform_fixture.h"
#include "tree_support.h"

namespace gpbtest
{
namespace
{

constexpr RdmiNodeAttr kNodeAttr = {0x1234, "interface", 9, 3};
constexpr RdmiFieldAttr kFieldAttr = {0x102, 0x304, "if-name", 7, 9, 4};

class BuilderTest : public PlatformFixture
{
protected:
    void TearDown() override
    {
        m_tree.reset();
        PlatformFixture::TearDown();
    }

    ObjTree tree() const { return m_tree.get(); }

    TreePtr m_tree{GPBLIB_RDMI_CreateRoot(kModuleId, "top")};
};

TEST_F(BuilderTest, ARootIsDescribedByItsName)
{
    EXPECT_EQ("R0(C65535(I2=0 S3='top' I4=0))", describe(tree(), true));
    EXPECT_EQ(childAt(tree(), 0), tree()->pNodeAttr);
    EXPECT_EQ(0u, tree()->gpbFlg);
    EXPECT_EQ(kModuleId, tree()->value);
}

TEST_F(BuilderTest, ARootNeedsAName)
{
    EXPECT_EQ(nullptr, GPBLIB_RDMI_CreateRoot(kModuleId, nullptr));
    EXPECT_EQ(nullptr, GPBLIB_RDMI_CreateRoot(kModuleId, ""));
}

TEST_F(BuilderTest, LeavesAreEncoded)
{
    EXPECT_EQ(1u, GPBLIB_RDMI_CreateInteger(tree(), nullptr, 5, 6)->gpbFlg);
    EXPECT_EQ(1u, GPBLIB_RDMI_CreateString(tree(), nullptr, 7, 1, "abc")->gpbFlg);
    EXPECT_EQ("R0(C65535(I2=0 S3='top' I4=0) I5=6 S7='a')", describe(tree(), true));
}

TEST_F(BuilderTest, AContainerBeginsWithItsNodeAttribute)
{
    ObjNode *node = GPBLIB_RDMI_CreateNode(tree(), tree(), 8, &kNodeAttr);
    ASSERT_NE(nullptr, node);
    GPBLIB_RDMI_CreateInteger(tree(), node, 1, 2);
    EXPECT_EQ("C8(C65535(I2=4660 S3='interface' I4=3) I1=2)", describe(node, true));
    EXPECT_EQ(childAt(node, 0), node->pNodeAttr);
}

TEST_F(BuilderTest, NamesAreTakenByLength)
{
    const RdmiNodeAttr attr = {1, "interfaces", 9, 0};
    EXPECT_EQ("C1(C65535(I2=1 S3='interface' I4=0))", describe(GPBLIB_RDMI_CreateNode(tree(), tree(), 1, &attr)));
}

TEST_F(BuilderTest, FieldAttributesFollowInTheNodeAttribute)
{
    const ObjNode *attr = GPBLIB_RDMI_AddFieldAttribute(tree(), tree(), &kFieldAttr);
    const RdmiFieldAttr second = {0xFFFF, 0xFFFF, "b", 1, 18, 7};
    EXPECT_NE(nullptr, GPBLIB_RDMI_AddFieldAttribute(tree(), tree(), &second));
    EXPECT_EQ(childAt(tree()->pNodeAttr, 3), attr);
    EXPECT_EQ("R0(C65535(I2=0 S3='top' I4=0 C1(I1=258 S2='if-name' I3=772 I4=9 I5=4)"
              " C1(I1=65535 S2='b' I3=65535 I4=18 I5=7)))",
              describe(tree(), true));
}

TEST_F(BuilderTest, ATemplateHasItsBytes)
{
    ObjNode *node = GPBLIB_RDMI_CreateNode(tree(), tree(), 8, &kNodeAttr);
    GPBLIB_RDMI_AddFieldAttribute(tree(), tree(), &kFieldAttr);
    GPBLIB_RDMI_CreateString(tree(), node, 1, 2, "1.2");
    EXPECT_EQ("06 3C "                      // root: 34 bytes of node attribute, 26 of container
              "FE FF 1F 1E "                // its node attribute: 2 + 5 + 2 + 21 bytes
              "10 00 "                      // class id
              "1A 03 74 6F 70 "             // name
              "20 00 "                      // flag
              "0E 13 "                      // field attribute: 3 + 9 + 3 + 4 bytes
              "08 82 02 "                   // field id
              "12 07 69 66 2D 6E 61 6D 65 " // field name
              "18 84 06 "                   // field number
              "20 09 28 04 "                // type, flag
              "46 18 "                      // container: 20 bytes of node attribute, 4 of leaf
              "FE FF 1F 10 "                // its node attribute
              "10 B4 24 "                   // class id
              "1A 09 69 6E 74 65 72 66 61 63 65 "
              "20 03 "
              "0A 02 31 2E",
              toHex(write(tree(), GPB_OBJTREE_MODE_TEMPLATE)));
}

TEST_F(BuilderTest, AnAttributeNeedsItsNode)
{
    EXPECT_EQ(nullptr, GPBLIB_RDMI_CreateNodeAttribute(tree(), nullptr, &kNodeAttr));
    EXPECT_EQ(nullptr, GPBLIB_RDMI_CreateNodeAttribute(tree(), tree(), nullptr));
    EXPECT_EQ(nullptr, GPBLIB_RDMI_CreateNodeAttribute(nullptr, nullptr, &kNodeAttr));
    EXPECT_EQ(nullptr, GPBLIB_RDMI_AddFieldAttribute(tree(), nullptr, &kFieldAttr));
    EXPECT_EQ(nullptr, GPBLIB_RDMI_AddFieldAttribute(tree(), tree(), nullptr));
    ObjNode *bare = GPBLIB_ObjTree_CreateNode(tree(), nullptr, 1, 1);
    EXPECT_EQ(nullptr, GPBLIB_RDMI_AddFieldAttribute(tree(), bare, &kFieldAttr)) << "no node attribute";
    EXPECT_EQ("C1()", describe(bare));
}

TEST_F(BuilderTest, WhatWasMadeBeforeAFailureStays)
{
    const RdmiNodeAttr nameless = {1, "", 0, 2};
    EXPECT_EQ(nullptr, GPBLIB_RDMI_CreateNode(tree(), tree(), 8, &nameless));
    const RdmiFieldAttr namelessField = {1, 2, nullptr, 3, 4, 5};
    EXPECT_EQ(nullptr, GPBLIB_RDMI_AddFieldAttribute(tree(), tree(), &namelessField));
    EXPECT_EQ("R0(C65535(I2=0 S3='top' I4=0 C1(I1=1)) C8(C65535(I2=1)))", describe(tree()));
    EXPECT_NE(nullptr, childAt(tree(), 1)->pNodeAttr);
}

TEST_F(BuilderTest, AFailingAllocationGivesNullAndTheTreeIsDeletedAsAWhole)
{
    const uint64_t calls =
        failEachCallOf(GPB_HOST_MALLOC,
                       [](const FaultRun &run)
                       {
                           const TreePtr tree(GPBLIB_RDMI_CreateRoot(kModuleId, "top"));
                           EXPECT_EQ(run.fails() && run.failingCall <= 6, tree == nullptr);
                           const ObjNode *node = GPBLIB_RDMI_CreateNode(tree.get(), tree.get(), 1, &kNodeAttr);
                           EXPECT_EQ(run.fails() && run.failingCall <= 12, node == nullptr);
                           const ObjNode *attr = GPBLIB_RDMI_AddFieldAttribute(tree.get(), tree.get(), &kFieldAttr);
                           EXPECT_EQ(run.fails() && (run.failingCall <= 6 || run.failingCall > 12), attr == nullptr);
                       });
    EXPECT_EQ(19u, calls);
}

} // namespace
} // namespace gpbtest
