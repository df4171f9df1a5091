#include "compiler/gpb_json_log.h"

#include "core/gpb_log.h"

namespace
{

// The steps that say it, whichever walk takes them.
constexpr char PREPARE[] = "GPB_CompilerStackPrepare";
constexpr char PUSH_ITEM[] = "GPB_PushItemDescriptor";
constexpr char LEAF[] = "ProcJsonLeafNode";
constexpr char LEAF_LIST[] = "ProcLeafListNode";

constexpr uint32_t LINE_CONTAINER_CASE_FAILED = 157;
constexpr uint32_t LINE_ANCESTORS_FAILED = 264;
constexpr uint32_t LINE_NO_LEAF_FIELD = 514;
constexpr uint32_t LINE_LEAF_CASE_FAILED = 522;
constexpr uint32_t LINE_LEAF_LIST_CASE_FAILED = 598;

} // namespace

void GpbReportNoJsonField(void *libHandle, const char *key, const GpbCompilerStackLayer &layer)
{
    GPB_LOG_AS(libHandle, GPB_LOG_SKIP, LEAF, LINE_NO_LEAF_FIELD,
               "Gpb Compiler leaf node fail to find field [%s] from [%s].", key, layer.strXPath.c_str());
}

void GpbReportJsonContainerCaseFailed(void *libHandle, const char *key)
{
    GPB_LOG_AS(libHandle, GPB_LOG_ERROR, PUSH_ITEM, LINE_CONTAINER_CASE_FAILED,
               "Json compiler push choice case node [%s] fail.", key);
}

void GpbReportJsonLeafCaseFailed(void *libHandle, const char *key, const GpbCompilerStackLayer &layer)
{
    GPB_LOG_AS(libHandle, GPB_LOG_ERROR, LEAF, LINE_LEAF_CASE_FAILED,
               "Json compiler choice case leaf node fail to find field [%s] from [%s].", key, layer.strXPath.c_str());
}

void GpbReportJsonLeafListCaseFailed(void *libHandle, const char *memberKey)
{
    GPB_LOG_AS(libHandle, GPB_LOG_ERROR, LEAF_LIST, LINE_LEAF_LIST_CASE_FAILED,
               "Gpb compiler choice case leaflist node fail to find field [%s].", memberKey);
}

void GpbReportJsonAncestorsFailed(void *libHandle, const char *key)
{
    GPB_LOG_AS(libHandle, GPB_LOG_ERROR, PREPARE, LINE_ANCESTORS_FAILED, "Fail to push ancestors layer [%s]", key);
}
