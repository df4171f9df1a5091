/**
 * Patterns that make memory errors of the library visible.
 *
 * New memory is filled, so that a record that nobody zeroed shows; released memory is filled, so that a late reader
 * finds nothing useful; and a few bytes behind every allocation are watched. In a build with AddressSanitizer these
 * bytes are out of bounds for everybody, readers included.
 */
#ifndef GPB_HOST_GUARD_BYTES_H
#define GPB_HOST_GUARD_BYTES_H

#include <cstddef>

namespace host
{

/** Bytes watched behind an allocation. */
constexpr size_t kGuardSize = 16;

/** Fills `size` new bytes and the guard behind them. */
void dressMemory(void *memory, size_t size);

/** Fills `size` released bytes; false when the guard behind them was overwritten. */
[[nodiscard]] bool undressMemory(void *memory, size_t size);

} // namespace host

#endif
