/** What a host does in the soak, one operation at a time; none leaves anything behind. */
#ifndef GPB_TESTS_SOAK_OPERATIONS_H
#define GPB_TESTS_SOAK_OPERATIONS_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "soak/fault_lives.h"
#include "soak/inputs.h"

namespace gpbsoak
{

/** A fuzz target with its corpus. It ends the process when something does not hold. */
struct Target
{
    const char *name;
    int (*run)(const uint8_t *data, size_t size);
    uint64_t (*countDocuments)(const std::string &input); /**< that it has encoded, at least */
    unsigned int modules;                                 /**< that it loads and unloads */
    unsigned int templates;                               /**< that it asks for */
    Inputs inputs;
    uint64_t runs = 0;
    uint64_t documents = 0;
};

class Operations
{
public:
    explicit Operations(uint64_t seed);

    /** Every file of every corpus as it is, and every use of the fault lives once. */
    void runAll();

    /** Any target with any input, or a life with a fault. */
    void runOne();

    const std::vector<Target> &targets() const { return m_targets; }
    const FaultLives &lives() const { return m_lives; }

private:
    static void run(Target &target, const std::string &input);
    void runLife(FaultLives::Use use);

    std::vector<Target> m_targets;
    FaultLives m_lives;
    Random m_random;
};

} // namespace gpbsoak

#endif
