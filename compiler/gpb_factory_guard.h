// Encoding with a message factory that may have been broken by a lack of memory.
#ifndef GPB_COMPILER_GPB_FACTORY_GUARD_H
#define GPB_COMPILER_GPB_FACTORY_GUARD_H

#include "core/gpb_barrier.h"

/// Runs `body`, which makes messages by a compiler's factory, behind the barrier. When an exception ends it, the
/// factory may be left with types that are made half, which a later use would not survive: from then on `broken` is set
/// and everything fails with `failure`.
template <typename Body>
unsigned int GpbGuardFactory(unsigned char &broken, unsigned int failure, const Body &body)
{
    if (broken != 0)
    {
        return failure;
    }
    // Set while the body runs, so that it stays set when an exception ends it.
    broken = 1;
    return GpbNoThrow(failure,
                      [&]
                      {
                          const unsigned int result = body();
                          broken = 0;
                          return result;
                      });
}

#endif
