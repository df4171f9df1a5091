// Class ids and field ids: what the mapping callbacks are asked, and what becomes of their answers.
#include <cstdio>

#include <google/protobuf/descriptor.h>

#include "yang_support.h"

namespace gpbtest
{
namespace
{

class MappingTest : public TemplateFixture
{
protected:
    void TearDown() override
    {
        m_tree.reset();
        TemplateFixture::TearDown();
    }

    // A class-map callback that answers always the same.
    void answerClass(uint32_t classId, uint8_t fieldId, uint8_t equal, uint32_t ret = 0)
    {
        useClassMap();
        m_host.onClass = [=](bool, const GpbCidFid &, GpbCidFid *out)
        {
            *out = {classId, fieldId, equal, {0, 0}};
            return ret;
        };
    }

    void answerName(uint32_t classId, uint8_t fieldId, uint32_t ret = 0)
    {
        useNameMap();
        m_host.onName = [=](const char *, GpbCidFid *out)
        {
            *out = {classId, fieldId, 0, {0, 0}};
            return ret;
        };
    }

    std::string asked()
    {
        std::string text = joinLines(m_host.asked);
        m_host.asked.clear();
        return text;
    }

    // The converted pair as "0xC.F", or the failing result.
    std::string convert(const GpbYangLeaf *leaf, uint32_t allLeaves)
    {
        GpbCidFid out = {};
        const uint32_t ret = GPBLIB_ConvertField(m_interface, leaf, allLeaves, &out, context());
        if (ret != 0)
        {
            return "failed " + std::to_string(ret);
        }
        char text[32];
        std::snprintf(text, sizeof(text), "0x%x.%u", out.uiClassId, static_cast<unsigned int>(out.ucFieldId));
        return text;
    }

    // The text of a string leaf, or the failing result.
    std::string idText(const GpbYangLeaf *leaf, uint32_t allLeaves, uint32_t size = GPB_TEMPLATE_ID_TEXT_SIZE)
    {
        char text[GPB_TEMPLATE_ID_TEXT_SIZE] = {};
        const uint32_t ret = GPBLIB_FillFidCidOfStrNode_(m_interface, allLeaves, leaf, text, size, context());
        return ret != 0 ? "failed " + std::to_string(ret) : text;
    }

    // The value of an integer leaf made from the pair (0x77, 7), or "none".
    std::string integer(const GpbYangLeaf *leaf, uint32_t allLeaves)
    {
        m_tree.reset(GPBLIB_RDMI_CreateRoot(kModuleId, "t"));
        const GpbCidFid ids = {0x77, 7, 0, {0, 0}};
        const ObjNode *attr = GPBLIB_CreateIntegerNode(m_interface, m_tree.get(), field("if_index"), &ids, m_tree.get(),
                                                       allLeaves, leaf, context());
        const ObjNode *node = childAt(m_tree.get(), 1);
        EXPECT_EQ(node == nullptr, attr == nullptr);
        if (node == nullptr)
        {
            return "none";
        }
        EXPECT_EQ(attr, node->pFieldAttr);
        char text[32];
        std::snprintf(text, sizeof(text), "0x%llx", static_cast<unsigned long long>(node->value));
        return text;
    }

    TreePtr m_tree;
};

TEST_F(MappingTest, TheClassIdOfANodeIsItsOwnWithoutCallback)
{
    uint32_t classId = 9;
    EXPECT_EQ(0u, GPBLIB_GetClassIdFromYangNode(context(), m_interface, &classId));
    EXPECT_EQ(0x30u, classId);
    EXPECT_LOG(log(), "1: Default class (interface) id (0x30).");
}

TEST_F(MappingTest, TheClassMapGivesTheClassIdForTheDomKey)
{
    answerClass(0xABCD, 5, 1);
    uint32_t classId = 9;
    EXPECT_EQ(0u, GPBLIB_GetClassIdFromYangNode(context(), m_interface, &classId));
    EXPECT_EQ(0xABCDu, classId);
    EXPECT_EQ("dom 0x30.0\n", asked());
    EXPECT_LOG(log(), "1: Class (interface) map: from 0x30 to 0xabcd.");
}

TEST_F(MappingTest, TheFieldNameMapGivesTheIdOfTheNotification)
{
    answerName(0xABCD, 5);
    uint32_t classId = 9;
    EXPECT_EQ(0u, GPBLIB_GetClassIdFromYangNode(context(), m_interface, &classId));
    EXPECT_EQ(0xABCDu, classId);
    EXPECT_EQ("notification\n", asked());
    EXPECT_LOG(log(), "1: Get notification (interface) id (0xabcd).");
}

TEST_F(MappingTest, ARefusedClassIdIsZeroAndTheCallbacksCodeTheResult)
{
    uint32_t classId = 9;
    answerClass(0xABCD, 5, 1, 0xFFFFFFFF);
    EXPECT_EQ(0xFFFFFFFFu, GPBLIB_GetClassIdFromYangNode(context(), m_interface, &classId));
    EXPECT_EQ(0u, classId);
    EXPECT_LOG(log(), "0: failed to convert dom cid=0x30 to dim cid, ret=4294967295, nodename=interface");
    classId = 9;
    answerName(0xABCD, 5, 3);
    EXPECT_EQ(3u, GPBLIB_GetClassIdFromYangNode(context(), m_interface, &classId));
    EXPECT_EQ(0u, classId);
    EXPECT_LOG(log(), "0: failed to convert notification: ret=3, nodename=interface");
    EXPECT_EQ(1u, GPBLIB_GetClassIdFromYangNode(context(), nullptr, &classId));
    EXPECT_EQ(1u, GPBLIB_GetClassIdFromYangNode(context(), m_interface, nullptr));
    EXPECT_EQ(1u, GPBLIB_GetClassIdFromYangNode(nullptr, m_interface, &classId));
    EXPECT_EQ("", log().take());
}

TEST_F(MappingTest, WithoutCallbackALeafKeepsTheLowBitsOfItsFieldId)
{
    const GpbYangLeaf *leaf = m_yang.leaf(m_interface, "if-index", 0x1FE, 0, 0x55);
    for (const uint32_t allLeaves : {0U, 1U})
    {
        EXPECT_EQ("0x30.254", convert(leaf, allLeaves));
        EXPECT_LOG(log(), "1: Convert node(interface/if-index) : (0x0, 0) ==> (0x30, 254) ");
    }
}

TEST_F(MappingTest, TheClassMapIsAskedForTheTargetsLeavesOnly)
{
    const GpbYangLeaf *leaf = m_yang.leaf(m_interface, "if-index", 0x1FE, 0, 0x55);
    answerClass(0xABCD, 200, 1);
    EXPECT_EQ("0xabcd.200", convert(leaf, 1));
    EXPECT_EQ("dom 0x30.254\n", asked());
    EXPECT_LOG(log(), "1: Convert node(interface/if-index) : (0x30, 254) ==> (0xabcd, 200) ");
    EXPECT_EQ("0x30.254", convert(leaf, 0));
    EXPECT_EQ("", asked());
    EXPECT_LOG(log(), "1: Convert node(interface/if-index) : (0x0, 0) ==> (0x30, 254) ");
}

TEST_F(MappingTest, TheFieldNameMapIsAskedForTheTargetsLeavesOnly)
{
    const GpbYangLeaf *leaf = m_yang.leaf(m_interface, "if-index", 3);
    answerName(0xABCD, 200);
    EXPECT_EQ("0xabcd.200", convert(leaf, 1));
    EXPECT_EQ("name if-index\n", asked());
    EXPECT_LOG(log(), "1: Convert node(interface/if-index) : (0x0, 0) ==> (0xabcd, 200) ");
    EXPECT_EQ("0x30.3", convert(leaf, 0));
    EXPECT_EQ("", asked());
}

TEST_F(MappingTest, ARefusedLeafIsReportedAtLevelOne)
{
    const GpbYangLeaf *leaf = m_yang.leaf(m_interface, "if-index", 0x103);
    answerClass(0, 0, 0, 44);
    EXPECT_EQ("failed 1", convert(leaf, 1));
    EXPECT_LOG(log(), "1: failed to convert dom cid=0x30, fid=3 to dim cidfid, container nodename=interface, "
                      "leafname=if-index, ret=44");
    answerName(0, 0, 45);
    EXPECT_EQ("failed 1", convert(leaf, 1));
    EXPECT_LOG(log(), "1: failed to convert event para, container nodename=interface, leafname=if-index, ret=45");
}

TEST_F(MappingTest, ARefusedLeafIsLeftOutOfTheTemplate)
{
    m_yang.leaf(m_interface, "if-name", 1);
    m_yang.leaf(m_interface, "if-index", 2);
    useClassMap();
    m_host.onClass = [](bool, const GpbCidFid &key, GpbCidFid *out)
    {
        *out = key;
        return key.ucFieldId == 1 ? 9U : 0U;
    };
    EXPECT_EQ(0u, update(m_interface));
    EXPECT_EQ("dom 0x30.0\ndom 0x30.0\ndom 0x30.1\ndom 0x30.2\n", asked());
    EXPECT_NE(std::string::npos, stored(0x30).find("S2='if-index'"));
    EXPECT_EQ(std::string::npos, stored(0x30).find("S2='if-name'"));
}

TEST_F(MappingTest, AnIntegerLeafIsMadeOfItsConvertedPair)
{
    const GpbYangLeaf *leaf = m_yang.leaf(m_interface, "if-index", 0x203);
    EXPECT_EQ("0x700000077", integer(leaf, 0));
    EXPECT_EQ("0x700000077", integer(leaf, 1));
    answerName(1, 1);
    EXPECT_EQ("0x700000077", integer(leaf, 0));
    answerClass(0xABCD, 255, 1);
    EXPECT_EQ("0x700000077", integer(leaf, 1));
    EXPECT_EQ("", asked());
}

TEST_F(MappingTest, AnIntegerKeyOfAnAncestorIsMadeOfItsIndex)
{
    GpbYangLeaf *leaf = m_yang.leaf(m_interface, "if-index", 0x203, 1, 0x405);
    answerClass(0xFFFFFFFF, 255, 1);
    EXPECT_EQ("0xffffffffff", integer(leaf, 0));
    EXPECT_EQ("index 0x30.5\n", asked());
    leaf->uiMapFieldId = 0;
    EXPECT_EQ("0xffffffffff", integer(leaf, 0));
    EXPECT_EQ("index 0x30.3\n", asked());
    leaf->uiMapFieldId = 0x100; // not 0, though its low 8 bits are
    EXPECT_EQ("0xffffffffff", integer(leaf, 0));
    EXPECT_EQ("index 0x30.0\n", asked());
    EXPECT_EQ("", log().take());
}

TEST_F(MappingTest, OnlyZeroAndOneSelectAConversion)
{
    const GpbYangLeaf *leaf = m_yang.leaf(m_interface, "if-index", 3, 1);
    answerClass(0x30, 9, 1);
    EXPECT_EQ("0x30.3", convert(leaf, 2)) << "no target";
    EXPECT_EQ("0x700000077", integer(leaf, 2)) << "no ancestor";
    EXPECT_EQ("", asked());
    EXPECT_EQ("30.9", idText(leaf, 0));
    EXPECT_EQ("30.9", idText(leaf, 1));
    EXPECT_EQ("30.3=30,9", idText(leaf, 2)) << "the one pair is for targets and ancestors";
}

TEST_F(MappingTest, ARefusedIndexGivesNoNode)
{
    const GpbYangLeaf *leaf = m_yang.leaf(m_interface, "if-index", 0x203, 1);
    answerClass(1, 1, 1, 66);
    EXPECT_EQ("none", integer(leaf, 0));
    EXPECT_LOG(log(), "0: failed to convert index cid=0x30, fid=3 to subindex cidfid, container nodename=interface,"
                      "leafname=if-index, ret=66");
}

TEST_F(MappingTest, WithoutClassMapAStringLeafCarriesItsOwnIds)
{
    const GpbYangLeaf *leaf = m_yang.leaf(m_interface, "if-name", 0x12345, 0, 7);
    EXPECT_EQ("30.12345", idText(leaf, 1));
    answerName(1, 1);
    EXPECT_EQ("30.12345", idText(leaf, 0));
    EXPECT_EQ("", asked());
    EXPECT_EQ("", log().take());
}

TEST_F(MappingTest, AStringLeafHasThreeForms)
{
    GpbYangLeaf *leaf = m_yang.leaf(m_interface, "if-name", 0x12345, 0, 0);
    answerClass(0xABCD, 0x1F, 1);
    EXPECT_EQ("abcd.1f", idText(leaf, 1)) << "target, no map field id";
    EXPECT_EQ("index 0x30.69\n", asked());
    EXPECT_LOG(log(), "1: Field map (equal=1): Parent (0x30, 69) ==> App (0xabcd, 31)");
    EXPECT_EQ("30.12345=abcd,1f", idText(leaf, 0)) << "ancestor, another class";
    leaf->uiMapFieldId = 0x204;
    EXPECT_EQ("30.12345=abcd,1f", idText(leaf, 1)) << "target with map field id";
    EXPECT_EQ("index 0x30.69\nindex 0x30.4\n", asked());
    answerClass(0xABCD, 0x1F, 0);
    EXPECT_EQ("30.12345|abcd,1f", idText(leaf, 1));
    EXPECT_EQ("30.12345|abcd,1f", idText(leaf, 0));
    answerClass(0xABCD, 0x1F, 200);
    EXPECT_EQ("30.12345=abcd,1f", idText(leaf, 0)) << "any value but 0 is an equality";
    answerClass(0x30, 0x1F, 0);
    EXPECT_EQ("30.1f", idText(leaf, 0)) << "ancestor, its own class";
    EXPECT_EQ("30.12345|30,1f", idText(leaf, 1)) << "the class does not matter for a target";
    leaf->uiMapFieldId = 0;
    EXPECT_EQ("30.12345|30,1f", idText(leaf, 2)) << "neither 0 nor 1";
}

TEST_F(MappingTest, ARefusedInterfaceNameGivesTheCallbacksCode)
{
    const GpbYangLeaf *leaf = m_yang.leaf(m_interface, "if-name", 3);
    answerClass(1, 1, 1, 88);
    EXPECT_EQ("failed 88", idText(leaf, 0));
    EXPECT_LOG(log(), "0: failed to convert Ifname cid=0x30, fid=3 to Ifindex cidfid, container nodename=interface,"
                      "leafname=if-name, ret=88");
    const TreePtr tree(GPBLIB_RDMI_CreateRoot(kModuleId, "t"));
    EXPECT_EQ(nullptr,
              GPBLIB_CreateStrNode(m_interface, tree.get(), field("if_name"), nullptr, tree.get(), 0, leaf, context()));
    EXPECT_EQ(nullptr, childAt(tree.get(), 1));
}

TEST_F(MappingTest, TheTextOfIdsIsCutToItsBuffer)
{
    m_interface->uiClassId = 0xFFFFFFFF;
    const GpbYangLeaf *leaf = m_yang.leaf(m_interface, "if-name", 0xFFFFFFFF, 0, 1);
    answerClass(0xFFFFFFFE, 0xFF, 1);
    EXPECT_EQ("ffffffff.ffffffff=fffffffe,ff", idText(leaf, 1));
    EXPECT_EQ("ffffffff.f", idText(leaf, 1, 11));
    EXPECT_EQ("", idText(leaf, 1, 1));
    EXPECT_EQ("failed 1", idText(leaf, 1, 0));
}

TEST_F(MappingTest, AFailingFormatterIsReportedAndTheTextIsEmpty)
{
    const GpbYangLeaf *leaf = m_yang.leaf(m_interface, "if-name", 3);
    GpbHost_FailCall(GPB_HOST_SNPRINTF_TRUNCATED, 1);
    EXPECT_EQ("", idText(leaf, 1));
    EXPECT_EQ(1u, takeAsserts().size());
}

TEST_F(MappingTest, NullArgumentsFail)
{
    const GpbYangLeaf *leaf = m_yang.leaf(m_interface, "if-name", 3);
    GpbCidFid out = {};
    char text[8];
    EXPECT_EQ(1u, GPBLIB_ConvertField(nullptr, leaf, 1, &out, context()));
    EXPECT_EQ(1u, GPBLIB_ConvertField(m_interface, nullptr, 1, &out, context()));
    EXPECT_EQ(1u, GPBLIB_ConvertField(m_interface, leaf, 1, nullptr, context()));
    EXPECT_EQ(1u, GPBLIB_ConvertField(m_interface, leaf, 1, &out, nullptr));
    EXPECT_EQ(1u, GPBLIB_FillFidCidOfStrNode_(nullptr, 1, leaf, text, 8, context()));
    EXPECT_EQ(1u, GPBLIB_FillFidCidOfStrNode_(m_interface, 1, nullptr, text, 8, context()));
    EXPECT_EQ(1u, GPBLIB_FillFidCidOfStrNode_(m_interface, 1, leaf, nullptr, 8, context()));
    EXPECT_EQ(1u, GPBLIB_FillFidCidOfStrNode_(m_interface, 1, leaf, text, 8, nullptr));
    EXPECT_EQ("", log().take());
}

TEST_F(MappingTest, ATemplateOfAConfigurationClassIsMappedThroughout)
{
    m_yang.leaf(m_ifm, "sys-name", 5, 1, 6);
    m_yang.leaf(m_ifm, "sys-index", 7, 1);
    m_yang.leaf(m_interface, "if-name", 1, 1);
    m_yang.leaf(m_interface, "if-index", 2);
    useClassMap();
    m_host.onClass = [](bool isIndex, const GpbCidFid &key, GpbCidFid *out)
    {
        *out = {key.uiClassId + (isIndex ? 0x100U : 0x200U), static_cast<uint8_t>(key.ucFieldId + 10), 1, {0, 0}};
        return 0U;
    };
    EXPECT_EQ(0u, update(m_interface));
    EXPECT_EQ("dom 0x30.0\ndom 0x30.0\nindex 0x10.6\nindex 0x10.7\ndom 0x30.1\nindex 0x30.1\ndom 0x30.2\n", asked());
    EXPECT_EQ("R0(C65535(I2=0 S3='ifm' I4=0"
              " C1(I1=5 S2='sys-name' I3=1 I4=9 I5=4) C1(I1=7 S2='sys-index' I3=2 I4=13 I5=4)"
              " C1(I1=0 S2='interfaces' I3=3 I4=11 I5=0))"
              " S1='10.5=110,10' I2=73014444304"
              " C3(C65535(I2=32 S3='interfaces' I4=0 C1(I1=0 S2='interface' I3=1 I4=11 I5=1))"
              " C1(C65535(I2=48 S3='interface' I4=0"
              " C1(I1=1 S2='if-name' I3=1 I4=9 I5=4) C1(I1=2 S2='if-index' I3=2 I4=13 I5=0))"
              " S1='130.b' I2=51539608112)))",
              stored(0x230));
}

} // namespace
} // namespace gpbtest
