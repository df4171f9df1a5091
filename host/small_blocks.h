/**
 * Live allocations of small sizes, which nearly all of the library's are.
 *
 * Small blocks lie side by side in regions of one block size each, each block behind its own entry in the books. That
 * makes an allocation and its entry one step, next to each other in memory, and lets any address be checked without
 * touching what lies there: a block begins at known places of known regions, or it is none. A thread takes blocks from
 * one of several shards; a block goes back to the shard of its region, whichever thread releases it.
 *
 * In a build with AddressSanitizer there are none: there every allocation is a block of the C library, which that tool
 * watches better.
 */
#ifndef GPB_HOST_SMALL_BLOCKS_H
#define GPB_HOST_SMALL_BLOCKS_H

#include <mutex>

#include "address_sanitizer.h"
#include "likely.h"
#include "region.h"

namespace host
{

/** Room for content grows in small steps while it is small, from none on, then doubles. */
constexpr size_t kSizeStep = 16;
constexpr size_t kMaxSteppedSize = 512;
constexpr size_t kSteppedClasses = kMaxSteppedSize / kSizeStep + 1;
constexpr size_t kSizeClasses = kSteppedClasses + 2;
constexpr size_t kMaxSmallSize = 4 * kMaxSteppedSize;

inline bool isForSmallBlock(size_t size)
{
    return GPB_HOST_HAS_ASAN == 0 && size <= kMaxSmallSize;
}

inline size_t sizeClassOf(size_t size)
{
    if (isLikely(size <= kMaxSteppedSize))
    {
        return (size + kSizeStep - 1) / kSizeStep;
    }
    return size <= 2 * kMaxSteppedSize ? kSteppedClasses : kSteppedClasses + 1;
}

/** Threads are spread over these, so that they seldom wait for each other. */
struct alignas(64) Shard
{
    std::mutex mutex;
    RegionList open[kSizeClasses]; // with free blocks
    RegionList empty;              // without held blocks, for any size
    Region *all = nullptr;
};

constexpr unsigned kShardBits = 3;
extern Shard g_shards[size_t{1} << kShardBits];

/** Regions that have a free block for a size for small blocks. The lock of the shard is the caller's. */
inline RegionList &openRegionsFor(Shard &shard, size_t size)
{
    return shard.open[sizeClassOf(size)];
}

/**
 * Takes a block for an allocation out of a region that is open for its size, of which there is one, dresses it and
 * enters it. The lock of the shard is the caller's.
 *
 * @param number  of the call that asks for it
 */
[[nodiscard, gnu::always_inline]] inline void *takeSmallBlock(RegionList &open, uint64_t number,
                                                              const GpbHostAllocation &allocation)
{
    Region *const region = open.first();
    Block *const block = region->take();
    block->file = allocation.pcFile;
    block->number = number;
    block->moduleId = allocation.uiModuleId;
    block->line = allocation.uiLine;
    block->size = static_cast<uint16_t>(allocation.uiSize);
    block->partition = allocation.ucPartition;
    block->isHeld = true;
    if (isUnlikely(region->isFull()))
    {
        open.remove(region);
    }
    return dressMemory(block->content(), allocation.uiSize);
}

/** Puts a block back into its region, which is open then. The lock of the shard is the caller's. */
inline void giveBackBlock(Shard &shard, Region *region, Block *block)
{
    RegionList &open = shard.open[region->classIndex];
    if (isUnlikely(region->isFull()))
    {
        open.add(region);
    }
    region->giveBack(block);
    // The last one of its class stays, for programs that get and release a single block again and again.
    if (isUnlikely(region->heldCount == 0) && !open.hasOne())
    {
        open.remove(region);
        shard.empty.add(region);
    }
}

/** The region of an address that is in use, null when there is none. */
[[nodiscard]] inline Region *findUsedRegion(const void *address)
{
    auto *const region = static_cast<Region *>(findRegion(address));
    return region != nullptr && region->shard.load(std::memory_order_acquire) != nullptr ? region : nullptr;
}

/**
 * Takes an allocation of a region out, and copies its entry where that is wanted. The lock of the region's shard is the
 * caller's.
 *
 * @param entry  null for a caller who does not want to know: a block that was overrun is then left as it is, so that
 *               the caller can come again with an entry
 */
[[nodiscard]] inline Release putSmallBlock(Region *region, void *memory, GpbHostAllocation *entry)
{
    Block *const block = region->findHeld(memory);
    if (isUnlikely(block == nullptr))
    {
        return Release::NotHeld;
    }
    const size_t size = block->size;
    const bool isWhole = isGuardWhole(memory, size);
    if (entry != nullptr)
    {
        *entry = block->allocation();
    }
    else if (!isWhole)
    {
        return Release::Overrun;
    }
    giveBackBlock(*region->shard.load(std::memory_order_relaxed), region, block);
    undressMemory(memory, size);
    return isWhole ? Release::Done : Release::Overrun;
}

/** takeSmallBlock from the calling thread's shard, where a region is opened if there is none; null without memory. */
[[nodiscard]] void *allocateSmallBlock(uint64_t number, const GpbHostAllocation &allocation);

/** putSmallBlock, for any address. */
[[nodiscard]] Release releaseSmallBlock(void *memory, GpbHostAllocation *entry);

/** What is held. */
Totals smallBlockTotals();

/** Copies what is held, up to `room` entries, in no order; returns how many were copied. */
size_t copySmallBlocks(HeldEntry *out, size_t room);

} // namespace host

#endif
