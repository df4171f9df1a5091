// Reading trees: what is accepted, what is refused, where reading stops, and the lines in the log.
#include "support/library_fixture.h"
#include "tree_support.h"

namespace gpbtest
{
namespace
{

// `count` empty containers nested in one another below a root whose length encloses all of them.
Bytes nestedBytes(size_t count)
{
    const TreePtr tree = nestedTree(1, count);
    return write(tree.get(), GPB_OBJTREE_MODE_TEMPLATE);
}

class ReaderTest : public LibraryFixture
{
protected:
    // Reads bytes that must give a tree; the tree as text.
    std::string readText(const char *hex, uint32_t consumed)
    {
        const ReadResult result = read(fromHex(hex), kModuleId, context());
        EXPECT_EQ(consumed, result.consumed) << hex;
        EXPECT_EQ("", log().take());
        return result.tree == nullptr ? "null" : describe(result.tree.get());
    }

    void expectRefused(const char *hex, uint32_t consumed)
    {
        const ReadResult result = read(fromHex(hex), kModuleId, context());
        EXPECT_EQ(nullptr, result.tree) << hex;
        EXPECT_EQ(consumed, result.consumed) << hex;
    }
};

TEST_F(ReaderTest, TheWorkedExampleIsReadBack)
{
    const ReadResult result = read(fromHex("06 0C FE FF 1F 08 10 00 1A 02 61 62 20 00"), kModuleId, context());
    ASSERT_NE(nullptr, result.tree);
    EXPECT_EQ(14u, result.consumed);
    EXPECT_EQ("R0(C65535-(I2-=0 S3-='ab' I4-=0))", describe(result.tree.get(), true));
    EXPECT_EQ(12u, result.tree->objLen);
    EXPECT_EQ(8u, childAt(result.tree.get(), 0)->objLen);
    EXPECT_EQ(kModuleId, result.tree->value);
    EXPECT_EQ(nullptr, result.tree->pNodeAttr) << "attributes are not recognised while reading";
    EXPECT_EQ("", log().take());
}

TEST_F(ReaderTest, ARootWithoutChildrenIsRead)
{
    EXPECT_EQ("R0()", readText("06 00", 2));
    EXPECT_EQ("R5()", readText("2E 00 FF FF", 2));
    EXPECT_EQ("R536870912()", readText("86 80 80 80 10 00", 6));
}

TEST_F(ReaderTest, EveryWireTypeBecomesItsNode)
{
    EXPECT_EQ("R0(I1=300)", readText("06 03 08 AC 02", 5));
    EXPECT_EQ("R0(I1=9223372036854775809)", readText("06 09 09 01 00 00 00 00 00 00 80", 11));
    EXPECT_EQ("R0(S1='abc')", readText("06 05 0A 03 61 62 63", 7));
    EXPECT_EQ("R0(S1='' I2=1)", readText("06 04 0A 00 10 01", 6));
    EXPECT_EQ("R0(I1=2147483649)", readText("06 05 0D 01 00 00 80", 7));
    EXPECT_EQ("R0(C1(I2=1) C3())", readText("06 06 0E 02 10 01 1E 00", 8));
}

TEST_F(ReaderTest, AnEmptyStringHasNoContentBuffer)
{
    const ReadResult result = read(fromHex("06 02 0A 00"), kModuleId);
    ASSERT_NE(nullptr, result.tree);
    EXPECT_EQ(nullptr, childAt(result.tree.get(), 0)->pucString);
}

TEST_F(ReaderTest, IdsKeepThirtyTwoBitsOfTheTag)
{
    EXPECT_EQ("R0(I4294967295=5)", readText("06 06 F8 FF FF FF 7F 05", 8));
}

TEST_F(ReaderTest, ReadingStopsWhereTheRootEnds)
{
    EXPECT_EQ("R0(I1=1)", readText("06 02 08 01 FF FF", 4));
}

TEST_F(ReaderTest, ATreeThatBreaksOffBetweenNodesIsRead)
{
    EXPECT_EQ("R0()", readText("06 05", 2));
    EXPECT_EQ("R0(I1=1)", readText("06 05 08 01", 4));
    EXPECT_EQ("R0(C1(I1=1))", readText("06 7F 0E 7E 08 01", 6));
}

TEST_F(ReaderTest, AChildMayBeLongerThanItsContainer)
{
    // The container promises one byte and gets two: it is complete then, and the next node is its sibling.
    EXPECT_EQ("R0(C1(I2=1) I3=2)", readText("06 06 0E 01 10 01 18 02", 8));
    EXPECT_EQ("R0(C1(S2='abc'))", readText("06 02 0E 01 12 03 61 62 63", 9));
}

TEST_F(ReaderTest, TheRootMustBeAContainer)
{
    for (const char *hex : {"0A 01 61", "0A 00", "08 01", "0D 01 02 03 04", "09 01 02 03 04 05 06 07 08"})
    {
        expectRefused(hex, static_cast<uint32_t>(fromHex(hex).size()));
        EXPECT_LOG(log(), "1: Node: 1.");
    }
    expectRefused("08 01 FF FF FF", 2);
    EXPECT_LOG(log(), "1: Node: 1.");
}

TEST_F(ReaderTest, ARootThatCannotBeReadIsRefused)
{
    for (const char *hex : {"0B", "0C", "0F", "0E", "0E 80", "0A 02 61", "0D 01 02 03", "09 01 02 03 04 05 06 07"})
    {
        expectRefused(hex, 0);
        EXPECT_LOG(log(), "1: Node: 1.");
    }
    expectRefused("86", 0);
    EXPECT_LOG(log(), "1: Node: 0.");
}

TEST_F(ReaderTest, NullAndNoBytesAreRefusedInSilence)
{
    uint32_t consumed = 9;
    const uint8_t byte = 6;
    EXPECT_EQ(nullptr, GPBLIB_ObjTree_Read(nullptr, 4, &consumed, kModuleId, context()));
    EXPECT_EQ(0u, consumed);
    EXPECT_EQ(nullptr, GPBLIB_ObjTree_Read(&byte, 0, &consumed, kModuleId, context()));
    EXPECT_EQ("", log().take());
}

TEST_F(ReaderTest, TheCountOfConsumedBytesMayBeLeftOut)
{
    const Bytes bytes = fromHex("06 02 08 01");
    const TreePtr tree(GPBLIB_ObjTree_Read(bytes.data(), 4, nullptr, kModuleId, nullptr));
    EXPECT_NE(nullptr, tree);
    EXPECT_EQ(nullptr, GPBLIB_ObjTree_Read(bytes.data(), 3, nullptr, kModuleId, nullptr));
}

TEST_F(ReaderTest, AnUnreadableNodeIsReportedWithWhatWasNotRead)
{
    expectRefused("06 05 08 01 0A 05 61", 4);
    EXPECT_LOG(log(), "1: RDMI ObjTree failed to read [mem]0a0561", "1: Node: 0.");
    expectRefused("2E 7F 08 01 0B 05 61", 4);
    EXPECT_LOG(log(), "1: RDMI ObjTree failed to read [mem]0b0561", "1: Node: 5.");
    expectRefused("06 05 63 00 00", 2);
    EXPECT_LOG(log(), "1: RDMI ObjTree failed to read [str]c", "1: Node: 0.");
}

TEST_F(ReaderTest, TheUnreadRestIsShownUpTo125Bytes)
{
    Bytes bytes = fromHex("06 7F 0B");
    bytes.resize(2 + 300, 0x11);
    EXPECT_EQ(nullptr, read(bytes, kModuleId, context()).tree);
    std::string digits = "0b";
    for (int i = 1; i < 125; ++i)
    {
        digits += "11";
    }
    EXPECT_LOG(log(), "1: RDMI ObjTree failed to read [mem]" + digits, "1: Node: 0.");
}

TEST_F(ReaderTest, AnElevenByteVarintFails)
{
    expectRefused("06 0C 08 80 80 80 80 80 80 80 80 80 80 01", 2);
    expectRefused("06 0C 80 80 80 80 80 80 80 80 80 80 01 01", 2);
}

TEST_F(ReaderTest, ALengthPastTheBufferFails)
{
    expectRefused("06 04 0A 03 61 62", 2);
    expectRefused("06 7F 0A FF FF FF FF 0F 61", 2);
}

TEST_F(ReaderTest, ALengthThatOverflowsThirtyTwoBitsFails)
{
    expectRefused("06 07 0A 80 80 80 80 10 61", 2);             // 2^32: cut to 32 bits it would be 0
    expectRefused("06 08 0A 81 80 80 80 10 61 62", 2);          // 2^32 + 1: would be 1
    expectRefused("06 7F 0A FF FF FF FF FF FF FF FF FF 01", 2); // 2^64 - 1
    expectRefused("06 07 0E 80 80 80 80 10", 2);                // a container of 2^32
    expectRefused("06 81 80 80 80 10 08 01", 0);                // a root of 2^32 + 1
    expectRefused("0A 80 80 80 80 10", 0);
}

TEST_F(ReaderTest, LengthsUpToThirtyTwoBitsMayPromiseMoreThanThereIs)
{
    const ReadResult result = read(fromHex("06 FF FF FF FF 0F 0E FF FF FF FF 0F 08 01"), kModuleId, context());
    ASSERT_NE(nullptr, result.tree);
    EXPECT_EQ(0xFFFFFFFFu, result.tree->objLen);
    EXPECT_EQ("R0(C1(I1=1))", describe(result.tree.get()));
    EXPECT_EQ(14u, result.consumed);
}

TEST_F(ReaderTest, TheDeepestTreeAcceptedHas253NestedContainers)
{
    const Bytes accepted = nestedBytes(253);
    const ReadResult good = read(accepted, kModuleId, context());
    EXPECT_NE(nullptr, good.tree);
    EXPECT_EQ(accepted.size(), good.consumed);
    EXPECT_EQ(nullptr, read(nestedBytes(254), kModuleId, context()).tree);
    EXPECT_EQ(nullptr, read(nestedBytes(255), kModuleId, context()).tree);
    EXPECT_EQ(nullptr, read(nestedBytes(5000), kModuleId, context()).tree);
    EXPECT_EQ("", log().take());
}

TEST_F(ReaderTest, ATreeThatIsTooDeepIsConsumedUpToTheContainerThatIsOneTooMany)
{
    const Bytes bytes = nestedBytes(300);
    const ReadResult result = read(bytes, kModuleId, context());
    EXPECT_EQ(nullptr, result.tree);
    // Headers of 2 bytes for the innermost 63 containers (up to 126 bytes of content), of 3 for the others.
    const size_t innermost = 300 - 254; // containers that were not reached
    EXPECT_EQ(bytes.size() - innermost * 2, result.consumed);
}

TEST_F(ReaderTest, ManySiblingsAreNoNesting)
{
    const TreePtr tree(GPBLIB_ObjTree_Create(0, kModuleId));
    for (int i = 0; i < 1000; ++i)
    {
        GPBLIB_ObjTree_CreateNode(tree.get(), nullptr, 1, 1);
    }
    EXPECT_NE(nullptr, read(write(tree.get(), GPB_OBJTREE_MODE_TEMPLATE), kModuleId).tree);
}

TEST_F(ReaderTest, AReadTreeIsWrittenAgain)
{
    const Bytes bytes = fromHex("06 0C FE FF 1F 08 10 00 1A 02 61 62 20 00");
    const ReadResult result = read(bytes, kModuleId);
    EXPECT_EQ(toHex(bytes), toHex(write(result.tree.get(), GPB_OBJTREE_MODE_TEMPLATE)));
}

TEST_F(ReaderTest, EverythingIsReleasedWhicheverAllocationFails)
{
    const Bytes bytes = fromHex("06 0C FE FF 1F 08 10 00 1A 02 61 62 20 00");
    const uint64_t calls = failEachCallOf(GPB_HOST_MALLOC,
                                          [&](const FaultRun &run)
                                          {
                                              const ReadResult result = read(bytes, kModuleId, context());
                                              EXPECT_EQ(run.fails(), result.tree == nullptr);
                                              // The root, two stacks, four nodes, and the string's content before the
                                              // last node.
                                              constexpr uint32_t kConsumed[] = {14, 0, 2, 2, 2, 6, 8, 8, 12};
                                              EXPECT_EQ(kConsumed[run.failingCall], result.consumed);
                                              if (run.failingCall == 2 || run.failingCall == 3)
                                              {
                                                  EXPECT_LOG(log(), "1: RDMI ObjTree failed to alloc memory");
                                              }
                                              log().clear();
                                          });
    EXPECT_EQ(8u, calls);
}

TEST_F(ReaderTest, TheStacksAreReleasedBeforeATreeThatIsTooDeep)
{
    const Bytes bytes = nestedBytes(300);
    events().clear();
    EXPECT_EQ(nullptr, read(bytes, kModuleId, context()).tree);
    const std::vector<PlatformEvent> released = events().ofKind(GPB_HOST_EVENT_FREE);
    ASSERT_EQ(2u + 1 + 254, released.size()) << "two stacks, the root and its containers";
    EXPECT_EQ(GPB_OBJTREE_READ_STACK * sizeof(ObjNode *), released[0].size);
    EXPECT_EQ(GPB_OBJTREE_READ_STACK * sizeof(uint32_t), released[1].size);
}

TEST_F(ReaderTest, ContentWithoutStateOrStacksIsNotRead)
{
    const Bytes bytes = fromHex("08 01");
    const TreePtr tree(GPBLIB_ObjTree_Create(0, kModuleId));
    tree->objLen = 2;
    std::vector<ObjNode *> nodes(GPB_OBJTREE_READ_STACK);
    std::vector<uint32_t> counters(GPB_OBJTREE_READ_STACK);
    const auto readContent = [&](GpbObjTreeReadState *state)
    { return GPBLIB_ObjTree_ReadContent_(state, bytes.data(), 2, context()) - bytes.data(); };
    GpbObjTreeReadState noTree = {nullptr, nodes.data(), counters.data(), 0};
    GpbObjTreeReadState noNodes = {tree.get(), nullptr, counters.data(), 0};
    GpbObjTreeReadState noCounters = {tree.get(), nodes.data(), nullptr, 0};
    EXPECT_EQ(0, readContent(nullptr));
    EXPECT_EQ(0, readContent(&noTree));
    EXPECT_EQ(0, readContent(&noNodes));
    EXPECT_EQ(0, readContent(&noCounters));
    EXPECT_EQ("R0()", describe(tree.get()));
    GpbObjTreeReadState state = {tree.get(), nodes.data(), counters.data(), 0};
    EXPECT_EQ(2, readContent(&state));
    EXPECT_EQ("R0(I1=1)", describe(tree.get()));
    EXPECT_EQ(1u, state.uiStackNum);
}

TEST_F(ReaderTest, AFailingServiceNeverMakesItCrash)
{
    const Bytes bytes = fromHex("06 0C FE FF 1F 08 10 00 1A 02 61 62 20 00 0B");
    failEachCall([&](const FaultRun &) { (void)read(bytes, kModuleId, context()).tree; });
    const Bytes bad = fromHex("06 0C FE FF 1F 08 10 00 1A 02 61 62 23 00");
    failEachCall([&](const FaultRun &) { EXPECT_EQ(nullptr, read(bad, kModuleId, context()).tree); });
}

using ReaderDeliberateOddityTest = ReaderTest;

TEST_F(ReaderDeliberateOddityTest, APlainContainerReadsBackAsAString)
{
    // Plain mode keeps no mark by which a container could be told from a string; only template mode keeps the nesting.
    EXPECT_EQ("R0(S1='\x08\x01')", readText("06 04 0A 02 08 01", 6));
}

} // namespace
} // namespace gpbtest
