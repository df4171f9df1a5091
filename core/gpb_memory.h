// Platform memory, as all units of the library use it.
#ifndef GPB_CORE_GPB_MEMORY_H
#define GPB_CORE_GPB_MEMORY_H

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "platform/safe_string.h"
#include "platform/zmp.h"

/// Allocates from the library's memory partition; contents undefined, null without memory.
inline void *GpbMalloc(uint32_t moduleId, size_t size, const char *file, uint32_t line)
{
    return ZMP_Malloc_F(moduleId, g_aucZmpMemPt[0], size, file, line);
}

/// Zeroes memory. Even a failing service must not leave it undefined: records are read field by field later on.
inline void GpbZero(void *mem, size_t size, const char *file, uint32_t line)
{
    if (memset_s(mem, size, 0, size) != 0)
    {
        ZMP_Assert(file, line, 0);
        std::memset(mem, 0, size);
    }
}

#endif
