/** The memory of the process between two operations, when nothing of an operation may be left. */
#ifndef GPB_TESTS_SOAK_MEMORY_WATCH_H
#define GPB_TESTS_SOAK_MEMORY_WATCH_H

#include <cstddef>
#include <string>

namespace gpbsoak
{

struct MemorySample
{
    size_t resident = 0; /**< bytes of the process in memory */
    size_t heap = 0;     /**< bytes in use of the process's heap */
    size_t ledger = 0;   /**< bytes that the platform's ledger holds */
};

MemorySample sampleMemory();

/** What the process may take at most, told by its warm-up. */
class MemoryWatch
{
public:
    /**
     * How much more than in the warm-up: the heap may lie in other pieces, and what a context works out once and keeps,
     * the names of a message type in a layer, may first be asked for later.
     */
    static constexpr size_t kResidentRoom = size_t{4} << 20;
    static constexpr size_t kHeapRoom = size_t{256} << 10;

    /** @param ledger  what the ledger holds between two operations, from the first to the last */
    explicit MemoryWatch(size_t ledger);

    /** Raises the measure of heap and resident memory; what findGrowth says of the ledger. */
    std::string warmUp(const MemorySample &sample);

    /** What has grown, as a text; empty when nothing has. */
    std::string findGrowth(const MemorySample &sample) const;

    const MemorySample &measure() const { return m_measure; }

private:
    MemorySample m_measure;
};

} // namespace gpbsoak

#endif
