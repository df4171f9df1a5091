/** The assertion hook, and taking all settings back. */
#include "platform/safe_string.h"
#include "platform/zmp.h"
#include "support/platform_fixture.h"

namespace
{

class ZmpAssertTest : public gpbtest::PlatformFixture
{
};

TEST_F(ZmpAssertTest, CountsTellsAndReturns)
{
    const uint64_t before = GpbHost_AssertCount();
    EXPECT_EQ(0u, ZMP_Assert("unit", 12, 0));
    EXPECT_EQ(0u, ZMP_Assert("unit", 13, 0));
    EXPECT_EQ(before + 2, GpbHost_AssertCount());
    EXPECT_EQ("unit:12\nunit:13\n", takeAssertText());
    EXPECT_EQ("", takeAssertText());
}

TEST_F(ZmpAssertTest, ReturnsWhatItWasTold)
{
    GpbHost_SetAssertResult(42);
    EXPECT_EQ(42u, ZMP_Assert("unit", 1, 0));
    EXPECT_EQ(42u, ZMP_Assert("unit", 1, 0));
    expectAsserts(2);
}

/** Without the fixture, which needs its observer. */
TEST(HostResetTest, TakesEverySettingBackAndKeepsCountsAndLedger)
{
    int events = 0;
    GpbHost_SetObserver([](void *count, const GpbHostEvent *) { ++*static_cast<int *>(count); }, &events);
    GpbHost_SetAssertResult(42);
    GpbHost_FailCall(GPB_HOST_MEMSET, 1);
    GpbHost_FailAlways(GPB_HOST_MEMCPY, 1);
    GpbHost_FailAnyCall(2);
    void *const memory = ZMP_Malloc_F(1, 1, 8, "unit", 1);
    ASSERT_NE(nullptr, memory);
    EXPECT_EQ(1, events);
    const size_t held = GpbHost_LiveCount();
    const uint64_t calls = GpbHost_TotalCallCount();
    const uint64_t asserts = GpbHost_AssertCount();

    GpbHost_Reset();
    EXPECT_EQ(held, GpbHost_LiveCount());
    EXPECT_EQ(calls, GpbHost_TotalCallCount());
    EXPECT_EQ(asserts, GpbHost_AssertCount());
    EXPECT_EQ(0, memset_s(memory, 8, 0, 8));
    EXPECT_EQ(0, memcpy_s(memory, 8, "abc", 4));
    EXPECT_EQ(0u, ZMP_Assert("unit", 1, 0));
    ZMP_Free_F(memory, "unit", 2);
    EXPECT_EQ(1, events);
}

} // namespace
