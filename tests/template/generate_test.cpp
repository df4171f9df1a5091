// Templates of classes: from the host's node to the stored tree, and every way in which that fails.
#include <google/protobuf/descriptor.h>

#include "platform/yos.h"
#include "platform/zmp.h"
#include "yang_support.h"

namespace gpbtest
{
namespace
{

constexpr const char *kInterfaceTemplate = "R0(C65535(I2=0 S3='ifm' I4=0"
                                           " C1(I1=5 S2='sys-name' I3=1 I4=9 I5=4)"
                                           " C1(I1=0 S2='interfaces' I3=3 I4=11 I5=0))"
                                           " S1='10.5'"
                                           " C3(C65535(I2=32 S3='interfaces' I4=0"
                                           " C1(I1=0 S2='interface' I3=1 I4=11 I5=1))"
                                           " C1(C65535(I2=48 S3='interface' I4=0"
                                           " C1(I1=1 S2='if-name' I3=1 I4=9 I5=4)"
                                           " C1(I1=2 S2='if-index' I3=2 I4=13 I5=0))"
                                           " S1='30.1' I2=8589934640)))";

class GenerateTest : public TemplateFixture
{
protected:
    void SetUp() override
    {
        TemplateFixture::SetUp();
        m_yang.leaf(m_ifm, "sys-name", 5, 1);
        m_yang.leaf(m_ifm, "sys-index", 6);
        m_yang.leaf(m_interface, "if-name", 1, 1);
        m_yang.leaf(m_interface, "if-index", 2);
    }
};

TEST_F(GenerateTest, AClassGetsItsTemplateWithKeysOfItsAncestors)
{
    EXPECT_EQ(0u, GPBLIB_UpdateProtoFileClassInfo(context(), "ifm", 7, "/ifm/interfaces/interface", m_interface));
    EXPECT_LOG(log(), "1: gpblib updates protofile class info begin (path=/ifm/interfaces/interface)",
               "1: Default class (interface) id (0x30).", "1: process subtree node begin",
               "1: Default class (interface) id (0x30).", "1: insert (ifm) leaf node (field count 4) begin",
               "1: Convert node(ifm/sys-name) : (0x0, 0) ==> (0x10, 5) ", "1: insert leaf node (sys-name)",
               "1: insert (ifm) leaf node end", "1: insert (interface) leaf node (field count 22) begin",
               "1: Convert node(interface/if-name) : (0x0, 0) ==> (0x30, 1) ", "1: insert leaf node (if-name)",
               "1: Convert node(interface/if-index) : (0x0, 0) ==> (0x30, 2) ", "1: insert leaf node (if-index)",
               "1: insert (interface) leaf node end", "1: process subtree node end",
               "1: gpblib updates protofile class info end (path=/ifm/interfaces/interface)");
    EXPECT_EQ(kInterfaceTemplate, stored(0x30));
    EXPECT_EQ("none", stored(0x10));
}

TEST_F(GenerateTest, TheNodesOfATemplateKnowTheirAttributes)
{
    ASSERT_EQ(0u, update(m_interface));
    const ObjNode *root = GPBLIB_GetGpbTemplate(0x30, context())->pstObjTree;
    const ObjNode *rootAttr = childAt(root, 0);
    EXPECT_EQ(rootAttr, root->pNodeAttr);
    EXPECT_EQ(childAt(rootAttr, 3), childAt(root, 1)->pFieldAttr) << "the key leaf";
    EXPECT_EQ(childAt(rootAttr, 4), childAt(root, 2)->pFieldAttr) << "the container";
    EXPECT_EQ(kModuleId, root->value);
    EXPECT_EQ(1u, childAt(root, 1)->gpbFlg);
}

TEST_F(GenerateTest, AKnownClassIsSuccessAndNothingChanges)
{
    ASSERT_EQ(0u, update(m_interface));
    const GpbTemplateInfo *first = GPBLIB_GetGpbTemplate(0x30, context());
    log().clear();
    GpbYangNode *other = m_yang.node(nullptr, "unheard-of", 0x30);
    EXPECT_EQ(0u, GPBLIB_UpdateProtoFileClassInfo(context(), "no-such-module", 0, "/p", other));
    EXPECT_LOG(log(), "1: gpblib updates protofile class info begin (path=/p)",
               "1: Default class (unheard-of) id (0x30).", "1: gpblib local has the same gpb template");
    EXPECT_EQ(first, GPBLIB_GetGpbTemplate(0x30, context()));
    EXPECT_EQ(kInterfaceTemplate, stored(0x30));
}

TEST_F(GenerateTest, SeveralClassesAreStoredSideBySide)
{
    EXPECT_EQ(0u, update(m_interface));
    EXPECT_EQ(0u, update(m_ifm));
    EXPECT_EQ(0u, update(m_interfaces));
    for (const uint32_t classId : {0x10U, 0x20U, 0x30U})
    {
        ASSERT_NE(nullptr, GPBLIB_GetGpbTemplate(classId, context()));
        EXPECT_EQ(classId, GPBLIB_GetGpbTemplate(classId, context())->uiClassId);
    }
    EXPECT_EQ(nullptr, GPBLIB_GetGpbTemplate(0x40, context()));
    EXPECT_EQ(nullptr, GPBLIB_GetGpbTemplate(0x10, nullptr));
}

TEST_F(GenerateTest, UnloadingTheProtoFilesEndsTheTemplates)
{
    EXPECT_EQ(nullptr, GPBLIB_GetGpbTemplate(0x30, context())) << "an empty store";
    ASSERT_EQ(0u, update(m_interface));
    GPBLIB_UnloadProtoFile(context(), "ifm");
    EXPECT_NE(nullptr, GPBLIB_GetGpbTemplate(0x30, context()));
    GPBLIB_UnloadProtoFileAll(context(), 0);
    EXPECT_EQ(nullptr, GPBLIB_GetGpbTemplate(0x30, context()));
}

TEST_F(GenerateTest, ATopNodeWithAChildGivesItsKeysOnly)
{
    EXPECT_EQ(0u, update(m_ifm));
    EXPECT_EQ("R0(C65535(I2=0 S3='ifm' I4=0 C1(I1=5 S2='sys-name' I3=1 I4=9 I5=4)) S1='10.5')", stored(0x10));
}

TEST_F(GenerateTest, ATopNodeWithoutChildrenGivesAllItsLeaves)
{
    GpbYangNode *top = m_yang.node(nullptr, "ifm", 0x11);
    m_yang.leaf(top, "sys-name", 5, 1);
    m_yang.leaf(top, "sys-index", 6);
    EXPECT_EQ(0u, update(top));
    EXPECT_EQ("R0(C65535(I2=0 S3='ifm' I4=0 C1(I1=5 S2='sys-name' I3=1 I4=9 I5=4)"
              " C1(I1=6 S2='sys-index' I3=2 I4=13 I5=0)) S1='11.5' I2=25769803793)",
              stored(0x11));
}

TEST_F(GenerateTest, ATopNodeGivesNoCases)
{
    GpbYangNode *top = m_yang.node(nullptr, "ifm", 0x11);
    m_yang.node(top, "interfaces", 0, GPB_YANG_CASE);
    EXPECT_EQ(0u, update(top));
    EXPECT_EQ("R0(C65535(I2=0 S3='ifm' I4=0))", stored(0x11));
}

TEST_F(GenerateTest, NullArgumentsFailInSilence)
{
    EXPECT_EQ(1u, GPBLIB_UpdateProtoFileClassInfo(nullptr, "ifm", 0, "/p", m_interface));
    EXPECT_EQ(1u, GPBLIB_UpdateProtoFileClassInfo(context(), nullptr, 0, "/p", m_interface));
    EXPECT_EQ(1u, GPBLIB_UpdateProtoFileClassInfo(context(), "ifm", 0, "/p", nullptr));
    EXPECT_EQ(1u, GRBLIB_ProcSubTreeNode(nullptr, m_interface, file("ifm")));
    EXPECT_EQ(1u, GRBLIB_ProcSubTreeNode(context(), nullptr, file("ifm")));
    EXPECT_EQ(nullptr, GPBLIB_ProcSubTreeNodeCreateGpbTemplate(nullptr, m_ifm, m_ifm, message("ifm.Ifm")));
    EXPECT_EQ(nullptr, GPBLIB_ProcSubTreeNodeCreateGpbTemplate(context(), nullptr, m_ifm, message("ifm.Ifm")));
    EXPECT_EQ(nullptr, GPBLIB_ProcSubTreeNodeCreateGpbTemplate(context(), m_ifm, nullptr, message("ifm.Ifm")));
    EXPECT_EQ(nullptr, GPBLIB_ProcSubTreeNodeGetDestriptor(context(), file("ifm"), nullptr));
    EXPECT_EQ("", log().take());
}

TEST_F(GenerateTest, AMissingPathIsShownAsMissing)
{
    EXPECT_EQ(0u, GPBLIB_UpdateProtoFileClassInfo(context(), "ifm", 0, nullptr, m_ifm));
    EXPECT_EQ("1: gpblib updates protofile class info begin (path=(null))", log().texts().front());
}

TEST_F(GenerateTest, ARefusedClassGivesTheCallbacksCode)
{
    useClassMap();
    m_host.onClass = [](bool, const GpbCidFid &, GpbCidFid *) { return 77U; };
    EXPECT_EQ(77u, update(m_interface));
    EXPECT_LOG(log(), "1: gpblib updates protofile class info begin (path=/p)",
               "0: failed to convert dom cid=0x30 to dim cid, ret=77, nodename=interface",
               "1: [GPBLIB_GetClassIdFromYangNode] failed");
}

TEST_F(GenerateTest, AClassRefusedTheSecondTimeLeavesNothing)
{
    useClassMap();
    m_host.onClass = [this](bool, const GpbCidFid &, GpbCidFid *) { return m_host.asked.size() == 2 ? 5U : 0U; };
    EXPECT_EQ(1u, update(m_interface));
    EXPECT_LOG(log(), "1: gpblib updates protofile class info begin (path=/p)",
               "1: Class (interface) map: from 0x30 to 0x0.", "1: process subtree node begin",
               "0: failed to convert dom cid=0x30 to dim cid, ret=5, nodename=interface",
               "1: [GPBLIB_GetClassIdFromYangNode] failed", "1: failed to pop node from stack",
               "0: failed to generate gpb template");
    EXPECT_EQ("none", stored(0));
}

TEST_F(GenerateTest, AModuleWithoutLoadedFileFails)
{
    EXPECT_EQ(1u, GPBLIB_UpdateProtoFileClassInfo(context(), "other", 0, "/p", m_interface));
    EXPECT_LOG(log(), "1: gpblib updates protofile class info begin (path=/p)",
               "1: Default class (interface) id (0x30).",
               "0: failed to get proto file descriptor, filename=other.proto");
}

TEST_F(GenerateTest, AModuleThatFailedToLoadFailsAlike)
{
    writeProto("broken", "this is no proto file");
    EXPECT_EQ(1u, GPBLIB_ProtobufLoad(context(), "broken", 0));
    log().clear();
    EXPECT_EQ(1u, GPBLIB_UpdateProtoFileClassInfo(context(), "broken", 0, "/p", m_interface));
    EXPECT_LOG(log(), "1: gpblib updates protofile class info begin (path=/p)",
               "1: Default class (interface) id (0x30).",
               "0: failed to get proto file descriptor, filename=broken.proto");
}

TEST_F(GenerateTest, ATopNodeWithoutMessageFails)
{
    GpbYangNode *top = m_yang.node(nullptr, "no-such-top", 0x40);
    EXPECT_EQ(1u, update(top));
    EXPECT_LOG(log(), "1: gpblib updates protofile class info begin (path=/p)",
               "1: Default class (no-such-top) id (0x40).", "1: process subtree node begin",
               "0: failed to get message from proto file, nodeName = no-such-top, uiMsgCnt = 1",
               "1: failed to pop node from stack", "0: failed to generate gpb template");
}

TEST_F(GenerateTest, ATopNodeWhoseLeavesFailFails)
{
    m_yang.leaf(m_ifm, "nameless", 1, 1)->pcName = nullptr;
    EXPECT_EQ(1u, GRBLIB_ProcSubTreeNode(context(), m_interface, file("ifm")));
    EXPECT_LOG(log(), "1: process subtree node begin", "1: Default class (interface) id (0x30).",
               "1: insert (ifm) leaf node (field count 4) begin",
               "1: Convert node(ifm/sys-name) : (0x0, 0) ==> (0x10, 5) ", "1: insert leaf node (sys-name)",
               "0: failed to insert leaf node to root", "1: failed to pop node from stack");
}

TEST_F(GenerateTest, WithoutListenersTheTemplateIsTheSame)
{
    recreateContext({GPB_LOG_ERROR, GPB_LOG_PROGRESS});
    ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context(), "ifm", 0));
    EXPECT_EQ(0u, update(m_interface));
    EXPECT_EQ(kInterfaceTemplate, stored(0x30));
    EXPECT_EQ("", log().take());
}

TEST_F(GenerateTest, AFileWithoutMessagesFails)
{
    load("empty", "syntax = \"proto3\"; enum E { E_A = 0; }");
    EXPECT_EQ(1u, GRBLIB_ProcSubTreeNode(context(), m_ifm, file("empty")));
    EXPECT_LOG(log(), "1: process subtree node begin",
               "0: this file has no message, filename = empty.proto, nodeName = ifm",
               "1: failed to pop node from stack");
    EXPECT_EQ(1u, GRBLIB_ProcSubTreeNode(context(), m_ifm, nullptr));
    EXPECT_LOG(log(), "1: process subtree node begin",
               "0: failed to get message descriptor from protofile = (null), nodeName = ifm",
               "1: failed to pop node from stack");
}

TEST_F(GenerateTest, TopMessagesAreNamedByTheConversionOfContainerNames)
{
    load("names", "syntax = \"proto3\"; message MyTop {} message My_top {} message Ipv4A {} message ABC_1 {} "
                  "message ABC {}");
    const auto messageOf = [this](GpbYangNode *node)
    {
        const auto *found = GPBLIB_ProcSubTreeNodeGetDestriptor(context(), file("names"), node);
        return found == nullptr ? std::string("none") : found->full_name();
    };
    EXPECT_EQ("MyTop", messageOf(m_yang.node(nullptr, "my-top", 1)));
    EXPECT_EQ("My_top", messageOf(m_yang.node(nullptr, "my_top", 1)));
    EXPECT_EQ("Ipv4A", messageOf(m_yang.node(nullptr, "ipv4-a", 1)));
    EXPECT_EQ("ABC", messageOf(m_yang.node(nullptr, "ABC", 1)));
    EXPECT_EQ("ABC_1", messageOf(m_yang.node(m_ifm, "ABC", 1))) << "with a parent";
    EXPECT_EQ("none", messageOf(m_yang.node(nullptr, "MYTOP", 1))) << "names are compared exactly";
}

TEST_F(GenerateTest, ATopNameThatIsTooLongIsReportedAndFindsNothing)
{
    GpbYangNode *longest = m_yang.node(nullptr, std::string(255, 'a'), 1);
    EXPECT_EQ(nullptr, GPBLIB_ProcSubTreeNodeGetDestriptor(context(), file("ifm"), longest));
    EXPECT_EQ("", takeAssertText());
    GpbYangNode *tooLong = m_yang.node(nullptr, std::string(256, 'a'), 1);
    EXPECT_EQ(nullptr, GPBLIB_ProcSubTreeNodeGetDestriptor(context(), file("ifm"), tooLong));
    EXPECT_EQ(1u, takeAsserts().size());
    GpbYangNode *grows = m_yang.node(m_ifm, std::string(255, 'A'), 1); // converted, it gets two more characters
    EXPECT_EQ(nullptr, GPBLIB_ProcSubTreeNodeGetDestriptor(context(), file("ifm"), grows));
}

TEST_F(GenerateTest, FailuresOfTheStackAndTheVectorHaveTheirLines)
{
    GpbHost_FailCall(GPB_HOST_STACK_CREATE, 1);
    EXPECT_EQ(1u, GRBLIB_ProcSubTreeNode(context(), m_interface, file("ifm")));
    EXPECT_LOG(log(), "1: process subtree node begin", "1: failed to malloc stack");
    for (uint64_t nth = 1; nth <= 3; ++nth)
    {
        GpbHost_FailCall(GPB_HOST_STACK_PUSH, nth);
        EXPECT_EQ(1u, GRBLIB_ProcSubTreeNode(context(), m_interface, file("ifm")));
        EXPECT_LOG(log(), "1: process subtree node begin", "1: failed to push father node to stack");
    }
    GpbHost_FailCall(GPB_HOST_STACK_POP, 1);
    EXPECT_EQ(1u, GRBLIB_ProcSubTreeNode(context(), m_interface, file("ifm")));
    EXPECT_LOG(log(), "1: process subtree node begin", "1: failed to pop node from stack");
    GpbHost_FailCall(GPB_HOST_STACK_POP, 2);
    EXPECT_EQ(1u, GRBLIB_ProcSubTreeNode(context(), m_interface, file("ifm")));
    std::vector<std::string> lines = log().texts();
    EXPECT_EQ(0u, lines[lines.size() - 2].find("0: failed to pop container, ret = 0x")) << lines[lines.size() - 2];
    EXPECT_EQ("1: failed to update Gpb template", lines.back());
    GpbHost_FailCall(GPB_HOST_VEC_SET, 1);
    EXPECT_EQ(1u, GRBLIB_ProcSubTreeNode(context(), m_interface, file("ifm")));
    EXPECT_EQ("0: failed to save gpb template, classid=0x30", log().texts().back());
    EXPECT_EQ("none", stored(0x30));
}

TEST_F(GenerateTest, TheStackIsDeletedOnceHoweverTheWalkEnds)
{
    const auto stackReleases = [this](uint32_t ret, const GpbYangNode *target)
    {
        events().clear();
        EXPECT_EQ(ret, GRBLIB_ProcSubTreeNode(context(), target, file("ifm")));
        size_t count = 0;
        for (const PlatformEvent &event : events().ofKind(GPB_HOST_EVENT_FREE))
        {
            count += event.file == "yos_stack" ? 1 : 0;
        }
        return count;
    };
    constexpr size_t kOnce = 2; // the stack and its items
    EXPECT_EQ(kOnce, stackReleases(0, m_interface));
    EXPECT_EQ(kOnce, stackReleases(1, m_yang.node(nullptr, "no-such-top", 0x40)));
    EXPECT_EQ(kOnce, stackReleases(1, m_yang.node(m_interfaces, "no-such-node", 0x40)));
    for (const GpbHostService service : {GPB_HOST_STACK_PUSH, GPB_HOST_STACK_POP, GPB_HOST_VEC_SET})
    {
        GpbHost_FailCall(service, 1);
        EXPECT_EQ(kOnce, stackReleases(1, m_interface)) << service;
    }
    GpbHost_FailCall(GPB_HOST_STACK_CREATE, 1);
    EXPECT_EQ(0u, stackReleases(1, m_interface));
    log().clear();
}

TEST_F(GenerateTest, WithoutMemoryForTheTemplateItsLineIsLogged)
{
    const uint64_t stackAllocations = [this]
    {
        const uint64_t before = GpbHost_CallCount(GPB_HOST_MALLOC);
        void *stack = YOS_CreateStackByHandle(nullptr, GPB_TEMPLATE_STACK_DEPTH);
        YOS_Push(stack, m_ifm);
        YOS_DeleteStack(stack);
        return GpbHost_CallCount(GPB_HOST_MALLOC) - before;
    }();
    GpbHost_FailCall(GPB_HOST_MALLOC, stackAllocations + 1);
    EXPECT_EQ(1u, GRBLIB_ProcSubTreeNode(context(), m_interface, file("ifm")));
    EXPECT_LOG(log(), "1: process subtree node begin", "0: failed to malloc memory for saving gpb template",
               "1: failed to pop node from stack");
    for (uint64_t nth = 2; nth <= 7; ++nth) // the root, and the five nodes and texts of its attribute
    {
        GpbHost_FailCall(GPB_HOST_MALLOC, stackAllocations + nth);
        EXPECT_EQ(1u, GRBLIB_ProcSubTreeNode(context(), m_interface, file("ifm")));
        EXPECT_LOG(log(), "1: process subtree node begin", "1: Default class (interface) id (0x30).",
                   "0: failed to insert leaf node to root", "1: failed to pop node from stack");
    }
}

// The template of a top node whose root could not be made for want of memory.
class RootlessTest : public GenerateTest
{
protected:
    uint32_t makeWithoutRoot(const GpbYangNode *target)
    {
        constexpr uint64_t kStackAllocations = 2;
        GpbHost_FailCall(GPB_HOST_MALLOC, kStackAllocations + 2); // the record is there, the root is not
        return GRBLIB_ProcSubTreeNode(context(), target, file("ifm"));
    }
};

TEST_F(RootlessTest, AClassThatIsRefusedIsReportedFirst)
{
    useClassMap();
    m_host.onClass = [](bool, const GpbCidFid &, GpbCidFid *) { return 3U; };
    EXPECT_EQ(1u, makeWithoutRoot(m_interface));
    EXPECT_LOG(log(), "1: process subtree node begin",
               "0: failed to convert dom cid=0x30 to dim cid, ret=3, nodename=interface",
               "1: [GPBLIB_GetClassIdFromYangNode] failed", "1: failed to pop node from stack");
}

TEST_F(RootlessTest, ContainersHaveNothingToBePutUnder)
{
    m_ifm->pstLeafVec = nullptr;
    EXPECT_EQ(1u, makeWithoutRoot(m_interface));
    EXPECT_LOG(log(), "1: process subtree node begin", "1: Default class (interface) id (0x30).",
               "0: failed to Create Container node[ClassId=20, ClassName=interfaces].",
               "0: failed to fill Container fieldAttr", "1: failed to update Gpb template");
    EXPECT_EQ("none", stored(0x30));
}

TEST_F(RootlessTest, AClassOfATopNodeWithoutLeavesIsStoredWithoutContent)
{
    m_ifm->pstLeafVec = nullptr;
    EXPECT_EQ(0u, makeWithoutRoot(m_ifm));
    EXPECT_LOG(log(), "1: process subtree node begin", "1: Default class (ifm) id (0x10).",
               "1: process subtree node end");
    const GpbTemplateInfo *info = GPBLIB_GetGpbTemplate(0x10, context());
    ASSERT_NE(nullptr, info);
    EXPECT_EQ(nullptr, info->pstObjTree);
    uint8_t *bytes = nullptr;
    uint16_t length = 7;
    EXPECT_EQ(1u, GPBLIB_DumpProtoFileData(context(), "/p", 0x10, &bytes, &length));
    EXPECT_LOG(log(), "1: gpblib dump template begin (path=/p, class=0x10)", "0: gpblib template len is 0");
    EXPECT_EQ(nullptr, bytes);
    EXPECT_EQ(7u, length);
    EXPECT_EQ(0u, update(m_ifm)) << "known, and not made anew";
    GPBLIB_UnloadProtoFileAll(context(), 0);
    EXPECT_EQ(nullptr, GPBLIB_GetGpbTemplate(0x10, context()));
}

TEST_F(GenerateTest, WhateverFailsNothingIsLeftAndNothingHalfDoneIsStored)
{
    GpbYangNode *choice = m_yang.node(m_interface, "mode", 0, GPB_YANG_CHOICE);
    GpbYangNode *access = m_yang.node(choice, "access", 0x31, GPB_YANG_CASE);
    m_yang.leaf(access, "vlan", 3);
    useClassMap();
    m_host.onClass = [](bool, const GpbCidFid &key, GpbCidFid *out)
    {
        *out = key;
        return 0U;
    };
    const uint64_t calls = failEachCall(
        [this](const FaultRun &run)
        {
            const uint32_t ret = update(m_interface);
            const GpbTemplateInfo *info = GPBLIB_GetGpbTemplate(0x30, context());
            EXPECT_EQ(ret == 0, info != nullptr);
            EXPECT_TRUE(run.fails() || ret == 0);
            if (info != nullptr)
            {
                EXPECT_NE(nullptr, info->pstObjTree->pNodeAttr);
                VecVector *templates = context()->pstTemplateVec; // taken out again: the next run starts afresh
                GPBLIB_ObjTree_Delete(&GPBLIB_GetGpbTemplate(0x30, context())->pstObjTree);
                ZMP_Free_F(templates->ppvSlot[0], "test", 1);
                templates->ppvSlot[0] = nullptr;
                VEC_VectorZipEmptySlot(templates);
            }
            log().clear();
        });
    EXPECT_GT(calls, 100u);
}

TEST_F(GenerateTest, PathsDeeperThanTheFirstSizeOfTheStackWork)
{
    // 300 levels also let the depth, kept in 8 bits, wrap.
    load("deep", "syntax = \"proto3\"; message Top { Level level = 1; } "
                 "message Level { Level level = 1; uint32 value = 2; }");
    GpbYangNode *node = m_yang.node(nullptr, "top", 1);
    for (uint32_t i = 0; i < 300; ++i)
    {
        node = m_yang.node(node, "level", 2 + i);
    }
    m_yang.leaf(node, "value", 1);
    EXPECT_EQ(0u, GPBLIB_UpdateProtoFileClassInfo(context(), "deep", 0, "/p", node));
    const GpbTemplateInfo *info = GPBLIB_GetGpbTemplate(301, context());
    ASSERT_NE(nullptr, info);
    const ObjNode *level = info->pstObjTree;
    for (int i = 0; i < 300; ++i)
    {
        level = childAt(level, 1);
        ASSERT_NE(nullptr, level) << i;
    }
    EXPECT_EQ("C1(C65535(I2=301 S3='level' I4=0 C1(I1=1 S2='value' I3=2 I4=13 I5=0)) I2=4294967597)", describe(level));
}

} // namespace
} // namespace gpbtest
