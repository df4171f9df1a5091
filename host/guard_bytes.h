/**
 * Patterns that make memory errors of the library visible.
 *
 * New memory is filled, so that a record that nobody zeroed shows; released memory is filled, so that a late reader
 * finds nothing useful; and a few bytes behind every allocation are watched. In a build with AddressSanitizer these
 * bytes are out of bounds for everybody, readers included. Filling can be switched off, watching cannot.
 */
#ifndef GPB_HOST_GUARD_BYTES_H
#define GPB_HOST_GUARD_BYTES_H

#include <atomic>
#include <cstddef>
#include <cstring>

#include "address_sanitizer.h"

#if GPB_HOST_HAS_ASAN
#include <sanitizer/asan_interface.h>
#endif

namespace host
{

/** Bytes watched behind an allocation. */
constexpr size_t kGuardSize = 16;

constexpr unsigned char kNewByte = 0xA5;
constexpr unsigned char kReleasedByte = 0xDD;
constexpr unsigned char kGuard[] = {0xFD, 0xFD, 0xFD, 0xFD, 0xFD, 0xFD, 0xFD, 0xFD,
                                    0xFD, 0xFD, 0xFD, 0xFD, 0xFD, 0xFD, 0xFD, 0xFD};
static_assert(sizeof(kGuard) == kGuardSize, "the pattern of the whole guard");

[[gnu::visibility("hidden")]] extern std::atomic<bool> g_isMemoryFilled;

inline bool isMemoryFilled()
{
    return g_isMemoryFilled.load(std::memory_order_relaxed);
}

/** Fills `size` new bytes, and the guard behind them; returns the memory. */
inline void *dressMemory(void *memory, size_t size)
{
    unsigned char *const guard = static_cast<unsigned char *>(memory) + size;
    std::memcpy(guard, kGuard, kGuardSize);
#if GPB_HOST_HAS_ASAN
    __asan_poison_memory_region(guard, kGuardSize);
#endif
    return isMemoryFilled() ? std::memset(memory, kNewByte, size) : memory;
}

/** Whether nobody has written behind `size` bytes. Puts the guard within everybody's reach. */
[[nodiscard]] inline bool isGuardWhole(const void *memory, size_t size)
{
    const unsigned char *const guard = static_cast<const unsigned char *>(memory) + size;
#if GPB_HOST_HAS_ASAN
    __asan_unpoison_memory_region(guard, kGuardSize);
#endif
    return std::memcmp(guard, kGuard, kGuardSize) == 0;
}

/** Fills `size` released bytes. */
inline void undressMemory(void *memory, size_t size)
{
    if (isMemoryFilled())
    {
        std::memset(memory, kReleasedByte, size);
    }
}

} // namespace host

#endif
