/**
 * Live allocations that are blocks of the C library: large ones, and all of them in a build with AddressSanitizer.
 *
 * Entries are found by address without touching the memory behind it, so that a foreign pointer can be asked for.
 */
#ifndef GPB_HOST_LEDGER_H
#define GPB_HOST_LEDGER_H

#include <mutex>
#include <unordered_map>

#include "books.h"

namespace host
{

class Ledger
{
public:
    /** The one ledger of the process; never destroyed, since memory may be released while the process ends. */
    static Ledger &instance();

    /**
     * Gets memory with a guard behind it and enters it; null without memory, for the entry either.
     *
     * @param number  of the call that asks for it
     */
    [[nodiscard]] void *allocate(uint64_t number, const GpbHostAllocation &allocation);

    /** Takes an allocation out, copies its entry and frees its memory. */
    [[nodiscard]] Release release(void *memory, GpbHostAllocation &entry);

    /** What is held. */
    Totals totals();

    /** Copies what is held, up to `room` entries, in no order; returns how many were copied. */
    size_t copy(HeldEntry *out, size_t room);

private:
    [[nodiscard]] bool add(const HeldEntry &entry);
    [[nodiscard]] bool remove(const void *memory, GpbHostAllocation &entry);

    std::mutex m_mutex;
    std::unordered_map<const void *, HeldEntry> m_entries;
    size_t m_bytes = 0;
};

} // namespace host

#endif
