#include "support/fail_each_call.h"

#include <string>

#include <gtest/gtest.h>

#include "support/ledger_snapshot.h"
#include "support/text_lines.h"

namespace gpbtest
{

namespace
{

/** The two ways of counting and ordering: all services together, or one. */
struct FaultTarget
{
    std::function<uint64_t()> callCount;
    std::function<void(uint64_t)> failCall;
};

/** Runs the scenario with one call failing (none for 0); returns the number of calls that were made. */
uint64_t runOnce(const FaultTarget &target, const FaultScenario &scenario, uint64_t failingCall)
{
    SCOPED_TRACE(failingCall == 0 ? std::string("no platform call fails")
                                  : "platform call " + std::to_string(failingCall) + " fails");
    const LedgerSnapshot before;
    const uint64_t callsBefore = target.callCount();
    target.failCall(failingCall);
    scenario(FaultRun{failingCall});
    target.failCall(0);
    const uint64_t calls = target.callCount() - callsBefore;
    EXPECT_GE(calls, failingCall) << "the call that was to fail was not made";
    EXPECT_EQ("", joinLines(before.added())) << "memory is held after the run";
    return calls;
}

uint64_t failEach(const FaultTarget &target, const FaultScenario &scenario)
{
    const uint64_t calls = runOnce(target, scenario, 0);
    EXPECT_GT(calls, 0u) << "the scenario makes no call that could fail";
    for (uint64_t failingCall = 1; failingCall <= calls; ++failingCall)
    {
        runOnce(target, scenario, failingCall);
    }
    return calls;
}

} // namespace

uint64_t failEachCall(const FaultScenario &scenario)
{
    return failEach({GpbHost_TotalCallCount, GpbHost_FailAnyCall}, scenario);
}

uint64_t failEachCallOf(GpbHostService service, const FaultScenario &scenario)
{
    return failEach(
        {[service] { return GpbHost_CallCount(service); }, [service](uint64_t nth) { GpbHost_FailCall(service, nth); }},
        scenario);
}

} // namespace gpbtest
