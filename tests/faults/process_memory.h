/** The memory of the process, of libxml2 and of cJSON, failing when a test says so. */
#ifndef GPB_TESTS_FAULTS_PROCESS_MEMORY_H
#define GPB_TESTS_FAULTS_PROCESS_MEMORY_H

#include <cstdint>

namespace gpbtest
{

/** Lets libxml2 and cJSON allocate through here; call it before either is used. */
void takeProcessMemory();

/** Counts the allocations of its life, those of all three together, and fails one of them (0: none). */
class FailingMemory
{
public:
    explicit FailingMemory(uint64_t failing);
    ~FailingMemory();
    FailingMemory(const FailingMemory &) = delete;
    FailingMemory &operator=(const FailingMemory &) = delete;

    uint64_t count() const;
};

} // namespace gpbtest

#endif
