// The collection of case fields, for the exported functions and for the searches.
//
// A lack of memory is thrown: "no memory" must not be remembered as "no such field". The exported functions put the
// barrier around this.
#ifndef GPB_DESCRIPTOR_GPB_CASE_COLLECTION_H
#define GPB_DESCRIPTOR_GPB_CASE_COLLECTION_H

#include <cstdint>

#include <google/protobuf/descriptor.h>

/// As GPB_GetOneofCaseChilds, whose arguments must not be null here.
uint32_t GpbCollectCases(const google::protobuf::Descriptor *message, const google::protobuf::FieldDescriptor **fields,
                         uint32_t capacity, uint32_t &count);

/// As GPB_GetEachOneofCaseChilds, whose arguments must not be null here.
uint32_t GpbCollectCaseFields(const google::protobuf::Descriptor *message,
                              const google::protobuf::FieldDescriptor **fields, uint32_t capacity, uint32_t &count);

#endif
