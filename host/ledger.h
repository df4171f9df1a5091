/**
 * The books of the allocator: every live allocation, in the order in which they were made.
 *
 * Entries are found by address without touching the memory behind it, so that a foreign pointer can be asked for.
 */
#ifndef GPB_HOST_LEDGER_H
#define GPB_HOST_LEDGER_H

#include <mutex>
#include <unordered_map>

#include "platform_exports.h"

namespace host
{

class Ledger
{
public:
    /** The one ledger of the process; never destroyed, since memory may be released while the process ends. */
    static Ledger &instance();

    /** Enters an allocation; false when there is no memory for the entry. */
    [[nodiscard]] bool add(const GpbHostAllocation &allocation);

    /** Takes an allocation out and copies its entry; false when the address is no live allocation. */
    [[nodiscard]] bool remove(const void *memory, GpbHostAllocation &entry);

    size_t count();
    size_t bytes();

    /** Copies up to `room` entries, oldest first; returns how many there are. */
    size_t list(GpbHostAllocation *out, size_t room);

    /** Writes one line per entry to standard error; returns how many there are. */
    size_t print();

private:
    struct Entry
    {
        GpbHostAllocation allocation;
        Entry *older;
        Entry *newer;
    };

    std::mutex m_mutex;
    std::unordered_map<const void *, Entry> m_entries; // its nodes stay where they are
    Entry *m_oldest = nullptr;
    Entry *m_newest = nullptr;
    size_t m_bytes = 0;
};

} // namespace host

#endif
