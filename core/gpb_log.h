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

/// Logs through GPBLIB_DebugPrint; the arguments are evaluated only when somebody listens.
#define GPB_LOG(pvLibHandle, uiLevel, uiLine, ...)                                                                     \
    do                                                                                                                 \
    {                                                                                                                  \
        if (GpbLogOpen((pvLibHandle), (uiLevel)))                                                                      \
        {                                                                                                              \
            GPBLIB_DebugPrint(static_cast<const GpbLibContext *>(pvLibHandle), (uiLevel), __func__, (uiLine),          \
                              __VA_ARGS__);                                                                            \
        }                                                                                                              \
    } while (false)

#endif
