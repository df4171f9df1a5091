// The fields in the cases of one message, by name.
#ifndef GPB_DESCRIPTOR_GPB_CASE_INDEX_H
#define GPB_DESCRIPTOR_GPB_CASE_INDEX_H

#include <cstdint>
#include <string_view>
#include <unordered_map>

#include "descriptor/gpb_field_search.h"

/// Answers as GpbSearchCases does for one message in one layer. A search there costs more the more cases there are; the
/// index is made once and costs as much as there are fields in the cases.
class GpbCaseIndex
{
public:
    using Fields = std::unordered_map<std::string_view, GpbFoundField>;

    GpbCaseIndex(const google::protobuf::Descriptor *message, int32_t layer);

    /// @param name  lower-case field name
    GpbFoundField Find(std::string_view name) const;

    /// All names under which a field is found; the keys lie in the descriptors.
    const Fields &All() const { return fields_; }

private:
    bool AddCase(const google::protobuf::FieldDescriptor *caseField);
    void AddName(std::string_view name, const google::protobuf::FieldDescriptor *caseField,
                 const google::protobuf::FieldDescriptor *member);

    const google::protobuf::Descriptor *message_;
    int32_t layer_;
    Fields fields_;
};

#endif
