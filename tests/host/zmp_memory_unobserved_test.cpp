/**
 * The allocator while nobody observes it, which is how programs other than tests use it: it keeps its books, finds the
 * same errors and says so on standard error.
 */
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "gpb_templatelib/gpb_host.h"
#include "platform/zmp.h"

namespace
{

constexpr const char *kFile = "unit";
constexpr uint32_t kModuleId = 0xBEEF;
constexpr uint8_t kPartition = 3;
constexpr unsigned char kNewByte = 0xA5;
constexpr unsigned char kOwnByte = 0x11;

/** Overwrites one byte that is out of bounds on purpose, past a memory checker that would stop the program. */
__attribute__((no_sanitize("address"))) void overwrite(volatile unsigned char *byte)
{
    *byte = static_cast<unsigned char>(*byte ^ 0xFF);
}

unsigned char *allocate(size_t size, uint32_t line = 1)
{
    return static_cast<unsigned char *>(ZMP_Malloc_F(kModuleId, kPartition, size, kFile, line));
}

void release(void *memory, uint32_t line = 2)
{
    ZMP_Free_F(memory, kFile, line);
}

/** What standard error gets while `action` runs. */
template <typename Action>
std::string complaints(Action action)
{
    ::testing::internal::CaptureStderr();
    action();
    return ::testing::internal::GetCapturedStderr();
}

std::vector<GpbHostAllocation> live()
{
    std::vector<GpbHostAllocation> allocations(GpbHost_LiveCount());
    const size_t count = GpbHost_LiveList(allocations.data(), allocations.size());
    allocations.resize(std::min(count, allocations.size())); // other threads may have added some meanwhile
    return allocations;
}

class ZmpMemoryUnobserved : public ::testing::Test
{
protected:
    void TearDown() override
    {
        GpbHost_Reset();
        EXPECT_EQ(m_countBefore, GpbHost_LiveCount());
        EXPECT_EQ(m_bytesBefore, GpbHost_LiveBytes());
    }

    size_t m_countBefore = GpbHost_LiveCount();
    size_t m_bytesBefore = GpbHost_LiveBytes();
};

TEST_F(ZmpMemoryUnobserved, EverySizeIsFilledAlignedAndEntered)
{
    std::vector<unsigned char *> held;
    size_t bytes = 0;
    for (size_t size = 0; size <= 2200; ++size)
    {
        unsigned char *const memory = allocate(size, static_cast<uint32_t>(size + 1));
        ASSERT_NE(nullptr, memory) << size;
        EXPECT_EQ(0u, reinterpret_cast<uintptr_t>(memory) % alignof(std::max_align_t)) << size;
        ASSERT_TRUE(std::all_of(memory, memory + size, [](unsigned char byte) { return byte == kNewByte; })) << size;
        std::memset(memory, kOwnByte, size);
        held.push_back(memory);
        bytes += size;
    }
    EXPECT_EQ(m_countBefore + held.size(), GpbHost_LiveCount());
    EXPECT_EQ(m_bytesBefore + bytes, GpbHost_LiveBytes());
    const std::vector<GpbHostAllocation> entries = live();
    ASSERT_EQ(m_countBefore + held.size(), entries.size());
    for (size_t size = 0; size < held.size(); ++size)
    {
        const GpbHostAllocation &entry = entries[m_countBefore + size];
        EXPECT_EQ(held[size], entry.pvMem);
        EXPECT_EQ(size, entry.uiSize);
        EXPECT_EQ(kModuleId, entry.uiModuleId);
        EXPECT_EQ(kPartition, entry.ucPartition);
        EXPECT_STREQ(kFile, entry.pcFile);
        EXPECT_EQ(size + 1, entry.uiLine);
        ASSERT_TRUE(std::all_of(held[size], held[size] + size, [](unsigned char byte) { return byte == kOwnByte; }))
            << size << ": somebody else's memory";
    }
    EXPECT_EQ("", complaints(
                      [&]
                      {
                          for (unsigned char *memory : held)
                          {
                              release(memory);
                          }
                      }));
}

TEST_F(ZmpMemoryUnobserved, MemoryByTheMegabyteIsEnteredAndGivenBackInAnyOrder)
{
    constexpr size_t kCount = 20000;
    std::mt19937 random(1);
    for (const size_t size : {size_t{2048}, size_t{88}, size_t{700}})
    {
        std::vector<unsigned char *> held;
        for (size_t index = 0; index < kCount; ++index)
        {
            held.push_back(allocate(size));
            ASSERT_NE(nullptr, held.back());
            std::memcpy(held.back(), &index, sizeof(index));
        }
        EXPECT_EQ(m_countBefore + kCount, GpbHost_LiveCount());
        for (size_t index = 0; index < kCount; ++index)
        {
            ASSERT_EQ(0, std::memcmp(held[index], &index, sizeof(index)));
        }
        std::shuffle(held.begin(), held.end(), random);
        std::for_each(held.begin() + kCount / 2, held.end(), [](void *memory) { release(memory); });
        EXPECT_EQ(m_bytesBefore + kCount / 2 * size, GpbHost_LiveBytes());
        std::for_each(held.begin(), held.begin() + kCount / 2, [](void *memory) { release(memory); });
    }
}

TEST_F(ZmpMemoryUnobserved, ForeignPointersAreComplainedOfAndLeftAlone)
{
    int local = 5;
    unsigned char *const memory = allocate(100);
    unsigned char *const large = allocate(10000);
    constexpr uintptr_t kFarBelow = ~uintptr_t{0xFFFF};
    const std::vector<void *> foreign = {
        &local,
        memory + 1,
        memory + 16,
        memory + 100,
        memory - 16,
        memory - 32,
        memory + 0x1000000,
        reinterpret_cast<void *>(reinterpret_cast<uintptr_t>(memory) & kFarBelow),
        reinterpret_cast<void *>((reinterpret_cast<uintptr_t>(memory) | ~kFarBelow) - 15),
        large + 16,
        reinterpret_cast<void *>(uintptr_t{16}),
        reinterpret_cast<void *>(UINTPTR_MAX),
    };
    for (void *pointer : foreign)
    {
        EXPECT_NE(std::string::npos,
                  complaints([&] { release(pointer, 31); }).find("platform: release of memory that is not held"))
            << pointer;
    }
    EXPECT_EQ(5, local);
    EXPECT_EQ(m_countBefore + 2, GpbHost_LiveCount());
    EXPECT_EQ("", complaints(
                      [&]
                      {
                          release(memory);
                          release(large);
                      }));
}

TEST_F(ZmpMemoryUnobserved, ASecondReleaseIsComplainedOf)
{
    for (const size_t size : {size_t{0}, size_t{88}, size_t{2048}, size_t{2049}})
    {
        void *const neighbour = allocate(size);
        void *const memory = allocate(size);
        EXPECT_EQ("", complaints([&] { release(memory); }));
        const std::string printed = complaints([&] { release(memory, 34); });
        EXPECT_NE(std::string::npos, printed.find("release of memory that is not held")) << printed;
        EXPECT_NE(std::string::npos, printed.find(" at unit:34\n")) << printed;
        release(neighbour);
    }
}

TEST_F(ZmpMemoryUnobserved, AnOverrunIsComplainedOfAndTheMemoryReleased)
{
    for (const size_t size : {size_t{0}, size_t{5}, size_t{88}, size_t{2048}, size_t{2049}})
    {
        for (const size_t offset : {size_t{0}, size_t{15}})
        {
            unsigned char *const memory = allocate(size);
            overwrite(memory + size + offset);
            const std::string printed = complaints([&] { release(memory, 44); });
            EXPECT_NE(std::string::npos, printed.find("bytes behind an allocation were overwritten")) << printed;
            EXPECT_NE(std::string::npos, printed.find(" at unit:44\n")) << printed;
            EXPECT_EQ(m_countBefore, GpbHost_LiveCount());
        }
    }
}

TEST_F(ZmpMemoryUnobserved, AnOrderIsMetAndTheNextCallWorksAgain)
{
    for (const size_t size : {size_t{88}, size_t{5000}})
    {
        GpbHost_FailCall(GPB_HOST_MALLOC, 2);
        void *const first = allocate(size);
        EXPECT_NE(nullptr, first);
        EXPECT_EQ(nullptr, allocate(size));
        void *const third = allocate(size);
        EXPECT_NE(nullptr, third);
        release(first);
        release(third);
    }
}

TEST_F(ZmpMemoryUnobserved, WhatOneThreadAllocatesAnotherReleases)
{
    constexpr uint32_t kRounds = 3000;
    constexpr size_t kSizes[] = {1, 40, 88, 600, 2048, 3000};
    std::mutex mutex;
    std::vector<unsigned char *> handedOver;
    const auto work = [&](unsigned seed)
    {
        std::mt19937 random(seed);
        for (uint32_t round = 0; round < kRounds; ++round)
        {
            const size_t size = kSizes[random() % std::size(kSizes)];
            unsigned char *memory = allocate(size);
            std::memset(memory, kOwnByte, size);
            {
                const std::lock_guard<std::mutex> lock(mutex);
                handedOver.push_back(memory);
                std::swap(handedOver[random() % handedOver.size()], handedOver.back());
                memory = nullptr;
                if (handedOver.size() > 50)
                {
                    memory = handedOver.back();
                    handedOver.pop_back();
                }
            }
            release(memory);
        }
    };
    const std::string printed = complaints(
        [&]
        {
            std::vector<std::thread> threads;
            for (unsigned seed = 1; seed <= 4; ++seed)
            {
                threads.emplace_back(work, seed);
            }
            for (int listing = 0; listing < 20; ++listing)
            {
                for (const GpbHostAllocation &entry : live())
                {
                    EXPECT_NE(nullptr, entry.pvMem);
                }
            }
            for (std::thread &thread : threads)
            {
                thread.join();
            }
        });
    EXPECT_EQ("", printed);
    EXPECT_EQ(m_countBefore + handedOver.size(), GpbHost_LiveCount());
    for (unsigned char *memory : handedOver)
    {
        release(memory);
    }
}

TEST_F(ZmpMemoryUnobserved, ListIsOldestFirstWhicheverThreadsAllocated)
{
    std::vector<void *> held;
    for (uint32_t line = 1; line <= 40; ++line)
    {
        std::thread([&] { held.push_back(allocate(line % 3 == 0 ? 4000 : 50, line)); }).join();
    }
    const std::vector<GpbHostAllocation> entries = live();
    ASSERT_EQ(m_countBefore + held.size(), entries.size());
    for (uint32_t line = 1; line <= 40; ++line)
    {
        EXPECT_EQ(line, entries[m_countBefore + line - 1].uiLine);
    }
    for (void *memory : held)
    {
        release(memory);
    }
}

} // namespace
