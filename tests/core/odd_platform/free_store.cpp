#include "core/odd_platform/free_store.h"

#include <cstdlib>
#include <new>

namespace
{

uint64_t g_allocationsUntilFailure = 0; // 0: none fails

} // namespace

namespace gpbtest
{

void failAllocation(uint64_t nth)
{
    g_allocationsUntilFailure = nth;
}

bool hasAllocationFailed()
{
    return g_allocationsUntilFailure == 0;
}

} // namespace gpbtest

// These replace the free store of the whole program, the libraries included.
#pragma GCC visibility push(default)

void *operator new(size_t size)
{
    void *const memory =
        g_allocationsUntilFailure != 0 && --g_allocationsUntilFailure == 0 ? nullptr : std::malloc(size);
    if (memory == nullptr)
    {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void *memory) noexcept
{
    std::free(memory);
}

void operator delete(void *memory, size_t) noexcept
{
    std::free(memory);
}

#pragma GCC visibility pop
