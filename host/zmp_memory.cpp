/** The allocator: memory with books, guards and provoked failures. */
#include <cinttypes>
#include <cstdio>

#include "events.h"
#include "faults.h"
#include "ledger.h"
#include "likely.h"
#include "small_blocks.h"
#include "threads.h"

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
void *allocate(uint64_t call, const GpbHostAllocation &allocation)
{
    void *memory = nullptr;
    if (host::isForSmallBlock(allocation.uiSize))
    {
        memory = host::allocateSmallBlock(call, allocation);
    }
    if (memory == nullptr && allocation.uiSize <= kMaxAllocation)
    {
        memory = host::Ledger::instance().allocate(call, allocation);
    }
    return memory;
}

/** A counted allocation of any size, with its order to fail and with an observer. */
[[gnu::noinline]] void *allocateAndTell(uint32_t moduleId, uint8_t partition, size_t size, const char *file,
                                        uint32_t line)
{
    const uint64_t call = host::countCall(GPB_HOST_MALLOC);
    GpbHostAllocation allocation{nullptr, size, moduleId, partition, file, line};
    const bool fails = host::isAttentionPaidTo(host::kOrders) && host::isOrderedToFail(GPB_HOST_MALLOC, call);
    void *const memory = fails ? nullptr : allocate(call, allocation);
    allocation.pvMem = memory;
    const GpbHostEventKind kind = memory != nullptr ? GPB_HOST_EVENT_MALLOC : GPB_HOST_EVENT_MALLOC_FAILED;
    host::notify(makeEvent(kind, allocation, file, line));
    return memory;
}

/** A release of anything, with complaints and with an observer. */
[[gnu::noinline]] void releaseAndTell(void *memory, const char *file, uint32_t line)
{
    GpbHostAllocation allocation{memory, 0, 0, 0, file, line};
    host::Release result = host::releaseSmallBlock(memory, &allocation);
    if (result == host::Release::NotHeld)
    {
        result = host::Ledger::instance().release(memory, allocation);
    }
    if (result == host::Release::NotHeld)
    {
        complain("release of memory that is not held", makeEvent(GPB_HOST_EVENT_BAD_FREE, allocation, file, line));
        return;
    }
    if (result == host::Release::Overrun)
    {
        complain("bytes behind an allocation were overwritten",
                 makeEvent(GPB_HOST_EVENT_OVERRUN, allocation, file, line));
    }
    host::notify(makeEvent(GPB_HOST_EVENT_FREE, allocation, file, line));
}

} // namespace

std::atomic<bool> host::g_isMemoryFilled{true};

// Any number but 0, so that a caller who does not pass the partition on is found out.
uint8_t g_aucZmpMemPt[] = {7};

void *ZMP_Malloc_F(uint32_t uiModuleId, uint8_t ucPartition, size_t uiSize, const char *pcFile, uint32_t uiLine)
{
    if (host::isLikely(host::isUndisturbed() && host::isForSmallBlock(uiSize)))
    {
        host::RegionList &open = host::openRegionsFor(host::g_shards[0], uiSize);
        if (host::isLikely(open.first() != nullptr))
        {
            const uint64_t call = ++host::g_calls[GPB_HOST_MALLOC].alone();
            return host::takeSmallBlock(open, call, {nullptr, uiSize, uiModuleId, ucPartition, pcFile, uiLine});
        }
    }
    return allocateAndTell(uiModuleId, ucPartition, uiSize, pcFile, uiLine);
}

void ZMP_Free_F(void *pvMem, const char *pcFile, uint32_t uiLine)
{
    if (pvMem == nullptr)
    {
        return;
    }
    if (host::isLikely(host::isUndisturbed()))
    {
        host::Region *const region = host::findUsedRegion(pvMem);
        if (host::isLikely(region != nullptr) && host::putSmallBlock(region, pvMem, nullptr) == host::Release::Done)
        {
            return;
        }
    }
    releaseAndTell(pvMem, pcFile, uiLine);
}

void GpbHost_FillMemory(int iOn)
{
    host::g_isMemoryFilled.store(iOn != 0, std::memory_order_relaxed);
}
