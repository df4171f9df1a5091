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
    bool isCertain = true; ///< false when a copy or a format failed on the way: next time it may not
};

/// A node name as field names are spelt. A name that does not fit stays empty, and so finds nothing.
struct GpbFieldName
{
    char text[GPB_NAME_SIZE] = {};
    bool isConverted;

    explicit GpbFieldName(const char *nodeName) : isConverted(GPB_ConvertXmlNodeName(nodeName, text, sizeof(text)) == 0)
    {
    }
};

/// The field of a lower-case name followed by the layer number, or null.
GpbFoundField GpbSearchSuffixed(const google::protobuf::Descriptor *message, const char *name, int32_t layer);

/// The field of a lower-case name in the oneof cases of a message, with its case field.
GpbFoundField GpbSearchCases(const google::protobuf::Descriptor *message, const char *name, int32_t layer);

/// The field of a node: by its name, by its name with the layer number, then by `searchCases(name)`.
template <typename CaseSearch>
GpbFoundField GpbSearchNode(const google::protobuf::Descriptor *message, const char *nodeName, int32_t layer,
                            const CaseSearch &searchCases)
{
    const GpbFieldName name(nodeName);
    GpbFoundField found = {message->FindFieldByLowercaseName(name.text)};
    if (found.field == nullptr)
    {
        found = GpbSearchSuffixed(message, name.text, layer);
    }
    if (found.field == nullptr)
    {
        const bool isCertain = found.isCertain;
        found = searchCases(name.text);
        found.isCertain = found.isCertain && isCertain;
    }
    found.isCertain = found.isCertain && name.isConverted;
    return found;
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
    if (!isContainer)
    {
        return found;
    }
    const GpbFieldName name(nodeName);
    GpbFoundField leaf = searchCases(name.text);
    leaf.isCertain = leaf.isCertain && found.isCertain && name.isConverted;
    return leaf;
}

#endif
