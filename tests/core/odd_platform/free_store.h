/** A free store that runs out when a test says so. */
#ifndef GPB_TESTS_CORE_ODD_PLATFORM_FREE_STORE_H
#define GPB_TESTS_CORE_ODD_PLATFORM_FREE_STORE_H

#include <cstdint>

namespace gpbtest
{

/** Makes the nth allocation of the free store from now (1 is the next one) fail once; 0 takes the order back. */
void failAllocation(uint64_t nth);

/** True when the last order has been met. */
bool hasAllocationFailed();

} // namespace gpbtest

#endif
