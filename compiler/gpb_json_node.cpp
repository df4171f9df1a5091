// The thin layer over cJSON.
#include <cjson/cJSON.h>

#include "gpb_templatelib/gpb_compiler.h"
#include "gpb_templatelib/gpb_descriptor.h"

cJSON *GpbLib_Json_ObjectAddTrue(uint32_t /*uiModuleId*/, cJSON *pstObject, const char *pcName)
{
    return cJSON_AddTrueToObject(pstObject, pcName);
}

cJSON *GpbLib_Json_ObjectAddFalse(uint32_t /*uiModuleId*/, cJSON *pstObject, const char *pcName)
{
    return cJSON_AddFalseToObject(pstObject, pcName);
}

cJSON *GpbLib_Json_ObjectAddNumber(uint32_t /*uiModuleId*/, cJSON *pstObject, const char *pcName, double dValue)
{
    return cJSON_AddNumberToObject(pstObject, pcName, dValue);
}

cJSON *GpbLib_Json_ObjectAddString(uint32_t /*uiModuleId*/, cJSON *pstObject, const char *pcName, const char *pcText)
{
    return cJSON_AddStringToObject(pstObject, pcName, pcText);
}

cJSON *GpbLib_Json_ObjectAddRaw(uint32_t /*uiModuleId*/, cJSON *pstObject, const char *pcName, const char *pcText)
{
    return cJSON_AddRawToObject(pstObject, pcName, pcText);
}

cJSON *GpbLib_Json_ObjectAddObject(uint32_t /*uiModuleId*/, cJSON *pstObject, const char *pcName)
{
    return cJSON_AddObjectToObject(pstObject, pcName);
}

cJSON *GpbLib_Json_ObjectAddArray(uint32_t /*uiModuleId*/, cJSON *pstObject, const char *pcName)
{
    return cJSON_AddArrayToObject(pstObject, pcName);
}

cJSON *GpbLib_Json_AllocObject(uint32_t /*uiModuleId*/)
{
    return cJSON_CreateObject();
}

cJSON *GpbLib_Json_AllocArray(uint32_t /*uiModuleId*/)
{
    return cJSON_CreateArray();
}

cJSON *GpbLib_Json_AllocTrue(uint32_t /*uiModuleId*/)
{
    return cJSON_CreateTrue();
}

cJSON *GpbLib_Json_AllocFalse(uint32_t /*uiModuleId*/)
{
    return cJSON_CreateFalse();
}

cJSON *GpbLib_Json_AllocNumber(uint32_t /*uiModuleId*/, double dValue)
{
    return cJSON_CreateNumber(dValue);
}

cJSON *GpbLib_Json_AllocString(uint32_t /*uiModuleId*/, const char *pcText)
{
    return cJSON_CreateString(pcText);
}

uint32_t GpbLib_Json_AddItemToObject(uint32_t /*uiModuleId*/, cJSON *pstObject, const char *pcName, cJSON *pstItem)
{
    return cJSON_AddItemToObject(pstObject, pcName, pstItem) == 0 ? 0 : 1;
}

uint32_t GpbLib_Json_AddItemToArray(uint32_t /*uiModuleId*/, cJSON *pstArray, cJSON *pstItem)
{
    return cJSON_AddItemToArray(pstArray, pstItem) == 0 ? 0 : 1;
}

void GpbLib_Json_NodeFree(cJSON *pstItem)
{
    if (pstItem != nullptr)
    {
        cJSON_Delete(pstItem);
    }
}

const char *GpbLib_Json_GetObjectName(const cJSON *pstItem)
{
    return pstItem == nullptr ? nullptr : pstItem->string;
}

void *GpbLib_Json_Malloc(size_t uiSize)
{
    return cJSON_malloc(uiSize);
}

void GpbLib_Json_Free(void *pvMem)
{
    if (pvMem != nullptr)
    {
        cJSON_free(pvMem);
    }
}

char *GpbLib_Json_EncodeUnformatted(uint32_t uiModuleId, cJSON *pstItem)
{
    if (pstItem == nullptr)
    {
        return nullptr;
    }
    char *printed = cJSON_PrintUnformatted(pstItem);
    char *text = Gpb_util_StrDup(uiModuleId, printed, nullptr);
    GpbLib_Json_Free(printed);
    return text;
}
