// Measures what a piece of work takes from the C library's allocators, whoever asks for it.
#ifndef GPB_BENCH_SUPPORT_ALLOCATION_COUNTER_H
#define GPB_BENCH_SUPPORT_ALLOCATION_COUNTER_H

#include <cstdint>
#include <functional>

namespace gpbbench
{

struct MemoryUse
{
    uint64_t allocations; ///< calls of malloc, calloc, realloc and the aligned allocators
    uint64_t peakBytes;   ///< most that was taken at one time beyond what was taken before
};

/// Runs the work once and watches the calling thread. `operator new` of the C++ runtime ends in one of the C library's
/// allocators, so each C++ allocation counts once. Nothing is counted outside, so timed work runs undisturbed.
MemoryUse MeasureMemory(const std::function<void()> &run);

} // namespace gpbbench

#endif
