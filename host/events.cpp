#include "events.h"

#include <mutex>

namespace
{

std::mutex g_mutex;
GpbHostObserver g_observer = nullptr; // under g_mutex
void *g_observerArg = nullptr;        // under g_mutex

} // namespace

namespace host
{

std::atomic<bool> g_isObserved{false};

void notify(const GpbHostEvent &event)
{
    if (!isObserved())
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
    host::g_isObserved.store(pfnObserver != nullptr, std::memory_order_release);
}
