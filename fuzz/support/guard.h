/** What has to hold around every input: nothing held, nothing misused, no assertion, no fatal error of protobuf. */
#ifndef GPB_FUZZ_SUPPORT_GUARD_H
#define GPB_FUZZ_SUPPORT_GUARD_H

#include <cstddef>
#include <cstdint>

namespace gpbfuzz
{

/** Ends the process with a message unless `holds`. */
void require(bool holds, const char *what);

/**
 * Stands around the work on one input. At its end the platform's ledger must hold what it held before; an assertion,
 * the release of memory that is not held, and a write behind an allocation end the process at once.
 */
class InputGuard
{
public:
    /** @param mayAssert  whether the input can raise an assertion that is documented, such as for a name too long */
    explicit InputGuard(bool mayAssert = false);
    ~InputGuard();
    InputGuard(const InputGuard &) = delete;
    InputGuard &operator=(const InputGuard &) = delete;

private:
    size_t m_held;
};

} // namespace gpbfuzz

#endif
