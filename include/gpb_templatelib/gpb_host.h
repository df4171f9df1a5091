/**
 * @file
 * Reference platform for Linux (`gpb::host`): settings, books and provoked failures.
 *
 * The platform provides every service that the library imports (gpb_templatelib/platform/). It keeps a ledger of all
 * live allocations, tells an observer what happens, and can be told to fail any call, so that tests and tools can show
 * what the library does then. A program that defines a platform function itself overrides the one given here.
 *
 * Threads: the services may be called from several threads; settings and provoked failures are for one thread at a
 * time.
 */
#ifndef GPB_TEMPLATELIB_GPB_HOST_H
#define GPB_TEMPLATELIB_GPB_HOST_H

#include <stddef.h>
#include <stdint.h>

#if defined(__GNUC__)
#define GPB_HOST_API __attribute__((visibility("default")))
#else
#define GPB_HOST_API
#endif

#ifdef __cplusplus
extern "C"
{
#endif

/** Services whose calls are counted and can be failed. */
typedef enum GpbHostService
{
    GPB_HOST_MALLOC = 0,
    GPB_HOST_VEC_INIT,
    GPB_HOST_VEC_SET,
    GPB_HOST_STACK_CREATE,
    GPB_HOST_STACK_PUSH,
    GPB_HOST_STACK_POP,
    GPB_HOST_MEMCPY,
    GPB_HOST_MEMSET,
    GPB_HOST_STRCPY,
    GPB_HOST_STRNCPY,
    GPB_HOST_SPRINTF,
    GPB_HOST_SNPRINTF,
    GPB_HOST_SNPRINTF_TRUNCATED,
    GPB_HOST_VSNPRINTF_TRUNCATED,
    GPB_HOST_WORK_PATH,
    GPB_HOST_FILE_EXIST,
    GPB_HOST_DIR_EXIST,
    GPB_HOST_SERVICE_COUNT
} GpbHostService;

/** What an observer is told. */
typedef enum GpbHostEventKind
{
    GPB_HOST_EVENT_MALLOC = 0, /**< memory was allocated */
    GPB_HOST_EVENT_MALLOC_FAILED,
    GPB_HOST_EVENT_FREE,     /**< memory was released */
    GPB_HOST_EVENT_BAD_FREE, /**< a pointer that is not a live allocation was released; it is left alone */
    GPB_HOST_EVENT_OVERRUN,  /**< the bytes behind a released allocation were overwritten */
    GPB_HOST_EVENT_ASSERT,   /**< ZMP_Assert was called */
    GPB_HOST_EVENT_VEC_INIT, /**< a vector was created */
    GPB_HOST_EVENT_VEC_FREE  /**< a vector was freed */
} GpbHostEventKind;

/** One event; which fields are filled depends on its kind. */
typedef struct GpbHostEvent
{
    GpbHostEventKind eKind; /**< what happened */
    uint32_t uiModuleId;    /**< of allocations and vectors */
    uint8_t ucPartition;    /**< of allocations */
    const void *pvMem;      /**< the allocation or the vector */
    size_t uiSize;          /**< bytes of an allocation, first slots of a vector */
    const char *pcFile;     /**< of the call */
    uint32_t uiLine;        /**< of the call */
} GpbHostEvent;

/** Called with each event, in the thread that caused it. */
typedef void (*GpbHostObserver)(void *pvArg, const GpbHostEvent *pstEvent);

/** One live allocation. */
typedef struct GpbHostAllocation
{
    const void *pvMem;   /**< the memory */
    size_t uiSize;       /**< bytes that were asked for */
    uint32_t uiModuleId; /**< of the call */
    uint8_t ucPartition; /**< of the call */
    const char *pcFile;  /**< tag of the call */
    uint32_t uiLine;     /**< line of the call */
} GpbHostAllocation;

/**
 * Sets the system work path; a "/" is added when it lacks one. Null or an empty text goes back to the environment
 * variable GPB_WORK_PATH, or the current directory where that is not set or empty.
 */
GPB_HOST_API void GpbHost_SetWorkPath(const char *pcPath);

/** Allocations of ZMP_Malloc_F (vectors and stacks included) that are still held. */
GPB_HOST_API size_t GpbHost_LiveCount(void);

/** Bytes that were asked for in the allocations that are still held. */
GPB_HOST_API size_t GpbHost_LiveBytes(void);

/** Copies up to `uiMax` live allocations, oldest first, into `pstOut`; returns how many there are. */
GPB_HOST_API size_t GpbHost_LiveList(GpbHostAllocation *pstOut, size_t uiMax);

/** Writes one line per live allocation (bytes, module id, file:line) to standard error; returns how many. */
GPB_HOST_API size_t GpbHost_PrintLive(void);

/**
 * Switches the filling of memory off and on again; it is on at first. Memory that ZMP_Malloc_F gives out is filled with
 * 0xA5 and memory that is released with 0xDD, so that a record that nobody zeroed shows and a late reader finds nothing
 * useful. For programs that measure time: books and the watched bytes behind allocations are kept all the same.
 */
GPB_HOST_API void GpbHost_FillMemory(int iOn);

/** Calls of ZMP_Assert so far. */
GPB_HOST_API uint64_t GpbHost_AssertCount(void);

/** The value that ZMP_Assert returns from now on; 0 at first. */
GPB_HOST_API void GpbHost_SetAssertResult(uint32_t uiResult);

/** Sets the observer; null for none. It must not call the platform. */
GPB_HOST_API void GpbHost_SetObserver(GpbHostObserver pfnObserver, void *pvArg);

/** Calls of one service so far, failed ones included. */
GPB_HOST_API uint64_t GpbHost_CallCount(GpbHostService eService);

/** Calls of all services together so far. */
GPB_HOST_API uint64_t GpbHost_TotalCallCount(void);

/** Makes the `uiNth` call of a service from now (1 is the next one) fail once; 0 takes the order back. */
GPB_HOST_API void GpbHost_FailCall(GpbHostService eService, uint64_t uiNth);

/** Makes every call of a service fail until it is switched off again. */
GPB_HOST_API void GpbHost_FailAlways(GpbHostService eService, int iOn);

/** Makes the `uiNth` call of any service from now fail once; 0 takes the order back. */
GPB_HOST_API void GpbHost_FailAnyCall(uint64_t uiNth);

/**
 * Takes all orders to fail back, removes the observer, sets the assert result to 0 and fills memory again. Counts and
 * ledger stay.
 */
GPB_HOST_API void GpbHost_Reset(void);

#ifdef __cplusplus
}
#endif

#endif
