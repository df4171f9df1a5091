#include <vector>

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "platform/safe_string.h"
#include "platform/zmp.h"
#include "support/fail_each_call.h"

namespace
{

using gpbtest::failEachCall;
using gpbtest::FaultRun;

bool copyFails()
{
    char buffer[4];
    return strcpy_s(buffer, sizeof(buffer), "abc") != 0;
}

/** Releases what a faulty scenario left behind. */
void releaseAll()
{
    GpbHostAllocation held;
    while (GpbHost_LiveList(&held, 1) > 0)
    {
        ZMP_Free_F(const_cast<void *>(held.pvMem), "unit", 1);
    }
}

TEST(FailEachCallTest, FailsEachCallOnce)
{
    std::vector<std::vector<bool>> runs;
    const uint64_t calls = failEachCall(
        [&runs](const FaultRun &run)
        {
            EXPECT_EQ(runs.size(), run.failingCall);
            runs.push_back({copyFails(), copyFails(), copyFails()});
        });
    EXPECT_EQ(3u, calls);
    const std::vector<std::vector<bool>> expected{
        {false, false, false}, {true, false, false}, {false, true, false}, {false, false, true}};
    EXPECT_EQ(expected, runs);
}

TEST(FailEachCallTest, MemoryThatStaysFails)
{
    EXPECT_NONFATAL_FAILURE(failEachCall(
                                [](const FaultRun &run)
                                {
                                    void *const first = ZMP_Malloc_F(1, 1, 3, "leaky", 1);
                                    void *const second = ZMP_Malloc_F(1, 1, 3, "leaky", 2);
                                    if (run.failingCall != 2) // forgets the first when the second fails
                                    {
                                        ZMP_Free_F(first, "leaky", 3);
                                    }
                                    ZMP_Free_F(second, "leaky", 4);
                                }),
                            "3 bytes of module 0x1, leaky:1");
    releaseAll();
}

TEST(FailEachCallTest, ScenarioWithoutCallsFails)
{
    EXPECT_NONFATAL_FAILURE(failEachCall([](const FaultRun &) {}), "makes no call that could fail");
}

TEST(FailEachCallTest, CallThatIsNotMadeAgainFails)
{
    EXPECT_NONFATAL_FAILURE(failEachCall(
                                [](const FaultRun &run)
                                {
                                    if (!run.fails())
                                    {
                                        copyFails();
                                    }
                                }),
                            "was not made");
}

} // namespace
