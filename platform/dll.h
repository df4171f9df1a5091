/**
 * @file
 * Doubly linked lists of the device platform.
 *
 * Imported by the library, provided by the host process. A record becomes a list node by starting with the
 * fields of DllNode. The head counts as a node: in an empty list its links point at the head itself.
 */
#ifndef GPB_TEMPLATELIB_PLATFORM_DLL_H
#define GPB_TEMPLATELIB_PLATFORM_DLL_H

#include <stdint.h>

#ifdef __cplusplus
extern "C"
{
#endif

/** The links with which a list node begins. */
typedef struct DllNode
{
    struct DllNode *pstNext; /**< next node, the head after the last */
    struct DllNode *pstPrev; /**< previous node, the head before the first */
    uintptr_t ulHandle;      /**< left to the platform; zero */
} DllNode;

/** A list: its links lie where a node has its own, so that the head stands for a node. */
typedef struct DllHead
{
    DllNode *pstFirst;  /**< first node, the head itself in an empty list */
    DllNode *pstLast;   /**< last node, the head itself in an empty list */
    uintptr_t ulHandle; /**< left to the platform; zero */
    uint32_t uiCount;   /**< nodes in the list, the head not counted */
} DllHead;

/** Compares a key with a node; 0 when they match. */
typedef int (*DllCompareFunc)(const void *pvKey, const void *pvNode);

/** First node for which `pfnCompare(pvKey, node)` is 0, or null. */
DllNode *DLL_Find(DllHead *pstList, const void *pvKey, DllCompareFunc pfnCompare);

/** Unlinks a node; its memory stays the caller's. */
void DLL_Delete(DllHead *pstList, DllNode *pstNode);

/** Links a node between two neighbours, either of which may be the head. */
void DLL_Insert_In_Middle(DllHead *pstList, DllNode *pstPrev, DllNode *pstNext, DllNode *pstNode);

#ifdef __cplusplus
}
#endif

#endif
