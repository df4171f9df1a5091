/** The allocator: the C library's memory with books, guards and provoked failures. */
#include <cinttypes>
#include <cstdio>
#include <cstdlib>

#include "events.h"
#include "faults.h"
#include "guard_bytes.h"
#include "ledger.h"

namespace
{

/** More than any caller can mean; asking the C library for it would end a process under a memory checker. */
constexpr size_t kMaxAllocation = size_t{1} << 30;

GpbHostEvent makeEvent(GpbHostEventKind kind, const GpbHostAllocation &allocation, const char *file, uint32_t line)
{
    return {kind, allocation.uiModuleId, allocation.ucPartition, allocation.pvMem, allocation.uiSize, file, line};
}

/** Tells of an error of the caller: the observer, and standard error for programs that have none. */
void complain(const char *what, const GpbHostEvent &event)
{
    (void)std::fprintf(stderr, "platform: %s (%p) at %s:%" PRIu32 "\n", what, event.pvMem,
                       event.pcFile != nullptr ? event.pcFile : "?", event.uiLine);
    host::notify(event);
}

/** Memory with guard and entry, or null. */
void *allocate(GpbHostAllocation &allocation)
{
    if (allocation.uiSize > kMaxAllocation)
    {
        return nullptr;
    }
    void *const memory = std::malloc(allocation.uiSize + host::kGuardSize);
    if (memory == nullptr)
    {
        return nullptr;
    }
    allocation.pvMem = memory;
    if (!host::Ledger::instance().add(allocation))
    {
        std::free(memory);
        allocation.pvMem = nullptr;
        return nullptr;
    }
    host::dressMemory(memory, allocation.uiSize);
    return memory;
}

} // namespace

// Any number but 0, so that a caller who does not pass the partition on is found out.
uint8_t g_aucZmpMemPt[] = {7};

void *ZMP_Malloc_F(uint32_t uiModuleId, uint8_t ucPartition, size_t uiSize, const char *pcFile, uint32_t uiLine)
{
    GpbHostAllocation allocation{nullptr, uiSize, uiModuleId, ucPartition, pcFile, uiLine};
    void *const memory = host::callFails(GPB_HOST_MALLOC) ? nullptr : allocate(allocation);
    const GpbHostEventKind kind = memory != nullptr ? GPB_HOST_EVENT_MALLOC : GPB_HOST_EVENT_MALLOC_FAILED;
    host::notify(makeEvent(kind, allocation, pcFile, uiLine));
    return memory;
}

void ZMP_Free_F(void *pvMem, const char *pcFile, uint32_t uiLine)
{
    if (pvMem == nullptr)
    {
        return;
    }
    GpbHostAllocation allocation{pvMem, 0, 0, 0, pcFile, uiLine};
    if (!host::Ledger::instance().remove(pvMem, allocation))
    {
        complain("release of memory that is not held", makeEvent(GPB_HOST_EVENT_BAD_FREE, allocation, pcFile, uiLine));
        return;
    }
    if (!host::undressMemory(pvMem, allocation.uiSize))
    {
        complain("bytes behind an allocation were overwritten",
                 makeEvent(GPB_HOST_EVENT_OVERRUN, allocation, pcFile, uiLine));
    }
    std::free(pvMem);
    host::notify(makeEvent(GPB_HOST_EVENT_FREE, allocation, pcFile, uiLine));
}
