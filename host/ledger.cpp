#include "ledger.h"

#include <cinttypes>
#include <cstdio>
#include <exception>
#include <new>

namespace host
{

Ledger &Ledger::instance()
{
    alignas(Ledger) static unsigned char storage[sizeof(Ledger)];
    static auto *const ledger = new (storage) Ledger;
    return *ledger;
}

bool Ledger::add(const GpbHostAllocation &allocation)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    try
    {
        Entry &entry = m_entries[allocation.pvMem];
        entry = {allocation, m_newest, nullptr};
        (m_newest != nullptr ? m_newest->newer : m_oldest) = &entry;
        m_newest = &entry;
    }
    catch (const std::exception &)
    {
        return false;
    }
    m_bytes += allocation.uiSize;
    return true;
}

bool Ledger::remove(const void *memory, GpbHostAllocation &entry)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_entries.find(memory);
    if (found == m_entries.end())
    {
        return false;
    }
    const Entry &removed = found->second;
    (removed.older != nullptr ? removed.older->newer : m_oldest) = removed.newer;
    (removed.newer != nullptr ? removed.newer->older : m_newest) = removed.older;
    entry = removed.allocation;
    m_bytes -= entry.uiSize;
    m_entries.erase(found);
    return true;
}

size_t Ledger::count()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_entries.size();
}

size_t Ledger::bytes()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_bytes;
}

size_t Ledger::list(GpbHostAllocation *out, size_t room)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    size_t copied = 0;
    for (const Entry *entry = m_oldest; out != nullptr && entry != nullptr && copied < room; entry = entry->newer)
    {
        out[copied++] = entry->allocation;
    }
    return m_entries.size();
}

size_t Ledger::print()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (const Entry *entry = m_oldest; entry != nullptr; entry = entry->newer)
    {
        const GpbHostAllocation &held = entry->allocation;
        (void)std::fprintf(stderr, "%zu bytes held by module 0x%" PRIx32 ", %s:%" PRIu32 "\n", held.uiSize,
                           held.uiModuleId, held.pcFile != nullptr ? held.pcFile : "?", held.uiLine);
    }
    return m_entries.size();
}

} // namespace host

size_t GpbHost_LiveCount(void)
{
    return host::Ledger::instance().count();
}

size_t GpbHost_LiveBytes(void)
{
    return host::Ledger::instance().bytes();
}

size_t GpbHost_LiveList(GpbHostAllocation *pstOut, size_t uiMax)
{
    return host::Ledger::instance().list(pstOut, uiMax);
}

size_t GpbHost_PrintLive(void)
{
    return host::Ledger::instance().print();
}
