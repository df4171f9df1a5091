#include "faults.h"

#include <atomic>

namespace
{

/**
 * Orders for the calls of one service. An order holds the number of the call that it is meant for, so that it is met
 * once without anyone taking it back, whichever thread makes that call.
 */
struct Orders
{
    std::atomic<uint64_t> failingCall{0}; // 0: none
    std::atomic<bool> failsAlways{false};
};

Orders g_orders[GPB_HOST_SERVICE_COUNT];

/** Calls of any service until the one that is to fail, that one included; 0: none is. */
std::atomic<uint64_t> g_callsToFailure{0};

bool isService(GpbHostService service)
{
    return static_cast<unsigned>(service) < GPB_HOST_SERVICE_COUNT;
}

/** Counts a call of any service towards the one that is to fail; true when it is that one. */
bool isAwaitedCall()
{
    uint64_t left = g_callsToFailure;
    while (left != 0 && !g_callsToFailure.compare_exchange_weak(left, left - 1))
    {
    }
    return left == 1;
}

} // namespace

namespace host
{

SharedNumber<uint32_t> g_attention;
SharedNumber<uint64_t> g_calls[GPB_HOST_SERVICE_COUNT];

bool isOrderedToFail(GpbHostService service, uint64_t number)
{
    const Orders &orders = g_orders[service];
    const bool isOwn = number == orders.failingCall || orders.failsAlways;
    // Every call counts towards the awaited one: no short circuit.
    const bool isAwaited = isAwaitedCall();
    return isOwn || isAwaited;
}

void clearFaults()
{
    stopAttentionTo(kOrders);
    for (Orders &orders : g_orders)
    {
        orders.failingCall = 0;
        orders.failsAlways = false;
    }
    g_callsToFailure = 0;
}

} // namespace host

uint64_t GpbHost_CallCount(GpbHostService eService)
{
    return isService(eService) ? host::g_calls[eService].load() : 0;
}

uint64_t GpbHost_TotalCallCount(void)
{
    uint64_t total = 0;
    for (const host::SharedNumber<uint64_t> &calls : host::g_calls)
    {
        total += calls.load();
    }
    return total;
}

void GpbHost_FailCall(GpbHostService eService, uint64_t uiNth)
{
    if (isService(eService))
    {
        g_orders[eService].failingCall = uiNth == 0 ? 0 : host::g_calls[eService].load() + uiNth;
        host::payAttentionTo(host::kOrders);
    }
}

void GpbHost_FailAlways(GpbHostService eService, int iOn)
{
    if (isService(eService))
    {
        g_orders[eService].failsAlways = iOn != 0;
        host::payAttentionTo(host::kOrders);
    }
}

void GpbHost_FailAnyCall(uint64_t uiNth)
{
    g_callsToFailure = uiNth;
    host::payAttentionTo(host::kOrders);
}
