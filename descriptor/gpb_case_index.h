// The fields in the cases of one message, by name.
#ifndef GPB_DESCRIPTOR_GPB_CASE_INDEX_H
#define GPB_DESCRIPTOR_GPB_CASE_INDEX_H

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "descriptor/gpb_field_search.h"

/// Answers as GpbSearchCases does for one message in one layer. A search there costs more the more cases there
/// are, an index costs as much as there are fields in them: so the first searches are done there, and the index is made
/// once they have cost as much as making it.
class GpbCaseIndex
{
public:
    GpbCaseIndex(const google::protobuf::Descriptor *message, int32_t layer) : message_(message), layer_(layer) {}

    /// @param name  lower-case field name
    GpbFoundField Find(const char *name);

private:
    enum class State
    {
        NEW,
        SEARCHING,
        INDEXED
    };

    using Fields = std::unordered_map<std::string_view, GpbFoundField>;

    void CollectCases();
    void MakeIndex();
    bool AddCase(Fields &fields, const google::protobuf::FieldDescriptor *caseField) const;

    const google::protobuf::Descriptor *message_;
    int32_t layer_;
    State state_ = State::NEW;
    std::vector<const google::protobuf::FieldDescriptor *> cases_;
    size_t fieldCount_ = 0;  ///< fields in all cases
    size_t lookUpCount_ = 0; ///< names looked up by the searches so far
    Fields fields_;          ///< keys lie in the descriptors
};

#endif
