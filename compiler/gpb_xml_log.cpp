#include "compiler/gpb_xml_log.h"

#include <google/protobuf/descriptor.h>

#include "core/gpb_log.h"

namespace
{

constexpr char CONTAINER[] = "ProcXmlContainerNode";
constexpr uint32_t LINE_NO_CONTAINER_FIELD = 298;
constexpr uint32_t LINE_CONTAINER_CASE_FAILED = 305;

constexpr char PRESENCE[] = "ProcXmlPresenceContainerNode";
constexpr uint32_t LINE_PRESENCE_CASE_FAILED = 359;

constexpr char LEAF[] = "ProcXmlLeafNode";
constexpr uint32_t LINE_NO_LEAF_FIELD = 418;
constexpr uint32_t LINE_LEAF_CASE_FAILED = 426;

constexpr char EMPTY_LEAF[] = "ProcXmlEmptyLeafNode";
constexpr uint32_t LINE_NO_EMPTY_LEAF_FIELD = 465;
constexpr uint32_t LINE_EMPTY_LEAF_CASE_FAILED = 472;
constexpr uint32_t LINE_EMPTY_LEAF_NOT_BOOL = 480;

// The lines of empty leaves deliberately leave the name out: tools that read logs compare these lines as a whole.
constexpr char EMPTY_LEAF_LOG_NAME[] = "";

} // namespace

void GpbReportNoXmlContainer(void *libHandle, const char *name)
{
    GPB_LOG_AS(libHandle, GPB_LOG_ERROR, CONTAINER, LINE_NO_CONTAINER_FIELD, "Can't Find field [%s]", name);
}

void GpbReportNoXmlLeaf(void *libHandle, const char *name, const GpbCompilerStackLayer &layer)
{
    GPB_LOG_AS(libHandle, GPB_LOG_SKIP, LEAF, LINE_NO_LEAF_FIELD,
               "[GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [%s] from [%s].", name, layer.strXPath.c_str());
}

void GpbReportNoXmlEmptyLeaf(void *libHandle, const GpbCompilerStackLayer &layer)
{
    GPB_LOG_AS(libHandle, GPB_LOG_SKIP, EMPTY_LEAF, LINE_NO_EMPTY_LEAF_FIELD,
               "[GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [%s] from [%s].", EMPTY_LEAF_LOG_NAME,
               layer.strXPath.c_str());
}

void GpbReportXmlContainerCaseFailed(void *libHandle, const char *name)
{
    GPB_LOG_AS(libHandle, GPB_LOG_ERROR, CONTAINER, LINE_CONTAINER_CASE_FAILED,
               "Gpb compiler container choice case node [%s] fail.", name);
}

void GpbReportXmlPresenceCaseFailed(void *libHandle, const char *name)
{
    GPB_LOG_AS(libHandle, GPB_LOG_ERROR, PRESENCE, LINE_PRESENCE_CASE_FAILED,
               "Gpb compiler presence container choice case node [%s] fail.", name);
}

void GpbReportXmlLeafCaseFailed(void *libHandle, const char *name)
{
    GPB_LOG_AS(libHandle, GPB_LOG_ERROR, LEAF, LINE_LEAF_CASE_FAILED, "Gpb compiler leaf choice case node [%s] fail.",
               name);
}

void GpbReportXmlEmptyLeafCaseFailed(void *libHandle, const char *name)
{
    GPB_LOG_AS(libHandle, GPB_LOG_ERROR, EMPTY_LEAF, LINE_EMPTY_LEAF_CASE_FAILED,
               "Gpb compiler empty leaf choice case node [%s] fail.", name);
}

void GpbReportXmlEmptyLeafType(void *libHandle, const google::protobuf::FieldDescriptor &field)
{
    GPB_LOG_AS(libHandle, GPB_LOG_SKIP, EMPTY_LEAF, LINE_EMPTY_LEAF_NOT_BOOL,
               "[GpbXmlCompiler][ProcXmlLeafNode]leaf %s, not expect type %d.", EMPTY_LEAF_LOG_NAME,
               static_cast<int>(field.type()));
}
