/**
 * @file
 * Memory and system services of the device platform.
 *
 * The library imports these functions and never defines them: the host process provides them, either with
 * the platform's own implementation or with the reference platform of this project (`gpb::host`).
 */
#ifndef GPB_TEMPLATELIB_PLATFORM_ZMP_H
#define GPB_TEMPLATELIB_PLATFORM_ZMP_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C"
{
#endif

/** Memory partition table; the library allocates from the partition whose number is the first byte. */
extern uint8_t g_aucZmpMemPt[];

/**
 * Allocates `uiSize` bytes under a module id and a memory partition.
 *
 * @param pcFile  source unit of the caller, a text that outlives the allocation
 * @param uiLine  line within that unit; file and line identify the allocation in the platform's books
 * @return memory aligned for any object (contents undefined), or null
 */
void *ZMP_Malloc_F(uint32_t uiModuleId, uint8_t ucPartition, size_t uiSize, const char *pcFile, uint32_t uiLine);

/** Releases memory of ZMP_Malloc_F; null does nothing. */
void ZMP_Free_F(void *pvMem, const char *pcFile, uint32_t uiLine);

/** Reports a condition that cannot happen with correct sizes, and returns: the caller goes on. */
uint32_t ZMP_Assert(const char *pcFile, uint32_t uiLine, uint32_t uiArg);

/**
 * Writes the system work path, which ends with "/", into `pcBuf`.
 *
 * @param uiSize  room in bytes, terminator included
 * @return 0 on success, non-zero on failure
 */
uint32_t ZMP_GetSysWorkPath(char *pcBuf, uint32_t uiSize);

/** The handle under which stacks are created for a module id. */
void *ZMP_GetRelHandle(uint32_t uiModuleId);

#ifdef __cplusplus
}
#endif

#endif
