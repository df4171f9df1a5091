/** Aligned regions of memory that can be told from all other memory by their address alone. */
#ifndef GPB_HOST_ARENAS_H
#define GPB_HOST_ARENAS_H

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "likely.h"

namespace host
{

/** Bytes of a region; it begins at a multiple of them. */
constexpr size_t kRegionSize = size_t{1} << 16;

/** Regions are cut from arenas: few enough to be looked up in a short table, and only reserved until they are used. */
constexpr size_t kArenaSize = size_t{1} << 24;
constexpr size_t kMaxArenas = 4096;

/** Each arena stands at the place of its address or the first free one behind it; half of the places stay free. */
constexpr size_t kArenaPlaces = 2 * kMaxArenas;
extern std::atomic<void *> g_arenas[kArenaPlaces];

inline size_t arenaPlaceOf(const void *arena)
{
    return reinterpret_cast<uintptr_t>(arena) / kArenaSize % kArenaPlaces;
}

inline void *alignDown(const void *address, size_t size)
{
    return reinterpret_cast<void *>(reinterpret_cast<uintptr_t>(address) / size * size);
}

/**
 * Where the region around an address begins; null when the address is in no region. Reads nothing there. Regions that
 * are not given out yet are found as well: they are zero. Any thread.
 */
[[nodiscard]] inline void *findRegion(const void *address)
{
    const void *const arena = alignDown(address, kArenaSize);
    for (size_t place = arenaPlaceOf(arena);; place = (place + 1) % kArenaPlaces)
    {
        const void *const found = g_arenas[place].load(std::memory_order_acquire);
        if (isLikely(found == arena))
        {
            return alignDown(address, kRegionSize);
        }
        if (found == nullptr)
        {
            return nullptr;
        }
    }
}

/** A new region, zeroed, kept for as long as the process lives; null without memory. Any thread. */
[[nodiscard]] void *newRegion();

} // namespace host

#endif
