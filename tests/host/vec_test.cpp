/** Vectors: slots, growth, gaps and what the ledger sees of them. */
#include <algorithm>
#include <vector>

#include "platform/vec.h"
#include "platform/zmp.h"
#include "support/platform_fixture.h"
#include "support/text_lines.h"

namespace
{

using gpbtest::joinLines;

class VecTest : public gpbtest::PlatformFixture
{
protected:
    /** Addresses to store. */
    int m_items[200] = {};

    static VecVector *create(uint32_t size) { return VEC_VectorInit_F(kModuleId, size, "unit", 1); }

    static void destroy(VecVector *vector) { VEC_VectorFree_F(vector, "unit", 2); }

    static std::vector<void *> slots(const VecVector *vector)
    {
        return std::vector<void *>(vector->ppvSlot, vector->ppvSlot + vector->uiCount);
    }
};

TEST_F(VecTest, NewVectorIsEmpty)
{
    VecVector *const vector = create(32);
    ASSERT_NE(nullptr, vector);
    EXPECT_EQ(kModuleId, vector->uiModuleId);
    EXPECT_EQ(0u, vector->uiCount);
    EXPECT_EQ(32u, vector->uiSize);
    EXPECT_EQ(0u, VEC_VectorCount(vector));
    EXPECT_EQ(std::vector<void *>(32, nullptr), std::vector<void *>(vector->ppvSlot, vector->ppvSlot + 32));
    destroy(vector);
}

TEST_F(VecTest, MemoryIsHeldUnderTheCallersSite)
{
    VecVector *const vector = VEC_VectorInit_F(kModuleId, 4, "owner", 17);
    EXPECT_EQ("MALLOC owner:17\nMALLOC owner:17\nVEC_INIT owner:17\n", joinLines(events().texts()));
    const gpbtest::PlatformEvent created = events().events().back();
    EXPECT_EQ(vector, created.memory);
    EXPECT_EQ(kModuleId, created.moduleId);
    EXPECT_EQ(4u, created.size);
    for (const gpbtest::PlatformEvent &event : events().ofKind(GPB_HOST_EVENT_MALLOC))
    {
        EXPECT_EQ(kModuleId, event.moduleId);
        EXPECT_EQ(g_aucZmpMemPt[0], event.partition);
    }
    events().clear();
    VEC_VectorFree_F(vector, "breaker", 18);
    EXPECT_EQ("VEC_FREE breaker:18\nFREE breaker:18\nFREE breaker:18\n", joinLines(events().texts()));
    EXPECT_EQ(vector, events().events().front().memory);
}

TEST_F(VecTest, SetFillsTheFirstFreeSlot)
{
    VecVector *const vector = create(4);
    EXPECT_EQ(0u, VEC_VectorSet(vector, &m_items[0]));
    EXPECT_EQ(1u, VEC_VectorSet(vector, &m_items[1]));
    EXPECT_EQ(2u, VEC_VectorSet(vector, &m_items[2]));
    vector->ppvSlot[1] = nullptr;
    EXPECT_EQ(1u, VEC_VectorSet(vector, &m_items[3]));
    EXPECT_EQ(3u, VEC_VectorSet(vector, &m_items[4]));
    EXPECT_EQ((std::vector<void *>{&m_items[0], &m_items[3], &m_items[2], &m_items[4]}), slots(vector));
    destroy(vector);
}

TEST_F(VecTest, GrowsFromAnySizeAndKeepsItsItems)
{
    for (const uint32_t size : {0u, 1u, 3u, 32u})
    {
        VecVector *const vector = create(size);
        ASSERT_NE(nullptr, vector);
        std::vector<void *> expected;
        for (int &item : m_items)
        {
            ASSERT_EQ(expected.size(), VEC_VectorSet(vector, &item));
            expected.push_back(&item);
        }
        EXPECT_EQ(expected, slots(vector));
        EXPECT_EQ(expected.size(), VEC_VectorCount(vector));
        ASSERT_GE(vector->uiSize, vector->uiCount);
        EXPECT_TRUE(std::all_of(vector->ppvSlot + vector->uiCount, vector->ppvSlot + vector->uiSize,
                                [](const void *slot) { return slot == nullptr; }));
        destroy(vector);
    }
}

TEST_F(VecTest, CountReachesTheLastSlotInUse)
{
    VecVector *const vector = create(4);
    for (int index = 0; index < 3; ++index)
    {
        VEC_VectorSet(vector, &m_items[index]);
    }
    vector->ppvSlot[0] = nullptr;
    EXPECT_EQ(3u, VEC_VectorCount(vector));
    vector->ppvSlot[2] = nullptr;
    EXPECT_EQ(2u, VEC_VectorCount(vector));
    vector->ppvSlot[1] = nullptr;
    EXPECT_EQ(0u, VEC_VectorCount(vector));
    destroy(vector);
}

TEST_F(VecTest, ZipMovesItemsTogetherInTheirOrder)
{
    VecVector *const vector = create(2);
    for (int index = 0; index < 6; ++index)
    {
        VEC_VectorSet(vector, &m_items[index]);
    }
    vector->ppvSlot[0] = nullptr;
    vector->ppvSlot[2] = nullptr;
    vector->ppvSlot[3] = nullptr;
    VEC_VectorZipEmptySlot(vector);
    EXPECT_EQ((std::vector<void *>{&m_items[1], &m_items[4], &m_items[5]}), slots(vector));
    EXPECT_EQ(nullptr, vector->ppvSlot[3]);
    EXPECT_EQ(3u, VEC_VectorSet(vector, &m_items[6]));

    VEC_VectorZipEmptySlot(vector);
    EXPECT_EQ(4u, vector->uiCount);
    for (uint32_t index = 0; index < 4; ++index)
    {
        vector->ppvSlot[index] = nullptr;
    }
    VEC_VectorZipEmptySlot(vector);
    EXPECT_EQ(0u, vector->uiCount);
    VEC_VectorZipEmptySlot(vector);
    EXPECT_EQ(0u, vector->uiCount);
    destroy(vector);
}

TEST_F(VecTest, NullVectorAndNullItemAreHarmless)
{
    EXPECT_EQ(VEC_INVALID_INDEX, VEC_VectorSet(nullptr, &m_items[0]));
    EXPECT_EQ(0u, VEC_VectorCount(nullptr));
    VEC_VectorZipEmptySlot(nullptr);
    VEC_VectorFree_F(nullptr, "unit", 1);
    VecVector *const vector = create(2);
    EXPECT_EQ(VEC_INVALID_INDEX, VEC_VectorSet(vector, nullptr));
    EXPECT_EQ(0u, vector->uiCount);
    destroy(vector);
}

TEST_F(VecTest, SizeThatNobodyCanMeanGetsNothing)
{
    // The second one's bytes are 4 where they are counted in 32 bits.
    for (const uint32_t size : {0xFFFFFFFFu, 0x40000001u, 0x20000001u})
    {
        EXPECT_EQ(nullptr, create(size)) << size;
    }
}

TEST_F(VecTest, FailsWhenAnyOfItsMemoryCannotBeHad)
{
    // The call itself, the record, the slots.
    const uint64_t calls = failEachCall(
        [](const gpbtest::FaultRun &run)
        {
            VecVector *const vector = create(4);
            EXPECT_EQ(run.fails(), vector == nullptr);
            destroy(vector);
        });
    EXPECT_EQ(3u, calls);
}

TEST_F(VecTest, KeepsWhatItHoldsWhenItCannotGrow)
{
    VecVector *const vector = create(2);
    VEC_VectorSet(vector, &m_items[0]);
    VEC_VectorSet(vector, &m_items[1]);
    GpbHost_FailCall(GPB_HOST_MALLOC, 1);
    EXPECT_EQ(VEC_INVALID_INDEX, VEC_VectorSet(vector, &m_items[2]));
    EXPECT_EQ((std::vector<void *>{&m_items[0], &m_items[1]}), slots(vector));
    EXPECT_EQ(2u, VEC_VectorSet(vector, &m_items[2]));
    destroy(vector);
}

TEST_F(VecTest, ProvokedFailureOfSetStoresNothing)
{
    VecVector *const vector = create(2);
    GpbHost_FailCall(GPB_HOST_VEC_SET, 1);
    EXPECT_EQ(VEC_INVALID_INDEX, VEC_VectorSet(vector, &m_items[0]));
    EXPECT_EQ(0u, vector->uiCount);
    EXPECT_EQ(0u, VEC_VectorSet(vector, &m_items[0]));
    destroy(vector);
}

} // namespace
