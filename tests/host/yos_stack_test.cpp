/** The pointer stack. */
#include <vector>

#include "platform/yos.h"
#include "platform/zmp.h"
#include "support/platform_fixture.h"

namespace
{

class YosStackTest : public gpbtest::PlatformFixture
{
protected:
    /** Addresses to push. */
    int m_items[100] = {};

    static void *create(uint32_t depth) { return YOS_CreateStackByHandle(ZMP_GetRelHandle(kModuleId), depth); }
};

TEST_F(YosStackTest, PopsInReverseOrderHoweverFarItGrew)
{
    for (const uint32_t depth : {0u, 1u, 16u})
    {
        void *const stack = create(depth);
        ASSERT_NE(nullptr, stack);
        EXPECT_EQ(0u, YOS_GetSize(stack));
        uint32_t size = 0;
        for (int &item : m_items)
        {
            ASSERT_EQ(0u, YOS_Push(stack, &item));
            EXPECT_EQ(++size, YOS_GetSize(stack));
        }
        while (size > 0)
        {
            void *item = nullptr;
            ASSERT_EQ(0u, YOS_Pop(stack, &item));
            EXPECT_EQ(&m_items[--size], item);
            EXPECT_EQ(size, YOS_GetSize(stack));
        }
        YOS_DeleteStack(stack);
    }
}

TEST_F(YosStackTest, PopOfAnEmptyStackFailsAndLeavesTheTarget)
{
    void *const stack = create(2);
    void *item = &m_items[7];
    EXPECT_NE(0u, YOS_Pop(stack, &item));
    EXPECT_EQ(&m_items[7], item);
    EXPECT_EQ(0u, YOS_GetSize(stack));
    YOS_DeleteStack(stack);
}

TEST_F(YosStackTest, HoldsNullPointersToo)
{
    void *const stack = create(2);
    EXPECT_EQ(0u, YOS_Push(stack, nullptr));
    EXPECT_EQ(1u, YOS_GetSize(stack));
    void *item = &m_items[0];
    EXPECT_EQ(0u, YOS_Pop(stack, &item));
    EXPECT_EQ(nullptr, item);
    YOS_DeleteStack(stack);
}

TEST_F(YosStackTest, MemoryIsHeldUnderTheModuleOfTheHandle)
{
    void *const stack = create(2);
    const std::vector<gpbtest::PlatformEvent> allocations = events().ofKind(GPB_HOST_EVENT_MALLOC);
    ASSERT_EQ(2u, allocations.size());
    for (const gpbtest::PlatformEvent &allocation : allocations)
    {
        EXPECT_EQ(kModuleId, allocation.moduleId);
        EXPECT_EQ("yos_stack", allocation.file);
    }
    YOS_DeleteStack(stack);
}

TEST_F(YosStackTest, DeletingAStackReleasesWhatItStillHolds)
{
    void *const stack = create(1);
    YOS_Push(stack, &m_items[0]);
    YOS_Push(stack, &m_items[1]);
    YOS_DeleteStack(stack); // the fixture would see memory that stays
    EXPECT_EQ(events().ofKind(GPB_HOST_EVENT_MALLOC).size(), events().ofKind(GPB_HOST_EVENT_FREE).size());
}

TEST_F(YosStackTest, NullIsHarmless)
{
    void *item = nullptr;
    EXPECT_NE(0u, YOS_Push(nullptr, &m_items[0]));
    EXPECT_NE(0u, YOS_Pop(nullptr, &item));
    EXPECT_EQ(0u, YOS_GetSize(nullptr));
    YOS_DeleteStack(nullptr);
    void *const stack = create(1);
    YOS_Push(stack, &m_items[0]);
    EXPECT_NE(0u, YOS_Pop(stack, nullptr));
    EXPECT_EQ(1u, YOS_GetSize(stack));
    YOS_DeleteStack(stack);
}

TEST_F(YosStackTest, HandleOfAnyModuleIdCreatesAStack)
{
    for (const uint32_t moduleId : {0u, UINT32_MAX})
    {
        void *const stack = YOS_CreateStackByHandle(ZMP_GetRelHandle(moduleId), 1);
        ASSERT_NE(nullptr, stack);
        EXPECT_EQ(moduleId, events().events().back().moduleId);
        YOS_DeleteStack(stack);
    }
}

TEST_F(YosStackTest, DepthThatNobodyCanMeanGetsNothing)
{
    // The second one's bytes are 4 where they are counted in 32 bits.
    for (const uint32_t depth : {0xFFFFFFFFu, 0x40000001u, 0x20000001u})
    {
        EXPECT_EQ(nullptr, create(depth)) << depth;
    }
}

TEST_F(YosStackTest, FailsWhenAnyOfItsMemoryCannotBeHad)
{
    const uint64_t calls = failEachCall(
        [](const gpbtest::FaultRun &run)
        {
            void *const stack = create(4);
            EXPECT_EQ(run.fails(), stack == nullptr);
            YOS_DeleteStack(stack);
        });
    EXPECT_EQ(3u, calls); // the call itself, the record, the items
}

TEST_F(YosStackTest, KeepsWhatItHoldsWhenItCannotGrow)
{
    void *const stack = create(1);
    YOS_Push(stack, &m_items[0]);
    GpbHost_FailCall(GPB_HOST_MALLOC, 1);
    EXPECT_NE(0u, YOS_Push(stack, &m_items[1]));
    EXPECT_EQ(1u, YOS_GetSize(stack));
    EXPECT_EQ(0u, YOS_Push(stack, &m_items[2]));
    void *item = nullptr;
    EXPECT_EQ(0u, YOS_Pop(stack, &item));
    EXPECT_EQ(&m_items[2], item);
    YOS_DeleteStack(stack);
}

TEST_F(YosStackTest, ProvokedFailuresChangeNothing)
{
    void *const stack = create(4);
    YOS_Push(stack, &m_items[0]);
    GpbHost_FailCall(GPB_HOST_STACK_PUSH, 1);
    EXPECT_NE(0u, YOS_Push(stack, &m_items[1]));
    GpbHost_FailCall(GPB_HOST_STACK_POP, 1);
    void *item = nullptr;
    EXPECT_NE(0u, YOS_Pop(stack, &item));
    EXPECT_EQ(nullptr, item);
    EXPECT_EQ(1u, YOS_GetSize(stack));
    YOS_DeleteStack(stack);
}

} // namespace
