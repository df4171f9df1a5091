/* The allocator of a platform that has no memory left. */
#include "platform/zmp.h"

__attribute__((visibility("default"))) void *ZMP_Malloc_F(uint32_t uiModuleId, uint8_t ucPartition, size_t uiSize,
                                                          const char *pcFile, uint32_t uiLine)
{
    (void)uiModuleId;
    (void)ucPartition;
    (void)uiSize;
    (void)pcFile;
    (void)uiLine;
    return NULL;
}
