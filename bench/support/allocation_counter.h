// Counts the allocations of the calling thread, whoever makes them.
#ifndef GPB_BENCH_SUPPORT_ALLOCATION_COUNTER_H
#define GPB_BENCH_SUPPORT_ALLOCATION_COUNTER_H

#include <cstdint>

namespace gpbbench
{

/// Calls so far of malloc, calloc, realloc and the aligned allocators by this thread. `operator new` of the C++ runtime
/// ends in one of them, so each C++ allocation counts once.
uint64_t AllocationCount();

} // namespace gpbbench

#endif
