// The nodes on a path: skipped nodes, choices, cases, and names that lead nowhere.
#include <google/protobuf/descriptor.h>

#include "platform/yos.h"
#include "yang_support.h"

namespace gpbtest
{
namespace
{

// What a class attribute says, without the fields that follow it.
std::string names(const ObjNode *node)
{
    std::string text(reinterpret_cast<const char *>(childAt(node->pNodeAttr, 1)->pucString),
                     childAt(node->pNodeAttr, 1)->objLen);
    for (size_t i = 1; const ObjNode *child = childAt(node, i); ++i)
    {
        if (child->nodeType == GPB_OBJNODE_CONTAIN)
        {
            text += "(" + std::to_string(child->id) + ":" + names(child) + ")";
        }
    }
    return text;
}

class PathTest : public TemplateFixture
{
protected:
    std::string storedNames(uint32_t classId) const
    {
        const GpbTemplateInfo *info = GPBLIB_GetGpbTemplate(classId, context());
        return info == nullptr ? "none" : names(info->pstObjTree);
    }

    // The lines between the beginning of a walk and its failure.
    std::string failureOf(const GpbYangNode *node)
    {
        log().clear();
        EXPECT_EQ(1u, GRBLIB_ProcSubTreeNode(context(), node, file("ifm")));
        std::vector<std::string> lines = log().texts();
        log().clear();
        EXPECT_GE(lines.size(), 3u);
        EXPECT_EQ("1: process subtree node begin", lines.front());
        EXPECT_EQ("1: failed to update Gpb template", lines.back());
        return joinLines({lines.begin() + 2, lines.end() - 1});
    }

    std::string nameOf(const GpbYangNode *node, uint32_t ret, uint8_t depth)
    {
        char name[GPB_TEMPLATE_NODE_NAME_SIZE + 1] = {};
        name[GPB_TEMPLATE_NODE_NAME_SIZE] = '#';
        uint8_t found = 0;
        EXPECT_EQ(ret, GPBLIB_YangContainerNodeName2Protobuf(context(), node, name, &found));
        EXPECT_EQ(depth, found);
        EXPECT_EQ('#', name[GPB_TEMPLATE_NODE_NAME_SIZE]);
        name[GPB_TEMPLATE_NODE_NAME_SIZE] = '\0';
        return name;
    }
};

TEST_F(PathTest, SkippedNodesHaveNoMessage)
{
    GpbYangNode *skipped = m_yang.node(m_ifm, "grouping", 0x21);
    skipped->ucSkip = 1;
    GpbYangNode *below = m_yang.node(skipped, "interfaces", 0x22);
    EXPECT_EQ(0u, update(below));
    EXPECT_EQ("ifm(3:interfaces)", storedNames(0x22));
    skipped->ucSkip = 2; // only 1 skips
    GpbYangNode *other = m_yang.node(skipped, "interfaces", 0x23);
    EXPECT_EQ("0: protofile has not this node = grouping\n0: protofile has not this node = grouping\n",
              failureOf(other));
}

TEST_F(PathTest, ATargetIsLeftOutOfTheStackOnlyByItsKind)
{
    GpbYangNode *choice = m_yang.node(m_interface, "mode", 0, GPB_YANG_CHOICE);
    GpbYangNode *access = m_yang.node(choice, "access", 0x31, GPB_YANG_CASE);
    m_yang.leaf(access, "vlan", 3);
    EXPECT_EQ(0u, update(access));
    EXPECT_EQ("ifm(3:interfaces(1:interface(20:access)))", storedNames(0x31));
    const ObjNode *root = GPBLIB_GetGpbTemplate(0x31, context())->pstObjTree;
    const ObjNode *caseNode = childAt(childAt(childAt(root, 1), 1), 1);
    EXPECT_EQ("C20(C65535(I2=49 S3='access' I4=2 C1(I1=3 S2='vlan' I3=1 I4=13 I5=0)) I1=12884901937)",
              describe(caseNode));
}

TEST_F(PathTest, AChoiceRightUnderTheTopNodeIsPassedOver)
{
    GpbYangNode *choice = m_yang.node(m_ifm, "any", 0x24, GPB_YANG_CHOICE);
    GpbYangNode *below = m_yang.node(choice, "interfaces", 0x25);
    EXPECT_EQ(0u, update(below));
    EXPECT_EQ("ifm(3:interfaces)", storedNames(0x25));
}

TEST_F(PathTest, ChoicesInChoicesArePassedOver)
{
    GpbYangNode *choice = m_yang.node(m_interface, "outer", 0, GPB_YANG_CHOICE);
    GpbYangNode *skipped = m_yang.node(choice, "skipped", 0);
    skipped->ucSkip = 1;
    GpbYangNode *inner = m_yang.node(skipped, "mode", 0, GPB_YANG_CHOICE);
    GpbYangNode *trunk = m_yang.node(inner, "trunk", 0x32, GPB_YANG_CASE);
    EXPECT_EQ(0u, update(trunk));
    EXPECT_EQ("ifm(3:interfaces(1:interface(21:trunk)))", storedNames(0x32));
}

TEST_F(PathTest, ANodeThatTheMessageDoesNotHaveFails)
{
    GpbYangNode *stranger = m_yang.node(m_interfaces, "no-such-node", 0x40);
    EXPECT_EQ("0: protofile has not this node = no-such-node\n0: protofile has not this node = no-such-node\n",
              failureOf(stranger));
    EXPECT_EQ("none", storedNames(0x40));
    GpbYangNode *below = m_yang.node(stranger, "interface", 0x41);
    EXPECT_EQ("0: protofile has not this node = no-such-node\n0: protofile has not this node = no-such-node\n",
              failureOf(below));
}

TEST_F(PathTest, ACaseIsReportedByItsFormedNameAndItsOwn)
{
    GpbYangNode *choice = m_yang.node(m_interface, "mode", 0, GPB_YANG_CHOICE);
    GpbYangNode *hybrid = m_yang.node(choice, "hybrid", 0x33, GPB_YANG_CASE);
    EXPECT_EQ("0: protofile has not this node = mode_hybrid\n0: protofile has not this node = hybrid\n",
              failureOf(hybrid));
}

TEST_F(PathTest, AFieldThatIsNoMessageEndsThePath)
{
    GpbYangNode *scalar = m_yang.node(m_ifm, "scalar", 0x50);
    EXPECT_EQ(0u, update(scalar)) << "without leaves there is nothing to look for in it";
    EXPECT_EQ("ifm(4:scalar)", storedNames(0x50));
    GpbYangNode *below = m_yang.node(scalar, "below", 0x51);
    EXPECT_EQ("0: protofile node abnormal = below\n0: protofile has not this node = below\n", failureOf(below));
    GpbYangNode *choice = m_yang.node(scalar, "choice", 0, GPB_YANG_CHOICE);
    GpbYangNode *inChoice = m_yang.node(choice, "below", 0x52);
    EXPECT_EQ("0: protofile node abnormal = below\n0: protofile has not this node = below\n", failureOf(inChoice));
    m_yang.leaf(scalar, "leaf", 1);
    EXPECT_EQ("0: 2.failed to insert leaf node to sub container\n0: 2.failed to insert leaf node to sub container\n",
              failureOf(scalar));
}

TEST_F(PathTest, TheNameOfANodeIsItsOwnOrThatOfItsCase)
{
    EXPECT_EQ("interface", nameOf(m_interface, 0, 3));
    GpbYangNode *choice = m_yang.node(m_interface, "mode-x", 0, GPB_YANG_CHOICE);
    EXPECT_EQ("mode-x", nameOf(choice, 0, 4));
    EXPECT_EQ("mode-x_Access", nameOf(m_yang.node(choice, "Access", 0, GPB_YANG_CASE), 0, 5));
    EXPECT_EQ("plain", nameOf(m_yang.node(choice, "plain", 0, 3), 0, 5));
    EXPECT_EQ("", log().take());
}

TEST_F(PathTest, ANameHasUpTo254Characters)
{
    const std::string longest(254, 'n');
    EXPECT_EQ(longest, nameOf(m_yang.node(nullptr, longest, 0), 0, 1));
    GpbYangNode *tooLong = m_yang.node(nullptr, longest + "n", 0);
    EXPECT_EQ("", nameOf(tooLong, 1, 1));
    EXPECT_LOG(log(), "0: Gpb switch name = " + longest + "n failed");
    GpbYangNode *parent = m_yang.node(nullptr, std::string(200, 'p'), 0);
    EXPECT_EQ(254u, nameOf(m_yang.node(parent, std::string(53, 'c'), 0, GPB_YANG_CASE), 0, 2).size());
    EXPECT_EQ("", nameOf(m_yang.node(parent, std::string(54, 'c'), 0, GPB_YANG_CASE), 1, 2));
    EXPECT_LOG(log(), "0: Gpb switch name = " + std::string(54, 'c') + " failed");
}

TEST_F(PathTest, ANameThatCannotBeFormedIsFoundNowhere)
{
    GpbYangNode *orphan = m_yang.node(nullptr, "access", 0, GPB_YANG_CASE);
    EXPECT_EQ("", nameOf(orphan, 1, 1));
    EXPECT_LOG(log(), "0: Gpb switch name = access failed");
    EXPECT_EQ(nullptr, GPBLIB_FindCntrFieldDesc(context(), orphan, message("ifm.Ifm")));
    EXPECT_LOG(log(), "0: Gpb switch name = access failed", "0: protofile has not this node = ");
    orphan->pcName = nullptr;
    EXPECT_EQ("", nameOf(orphan, 1, 1));
    EXPECT_LOG(log(), "0: Gpb switch name = (null) failed");
}

TEST_F(PathTest, TheDepthIsKeptInEightBits)
{
    GpbYangNode *node = m_yang.node(nullptr, "n", 0);
    for (int depth = 2; depth <= 255; ++depth)
    {
        node = m_yang.node(node, "n", 0);
    }
    EXPECT_EQ("n", nameOf(node, 0, 255));
    node = m_yang.node(node, "n", 0);
    EXPECT_EQ("n", nameOf(node, 0, 0));
    EXPECT_EQ("n", nameOf(m_yang.node(node, "n", 0), 0, 1));
}

TEST_F(PathTest, TheDepthIsTheSuffixOfNamesThatClash)
{
    load("clash", "syntax = \"proto3\"; message Top { Sub name2 = 1; message Sub { uint32 leaf = 1; } }");
    GpbYangNode *top = m_yang.node(nullptr, "top", 1);
    GpbYangNode *node = m_yang.node(top, "name", 2);
    EXPECT_EQ(0u, GPBLIB_UpdateProtoFileClassInfo(context(), "clash", 0, "/p", node));
    EXPECT_EQ("top(1:name)", storedNames(2));
}

TEST_F(PathTest, AContainersOwnClassIdIsNotMapped)
{
    useClassMap();
    m_host.onClass = [](bool, const GpbCidFid &key, GpbCidFid *out)
    {
        out->uiClassId = key.uiClassId + 0x1000;
        return 0U;
    };
    EXPECT_EQ(0u, update(m_interfaces));
    EXPECT_EQ("R0(C65535(I2=0 S3='ifm' I4=0 C1(I1=0 S2='interfaces' I3=3 I4=11 I5=0))"
              " C3(C65535(I2=32 S3='interfaces' I4=0)))",
              stored(0x1020));
}

TEST_F(PathTest, AContainerThatCannotBeMadeIsReported)
{
    const TreePtr tree(GPBLIB_RDMI_CreateRoot(kModuleId, "ifm"));
    const auto *interfaces = message("ifm.Ifm")->FindFieldByName("interfaces");
    GpbHost_FailCall(GPB_HOST_MALLOC, 1);
    EXPECT_EQ(nullptr, GPBLIB_CreateGpbChildObjNode(context(), tree.get(), tree.get(), interfaces, m_interfaces));
    EXPECT_LOG(log(), "0: failed to Create Container node[ClassId=20, ClassName=interfaces].");
    GpbHost_FailCall(GPB_HOST_MALLOC, 7); // behind the container and its node attribute
    EXPECT_EQ(nullptr, GPBLIB_CreateGpbChildObjNode(context(), tree.get(), tree.get(), interfaces, m_interfaces));
    EXPECT_LOG(log(), "0: failed to Create Container fieldAttr");
    EXPECT_EQ("R0(C65535(I2=0 S3='ifm' I4=0) C3(C65535(I2=32 S3='interfaces' I4=0)))", describe(tree.get()))
        << "the container stays";
    EXPECT_NE(nullptr, GPBLIB_CreateGpbChildObjNode(context(), tree.get(), tree.get(), interfaces, m_interfaces));
}

TEST_F(PathTest, AContainerWithoutParentOrNameIsReported)
{
    const TreePtr tree(GPBLIB_RDMI_CreateRoot(kModuleId, "ifm"));
    const auto *interfaces = message("ifm.Ifm")->FindFieldByName("interfaces");
    EXPECT_EQ(nullptr, GPBLIB_CreateGpbChildObjNode(context(), tree.get(), nullptr, interfaces, m_interfaces));
    EXPECT_LOG(log(), "0: failed to Create Container node[ClassId=20, ClassName=interfaces].");
    EXPECT_EQ(nullptr, childAt(tree.get(), 1)) << "nothing ends up below the root";
    m_interfaces->pcName = nullptr;
    EXPECT_EQ(nullptr, GPBLIB_CreateGpbChildObjNode(context(), tree.get(), tree.get(), interfaces, m_interfaces));
    EXPECT_LOG(log(), "0: failed to Create Container node[ClassId=20, ClassName=(null)].");
}

TEST_F(PathTest, ANullOnTheStackIsAFailedPop)
{
    const TreePtr tree(GPBLIB_RDMI_CreateRoot(kModuleId, "ifm"));
    GpbTemplateInfo info = {1, tree.get()};
    void *stack = YOS_CreateStackByHandle(nullptr, 1);
    YOS_Push(stack, nullptr);
    EXPECT_EQ(1u, GPBLIB_ProcSubTreeNodeUpdateGpbTemplate(context(), &info, m_ifm, stack, message("ifm.Ifm")));
    EXPECT_LOG(log(), "0: failed to pop container, ret = 0x0");
    YOS_DeleteStack(stack);
}

TEST_F(PathTest, NullArgumentsFail)
{
    char name[GPB_TEMPLATE_NODE_NAME_SIZE];
    uint8_t depth = 0;
    const TreePtr tree(GPBLIB_RDMI_CreateRoot(kModuleId, "ifm"));
    GpbTemplateInfo info = {1, tree.get()};
    EXPECT_EQ(1u, GPBLIB_ProcSubTreeNodeUpdateGpbTemplate(nullptr, &info, m_ifm, &info, nullptr));
    EXPECT_EQ(1u, GPBLIB_ProcSubTreeNodeUpdateGpbTemplate(context(), nullptr, m_ifm, &info, nullptr));
    EXPECT_EQ(1u, GPBLIB_ProcSubTreeNodeUpdateGpbTemplate(context(), &info, m_ifm, nullptr, nullptr));
    EXPECT_EQ(1u, GPBLIB_YangContainerNodeName2Protobuf(context(), nullptr, name, &depth));
    EXPECT_EQ(1u, GPBLIB_YangContainerNodeName2Protobuf(context(), m_ifm, nullptr, &depth));
    EXPECT_EQ(1u, GPBLIB_YangContainerNodeName2Protobuf(context(), m_ifm, name, nullptr));
    EXPECT_EQ(nullptr, GPBLIB_FindCntrFieldDesc(context(), nullptr, message("ifm.Ifm")));
    EXPECT_EQ("", log().take());
    EXPECT_EQ(nullptr, GPBLIB_FindCntrFieldDesc(context(), m_interfaces, nullptr));
    EXPECT_LOG(log(), "0: protofile node abnormal = interfaces");
    const auto *interfaces = message("ifm.Ifm")->FindFieldByName("interfaces");
    EXPECT_EQ(nullptr, GPBLIB_CreateGpbChildObjNode(context(), tree.get(), tree.get(), nullptr, m_interfaces));
    EXPECT_EQ(nullptr, GPBLIB_CreateGpbChildObjNode(context(), tree.get(), tree.get(), interfaces, nullptr));
}

TEST_F(PathTest, AnEmptyStackAddsNothing)
{
    const TreePtr tree(GPBLIB_RDMI_CreateRoot(kModuleId, "ifm"));
    GpbTemplateInfo info = {1, tree.get()};
    void *stack = YOS_CreateStackByHandle(nullptr, 1);
    EXPECT_EQ(0u, GPBLIB_ProcSubTreeNodeUpdateGpbTemplate(context(), &info, m_ifm, stack, message("ifm.Ifm")));
    YOS_DeleteStack(stack);
    EXPECT_EQ("", log().take());
}

using PathDeliberateOddityTest = PathTest;

TEST_F(PathDeliberateOddityTest, APassedOverNodeAtTheEndOfThePathFails)
{
    // It has no message to make a template of; the walk finds out by running out of nodes.
    GpbYangNode *skipped = m_yang.node(m_interfaces, "skipped", 0x60);
    skipped->ucSkip = 1;
    EXPECT_EQ(0u, failureOf(skipped).find("0: failed to pop container, ret = 0x"));
    GpbYangNode *choice = m_yang.node(m_interface, "mode", 0x61, GPB_YANG_CHOICE);
    EXPECT_EQ(0u, failureOf(choice).find("0: failed to pop container, ret = 0x"));
    GpbYangNode *topChoice = m_yang.node(m_ifm, "any", 0x62, GPB_YANG_CHOICE);
    EXPECT_EQ(0u, failureOf(topChoice).find("0: failed to pop container, ret = 0x"));
}

} // namespace
} // namespace gpbtest
