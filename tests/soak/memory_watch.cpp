#include "soak/memory_watch.h"

#include <algorithm>
#include <fstream>
#include <malloc.h>
#include <unistd.h>

#include "gpb_templatelib/gpb_host.h"

// A sanitizer has a heap of its own, whose freed memory stays resident for a while.
extern "C" __attribute__((weak)) size_t __sanitizer_get_current_allocated_bytes();

namespace gpbsoak
{

namespace
{

size_t residentBytes()
{
    std::ifstream statm("/proc/self/statm");
    size_t all = 0;
    size_t resident = 0;
    statm >> all >> resident;
    return resident * static_cast<size_t>(sysconf(_SC_PAGESIZE));
}

size_t heapBytes()
{
    if (__sanitizer_get_current_allocated_bytes != nullptr)
    {
        return __sanitizer_get_current_allocated_bytes();
    }
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

std::string growthText(const char *what, size_t before, size_t now)
{
    return std::string(what) + " memory: " + std::to_string(before) + " bytes before, " + std::to_string(now) +
           " bytes now";
}

} // namespace

MemorySample sampleMemory()
{
    return {residentBytes(), heapBytes(), GpbHost_LiveBytes()};
}

MemoryWatch::MemoryWatch(size_t ledger)
{
    m_measure.ledger = ledger;
}

std::string MemoryWatch::warmUp(const MemorySample &sample)
{
    m_measure.resident = std::max(m_measure.resident, sample.resident);
    m_measure.heap = std::max(m_measure.heap, sample.heap);
    return findGrowth(sample);
}

std::string MemoryWatch::findGrowth(const MemorySample &sample) const
{
    if (sample.ledger != m_measure.ledger)
    {
        return growthText("ledger", m_measure.ledger, sample.ledger);
    }
    if (sample.heap > m_measure.heap + kHeapRoom)
    {
        return growthText("heap", m_measure.heap, sample.heap);
    }
    if (sample.resident > m_measure.resident + kResidentRoom)
    {
        return growthText("resident", m_measure.resident, sample.resident);
    }
    return "";
}

} // namespace gpbsoak
