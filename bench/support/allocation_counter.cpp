// Defined in the program itself, the C library's allocators below are used by every library that the program loads; the
// real work is done by the C library under its other names. `free` needs no counting and stays as it is.
#include "support/allocation_counter.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>

namespace
{

thread_local uint64_t g_allocations = 0;

} // namespace

uint64_t gpbbench::AllocationCount()
{
    return g_allocations;
}

extern "C"
{

// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): these are the C library's own names.
void *__libc_malloc(size_t size);
void *__libc_calloc(size_t count, size_t size);
void *__libc_realloc(void *memory, size_t size);
void *__libc_memalign(size_t alignment, size_t size);
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

void *malloc(size_t size) noexcept
{
    ++g_allocations;
    return __libc_malloc(size);
}

void *calloc(size_t count, size_t size) noexcept
{
    ++g_allocations;
    return __libc_calloc(count, size);
}

void *realloc(void *memory, size_t size) noexcept
{
    ++g_allocations;
    return __libc_realloc(memory, size);
}

void *aligned_alloc(size_t alignment, size_t size) noexcept
{
    ++g_allocations;
    return __libc_memalign(alignment, size);
}

int posix_memalign(void **memory, size_t alignment, size_t size) noexcept
{
    ++g_allocations;
    *memory = __libc_memalign(alignment, size);
    return *memory == nullptr ? ENOMEM : 0;
}

} // extern "C"
