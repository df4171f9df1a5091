// The steps of a search by node name, for the exported functions and for the finder that remembers.
//
// What protobuf throws goes through: "no memory" must not be remembered as "no such field". The exported functions put
// the barrier around these steps.
#ifndef GPB_DESCRIPTOR_GPB_FIELD_SEARCH_H
#define GPB_DESCRIPTOR_GPB_FIELD_SEARCH_H

#include <google/protobuf/descriptor.h>

#include "gpb_templatelib/gpb_descriptor.h"

/// What a search found: the field, or null, and the case field that leads to it, or null.
struct GpbFoundField
{
    const google::protobuf::FieldDescriptor *field = nullptr;
    const google::protobuf::FieldDescriptor *caseField = nullptr;
};

/// A node name as field names are spelt. A name that does not fit stays empty, and so finds nothing.
struct GpbFieldName
{
    char text[GPB_NAME_SIZE] = {};

    explicit GpbFieldName(const char *nodeName) { (void)GPB_ConvertXmlNodeName(nodeName, text, sizeof(text)); }
};

/// The field of a lower-case name followed by the layer number, or null.
const google::protobuf::FieldDescriptor *GpbSearchSuffixed(const google::protobuf::Descriptor *message,
                                                           const char *name, int32_t layer);

/// The field of a lower-case name in the oneof cases of a message, with its case field.
GpbFoundField GpbSearchCases(const google::protobuf::Descriptor *message, const char *name, int32_t layer);

/// The field of a node: by its name, by its name with the layer number, then by `searchCases(name)`.
template <typename CaseSearch>
GpbFoundField GpbSearchNode(const google::protobuf::Descriptor *message, const char *nodeName, int32_t layer,
                            const CaseSearch &searchCases)
{
    const GpbFieldName name(nodeName);
    const google::protobuf::FieldDescriptor *field = message->FindFieldByLowercaseName(name.text);
    if (field == nullptr)
    {
        field = GpbSearchSuffixed(message, name.text, layer);
    }
    return field == nullptr ? searchCases(name.text) : GpbFoundField{field, nullptr};
}

/// The field of a leaf. When the name is a container's, the leaf of that name, if there is one, lies in a case; the
/// name is converted anew for that search, and a conversion that fails then finds nothing.
template <typename CaseSearch>
GpbFoundField GpbSearchLeaf(const google::protobuf::Descriptor *message, const char *nodeName, int32_t layer,
                            const CaseSearch &searchCases)
{
    const GpbFoundField found = GpbSearchNode(message, nodeName, layer, searchCases);
    const bool isContainer =
        found.field != nullptr && found.field->type() == google::protobuf::FieldDescriptor::TYPE_MESSAGE;
    return isContainer ? searchCases(GpbFieldName(nodeName).text) : found;
}

#endif
