// Leaves: which of them get into a template, as which nodes, and with which field attributes.
#include <google/protobuf/descriptor.h>

#include "yang_support.h"

namespace gpbtest
{
namespace
{

constexpr const char *kInterfaceMessage = "ifm.Ifm.Interfaces.Interface";

class LeafTest : public TemplateFixture
{
protected:
    void TearDown() override
    {
        m_tree.reset();
        TemplateFixture::TearDown();
    }

    uint32_t insert(uint32_t allLeaves)
    {
        return GPBLIB_InsertLeafNodeInfo(m_interface, message(kInterfaceMessage), m_tree.get(), m_tree.get(), allLeaves,
                                         context());
    }

    // The field attribute and the node of one leaf of the interface, inserted alone.
    std::string insertOne(const char *name, uint32_t isKey = 0)
    {
        GpbYangNode *node = m_yang.node(nullptr, "one", 0x30);
        m_yang.leaf(node, name, 7, isKey);
        m_tree.reset(GPBLIB_RDMI_CreateRoot(kModuleId, "t"));
        EXPECT_EQ(
            0u, GPBLIB_InsertLeafNodeInfo(node, message(kInterfaceMessage), m_tree.get(), m_tree.get(), 1, context()));
        const ObjNode *attr = childAt(childAt(m_tree.get(), 0), 3);
        const ObjNode *leaf = childAt(m_tree.get(), 1);
        if (leaf == nullptr)
        {
            EXPECT_EQ(nullptr, attr);
            return "none";
        }
        EXPECT_EQ(attr, leaf->pFieldAttr);
        return describe(attr) + " " + describe(leaf);
    }

    GpbLeafFill fill(uint32_t allLeaves) const
    {
        GpbLeafFill record = {};
        record.pstMessage = message(kInterfaceMessage);
        record.pstTree = m_tree.get();
        record.pstObjNode = m_tree.get();
        record.uiAllLeaves = allLeaves;
        return record;
    }

    TreePtr m_tree{GPBLIB_RDMI_CreateRoot(kModuleId, "t")};
};

TEST_F(LeafTest, TheTypeOfTheFieldDecidesTheNode)
{
    EXPECT_EQ("C1(I1=7 S2='if-name' I3=1 I4=9 I5=0) S1='30.7'", insertOne("if-name"));
    EXPECT_EQ("C1(I1=7 S2='if-index' I3=2 I4=13 I5=0) I2=30064771120", insertOne("if-index"));
    EXPECT_EQ("C1(I1=7 S2='f-int32' I3=5 I4=5 I5=0) I5=30064771120", insertOne("f-int32"));
    EXPECT_EQ("C1(I1=7 S2='f-int64' I3=6 I4=3 I5=0) I6=30064771120", insertOne("f-int64"));
    EXPECT_EQ("C1(I1=7 S2='f-uint64' I3=7 I4=4 I5=0) I7=30064771120", insertOne("f-uint64"));
    EXPECT_EQ("C1(I1=7 S2='f-bool' I3=8 I4=8 I5=0) I8=30064771120", insertOne("f-bool"));
    EXPECT_EQ("C1(I1=7 S2='f-enum' I3=9 I4=14 I5=0) I9=30064771120", insertOne("f-enum"));
    EXPECT_EQ("C1(I1=7 S2='f-bytes' I3=10 I4=12 I5=0) S10='30.7'", insertOne("f-bytes"));
    EXPECT_EQ("C1(I1=7 S2='f-sint64' I3=11 I4=18 I5=0) I11=30064771120", insertOne("f-sint64"));
    EXPECT_EQ("C1(I1=7 S2='f-fixed32' I3=12 I4=7 I5=0) I12=30064771120", insertOne("f-fixed32"));
    EXPECT_EQ("none", insertOne("f-message"));
}

TEST_F(LeafTest, FloatingPointFieldsAreReportedAndLeftOut)
{
    log().clear();
    EXPECT_EQ("none", insertOne("f-double"));
    EXPECT_LOG(log(), "1: insert (one) leaf node (field count 22) begin",
               "1: Convert node(one/f-double) : (0x0, 0) ==> (0x30, 7) ", "1: unknown field type = 5, name = f_double",
               "1: insert leaf node (f-double)", "1: insert (one) leaf node end");
    EXPECT_EQ("none", insertOne("f-float"));
    EXPECT_EQ("1: unknown field type = 6, name = f_float", log().texts()[2]);
}

TEST_F(LeafTest, FlagsTellRepeatedPackableAndKeyFields)
{
    EXPECT_EQ("C1(I1=7 S2='r-string' I3=14 I4=9 I5=1) S14='30.7'", insertOne("r-string"));
    EXPECT_EQ("C1(I1=7 S2='r-bytes' I3=15 I4=12 I5=1) S15='30.7'", insertOne("r-bytes"));
    EXPECT_EQ("C1(I1=7 S2='r-uint32' I3=16 I4=13 I5=3) I16=30064771120", insertOne("r-uint32"));
    EXPECT_EQ("C1(I1=7 S2='r-enum' I3=17 I4=14 I5=3) I17=30064771120", insertOne("r-enum"));
    EXPECT_EQ("none", insertOne("r-double"));
    EXPECT_EQ("C1(I1=7 S2='if-index' I3=2 I4=13 I5=4) I2=30064771120", insertOne("if-index", 1));
    EXPECT_EQ("C1(I1=7 S2='r-uint32' I3=16 I4=13 I5=7) I16=30064771120", insertOne("r-uint32", 1));
    EXPECT_EQ("C1(I1=7 S2='if-index' I3=2 I4=13 I5=0) I2=30064771120", insertOne("if-index", 2)) << "a key, but not 1";
}

TEST_F(LeafTest, NumbersOfAFieldAttributeAreCutToSixteenBits)
{
    GpbYangLeaf *leaf = m_yang.leaf(m_interface, "big-number", 0x12345);
    EXPECT_EQ(0u, insert(1));
    EXPECT_EQ("C1(I1=9029 S2='big-number' I3=4464 I4=13 I5=0)", describe(childAt(childAt(m_tree.get(), 0), 3)));
    EXPECT_EQ("I70000=296352743472", describe(childAt(m_tree.get(), 1))) << "the low 8 bits in the value";
    leaf->uiFieldId = 0;
}

TEST_F(LeafTest, WithoutCallbackAnIntegerLeafCarriesItsPairAndAStringLeafItsText)
{
    m_interface->uiClassId = 0x1234;
    m_yang.leaf(m_interface, "if-index", 3);
    m_yang.leaf(m_interface, "if-name", 4);
    EXPECT_EQ(0u, insert(1));
    EXPECT_EQ(0x300001234u, childAt(m_tree.get(), 1)->value);
    EXPECT_EQ("S1='1234.4'", describe(childAt(m_tree.get(), 2)));
}

TEST_F(LeafTest, AncestorsGiveTheirKeysOnly)
{
    m_yang.leaf(m_interface, "if-index", 3, 1);
    m_yang.leaf(m_interface, "if-name", 4, 0);
    m_yang.leaf(m_interface, "f-bool", 5, 0xFFFFFFFF);
    for (const uint32_t allLeaves : {0U, 2U})
    {
        m_tree.reset(GPBLIB_RDMI_CreateRoot(kModuleId, "t"));
        EXPECT_EQ(0u, insert(allLeaves));
        EXPECT_EQ(GPB_OBJNODE_INTLEAF, childAt(m_tree.get(), 1)->nodeType);
        EXPECT_EQ(8u, childAt(m_tree.get(), 2)->id);
        EXPECT_EQ(nullptr, childAt(m_tree.get(), 3));
    }
}

TEST_F(LeafTest, LeavesThatAreNotInTheMessageAreLeftOut)
{
    m_yang.leaf(m_interface, "no-such-leaf", 3);
    m_yang.leaf(m_interface, "If-Index", 3);
    m_yang.leaf(m_interface, "if_index", 3);
    EXPECT_EQ(0u, insert(1));
    EXPECT_LOG(log(), "1: insert (interface) leaf node (field count 22) begin",
               "1: protofile has not this field = no-such-leaf", "1: protofile has not this field = If-Index",
               "1: Convert node(interface/if_index) : (0x0, 0) ==> (0x30, 3) ", "1: insert leaf node (if_index)",
               "1: insert (interface) leaf node end");
}

TEST_F(LeafTest, ALeafWithoutFieldIdIsLeftOutUnlessItIsANotificationParameter)
{
    m_yang.leaf(m_interface, "if-index", 0);
    EXPECT_EQ(0u, insert(1));
    EXPECT_LOG(log(), "1: insert (interface) leaf node (field count 22) begin",
               "1: this field id=0, name=if-index, need not to insert into gpb template",
               "1: insert (interface) leaf node end");
    EXPECT_EQ(nullptr, childAt(m_tree.get(), 1));
    useNameMap();
    m_host.onName = [](const char *, GpbCidFid *out)
    {
        *out = {0x99, 8, 0, {0, 0}};
        return 0U;
    };
    EXPECT_EQ(0u, insert(1));
    EXPECT_EQ("I2=34359738521", describe(childAt(m_tree.get(), 1)));
}

TEST_F(LeafTest, AnEmptyVectorIsSuccessAndNoVectorIsNot)
{
    EXPECT_EQ(1u, insert(1));
    EXPECT_LOG(log(), "1: insert (interface) leaf node (field count 22) begin");
    m_yang.emptyLeafVector(m_interface);
    EXPECT_EQ(0u, insert(1));
    EXPECT_LOG(log(), "1: insert (interface) leaf node (field count 22) begin", "1: insert (interface) leaf node end");
}

TEST_F(LeafTest, ALeafWithoutNameFailsTheInsertion)
{
    m_yang.leaf(m_interface, "x", 1)->pcName = nullptr;
    EXPECT_EQ(1u, insert(1));
    EXPECT_LOG(log(), "1: insert (interface) leaf node (field count 22) begin");
}

TEST_F(LeafTest, NullArgumentsFail)
{
    m_yang.leaf(m_interface, "if-index", 3);
    const auto *type = message(kInterfaceMessage);
    ObjTree tree = m_tree.get();
    EXPECT_EQ(1u, GPBLIB_InsertLeafNodeInfo(nullptr, type, tree, tree, 1, context()));
    EXPECT_EQ(1u, GPBLIB_InsertLeafNodeInfo(m_interface, nullptr, tree, tree, 1, context()));
    EXPECT_EQ(1u, GPBLIB_InsertLeafNodeInfo(m_interface, type, tree, nullptr, 1, context()));
    EXPECT_EQ(1u, GPBLIB_InsertLeafNodeInfo(m_interface, type, tree, tree, 1, nullptr));
    const GpbLeafFill record = fill(1);
    EXPECT_EQ(1u, GPBLIB_FillLeafAttr(nullptr, m_interface, &record));
    EXPECT_EQ(1u, GPBLIB_FillLeafAttr(context(), nullptr, &record));
    EXPECT_EQ(1u, GPBLIB_FillLeafAttr(context(), m_interface, nullptr));
    EXPECT_EQ(1u, GPBLIB_FillCaseLeafAttr(nullptr, m_interface, &record));
    EXPECT_EQ(1u, GPBLIB_FillCaseLeafAttr(context(), m_interface, nullptr));
    EXPECT_EQ(0u, GPBLIB_FillCaseLeafAttr(context(), nullptr, &record)) << "no children, no cases";
    EXPECT_EQ("", log().take());
}

TEST_F(LeafTest, TheNameOfALeafIsLookedUpWithUpTo255Characters)
{
    const GpbYangLeaf *leaf = m_yang.leaf(m_interface, std::string(300, 'x'), 1);
    const google::protobuf::FieldDescriptor *found = nullptr;
    load("long", "syntax = \"proto3\"; message M { uint32 " + std::string(255, 'x') + " = 1; }");
    EXPECT_EQ(0u, GPBLIB_CheckYangLeafInProtobuf(file("long")->message_type(0), leaf, &found, context()));
    EXPECT_EQ(file("long")->message_type(0)->field(0), found) << "the name is cut";
}

TEST_F(LeafTest, AFieldIsFoundOrReportedAsMissing)
{
    const GpbYangLeaf *leaf = m_yang.leaf(m_interface, "if-name", 1);
    const google::protobuf::FieldDescriptor *found = nullptr;
    EXPECT_EQ(0u, GPBLIB_CheckYangLeafInProtobuf(message(kInterfaceMessage), leaf, &found, context()));
    EXPECT_EQ(field("if_name"), found);
    EXPECT_EQ("", log().take());
    found = nullptr;
    const std::string line = "1: protofile has not this field = if-name";
    EXPECT_EQ(GPB_YANG_LEAF_NOT_IN_MESSAGE,
              GPBLIB_CheckYangLeafInProtobuf(message("ifm.Ifm.Interfaces.Interface.Empty"), leaf, &found, context()));
    EXPECT_LOG(log(), line);
    EXPECT_EQ(1u, GPBLIB_CheckYangLeafInProtobuf(nullptr, leaf, &found, context()));
    EXPECT_EQ("", log().take());
    EXPECT_EQ(nullptr, found);
    EXPECT_EQ(1u, GPBLIB_CheckYangLeafInProtobuf(message(kInterfaceMessage), nullptr, &found, context()));
    EXPECT_EQ(1u, GPBLIB_CheckYangLeafInProtobuf(message(kInterfaceMessage), leaf, nullptr, context()));
}

TEST_F(LeafTest, ATargetGetsTheLeavesOfItsCases)
{
    m_yang.leaf(m_interface, "if-index", 1);
    GpbYangNode *choice = m_yang.node(m_interface, "mode", 0x90, GPB_YANG_CHOICE);
    GpbYangNode *access = m_yang.node(choice, "access", 0x91, GPB_YANG_CASE);
    m_yang.leaf(access, "vlan", 2);
    m_yang.node(choice, "container", 0x92); // passed over
    GpbYangNode *trunk = m_yang.node(choice, "trunk", 0x93, GPB_YANG_CASE);
    m_yang.leaf(trunk, "pvid", 3);
    GpbYangNode *sub = m_yang.node(trunk, "sub", 0x94, GPB_YANG_CHOICE);
    GpbYangNode *tagged = m_yang.node(sub, "tagged", 0x95, GPB_YANG_CASE);
    m_yang.leaf(tagged, "tag", 4);
    const GpbLeafFill record = fill(1);
    EXPECT_EQ(0u, GPBLIB_FillLeafAttr(context(), m_interface, &record));
    EXPECT_EQ("R0(C65535(I2=0 S3='t' I4=0 C1(I1=1 S2='if-index' I3=2 I4=13 I5=0)"
              " C1(I1=0 S2='access' I3=20 I4=11 I5=0) C1(I1=0 S2='trunk' I3=21 I4=11 I5=0))"
              " I2=4294967344"
              " C20(C65535(I2=145 S3='access' I4=2 C1(I1=2 S2='vlan' I3=1 I4=13 I5=0)) I1=8589934737)"
              " C21(C65535(I2=147 S3='trunk' I4=2 C1(I1=3 S2='pvid' I3=1 I4=13 I5=0)"
              " C1(I1=0 S2='tagged' I3=2 I4=11 I5=0)) I1=12884902035"
              " C2(C65535(I2=149 S3='tagged' I4=2 C1(I1=4 S2='tag' I3=1 I4=13 I5=0)) I1=17179869333)))",
              describe(m_tree.get()));
}

TEST_F(LeafTest, OnlyOneMeansAllLeaves)
{
    m_yang.leaf(m_interface, "if-index", 1);
    GpbYangNode *access = m_yang.node(m_interface, "mode_access", 0x91, GPB_YANG_CASE);
    m_yang.leaf(access, "vlan", 2);
    for (const uint32_t allLeaves : {0U, 2U, 0xFFFFFFFFU})
    {
        const GpbLeafFill record = fill(allLeaves);
        EXPECT_EQ(0u, GPBLIB_FillLeafAttr(context(), m_interface, &record));
        EXPECT_EQ("R0(C65535(I2=0 S3='t' I4=0))", describe(m_tree.get())) << allLeaves;
    }
}

TEST_F(LeafTest, ChoicesMayBeNestedDeeply)
{
    // The walk recurses as deep as the host's tree goes; no schema comes near this.
    GpbYangNode *node = m_interface;
    for (int i = 0; i < 2000; ++i)
    {
        node = m_yang.node(node, "mode", 0, GPB_YANG_CHOICE);
    }
    GpbYangNode *access = m_yang.node(node, "access", 0x91, GPB_YANG_CASE);
    m_yang.leaf(access, "vlan", 2);
    const GpbLeafFill record = fill(1);
    EXPECT_EQ(0u, GPBLIB_FillLeafAttr(context(), m_interface, &record));
    EXPECT_EQ("C20(C65535(I2=145 S3='access' I4=2 C1(I1=2 S2='vlan' I3=1 I4=13 I5=0)) I1=8589934737)",
              describe(childAt(m_tree.get(), 1)));
}

TEST_F(LeafTest, AnAncestorGetsNoCases)
{
    GpbYangNode *choice = m_yang.node(m_interface, "mode", 0, GPB_YANG_CHOICE);
    m_yang.node(choice, "access", 0, GPB_YANG_CASE);
    const GpbLeafFill record = fill(0);
    EXPECT_EQ(0u, GPBLIB_FillLeafAttr(context(), m_interface, &record));
    EXPECT_EQ(nullptr, childAt(m_tree.get(), 1));
}

TEST_F(LeafTest, ACaseThatTheMessageDoesNotHaveIsPassedOver)
{
    GpbYangNode *choice = m_yang.node(m_interface, "mode", 0, GPB_YANG_CHOICE);
    m_yang.node(choice, "hybrid", 0, GPB_YANG_CASE);
    m_yang.node(choice, "trunk", 0, GPB_YANG_CASE);
    const GpbLeafFill record = fill(1);
    EXPECT_EQ(0u, GPBLIB_FillLeafAttr(context(), m_interface, &record));
    EXPECT_LOG(log(), "0: failed to find gpb node mode_hybrid");
    EXPECT_EQ(21u, childAt(m_tree.get(), 1)->id);
}

TEST_F(LeafTest, ACaseWithoutMessageOfItsOwnLooksInThatOfTheNode)
{
    GpbYangNode *choice = m_yang.node(m_interface, "mode", 0, GPB_YANG_CHOICE);
    GpbYangNode *scalar = m_yang.node(choice, "scalar", 0x96, GPB_YANG_CASE);
    m_yang.leaf(scalar, "if-index", 3);
    const GpbLeafFill record = fill(1);
    EXPECT_EQ(0u, GPBLIB_FillLeafAttr(context(), m_interface, &record));
    EXPECT_EQ("C22(C65535(I2=150 S3='scalar' I4=2 C1(I1=3 S2='if-index' I3=2 I4=13 I5=0)) I2=12884902038)",
              describe(childAt(m_tree.get(), 1)));
}

TEST_F(LeafTest, CasesInOddPlacesFailInTheirOrder)
{
    const GpbLeafFill record = fill(1);
    GpbYangNode *orphan = m_yang.node(nullptr, "orphan", 0, GPB_YANG_CASE);
    EXPECT_EQ(1u, GPBLIB_FillCaseLeafAttr(context(), orphan, &record));
    EXPECT_LOG(log(), "0: Gpb switch name = orphan failed");

    GpbYangNode *choice = m_yang.node(m_interface, "mode", 0, GPB_YANG_CHOICE);
    GpbYangNode *access = m_yang.node(choice, "access", 0x97, GPB_YANG_CASE);
    m_yang.leaf(access, "x", 1)->pcName = nullptr;
    m_yang.leaf(access, "vlan", 2);
    EXPECT_EQ(1u, GPBLIB_FillLeafAttr(context(), m_interface, &record));
    EXPECT_LOG(log(), "1: insert (access) leaf node (field count 3) begin",
               "0: 2.failed to insert leaf node to sub container", "0: 2.failed to insert leaf node to sub container",
               "0: Failed to insert case leaf node to sub container");
}

TEST_F(LeafTest, ACaseThatCannotBeMadeFails)
{
    GpbYangNode *choice = m_yang.node(m_interface, "mode", 0, GPB_YANG_CHOICE);
    m_yang.node(choice, "access", 0x97, GPB_YANG_CASE);
    const GpbLeafFill record = fill(1);
    GpbHost_FailCall(GPB_HOST_MALLOC, 1);
    EXPECT_EQ(1u, GPBLIB_FillLeafAttr(context(), m_interface, &record));
    EXPECT_LOG(log(), "0: failed to Create Container node[ClassId=97, ClassName=access].",
               "0: failed to fill Container fieldAttr", "0: Failed to insert case leaf node to sub container");
}

TEST_F(LeafTest, ALeafWhoseNodeCannotBeMadeIsLeftOut)
{
    m_yang.leaf(m_interface, "if-index", 3);
    m_yang.leaf(m_interface, "if-name", 4);
    GpbHost_FailCall(GPB_HOST_MALLOC, 1);
    EXPECT_EQ(0u, insert(1));
    EXPECT_EQ("R0(C65535(I2=0 S3='t' I4=0 C1(I1=4 S2='if-name' I3=1 I4=9 I5=0)) S1='30.4')", describe(m_tree.get()));
}

TEST_F(LeafTest, ALeafWithoutFieldAttributeIsReported)
{
    m_yang.leaf(m_interface, "if-index", 0x103);
    m_yang.leaf(m_interface, "if-name", 0x104);
    GpbHost_FailCall(GPB_HOST_MALLOC, 2); // behind the leaf's own node
    EXPECT_EQ(0u, insert(1));
    EXPECT_EQ("0: failed to AddFieldAttribute [fid=259, fname=if-index] of container[classid=48, nodename=interface],",
              log().texts()[2]);
    EXPECT_EQ(nullptr, childAt(m_tree.get(), 1)->pFieldAttr);
    log().clear();
    GpbHost_FailCall(GPB_HOST_MALLOC, 11); // 8 for the first leaf, then text and node of the second
    EXPECT_EQ(0u, insert(1));
    EXPECT_EQ("0: failed to AddFieldAttribute [fid=260, fname=if-name] of container[classid=48, nodename=interface],",
              log().texts()[4]);
}

TEST_F(LeafTest, NodesOfLeavesNeedTheirArguments)
{
    const GpbYangLeaf *leaf = m_yang.leaf(m_interface, "if-index", 3);
    const GpbCidFid ids = {};
    ObjTree t = m_tree.get();
    const auto *number = field("if_index");
    const auto *text = field("if_name");
    for (const auto create : {GPBLIB_CreateNode, GPBLIB_CreateIntegerNode, GPBLIB_CreateStrNode})
    {
        EXPECT_EQ(nullptr, create(nullptr, t, number, &ids, t, 1, leaf, context()));
        EXPECT_EQ(nullptr, create(m_interface, nullptr, number, &ids, t, 1, leaf, context()));
        EXPECT_EQ(nullptr, create(m_interface, t, nullptr, &ids, t, 1, leaf, context()));
        EXPECT_EQ(nullptr, create(m_interface, t, number, &ids, nullptr, 1, leaf, context()));
        EXPECT_EQ(nullptr, create(m_interface, t, number, &ids, t, 1, nullptr, context()));
        EXPECT_EQ(nullptr, create(m_interface, t, number, &ids, t, 1, leaf, nullptr));
    }
    EXPECT_EQ(nullptr, GPBLIB_CreateIntegerNode(m_interface, t, number, nullptr, t, 1, leaf, context()));
    EXPECT_EQ(nullptr, GPBLIB_FieldAttributeAdd(context(), t, t, nullptr, number, "n", 1, 0));
    EXPECT_EQ(nullptr, GPBLIB_FieldAttributeAdd(context(), t, t, t, nullptr, "n", 1, 0));
    EXPECT_EQ(nullptr, GPBLIB_FieldAttributeAdd(context(), t, t, t, number, nullptr, 1, 0));
    EXPECT_EQ(nullptr, GPBLIB_FieldAttributeAdd(context(), t, nullptr, t, number, "n", 1, 0));
    EXPECT_EQ(nullptr, childAt(t, 1));
    EXPECT_NE(nullptr, GPBLIB_CreateStrNode(m_interface, t, text, nullptr, t, 1, leaf, context()));
}

} // namespace
} // namespace gpbtest
