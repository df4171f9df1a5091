#include "descriptor/gpb_case_index.h"

#include <google/protobuf/descriptor.h>
#include <string>
#include <utility>

#include "core/gpb_protobuf_compat.h"
#include "descriptor/gpb_case_collection.h"

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

namespace
{

// A search asks each case for the name, and for the name with its layer number.
constexpr size_t LOOK_UPS_PER_CASE = 2;

// Adds what protobuf finds in a case by a field's name, under that name without the last `cut` characters. That need
// not be the field itself: where names differ in case alone, protobuf finds one of them, and nothing when that one is
// an extension that is declared in the message.
void AddName(std::unordered_map<std::string_view, GpbFoundField> &fields, const std::string &lowercaseName, size_t cut,
             const FieldDescriptor *caseField)
{
    const FieldDescriptor *found = caseField->message_type()->FindFieldByLowercaseName(lowercaseName);
    if (found != nullptr)
    {
        const std::string_view name(lowercaseName.data(), lowercaseName.size() - cut);
        fields.try_emplace(name, GpbFoundField{found, caseField});
    }
}

} // namespace

GpbFoundField GpbCaseIndex::Find(const char *name)
{
    if (state_ == State::NEW)
    {
        CollectCases();
    }
    if (state_ == State::SEARCHING && lookUpCount_ >= fieldCount_)
    {
        MakeIndex();
    }
    if (state_ == State::SEARCHING)
    {
        lookUpCount_ += cases_.size() * LOOK_UPS_PER_CASE;
        return GpbSearchCases(message_, name, layer_);
    }
    const auto known = fields_.find(name);
    return known == fields_.end() ? GpbFoundField() : known->second;
}

void GpbCaseIndex::CollectCases()
{
    const FieldDescriptor *cases[GPB_MAX_CASE_FIELDS] = {};
    uint32_t count = 0;
    if (GpbCollectCases(message_, cases, GPB_MAX_CASE_FIELDS, count) != 0 || count == 0)
    {
        // Too many cases, or none: nothing will ever be found.
        state_ = State::INDEXED;
        return;
    }
    cases_.assign(cases, cases + count);
    for (const FieldDescriptor *caseField : cases_)
    {
        fieldCount_ += static_cast<size_t>(caseField->message_type()->field_count());
    }
    state_ = State::SEARCHING;
}

void GpbCaseIndex::MakeIndex()
{
    Fields fields;
    fields.reserve(fieldCount_);
    for (const FieldDescriptor *caseField : cases_)
    {
        if (!AddCase(fields, caseField))
        {
            break;
        }
    }
    fields_ = std::move(fields);
    state_ = State::INDEXED;
}

// Adds what this case has under names that no earlier case has; false when the case ends the search.
bool GpbCaseIndex::AddCase(Fields &fields, const FieldDescriptor *caseField) const
{
    const Descriptor *caseMessage = caseField->message_type();
    for (int i = 0; i < caseMessage->field_count(); ++i)
    {
        AddName(fields, GpbPbLowercaseName(*caseField->message_type()->field(i)), 0, caseField);
    }
    const auto layer = static_cast<int32_t>(GPB_GetSubDescriptorLayerNum(caseMessage, message_, layer_));
    // A case message from elsewhere has no layer number here, and deliberately ends the search.
    if (layer < 1)
    {
        return false;
    }
    const std::string suffix = std::to_string(layer);
    for (int i = 0; i < caseMessage->field_count(); ++i)
    {
        const std::string &longName = GpbPbLowercaseName(*caseMessage->field(i));
        const bool hasSuffix = longName.size() >= suffix.size() && longName.size() < GPB_NAME_SIZE &&
                               longName.compare(longName.size() - suffix.size(), suffix.size(), suffix) == 0;
        if (hasSuffix)
        {
            AddName(fields, longName, suffix.size(), caseField);
        }
    }
    return true;
}
