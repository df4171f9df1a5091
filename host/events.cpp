#include "events.h"

#include <mutex>

#include "attention.h"

namespace
{

std::mutex g_mutex;
GpbHostObserver g_observer = nullptr; // under g_mutex
void *g_observerArg = nullptr;        // under g_mutex

} // namespace

namespace host
{

void notify(const GpbHostEvent &event)
{
    // Spares the lock where nobody listens.
    if (!isAttentionPaidTo(kObserver))
    {
        return;
    }
    const std::lock_guard<std::mutex> lock(g_mutex);
    if (g_observer != nullptr)
    {
        g_observer(g_observerArg, &event);
    }
}

} // namespace host

void GpbHost_SetObserver(GpbHostObserver pfnObserver, void *pvArg)
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    g_observer = pfnObserver;
    g_observerArg = pvArg;
    pfnObserver != nullptr ? host::payAttentionTo(host::kObserver) : host::stopAttentionTo(host::kObserver);
}
