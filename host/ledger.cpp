#include "ledger.h"

#include <cstdlib>
#include <exception>
#include <new>

#include "guard_bytes.h"
#include "threads.h"

namespace host
{

Ledger &Ledger::instance()
{
    alignas(Ledger) static unsigned char storage[sizeof(Ledger)];
    static auto *const ledger = new (storage) Ledger;
    return *ledger;
}

void *Ledger::allocate(uint64_t number, const GpbHostAllocation &allocation)
{
    void *const memory = std::malloc(allocation.uiSize + kGuardSize);
    if (memory == nullptr)
    {
        return nullptr;
    }
    HeldEntry entry = {number, allocation};
    entry.allocation.pvMem = memory;
    if (!add(entry))
    {
        std::free(memory);
        return nullptr;
    }
    return dressMemory(memory, allocation.uiSize);
}

Release Ledger::release(void *memory, GpbHostAllocation &entry)
{
    if (!remove(memory, entry))
    {
        return Release::NotHeld;
    }
    const bool isWhole = isGuardWhole(memory, entry.uiSize);
    undressMemory(memory, entry.uiSize);
    std::free(memory);
    return isWhole ? Release::Done : Release::Overrun;
}

bool Ledger::add(const HeldEntry &entry)
{
    const ThreadLock lock(m_mutex);
    try
    {
        m_entries[entry.allocation.pvMem] = entry;
    }
    catch (const std::exception &)
    {
        return false;
    }
    m_bytes += entry.allocation.uiSize;
    return true;
}

bool Ledger::remove(const void *memory, GpbHostAllocation &entry)
{
    const ThreadLock lock(m_mutex);
    const auto found = m_entries.find(memory);
    if (found == m_entries.end())
    {
        return false;
    }
    entry = found->second.allocation;
    m_bytes -= entry.uiSize;
    m_entries.erase(found);
    return true;
}

Totals Ledger::totals()
{
    const ThreadLock lock(m_mutex);
    return {m_entries.size(), m_bytes};
}

size_t Ledger::copy(HeldEntry *out, size_t room)
{
    const ThreadLock lock(m_mutex);
    size_t copied = 0;
    for (auto entry = m_entries.begin(); entry != m_entries.end() && copied < room; ++entry)
    {
        out[copied++] = entry->second;
    }
    return copied;
}

} // namespace host
