/**
 * @file
 * Extensions: what a host can ask of a context beyond the other headers. All are off in a new context.
 */
#ifndef GPB_TEMPLATELIB_GPB_EXTENSION_H
#define GPB_TEMPLATELIB_GPB_EXTENSION_H

#include <stdint.h>

#include "gpb_api.h"
#include "gpb_lib.h"

#ifdef __cplusplus
extern "C"
{
#endif

/**
 * Switches the lossless setting of a context. While it is on, the compilers of the context place each node in the
 * message of its own list entry and case, and keep every value. While it is off, they place some nodes elsewhere or
 * leave them out, as they have always done, so that bytes do not change under hosts that rely on them.
 *
 * Compilers ask once at the beginning of each encode: a change holds for the encodes that begin after it. It may be
 * made on any thread.
 *
 * @param pstCtx  context
 * @param ucOn    0: off, anything else: on
 * @return 0; 1 for a null context or without memory, and then nothing changes
 */
GPB_API uint32_t GPBEXT_SetLossless(GpbLibContext *pstCtx, uint8_t ucOn);

/** The lossless setting of a context: 1 while it is on, else 0; 0 for a null context. Any thread may ask. */
GPB_API uint8_t GPBEXT_IsLossless(const GpbLibContext *pstCtx);

#ifdef __cplusplus
}
#endif

#endif
