/** The allocator: books, guards, fill patterns and errors of the caller. */
#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <thread>
#include <vector>

#include "platform/zmp.h"
#include "support/platform_fixture.h"
#include "support/text_lines.h"

namespace
{

using gpbtest::joinLines;

constexpr const char *kFile = "unit";
constexpr uint8_t kPartition = 3;
constexpr unsigned char kNewByte = 0xA5;
constexpr unsigned char kReleasedByte = 0xDD;

/** Overwrites one byte that is out of bounds on purpose, past a memory checker that would stop the program. */
__attribute__((no_sanitize("address"))) void overwrite(volatile unsigned char *byte)
{
    *byte = static_cast<unsigned char>(*byte ^ 0xFF);
}

class ZmpMemoryTest : public gpbtest::PlatformFixture
{
protected:
    static unsigned char *allocate(size_t size, uint32_t line = 1)
    {
        return static_cast<unsigned char *>(ZMP_Malloc_F(kModuleId, kPartition, size, kFile, line));
    }

    static void release(void *memory, uint32_t line = 2) { ZMP_Free_F(memory, kFile, line); }
};

TEST_F(ZmpMemoryTest, PartitionTableStartsWithANumberThatIsNotZero)
{
    EXPECT_NE(0, g_aucZmpMemPt[0]);
}

TEST_F(ZmpMemoryTest, LedgerHoldsWhatEveryAllocationWasMadeWith)
{
    const size_t countBefore = GpbHost_LiveCount();
    const size_t bytesBefore = GpbHost_LiveBytes();
    void *const first = allocate(10, 11);
    void *const second = ZMP_Malloc_F(99, 4, 20, "other", 22);

    EXPECT_EQ(countBefore + 2, GpbHost_LiveCount());
    EXPECT_EQ(bytesBefore + 30, GpbHost_LiveBytes());
    std::vector<GpbHostAllocation> live(countBefore + 2);
    ASSERT_EQ(live.size(), GpbHost_LiveList(live.data(), live.size()));
    const GpbHostAllocation &older = live[countBefore];
    EXPECT_EQ(first, older.pvMem);
    EXPECT_EQ(10u, older.uiSize);
    EXPECT_EQ(kModuleId, older.uiModuleId);
    EXPECT_EQ(kPartition, older.ucPartition);
    EXPECT_STREQ(kFile, older.pcFile);
    EXPECT_EQ(11u, older.uiLine);
    const GpbHostAllocation &newer = live[countBefore + 1];
    EXPECT_EQ(second, newer.pvMem);
    EXPECT_EQ(20u, newer.uiSize);
    EXPECT_EQ(99u, newer.uiModuleId);
    EXPECT_EQ(4u, newer.ucPartition);
    EXPECT_STREQ("other", newer.pcFile);
    EXPECT_EQ(22u, newer.uiLine);

    release(first);
    EXPECT_EQ(countBefore + 1, GpbHost_LiveCount());
    EXPECT_EQ(bytesBefore + 20, GpbHost_LiveBytes());
    release(second);
    EXPECT_EQ(countBefore, GpbHost_LiveCount());
    EXPECT_EQ(bytesBefore, GpbHost_LiveBytes());
}

TEST_F(ZmpMemoryTest, ListIsOldestFirstWhateverIsReleasedBetween)
{
    const size_t before = GpbHost_LiveCount();
    void *const first = allocate(1, 1);
    void *const second = allocate(1, 2);
    void *const third = allocate(1, 3);
    release(second);
    void *const fourth = allocate(1, 4);

    std::vector<GpbHostAllocation> live(before + 3);
    ASSERT_EQ(live.size(), GpbHost_LiveList(live.data(), live.size()));
    EXPECT_EQ(1u, live[before].uiLine);
    EXPECT_EQ(3u, live[before + 1].uiLine);
    EXPECT_EQ(4u, live[before + 2].uiLine);
    release(third);
    release(first);
    ASSERT_EQ(before + 1, GpbHost_LiveList(live.data(), live.size()));
    EXPECT_EQ(4u, live[before].uiLine);
    release(fourth);
}

TEST_F(ZmpMemoryTest, ListWritesNoMoreThanThereIsRoomFor)
{
    const size_t before = GpbHost_LiveCount();
    void *const first = allocate(1);
    void *const second = allocate(1);
    std::vector<GpbHostAllocation> live(before + 2);
    live[before + 1].uiLine = 77;
    EXPECT_EQ(before + 2, GpbHost_LiveList(live.data(), before + 1));
    EXPECT_EQ(first, live[before].pvMem);
    EXPECT_EQ(77u, live[before + 1].uiLine);
    EXPECT_EQ(before + 2, GpbHost_LiveList(nullptr, 0));
    EXPECT_EQ(before + 2, GpbHost_LiveList(nullptr, 5));
    release(first);
    release(second);
}

TEST_F(ZmpMemoryTest, PrintsOneLinePerAllocation)
{
    void *const memory = ZMP_Malloc_F(0xBEEF, kPartition, 12, kFile, 34);
    void *const nameless = ZMP_Malloc_F(0xBEEF, kPartition, 13, nullptr, 35);
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(GpbHost_LiveCount(), GpbHost_PrintLive());
    const std::string printed = ::testing::internal::GetCapturedStderr();
    EXPECT_NE(std::string::npos, printed.find("12 bytes held by module 0xbeef, unit:34\n")) << printed;
    EXPECT_NE(std::string::npos, printed.find("13 bytes held by module 0xbeef, ?:35\n")) << printed;
    release(memory);
    release(nameless);
}

TEST_F(ZmpMemoryTest, NewMemoryIsFilledAndAlignedForAnyObject)
{
    for (const size_t size : {size_t{1}, size_t{7}, size_t{8}, size_t{1000}})
    {
        unsigned char *const memory = allocate(size);
        ASSERT_NE(nullptr, memory);
        EXPECT_EQ(0u, reinterpret_cast<uintptr_t>(memory) % alignof(std::max_align_t));
        EXPECT_EQ(std::vector<unsigned char>(size, kNewByte), std::vector<unsigned char>(memory, memory + size));
        release(memory);
    }
}

TEST_F(ZmpMemoryTest, FillingCanBeSwitchedOffAndIsOnAgainAfterAReset)
{
    constexpr unsigned char kOwnByte = 0x11;
    const auto consistsOf = [](const unsigned char *memory, size_t size, unsigned char wanted)
    { return std::all_of(memory, memory + size, [=](unsigned char byte) { return byte == wanted; }); };
    for (const size_t size : {size_t{20}, size_t{5000}})
    {
        GpbHost_FillMemory(0);
        unsigned char *const used = allocate(size);
        std::memset(used, kOwnByte, size);
        release(used);
        // Most likely what has just been released: filled by nobody, neither then nor now.
        unsigned char *const reused = allocate(size);
        EXPECT_FALSE(consistsOf(reused, size, kNewByte)) << size;
        EXPECT_FALSE(consistsOf(reused, size, kReleasedByte)) << size;
        release(reused);

        GpbHost_FillMemory(1);
        unsigned char *const filled = allocate(size);
        EXPECT_TRUE(consistsOf(filled, size, kNewByte)) << size;
        release(filled);
    }
    GpbHost_FillMemory(0);
    GpbHost_Reset();
    unsigned char *const filled = allocate(20);
    EXPECT_TRUE(consistsOf(filled, 20, kNewByte));
    release(filled);
}

TEST_F(ZmpMemoryTest, MemoryThatIsNotFilledIsEnteredAndWatched)
{
    GpbHost_FillMemory(0);
    const size_t countBefore = GpbHost_LiveCount();
    unsigned char *const memory = allocate(20, 5);
    EXPECT_EQ(countBefore + 1, GpbHost_LiveCount());
    overwrite(memory + 20);
    release(memory, 6);
    EXPECT_EQ(countBefore, GpbHost_LiveCount());
    EXPECT_EQ("MALLOC unit:5\nOVERRUN unit:6\nFREE unit:6\n", joinLines(events().texts()));
    events().clear(); // provoked: not for the fixture to complain about
}

TEST_F(ZmpMemoryTest, NoBytesAreAnAllocationToo)
{
    void *const first = allocate(0);
    void *const second = allocate(0);
    ASSERT_NE(nullptr, first);
    EXPECT_NE(first, second);
    release(first);
    release(second);
}

TEST_F(ZmpMemoryTest, SizesThatNobodyCanMeanGetNothing)
{
    const size_t before = GpbHost_LiveCount();
    constexpr size_t kLimit = size_t{1} << 30;
    for (const size_t size : {kLimit + 1, size_t{UINT32_MAX}, SIZE_MAX - 15, SIZE_MAX})
    {
        EXPECT_EQ(nullptr, allocate(size, 9)) << size;
    }
    EXPECT_EQ(before, GpbHost_LiveCount());
    EXPECT_EQ("MALLOC_FAILED unit:9\nMALLOC_FAILED unit:9\nMALLOC_FAILED unit:9\nMALLOC_FAILED unit:9\n",
              joinLines(events().texts()));
}

TEST_F(ZmpMemoryTest, EventsTellTheCallAndTheAllocation)
{
    void *const memory = allocate(10, 5);
    release(memory, 6);
    ASSERT_EQ(2u, events().events().size());
    for (const gpbtest::PlatformEvent &event : events().events())
    {
        EXPECT_EQ(kModuleId, event.moduleId);
        EXPECT_EQ(kPartition, event.partition);
        EXPECT_EQ(memory, event.memory);
        EXPECT_EQ(10u, event.size);
    }
    EXPECT_EQ("MALLOC unit:5\nFREE unit:6\n", joinLines(events().texts()));
}

TEST_F(ZmpMemoryTest, FailedCallGetsNothingAndIsTold)
{
    GpbHost_FailCall(GPB_HOST_MALLOC, 1);
    EXPECT_EQ(nullptr, allocate(10, 5));
    EXPECT_EQ("MALLOC_FAILED unit:5\n", joinLines(events().texts()));
    EXPECT_EQ(nullptr, events().events().front().memory);
    EXPECT_EQ(10u, events().events().front().size);
}

TEST_F(ZmpMemoryTest, ReleasingNullDoesNothing)
{
    ZMP_Free_F(nullptr, kFile, 1);
    EXPECT_TRUE(events().events().empty());
}

TEST_F(ZmpMemoryTest, BadReleasesAreToldAndLeftAlone)
{
    int local = 5;
    unsigned char *const memory = allocate(8);
    events().clear();
    ::testing::internal::CaptureStderr();
    ZMP_Free_F(&local, kFile, 31);     // foreign
    ZMP_Free_F(memory + 1, kFile, 32); // inside an allocation
    release(memory, 33);
    ZMP_Free_F(memory, kFile, 34); // a second time
    ZMP_Free_F(&local, nullptr, 35);
    const std::string printed = ::testing::internal::GetCapturedStderr();

    EXPECT_EQ(5, local);
    EXPECT_EQ("BAD_FREE unit:31\nBAD_FREE unit:32\nFREE unit:33\nBAD_FREE unit:34\nBAD_FREE (null):35\n",
              joinLines(events().texts()));
    EXPECT_EQ(&local, events().events().front().memory);
    EXPECT_NE(std::string::npos, printed.find(" at unit:34\n")) << printed;
    EXPECT_NE(std::string::npos, printed.find(" at ?:35\n")) << printed;
    events().clear(); // provoked: not for the fixture to complain about
}

TEST_F(ZmpMemoryTest, EveryGuardByteIsWatched)
{
    constexpr size_t kGuardSize = 16;
    for (const size_t size : {size_t{0}, size_t{5}, size_t{8}})
    {
        for (size_t offset = 0; offset < kGuardSize; ++offset)
        {
            unsigned char *const memory = allocate(size);
            overwrite(memory + size + offset);
            events().clear();
            ::testing::internal::CaptureStderr();
            release(memory, 44);
            const std::string printed = ::testing::internal::GetCapturedStderr();
            EXPECT_EQ("OVERRUN unit:44\nFREE unit:44\n", joinLines(events().texts())) << size << "+" << offset;
            EXPECT_NE(std::string::npos, printed.find(" at unit:44\n")) << printed;
        }
    }
    events().clear();
}

TEST_F(ZmpMemoryTest, WritingUpToTheLastByteIsNoOverrun)
{
    for (size_t size = 0; size < 40; ++size)
    {
        unsigned char *const memory = allocate(size);
        std::memset(memory, 0x11, size);
        release(memory);
    }
    expectNoMisuse();
}

TEST_F(ZmpMemoryTest, ServesSeveralThreads)
{
    constexpr int kThreads = 4;
    constexpr uint32_t kRounds = 500;
    const size_t before = GpbHost_LiveCount();
    const uint64_t callsBefore = GpbHost_CallCount(GPB_HOST_MALLOC);
    std::atomic<int> failures{0};
    std::vector<std::thread> threads;
    for (int index = 0; index < kThreads; ++index)
    {
        threads.emplace_back(
            [&failures]
            {
                std::vector<void *> held;
                for (uint32_t round = 1; round <= kRounds; ++round)
                {
                    held.push_back(allocate(round, round));
                    failures += held.back() == nullptr;
                }
                for (void *memory : held)
                {
                    release(memory);
                }
            });
    }
    for (std::thread &thread : threads)
    {
        thread.join();
    }
    EXPECT_EQ(0, failures);
    EXPECT_EQ(before, GpbHost_LiveCount());
    EXPECT_EQ(callsBefore + kThreads * kRounds, GpbHost_CallCount(GPB_HOST_MALLOC));
    EXPECT_EQ(size_t{kThreads} * kRounds, events().ofKind(GPB_HOST_EVENT_FREE).size());
}

} // namespace
