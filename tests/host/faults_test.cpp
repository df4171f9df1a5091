/** Counts of calls and orders to fail them. */
#include <functional>
#include <vector>

#include "platform/safe_string.h"
#include "platform/vec.h"
#include "platform/yos.h"
#include "platform/zmp.h"
#include "support/platform_fixture.h"

namespace
{

class FaultsTest : public gpbtest::PlatformFixture
{
protected:
    static bool copyFails() { return strcpy_s(buffer(), 8, "abc") != 0; }
    static bool fillFails() { return memset_s(buffer(), 8, 0, 8) != 0; }

    static std::vector<bool> results(const std::function<bool()> &call, int count)
    {
        std::vector<bool> fails;
        for (int index = 0; index < count; ++index)
        {
            fails.push_back(call());
        }
        return fails;
    }

private:
    static char *buffer()
    {
        static char bytes[8];
        return bytes;
    }
};

TEST_F(FaultsTest, NthCallFailsOnce)
{
    GpbHost_FailCall(GPB_HOST_STRCPY, 3);
    EXPECT_FALSE(fillFails()); // another service does not count
    EXPECT_EQ((std::vector<bool>{false, false, true, false, false, false}), results(copyFails, 6));
    GpbHost_FailCall(GPB_HOST_STRCPY, 1);
    EXPECT_EQ((std::vector<bool>{true, false}), results(copyFails, 2));
}

TEST_F(FaultsTest, OrderCanBeTakenBackOrReplaced)
{
    GpbHost_FailCall(GPB_HOST_STRCPY, 1);
    GpbHost_FailCall(GPB_HOST_STRCPY, 0);
    EXPECT_EQ((std::vector<bool>{false, false}), results(copyFails, 2));
    GpbHost_FailCall(GPB_HOST_STRCPY, 1);
    GpbHost_FailCall(GPB_HOST_STRCPY, 2);
    EXPECT_EQ((std::vector<bool>{false, true, false}), results(copyFails, 3));
}

TEST_F(FaultsTest, EveryCallFailsUntilSwitchedOff)
{
    GpbHost_FailAlways(GPB_HOST_STRCPY, 1);
    EXPECT_EQ((std::vector<bool>{true, true, true}), results(copyFails, 3));
    EXPECT_FALSE(fillFails());
    GpbHost_FailAlways(GPB_HOST_STRCPY, 0);
    EXPECT_FALSE(copyFails());
}

TEST_F(FaultsTest, NthCallOfAnyServiceFailsOnce)
{
    GpbHost_FailAnyCall(2);
    EXPECT_FALSE(copyFails());
    EXPECT_TRUE(fillFails());
    EXPECT_FALSE(fillFails());
    EXPECT_FALSE(copyFails());
    GpbHost_FailAnyCall(1);
    GpbHost_FailAnyCall(0);
    EXPECT_FALSE(copyFails());
}

TEST_F(FaultsTest, FailedCallsCountToo)
{
    const uint64_t copies = GpbHost_CallCount(GPB_HOST_STRCPY);
    const uint64_t fills = GpbHost_CallCount(GPB_HOST_MEMSET);
    const uint64_t all = GpbHost_TotalCallCount();
    GpbHost_FailCall(GPB_HOST_STRCPY, 1);
    results(copyFails, 3);
    fillFails();
    EXPECT_EQ(copies + 3, GpbHost_CallCount(GPB_HOST_STRCPY));
    EXPECT_EQ(fills + 1, GpbHost_CallCount(GPB_HOST_MEMSET));
    EXPECT_EQ(all + 4, GpbHost_TotalCallCount());
}

TEST_F(FaultsTest, EveryServiceIsCountedUnderItsOwnName)
{
    char buffer[256];
    int item = 0;
    VecVector *const vector = VEC_VectorInit_F(kModuleId, 1, "unit", 1);
    void *const stack = YOS_CreateStackByHandle(nullptr, 1);
    void *popped = nullptr;
    const auto formatList = [](char *out, const char *format, ...)
    {
        va_list args;
        va_start(args, format);
        vsnprintf_truncated_s(out, 8, format, args);
        va_end(args);
    };
    const std::vector<std::function<void()>> calls = {
        [] { ZMP_Free_F(ZMP_Malloc_F(kModuleId, 1, 1, "unit", 1), "unit", 1); },
        [] { VEC_VectorFree_F(VEC_VectorInit_F(kModuleId, 1, "unit", 1), "unit", 1); },
        [&] { VEC_VectorSet(vector, &item); },
        [] { YOS_DeleteStack(YOS_CreateStackByHandle(nullptr, 1)); },
        [&] { YOS_Push(stack, &item); },
        [&] { YOS_Pop(stack, &popped); },
        [&] { memcpy_s(buffer, 4, "abc", 4); },
        [&] { memset_s(buffer, 4, 0, 4); },
        [&] { strcpy_s(buffer, 4, "abc"); },
        [&] { strncpy_s(buffer, 4, "abc", 3); },
        [&] { sprintf_s(buffer, 4, "abc"); },
        [&] { snprintf_s(buffer, 4, 3, "abc"); },
        [&] { snprintf_truncated_s(buffer, 4, "abc"); },
        [&] { formatList(buffer, "abc"); },
        [&] { ZMP_GetSysWorkPath(buffer, sizeof(buffer)); },
        [&] { YOS_VFS_IsFileExist("/"); },
        [&] { YOS_VFS_IsDirExist("/"); },
    };
    ASSERT_EQ(static_cast<size_t>(GPB_HOST_SERVICE_COUNT), calls.size());
    for (size_t index = 0; index < calls.size(); ++index)
    {
        const auto service = static_cast<GpbHostService>(index);
        const uint64_t before = GpbHost_CallCount(service);
        calls[index]();
        EXPECT_EQ(before + 1, GpbHost_CallCount(service)) << "service " << index;
    }
    EXPECT_EQ(&item, popped);
    YOS_DeleteStack(stack);
    VEC_VectorFree_F(vector, "unit", 2);
}

TEST_F(FaultsTest, UnknownServicesAreIgnored)
{
    for (const auto service : {GPB_HOST_SERVICE_COUNT, static_cast<GpbHostService>(31)})
    {
        GpbHost_FailCall(service, 1);
        GpbHost_FailAlways(service, 1);
        EXPECT_EQ(0u, GpbHost_CallCount(service));
    }
    EXPECT_FALSE(copyFails());
}

TEST_F(FaultsTest, OneServiceCanBeFailedCallByCall)
{
    const uint64_t calls = failEachCallOf(GPB_HOST_MALLOC,
                                          [](const gpbtest::FaultRun &run)
                                          {
                                              void *const first = ZMP_Malloc_F(kModuleId, 1, 1, "unit", 1);
                                              EXPECT_FALSE(fillFails());
                                              void *const second = ZMP_Malloc_F(kModuleId, 1, 1, "unit", 2);
                                              EXPECT_EQ(run.failingCall == 1, first == nullptr);
                                              EXPECT_EQ(run.failingCall == 2, second == nullptr);
                                              ZMP_Free_F(first, "unit", 3);
                                              ZMP_Free_F(second, "unit", 4);
                                          });
    EXPECT_EQ(2u, calls);
}

} // namespace
