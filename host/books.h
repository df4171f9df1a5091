/** The books of the allocator: what is held, whichever way it was allocated. */
#ifndef GPB_HOST_BOOKS_H
#define GPB_HOST_BOOKS_H

#include "platform_exports.h"

namespace host
{

/** One live allocation. */
struct HeldEntry
{
    uint64_t number; // of the call that it was made by; calls are numbered in their order
    GpbHostAllocation allocation;
};

struct Totals
{
    size_t count;
    size_t bytes;
};

/** What became of a release. */
enum class Release
{
    NotHeld, /**< no live allocation begins at the address; nothing was done */
    Done,
    Overrun /**< done, but the bytes behind the allocation had been overwritten */
};

} // namespace host

#endif
