/** Counts of the calls of each service, and the orders to fail some of them. */
#ifndef GPB_HOST_FAULTS_H
#define GPB_HOST_FAULTS_H

#include "attention.h"
#include "platform_exports.h"

namespace host
{

/** Calls of each service so far. Known to be in this library: counting is one instruction then. */
[[gnu::visibility("hidden")]] extern SharedNumber<uint64_t> g_calls[GPB_HOST_SERVICE_COUNT];

/** Counts a call of a service; returns its number. Any thread. */
inline uint64_t countCall(GpbHostService service)
{
    return g_calls[service].advance();
}

/** Whether there is an order to fail call `number` of a service; to be asked once for every call. Any thread. */
[[nodiscard]] bool isOrderedToFail(GpbHostService service, uint64_t number);

/**
 * Counts a call of a service and looks for its order; every counted service asks this first.
 *
 * @return true when the call was ordered to fail. Any thread.
 */
[[nodiscard]] inline bool callFails(GpbHostService service)
{
    const uint64_t number = countCall(service);
    return isAttentionPaidTo(kOrders) && isOrderedToFail(service, number);
}

/**
 * callFails for the services that are called for every few bytes, in two steps: most of their calls are undisturbed,
 * and are counted here.
 *
 * @return false when the call was not counted, which is left to callFails then
 */
[[nodiscard, gnu::always_inline]] inline bool isCallOnlyCounted(GpbHostService service)
{
    const bool isCounted = isUndisturbed();
    if (isCounted)
    {
        ++g_calls[service].alone();
    }
    return isCounted;
}

/** Takes every order to fail back; counts stay. */
void clearFaults();

} // namespace host

#endif
