#include "small_blocks.h"

#include <pthread.h>

#include "threads.h"

namespace
{

using host::Block;
using host::Region;
using host::Shard;

Shard &shardOfThread()
{
    if (host::isOnlyThread())
    {
        return host::g_shards[0];
    }
    // Threads lie far apart and evenly: the product brings all their bits to the top.
    constexpr uint64_t kSpread = 0x9E3779B97F4A7C15;
    return host::g_shards[static_cast<uint64_t>(pthread_self()) * kSpread >> (64 - host::kShardBits)];
}

size_t contentRoomOf(size_t sizeClass)
{
    return sizeClass < host::kSteppedClasses ? sizeClass * host::kSizeStep
                                             : host::kMaxSteppedSize << (sizeClass - host::kSteppedClasses + 1);
}

/** A region without held blocks, or null without memory. */
Region *takeEmptyRegion(Shard &shard)
{
    Region *region = shard.empty.first();
    if (region != nullptr)
    {
        shard.empty.remove(region);
        return region;
    }
    region = static_cast<Region *>(host::newRegion());
    if (region != nullptr)
    {
        region->shard.store(&shard, std::memory_order_release);
        region->nextOfShard = shard.all;
        shard.all = region;
    }
    return region;
}

/** Opens a region for a class; false without memory. */
bool openRegion(Shard &shard, size_t sizeClass)
{
    Region *const region = takeEmptyRegion(shard);
    if (region == nullptr)
    {
        return false;
    }
    region->shape(sizeClass, contentRoomOf(sizeClass));
    shard.open[sizeClass].add(region);
    return true;
}

/** Calls `visit` with each held block until it returns false. */
template <typename Visit>
void visitHeld(Visit visit)
{
    for (Shard &shard : host::g_shards)
    {
        const host::ThreadLock lock(shard.mutex);
        for (Region *region = shard.all; region != nullptr; region = region->nextOfShard)
        {
            for (uint32_t index = 0; index < region->usedCount; ++index)
            {
                Block *const block = region->blockAt(index);
                if (block->isHeld && !visit(block))
                {
                    return;
                }
            }
        }
    }
}

} // namespace

namespace host
{

Shard g_shards[size_t{1} << kShardBits];

void *allocateSmallBlock(uint64_t number, const GpbHostAllocation &allocation)
{
    Shard &shard = shardOfThread();
    const ThreadLock lock(shard.mutex);
    RegionList &open = openRegionsFor(shard, allocation.uiSize);
    if (open.first() == nullptr && !openRegion(shard, sizeClassOf(allocation.uiSize)))
    {
        return nullptr;
    }
    return takeSmallBlock(open, number, allocation);
}

Release releaseSmallBlock(void *memory, GpbHostAllocation *entry)
{
    Region *const region = findUsedRegion(memory);
    if (region == nullptr)
    {
        return Release::NotHeld;
    }
    const ThreadLock lock(region->shard.load(std::memory_order_relaxed)->mutex);
    return putSmallBlock(region, memory, entry);
}

Totals smallBlockTotals()
{
    Totals sum = {0, 0};
    visitHeld(
        [&sum](const Block *block)
        {
            ++sum.count;
            sum.bytes += block->size;
            return true;
        });
    return sum;
}

size_t copySmallBlocks(HeldEntry *out, size_t room)
{
    size_t copied = 0;
    visitHeld(
        [=, &copied](Block *block)
        {
            if (copied == room)
            {
                return false;
            }
            out[copied++] = {block->number, block->allocation()};
            return true;
        });
    return copied;
}

} // namespace host
