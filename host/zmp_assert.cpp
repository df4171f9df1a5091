/** The assertion hook: counts and tells, and lets the caller go on. */
#include <atomic>

#include "events.h"
#include "faults.h"

namespace
{

std::atomic<uint64_t> g_count{0};
std::atomic<uint32_t> g_result{0};

} // namespace

uint32_t ZMP_Assert(const char *pcFile, uint32_t uiLine, uint32_t)
{
    ++g_count;
    GpbHostEvent event{};
    event.eKind = GPB_HOST_EVENT_ASSERT;
    event.pcFile = pcFile;
    event.uiLine = uiLine;
    host::notify(event);
    return g_result;
}

uint64_t GpbHost_AssertCount(void)
{
    return g_count;
}

void GpbHost_SetAssertResult(uint32_t uiResult)
{
    g_result = uiResult;
}

void GpbHost_Reset(void)
{
    host::clearFaults();
    GpbHost_SetObserver(nullptr, nullptr);
    GpbHost_SetAssertResult(0);
    GpbHost_FillMemory(1);
}
