#include "books.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "ledger.h"
#include "small_blocks.h"

namespace
{

struct FreeMemory
{
    void operator()(void *memory) const { std::free(memory); }
};

/** All that is held at one moment, oldest first; empty where there is no memory for it. */
class Listing
{
public:
    Listing() : m_room(held().count), m_entries(static_cast<host::HeldEntry *>(std::malloc(bytesFor(m_room))))
    {
        if (m_entries == nullptr)
        {
            return;
        }
        // Other threads may go on meanwhile: what is copied is what counts.
        m_count = host::copySmallBlocks(m_entries.get(), m_room);
        m_count += host::Ledger::instance().copy(m_entries.get() + m_count, m_room - m_count);
        std::sort(begin(), end(),
                  [](const host::HeldEntry &left, const host::HeldEntry &right) { return left.number < right.number; });
    }

    size_t size() const { return m_count; }
    host::HeldEntry *begin() const { return m_entries.get(); }
    host::HeldEntry *end() const { return m_entries.get() + m_count; }

    static host::Totals held()
    {
        const host::Totals small = host::smallBlockTotals();
        const host::Totals others = host::Ledger::instance().totals();
        return {small.count + others.count, small.bytes + others.bytes};
    }

private:
    /** Never none, for which the C library may give null. */
    static size_t bytesFor(size_t count) { return (count + 1) * sizeof(host::HeldEntry); }

    size_t m_room;
    size_t m_count = 0;
    // Not of the free store, which programs replace to let it fail.
    std::unique_ptr<host::HeldEntry, FreeMemory> m_entries;
};

} // namespace

size_t GpbHost_LiveCount(void)
{
    return Listing::held().count;
}

size_t GpbHost_LiveBytes(void)
{
    return Listing::held().bytes;
}

size_t GpbHost_LiveList(GpbHostAllocation *pstOut, size_t uiMax)
{
    if (pstOut == nullptr)
    {
        return GpbHost_LiveCount();
    }
    const Listing listing;
    const host::HeldEntry *entry = listing.begin();
    for (size_t copied = 0; copied < std::min(uiMax, listing.size()); ++copied)
    {
        pstOut[copied] = (entry++)->allocation;
    }
    return listing.size();
}

size_t GpbHost_PrintLive(void)
{
    const Listing listing;
    for (const host::HeldEntry &entry : listing)
    {
        const GpbHostAllocation &held = entry.allocation;
        (void)std::fprintf(stderr, "%zu bytes held by module 0x%" PRIx32 ", %s:%" PRIu32 "\n", held.uiSize,
                           held.uiModuleId, held.pcFile != nullptr ? held.pcFile : "?", held.uiLine);
    }
    return listing.size();
}
