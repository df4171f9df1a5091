/** Opening the layers between the top of the stack and a nested message. */
#include "compiler/compiler_fixture.h"

namespace
{

namespace pb = google::protobuf;

using pb::FieldDescriptor;
using pb::Message;

class PushAncestorTest : public gpbtest::CompilerFixture
{
protected:
    void SetUp() override
    {
        CompilerFixture::SetUp();
        addDataModule("ancestors");
        m_top = newMessage("anc.Top");
    }

    const FieldDescriptor *field(const std::string &typeName, const std::string &name)
    {
        return type(typeName)->FindFieldByName(name);
    }

    /** A stack whose layer `layerNum` is the top message; those below it stay unused. */
    void stackWithTopAt(uint32_t layerNum)
    {
        m_stack.uiLayerNum = layerNum;
        GpbCompilerStackLayer &layer = m_stack.astLayer[layerNum - 1];
        layer.pstDescriptor = m_top->GetDescriptor();
        layer.pstMessage = m_top;
        layer.strXPath = "anc.Top";
    }

    /** The message of a singular field, which has to be there. */
    static Message *sub(Message *message, const char *name)
    {
        const FieldDescriptor *const field = message->GetDescriptor()->FindFieldByName(name);
        EXPECT_TRUE(message->GetReflection()->HasField(*message, field)) << name;
        return message->GetReflection()->MutableMessage(message, field, nullptr);
    }

    void expectLayer(uint32_t slot, const std::string &typeName, const Message *message, const std::string &path)
    {
        const GpbCompilerStackLayer &layer = m_stack.astLayer[slot];
        EXPECT_EQ(type(typeName), layer.pstDescriptor) << slot;
        EXPECT_EQ(message, layer.pstMessage) << slot;
        EXPECT_EQ(path, layer.strXPath) << slot;
    }

    void expectTop(const std::string &textForm)
    {
        EXPECT_TRUE(judge().holds("anc.Top", m_top->SerializeAsString(), textForm));
    }

    Message *m_top = nullptr;
    GpbCompilerStack m_stack;
};

TEST_F(PushAncestorTest, NewStackIsEmpty)
{
    EXPECT_EQ(0u, m_stack.uiLayerNum);
    ASSERT_EQ(32u, std::size(m_stack.astLayer));
    for (const GpbCompilerStackLayer &layer : m_stack.astLayer)
    {
        EXPECT_EQ(nullptr, layer.pstDescriptor);
        EXPECT_EQ(nullptr, layer.pstMessage);
        EXPECT_EQ("", layer.strXPath);
    }
}

TEST_F(PushAncestorTest, OpensTheMessageOfTheFieldItself)
{
    stackWithTopAt(1);
    EXPECT_EQ(0u, GPB_PushAncesDescriptor(field("anc.Top", "l1"), m_stack));
    EXPECT_EQ(2u, m_stack.uiLayerNum);
    expectLayer(1, "anc.Top.L1", sub(m_top, "l1"), "anc.Top.l1");
    expectTop("l1 {}");
    EXPECT_LOG(log(), );
}

using PushAncestorOddities = PushAncestorTest;

// The path of each new layer repeats the text of the layers opened before it in the same walk.
TEST_F(PushAncestorOddities, PathAccumulatesAlongAChain)
{
    stackWithTopAt(1);
    EXPECT_EQ(0u, GPB_PushAncesDescriptor(field("anc.Top.L1.L2", "l3"), m_stack));
    EXPECT_EQ(4u, m_stack.uiLayerNum);
    Message *const l1 = sub(m_top, "l1");
    Message *const l2 = sub(l1, "l2");
    const std::string path1 = "anc.Top.l1";
    const std::string path2 = path1 + path1 + ".l2";
    const std::string path3 = path2 + path2 + ".l3";
    expectLayer(1, "anc.Top.L1", l1, path1);
    expectLayer(2, "anc.Top.L1.L2", l2, path2);
    expectLayer(3, "anc.Top.L1.L2.L3", sub(l2, "l3"), path3);
    expectTop("l1 { l2 { l3 {} } }");
}

TEST_F(PushAncestorTest, TopWithoutAPathGivesPathsThatBeginWithAPoint)
{
    stackWithTopAt(1);
    m_stack.astLayer[0].strXPath.clear();
    EXPECT_EQ(0u, GPB_PushAncesDescriptor(field("anc.Top.L1", "l2"), m_stack));
    Message *const l1 = sub(m_top, "l1");
    expectLayer(1, "anc.Top.L1", l1, ".l1");
    expectLayer(2, "anc.Top.L1.L2", sub(l1, "l2"), ".l1.l1.l2");
}

TEST_F(PushAncestorTest, EachWalkBeginsANewPath)
{
    stackWithTopAt(1);
    EXPECT_EQ(0u, GPB_PushAncesDescriptor(field("anc.Top", "l1"), m_stack));
    EXPECT_EQ(0u, GPB_PushAncesDescriptor(field("anc.Top.L1", "l2"), m_stack));
    expectLayer(2, "anc.Top.L1.L2", sub(sub(m_top, "l1"), "l2"), "anc.Top.l1.l2");
}

TEST_F(PushAncestorTest, SlotAboveTheTopIsReusedWithItsMessageAndPath)
{
    stackWithTopAt(1);
    Message *const elsewhere = newMessage("anc.Top.L1");
    m_stack.astLayer[1].pstDescriptor = type("anc.Top.L1");
    m_stack.astLayer[1].pstMessage = elsewhere;
    m_stack.astLayer[1].strXPath = "kept";
    EXPECT_EQ(0u, GPB_PushAncesDescriptor(field("anc.Top", "second"), m_stack));
    EXPECT_EQ(2u, m_stack.uiLayerNum);
    expectLayer(1, "anc.Top.L1", elsewhere, "kept");
    expectTop(""); // nothing was opened in the top message
}

// The type of a slot decides alone. One that a host has left without message takes no values.
TEST_F(PushAncestorOddities, SlotIsReusedWithoutMessageToo)
{
    stackWithTopAt(1);
    m_stack.astLayer[1].pstDescriptor = type("anc.Top.L1");
    m_stack.astLayer[1].strXPath = "kept";
    EXPECT_EQ(0u, GPB_PushAncesDescriptor(field("anc.Top", "l1"), m_stack));
    EXPECT_EQ(2u, m_stack.uiLayerNum);
    expectLayer(1, "anc.Top.L1", nullptr, "kept");
    EXPECT_EQ(1u, GPB_PushAncesDescriptor(field("anc.Top.L1", "l2"), m_stack));
    EXPECT_EQ(2u, m_stack.uiLayerNum);
    expectTop("");
}

TEST_F(PushAncestorTest, ReusedLayerIsTheUpperOneOfTheNext)
{
    stackWithTopAt(1);
    Message *const elsewhere = newMessage("anc.Top.L1");
    m_stack.astLayer[1].pstDescriptor = type("anc.Top.L1");
    m_stack.astLayer[1].pstMessage = elsewhere;
    m_stack.astLayer[1].strXPath = "kept";
    EXPECT_EQ(0u, GPB_PushAncesDescriptor(field("anc.Top.L1.L2", "l3"), m_stack));
    EXPECT_EQ(4u, m_stack.uiLayerNum);
    Message *const l2 = sub(elsewhere, "l2");
    expectLayer(1, "anc.Top.L1", elsewhere, "kept");
    expectLayer(2, "anc.Top.L1.L2", l2, "kept.l2"); // a reused layer adds nothing to the path
    expectLayer(3, "anc.Top.L1.L2.L3", sub(l2, "l3"), "kept.l2kept.l2.l3");
    expectTop("");
}

TEST_F(PushAncestorTest, SlotOfAnotherTypeIsReplaced)
{
    stackWithTopAt(1);
    m_stack.astLayer[1].pstDescriptor = type("anc.Foreign");
    m_stack.astLayer[1].pstMessage = newMessage("anc.Foreign");
    m_stack.astLayer[1].strXPath = "gone";
    EXPECT_EQ(0u, GPB_PushAncesDescriptor(field("anc.Top", "l1"), m_stack));
    expectLayer(1, "anc.Top.L1", sub(m_top, "l1"), "anc.Top.l1");
}

TEST_F(PushAncestorTest, EmptyStackOrTopWithoutTypeGivesOne)
{
    EXPECT_EQ(1u, GPB_PushAncesDescriptor(field("anc.Top", "l1"), m_stack));
    EXPECT_EQ(0u, m_stack.uiLayerNum);
    stackWithTopAt(1);
    m_stack.astLayer[0].pstDescriptor = nullptr;
    EXPECT_EQ(1u, GPB_PushAncesDescriptor(field("anc.Top", "l1"), m_stack));
    EXPECT_EQ(1u, m_stack.uiLayerNum);
    expectTop("");
}

TEST_F(PushAncestorTest, TopWithoutMessageGivesOne)
{
    stackWithTopAt(1);
    m_stack.astLayer[0].pstMessage = nullptr;
    EXPECT_EQ(1u, GPB_PushAncesDescriptor(field("anc.Top", "l1"), m_stack));
    EXPECT_EQ(1u, m_stack.uiLayerNum);
}

TEST_F(PushAncestorTest, FieldThatTheTopDoesNotLeadToGivesOne)
{
    stackWithTopAt(1);
    EXPECT_EQ(1u, GPB_PushAncesDescriptor(field("anc.Foreign", "leaf"), m_stack));
    EXPECT_EQ(1u, GPB_PushAncesDescriptor(field("anc.Top.Unreached", "sub"), m_stack));
    EXPECT_EQ(1u, GPB_PushAncesDescriptor(nullptr, m_stack));
    EXPECT_EQ(1u, m_stack.uiLayerNum);
    expectTop("");
}

// protobuf ends the process when it is asked for the one message of a list, or for the message of a number.
TEST_F(PushAncestorTest, ListOrScalarEntryGivesOne)
{
    stackWithTopAt(1);
    EXPECT_EQ(1u, GPB_PushAncesDescriptor(field("anc.Top", "entry"), m_stack));
    EXPECT_EQ(1u, GPB_PushAncesDescriptor(field("anc.Top.Entry", "sub"), m_stack));
    EXPECT_EQ(1u, GPB_PushAncesDescriptor(field("anc.Top", "scalar"), m_stack));
    EXPECT_EQ(1u, m_stack.uiLayerNum);
    expectTop("");
}

TEST_F(PushAncestorTest, LayersPushedBeforeAFailureStay)
{
    stackWithTopAt(1);
    // The way to this field leads through a message that only has the name of the right one.
    EXPECT_EQ(1u, GPB_PushAncesDescriptor(field("anc.Top.Twin", "sub"), m_stack));
    EXPECT_EQ(2u, m_stack.uiLayerNum);
    expectLayer(1, "anc.Foreign.Twin", sub(m_top, "foreign"), "anc.Top.foreign");
    expectTop("foreign {}");
}

TEST_F(PushAncestorTest, LastLayerIsTheThirtyFirst)
{
    stackWithTopAt(30);
    EXPECT_EQ(0u, GPB_PushAncesDescriptor(field("anc.Top", "l1"), m_stack));
    EXPECT_EQ(31u, m_stack.uiLayerNum);
    expectLayer(30, "anc.Top.L1", sub(m_top, "l1"), "anc.Top.l1");
}

// The message is opened before the room is looked at, so it stays behind.
TEST_F(PushAncestorOddities, FullStackGivesOneAndLeavesTheEmptyMessage)
{
    stackWithTopAt(31);
    EXPECT_EQ(1u, GPB_PushAncesDescriptor(field("anc.Top", "l1"), m_stack));
    EXPECT_EQ(31u, m_stack.uiLayerNum);
    EXPECT_EQ(nullptr, m_stack.astLayer[31].pstDescriptor);
    expectTop("l1 {}");
}

TEST_F(PushAncestorOddities, FullStackReusesNoSlot)
{
    stackWithTopAt(31);
    m_stack.astLayer[31].pstDescriptor = type("anc.Top.L1");
    m_stack.astLayer[31].pstMessage = newMessage("anc.Top.L1");
    EXPECT_EQ(1u, GPB_PushAncesDescriptor(field("anc.Top", "l1"), m_stack));
    EXPECT_EQ(31u, m_stack.uiLayerNum);
    expectTop("l1 {}");
}

TEST_F(PushAncestorOddities, StackThatFillsOnTheWayKeepsWhatWasPushed)
{
    stackWithTopAt(30);
    EXPECT_EQ(1u, GPB_PushAncesDescriptor(field("anc.Top.L1.L2", "l3"), m_stack));
    EXPECT_EQ(31u, m_stack.uiLayerNum);
    expectLayer(30, "anc.Top.L1", sub(m_top, "l1"), "anc.Top.l1");
    expectTop("l1 { l2 {} }");
}

// ---- a choice that switches, on a stack that was filled by hand ----

class PushCaseTest : public PushAncestorTest
{
protected:
    void SetUp() override
    {
        PushAncestorTest::SetUp();
        addDataModule("choice");
        m_top = newMessage("choice.Top");
        stackWithTopAt(1);
        ASSERT_EQ(0u, push("choice.Top.CaseA", "case_sub")); // slots 1 and 2
        m_stack.uiLayerNum = 1;
    }

    unsigned int push(const std::string &typeName, const std::string &name)
    {
        return GPB_PushAncesDescriptor(field(typeName, name), m_stack);
    }

    void fillByHand(uint32_t slot)
    {
        m_stack.astLayer[slot].pstDescriptor = type("choice.Top.Holder");
        m_stack.astLayer[slot].pstMessage = newMessage("choice.Top.Holder");
    }

    void expectUnused(uint32_t slot)
    {
        EXPECT_EQ(nullptr, m_stack.astLayer[slot].pstDescriptor) << slot;
        EXPECT_EQ(nullptr, m_stack.astLayer[slot].pstMessage) << slot;
    }
};

TEST_F(PushCaseTest, LayersOfTheOldCaseAreGivenUp)
{
    EXPECT_EQ(0u, push("choice.Top", "case_b"));
    expectLayer(1, "choice.Top.CaseB", sub(m_top, "case_b"), "anc.Top.case_b");
    expectUnused(2);
}

TEST_F(PushCaseTest, LayerOfAnotherMessageStays)
{
    fillByHand(3);
    EXPECT_EQ(0u, push("choice.Top", "case_b"));
    expectUnused(2);
    EXPECT_EQ(type("choice.Top.Holder"), m_stack.astLayer[3].pstDescriptor);
}

TEST_F(PushCaseTest, WithoutASwitchLayersStay)
{
    fillByHand(3);
    EXPECT_EQ(0u, push("choice.Top", "case_a"));
    expectLayer(1, "choice.Top.CaseA", sub(m_top, "case_a"), "anc.Top.case_a");
    EXPECT_EQ(type("choice.Top.CaseA.Sub"), m_stack.astLayer[2].pstDescriptor);
    EXPECT_EQ(type("choice.Top.Holder"), m_stack.astLayer[3].pstDescriptor);
}

} // namespace
