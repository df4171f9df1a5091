/**
 * GPB templates: which protobuf field carries which field of a management class.
 */
#ifndef GPB_TEMPLATELIB_GPB_TEMPLATE_H
#define GPB_TEMPLATELIB_GPB_TEMPLATE_H

#include <stdint.h>

#include "gpb_lib.h"
#include "gpb_objtree.h"

#ifdef __cplusplus
extern "C"
{
#endif

    /** One stored template; owned by the context, as is its tree. */
    typedef struct GpbTemplateInfo
    {
        uint32_t uiClassId;
        ObjTree pstObjTree;
    } GpbTemplateInfo;

    /** The record exchanged with the mapping callbacks; zeroed before the library fills and passes it. */
    struct GpbCidFid
    {
        uint32_t uiClassId;
        uint8_t ucFieldId;
        uint8_t ucEqual; /**< set by the callback: 1 the mapping is an equality, 0 a choice among several */
        uint8_t aucReserved[2];
    };

#ifdef __cplusplus
}
#endif

#endif
