// Defined in the program itself, the C library's allocators below are used by every library that the program loads; the
// real work is done by the C library under its other names.
#include "support/allocation_counter.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <malloc.h>

namespace
{

struct Watch
{
    bool isOn = false;
    uint64_t allocations = 0;
    int64_t liveBytes = 0; // less than nothing when earlier memory is released
    int64_t peakBytes = 0;
};

thread_local Watch g_watch;

void *Taken(void *memory)
{
    if (g_watch.isOn)
    {
        ++g_watch.allocations;
        g_watch.liveBytes += static_cast<int64_t>(malloc_usable_size(memory));
        g_watch.peakBytes = std::max(g_watch.peakBytes, g_watch.liveBytes);
    }
    return memory;
}

void GiveBack(void *memory)
{
    if (g_watch.isOn)
    {
        g_watch.liveBytes -= static_cast<int64_t>(malloc_usable_size(memory));
    }
}

} // namespace

gpbbench::MemoryUse gpbbench::MeasureMemory(const std::function<void()> &run)
{
    g_watch = Watch();
    g_watch.isOn = true;
    run();
    g_watch.isOn = false;
    return {g_watch.allocations, static_cast<uint64_t>(g_watch.peakBytes)};
}

extern "C"
{

// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): these are the C library's own names.
void *__libc_malloc(size_t size);
void *__libc_calloc(size_t count, size_t size);
void *__libc_realloc(void *memory, size_t size);
void *__libc_memalign(size_t alignment, size_t size);
void __libc_free(void *memory);
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

void *malloc(size_t size) noexcept
{
    return Taken(__libc_malloc(size));
}

void *calloc(size_t count, size_t size) noexcept
{
    return Taken(__libc_calloc(count, size));
}

void *realloc(void *memory, size_t size) noexcept
{
    GiveBack(memory);
    return Taken(__libc_realloc(memory, size));
}

void *aligned_alloc(size_t alignment, size_t size) noexcept
{
    return Taken(__libc_memalign(alignment, size));
}

int posix_memalign(void **memory, size_t alignment, size_t size) noexcept
{
    *memory = Taken(__libc_memalign(alignment, size));
    return *memory == nullptr ? ENOMEM : 0;
}

void free(void *memory) noexcept
{
    GiveBack(memory);
    __libc_free(memory);
}

} // extern "C"
