// Fields by YANG node name.
#include <google/protobuf/descriptor.h>

#include "core/gpb_barrier.h"
#include "descriptor/gpb_field_search.h"
#include "gpb_templatelib/gpb_descriptor.h"

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

namespace
{

// Runs a search behind the barrier; the out argument is written only when a case field was found.
template <typename Search>
const FieldDescriptor *Answer(const FieldDescriptor **caseField, const Search &search)
{
    const GpbFoundField found = GpbNoThrow(GpbFoundField(), search);
    if (caseField != nullptr && found.caseField != nullptr)
    {
        *caseField = found.caseField;
    }
    return found.field;
}

} // namespace

const FieldDescriptor *GPB_FindFieldDescByNodeName(const Descriptor *pstMessage, const char *pcNodeName, int32_t iLayer,
                                                   const FieldDescriptor **ppstCaseField)
{
    if (pstMessage == nullptr || pcNodeName == nullptr)
    {
        return nullptr;
    }
    const auto searchCases = [&](const char *name) { return GpbSearchCases(pstMessage, name, iLayer); };
    return Answer(ppstCaseField, [&] { return GpbSearchNode(pstMessage, pcNodeName, iLayer, searchCases); });
}

const FieldDescriptor *GPB_GetLeafFieldDescByNodeName(const char *pcNodeName, const Descriptor *pstMessage,
                                                      int32_t iLayer, const FieldDescriptor **ppstCaseField)
{
    if (pstMessage == nullptr || pcNodeName == nullptr)
    {
        return nullptr;
    }
    const auto searchCases = [&](const char *name) { return GpbSearchCases(pstMessage, name, iLayer); };
    return Answer(ppstCaseField, [&] { return GpbSearchLeaf(pstMessage, pcNodeName, iLayer, searchCases); });
}

const FieldDescriptor *GPB_GetDescFieldByRepeateName(const Descriptor *pstMessage, const char *pcName, int32_t iLayer)
{
    if (pstMessage == nullptr || pcName == nullptr)
    {
        return nullptr;
    }
    return GpbNoThrow<const FieldDescriptor *>(nullptr, [&] { return GpbSearchSuffixed(pstMessage, pcName, iLayer); });
}

const FieldDescriptor *GPB_GetFieldDescByOneof(const char *pcName, const Descriptor *pstMessage, int32_t iLayer,
                                               const FieldDescriptor **ppstCaseField)
{
    if (pstMessage == nullptr || pcName == nullptr)
    {
        return nullptr;
    }
    return Answer(ppstCaseField, [&] { return GpbSearchCases(pstMessage, pcName, iLayer); });
}
