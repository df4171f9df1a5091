// The steps of a search by node name, for the exported functions and for the finder that remembers.
#ifndef GPB_DESCRIPTOR_GPB_FIELD_SEARCH_H
#define GPB_DESCRIPTOR_GPB_FIELD_SEARCH_H

#include <google/protobuf/descriptor.h>

#include "core/gpb_barrier.h"
#include "gpb_templatelib/gpb_descriptor.h"

/// A node name as field names are spelt. A name that does not fit stays empty, and so finds nothing.
struct GpbFieldName
{
    char text[GPB_NAME_SIZE] = {};

    explicit GpbFieldName(const char *nodeName) { (void)GPB_ConvertXmlNodeName(nodeName, text, sizeof(text)); }
};

inline const google::protobuf::FieldDescriptor *GpbFindByLowercaseName(const google::protobuf::Descriptor *message,
                                                                       const char *name)
{
    return GpbNoThrow<const google::protobuf::FieldDescriptor *>(nullptr, [&]
                                                                 { return message->FindFieldByLowercaseName(name); });
}

/// The field of a node: by its name, by its name with the layer number, then by `searchCases(name)`.
template <typename CaseSearch>
const google::protobuf::FieldDescriptor *GpbSearchNode(const google::protobuf::Descriptor *message,
                                                       const GpbFieldName &name, int32_t layer,
                                                       const CaseSearch &searchCases)
{
    const google::protobuf::FieldDescriptor *field = GpbFindByLowercaseName(message, name.text);
    if (field == nullptr)
    {
        field = GPB_GetDescFieldByRepeateName(message, name.text, layer);
    }
    return field == nullptr ? searchCases(name.text) : field;
}

/// The field of a leaf. When the name is a container's, the leaf of that name, if there is one, lies in a case.
template <typename CaseSearch>
const google::protobuf::FieldDescriptor *GpbSearchLeaf(const google::protobuf::Descriptor *message,
                                                       const GpbFieldName &name, int32_t layer,
                                                       const CaseSearch &searchCases)
{
    const google::protobuf::FieldDescriptor *field = GpbSearchNode(message, name, layer, searchCases);
    const bool isContainer = field != nullptr && field->type() == google::protobuf::FieldDescriptor::TYPE_MESSAGE;
    return isContainer ? searchCases(name.text) : field;
}

#endif
