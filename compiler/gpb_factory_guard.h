// Encoding with a message factory that may run out of memory.
#ifndef GPB_COMPILER_GPB_FACTORY_GUARD_H
#define GPB_COMPILER_GPB_FACTORY_GUARD_H

#include <utility>

#include "core/gpb_barrier.h"

/// Runs an encode behind the barrier; `failure` when an exception ends it, and from then on without running it:
/// protobuf leaves a type half made when an allocation fails while it is built, and the next message of that type would
/// crash.
template <typename Body>
unsigned int GpbEncodeWithFactory(unsigned char &factoryBroken, unsigned int failure, Body &&body) noexcept
{
    if (factoryBroken != 0)
    {
        return failure;
    }
    // Set while the walk runs, so that it stays set when an exception ends it.
    factoryBroken = 1;
    return GpbNoThrow(failure,
                      [&]
                      {
                          const unsigned int result = std::forward<Body>(body)();
                          factoryBroken = 0;
                          return result;
                      });
}

#endif
