/** Sizes of arrays of pointers. */
#ifndef GPB_HOST_POINTER_ARRAY_H
#define GPB_HOST_POINTER_ARRAY_H

#include <stddef.h>
#include <stdint.h>

namespace host
{

/** Bytes of an array of pointers; SIZE_MAX, which nobody gets, for one that is larger than the address space. */
inline size_t pointerArrayBytes(size_t count)
{
    return count > SIZE_MAX / sizeof(void *) ? SIZE_MAX : count * sizeof(void *);
}

} // namespace host

#endif
