/** Regions of small blocks: blocks of one size side by side, each behind its own entry in the books. */
#ifndef GPB_HOST_REGION_H
#define GPB_HOST_REGION_H

#include <atomic>

#include "arenas.h"
#include "books.h"
#include "guard_bytes.h"
#include "likely.h"

namespace host
{

struct Shard;

/** The entry of a block. Its content follows, then the guard. */
struct alignas(16) Block
{
    const char *file;
    union
    {
        uint64_t number; // while it is held: of the call that asked for it
        Block *nextFree; // while it is not: the block to be taken after it
    };
    uint32_t moduleId;
    uint32_t line;
    uint16_t size;
    uint8_t partition;
    bool isHeld;

    void *content() { return this + 1; }
    static Block *ofContent(void *content) { return static_cast<Block *>(content) - 1; }
    GpbHostAllocation allocation() { return {content(), size, moduleId, partition, file, line}; }
};
static_assert(sizeof(Block) % alignof(std::max_align_t) == 0, "content is aligned for any object");

/** The header of a region; everything but the shard is under the lock of the shard. */
struct Region
{
    /** Exact for all distances within a region: they have half the bits, and blocks are smaller still. */
    static constexpr unsigned kReciprocalBits = 32;
    static_assert(kRegionSize <= size_t{1} << (kReciprocalBits / 2), "half the bits");

    std::atomic<Shard *> shard; // set once; null in a region that is not given out yet
    Region *nextOfShard;
    Region *next; // in the list of its shard that it is in, if any
    Region *previous;
    size_t classIndex;
    uint32_t blockSize;
    uint32_t blockCount;
    uint64_t reciprocal; // of the block size, times 2^32
    uint32_t usedCount;  // blocks before this one have been taken at least once
    uint32_t heldCount;
    Block *firstFree; // of the used blocks

    /** Makes it a region for content of a size, without any held block. */
    void shape(size_t newClassIndex, size_t contentRoom);

    bool isFull() const { return firstFree == nullptr && usedCount == blockCount; }

    Block *blockAt(uint32_t index)
    {
        return reinterpret_cast<Block *>(reinterpret_cast<char *>(this) + kFirstBlock + size_t{index} * blockSize);
    }

    /** Takes a block out of one that is not full. */
    Block *take()
    {
        ++heldCount;
        if (isUnlikely(firstFree == nullptr))
        {
            return blockAt(usedCount++);
        }
        Block *const block = firstFree;
        firstFree = block->nextFree;
        return block;
    }

    void giveBack(Block *block)
    {
        block->isHeld = false;
        block->nextFree = firstFree;
        firstFree = block;
        --heldCount;
    }

    /** The held block whose content begins at an address in this region; null when there is none. */
    Block *findHeld(void *content)
    {
        const auto offset = static_cast<size_t>(static_cast<char *>(content) - reinterpret_cast<char *>(this));
        if (offset < kFirstBlock + sizeof(Block))
        {
            return nullptr;
        }
        const uint64_t distance = offset - kFirstBlock - sizeof(Block);
        const uint64_t index = distance * reciprocal >> kReciprocalBits;
        const bool isBlock = index * blockSize == distance && index < usedCount;
        return isBlock && Block::ofContent(content)->isHeld ? Block::ofContent(content) : nullptr;
    }

    static const size_t kFirstBlock;
};

inline constexpr size_t Region::kFirstBlock = (sizeof(Region) + alignof(Block) - 1) / alignof(Block) * alignof(Block);

inline void Region::shape(size_t newClassIndex, size_t contentRoom)
{
    classIndex = newClassIndex;
    blockSize = static_cast<uint32_t>(sizeof(Block) + contentRoom + kGuardSize);
    blockCount = static_cast<uint32_t>((kRegionSize - kFirstBlock) / blockSize);
    reciprocal = (uint64_t{1} << kReciprocalBits) / blockSize + 1;
    usedCount = 0;
    heldCount = 0;
    firstFree = nullptr;
}

/** Regions of one kind; the one added last is the first. */
class RegionList
{
public:
    Region *first() const { return m_first; }
    bool hasOne() const { return m_first != nullptr && m_first->next == nullptr; }

    void add(Region *region)
    {
        region->previous = nullptr;
        region->next = m_first;
        if (m_first != nullptr)
        {
            m_first->previous = region;
        }
        m_first = region;
    }

    void remove(Region *region)
    {
        (region->previous != nullptr ? region->previous->next : m_first) = region->next;
        if (region->next != nullptr)
        {
            region->next->previous = region->previous;
        }
    }

private:
    Region *m_first = nullptr;
};

} // namespace host

#endif
