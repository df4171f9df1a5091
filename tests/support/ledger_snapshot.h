/** What the reference platform's ledger holds now, to compare with later. */
#ifndef GPB_TESTS_SUPPORT_LEDGER_SNAPSHOT_H
#define GPB_TESTS_SUPPORT_LEDGER_SNAPSHOT_H

#include <set>
#include <string>
#include <vector>

namespace gpbtest
{

class LedgerSnapshot
{
public:
    LedgerSnapshot();

    /** "N bytes of module 0xM, FILE:LINE" for each allocation that is held now and was not then, oldest first. */
    std::vector<std::string> added() const;

private:
    std::set<const void *> m_held;
};

} // namespace gpbtest

#endif
