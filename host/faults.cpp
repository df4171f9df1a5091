#include "faults.h"

#include <atomic>

namespace
{

/**
 * Calls of one service, or of all together. An order holds the number of the call that it is meant for, so that it
 * is met once without anyone taking it back, whichever thread makes that call.
 */
struct CallCounter
{
    std::atomic<uint64_t> calls{0};
    std::atomic<uint64_t> failingCall{0}; // 0: none
    std::atomic<bool> failsAlways{false};

    bool next()
    {
        const uint64_t number = calls.fetch_add(1, std::memory_order_relaxed) + 1;
        return number == failingCall.load(std::memory_order_relaxed) || failsAlways.load(std::memory_order_relaxed);
    }

    void failNth(uint64_t nth) { failingCall = nth == 0 ? 0 : calls + nth; }
};

CallCounter g_services[GPB_HOST_SERVICE_COUNT];
CallCounter g_anyService;

bool isService(GpbHostService service)
{
    return static_cast<unsigned>(service) < GPB_HOST_SERVICE_COUNT;
}

} // namespace

namespace host
{

bool callFails(GpbHostService service)
{
    // Both counters advance on every call: no short circuit.
    const bool ownOrder = g_services[service].next();
    const bool anyOrder = g_anyService.next();
    return ownOrder || anyOrder;
}

void clearFaults()
{
    for (CallCounter &counter : g_services)
    {
        counter.failNth(0);
        counter.failsAlways = false;
    }
    g_anyService.failNth(0);
}

} // namespace host

uint64_t GpbHost_CallCount(GpbHostService eService)
{
    return isService(eService) ? g_services[eService].calls.load() : 0;
}

uint64_t GpbHost_TotalCallCount(void)
{
    return g_anyService.calls;
}

void GpbHost_FailCall(GpbHostService eService, uint64_t uiNth)
{
    if (isService(eService))
    {
        g_services[eService].failNth(uiNth);
    }
}

void GpbHost_FailAlways(GpbHostService eService, int iOn)
{
    if (isService(eService))
    {
        g_services[eService].failsAlways = iOn != 0;
    }
}

void GpbHost_FailAnyCall(uint64_t uiNth)
{
    g_anyService.failNth(uiNth);
}
