#include "descriptor/gpb_case_index.h"

#include <google/protobuf/descriptor.h>
#include <string>

#include "core/gpb_protobuf_compat.h"
#include "descriptor/gpb_case_collection.h"
#include "descriptor/gpb_layer_suffix.h"

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

GpbCaseIndex::GpbCaseIndex(const Descriptor *message, int32_t layer) : message_(message), layer_(layer)
{
    const FieldDescriptor *cases[GPB_MAX_CASE_FIELDS] = {};
    uint32_t count = 0;
    if (GpbCollectCases(message, cases, GPB_MAX_CASE_FIELDS, count) != 0)
    {
        // Too many cases: nothing will ever be found.
        return;
    }
    for (uint32_t i = 0; i < count; ++i)
    {
        if (!AddCase(cases[i]))
        {
            return;
        }
    }
}

GpbFoundField GpbCaseIndex::Find(std::string_view name) const
{
    const auto known = fields_.find(name);
    return known == fields_.end() ? GpbFoundField() : known->second;
}

// Adds what this case has under names that no earlier case has; false when the case ends the search.
bool GpbCaseIndex::AddCase(const FieldDescriptor *caseField)
{
    const Descriptor *caseMessage = caseField->message_type();
    for (int i = 0; i < caseMessage->field_count(); ++i)
    {
        AddName(GpbPbLowercaseName(*caseMessage->field(i)), caseField, caseMessage->field(i));
    }
    const auto layer = static_cast<int32_t>(GPB_GetSubDescriptorLayerNum(caseMessage, message_, layer_));
    // A case message from elsewhere has no layer number here, and deliberately ends the search.
    if (layer < 1)
    {
        return false;
    }
    const GpbLayerSuffix suffix(layer);
    for (int i = 0; i < caseMessage->field_count(); ++i)
    {
        const std::string &longName = GpbPbLowercaseName(*caseMessage->field(i));
        if (suffix.Ends(longName))
        {
            AddName(suffix.CutOff(longName), caseField, caseMessage->field(i));
        }
    }
    return true;
}

// Adds what protobuf finds in a case by the lower-case name of one of its fields. That need not be the field itself:
// where names differ in case alone, protobuf finds one of them, and nothing when that one is an extension that is
// declared in the message.
void GpbCaseIndex::AddName(std::string_view name, const FieldDescriptor *caseField, const FieldDescriptor *member)
{
    const FieldDescriptor *found = caseField->message_type()->FindFieldByLowercaseName(GpbPbLowercaseName(*member));
    if (found != nullptr)
    {
        fields_.try_emplace(name, GpbFoundField{found, caseField});
    }
}
