#include "support/ledger_snapshot.h"

#include <sstream>

#include "gpb_templatelib/gpb_host.h"

namespace gpbtest
{

namespace
{

std::vector<GpbHostAllocation> liveAllocations()
{
    std::vector<GpbHostAllocation> allocations(GpbHost_LiveCount());
    allocations.resize(GpbHost_LiveList(allocations.data(), allocations.size()));
    return allocations;
}

} // namespace

LedgerSnapshot::LedgerSnapshot()
{
    for (const GpbHostAllocation &allocation : liveAllocations())
    {
        m_held.insert(allocation.pvMem);
    }
}

std::vector<std::string> LedgerSnapshot::added() const
{
    std::vector<std::string> texts;
    for (const GpbHostAllocation &allocation : liveAllocations())
    {
        if (m_held.count(allocation.pvMem) == 0)
        {
            std::ostringstream text;
            text << allocation.uiSize << " bytes of module 0x" << std::hex << allocation.uiModuleId << std::dec << ", "
                 << allocation.pcFile << ":" << allocation.uiLine;
            texts.push_back(text.str());
        }
    }
    return texts;
}

} // namespace gpbtest
