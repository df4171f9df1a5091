/**
 * @file
 * Vectors of pointers of the device platform.
 *
 * Imported by the library, provided by the host process. The record is open: callers read the slot count and
 * the slot array directly and may clear a slot by writing null into it.
 */
#ifndef GPB_TEMPLATELIB_PLATFORM_VEC_H
#define GPB_TEMPLATELIB_PLATFORM_VEC_H

#include <stdint.h>

#ifdef __cplusplus
extern "C"
{
#endif

/** What VEC_VectorSet returns when the item could not be stored. */
#define VEC_INVALID_INDEX 0xFFFFFFFFU

/** A vector; a slot that was cleared is used again. */
typedef struct VecVector
{
    uint32_t uiModuleId; /**< module id under which the vector's memory is held */
    uint32_t uiCount;    /**< slots up to and including the last one in use */
    uint32_t uiSize;     /**< slots allocated */
    void **ppvSlot;      /**< the slots; null is an empty slot */
} VecVector;

/** Creates an empty vector with `uiSize` slots (it grows); null on failure. */
VecVector *VEC_VectorInit_F(uint32_t uiModuleId, uint32_t uiSize, const char *pcFile, uint32_t uiLine);

/** Puts an item into the first free slot; returns its index, or VEC_INVALID_INDEX on failure. */
uint32_t VEC_VectorSet(VecVector *pstVector, void *pvItem);

/** Slots up to and including the last one in use; 0 for null. */
uint32_t VEC_VectorCount(const VecVector *pstVector);

/** Moves the items together, in their order, so that no empty slot stands between them. */
void VEC_VectorZipEmptySlot(VecVector *pstVector);

/** Frees the vector, not its items. Null does nothing. */
void VEC_VectorFree_F(VecVector *pstVector, const char *pcFile, uint32_t uiLine);

#ifdef __cplusplus
}
#endif

#endif
