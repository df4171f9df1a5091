/**
 * Platform memory without books. The lock of the reference platform's ledger would put the threads in an order with
 * every allocation, and ThreadSanitizer takes accesses that are in an order for none that race.
 */
#ifndef GPB_TESTS_THREADS_LOCKLESS_MEMORY_H
#define GPB_TESTS_THREADS_LOCKLESS_MEMORY_H

namespace gpbtest
{

/** Allocations of the process that are not released. */
long heldAllocations();

} // namespace gpbtest

#endif
