// The one way in which the library logs.
#ifndef GPB_CORE_GPB_LOG_H
#define GPB_CORE_GPB_LOG_H

#include "gpb_templatelib/gpb_lib.h"

/// Whether anybody listens at a level. A null context has no listeners.
inline bool GpbLogOpen(const void *pvLibHandle, uint32_t uiLevel)
{
    const auto *context = static_cast<const GpbLibContext *>(pvLibHandle);
    return context != nullptr && context->astPrint[uiLevel].pfnPrint != nullptr;
}

/// GPB_LOG under the name of an operation, from inside a step or a lambda of it.
#define GPB_LOG_AS(libHandle, level, function, line, ...)                                                              \
    do                                                                                                                 \
    {                                                                                                                  \
        if (GpbLogOpen((libHandle), (level)))                                                                          \
        {                                                                                                              \
            GPBLIB_DebugPrint(static_cast<const GpbLibContext *>(libHandle), (level), (function), (line),              \
                              __VA_ARGS__);                                                                            \
        }                                                                                                              \
    } while (false)

/// Logs through GPBLIB_DebugPrint; the arguments are evaluated only when somebody listens.
#define GPB_LOG(libHandle, level, line, ...) GPB_LOG_AS((libHandle), (level), __func__, (line), __VA_ARGS__)

#endif
