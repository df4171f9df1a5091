// Storing the texts of leaves in records.
#ifndef GPB_COMPILER_GPB_RECORD_LEAF_H
#define GPB_COMPILER_GPB_RECORD_LEAF_H

#include <string_view>

#include "compiler/gpb_leaf_value.h"
#include "compiler/gpb_record.h"
#include "core/gpb_barrier.h"
#include "gpb_templatelib/gpb_compiler.h"

/// Stores the values of an enum leaf in a field of the record's type.
unsigned int GpbStoreEnumInRecord(GpbRecord &record, const GpbRecordField &field, const char *text);

/// GpbReadDouble, which needs room on the stack and so is no part of what all leaves go through.
double GpbToDouble(const char *text);

/// Stores a text in a field of the record's type. What a lack of memory throws goes through.
inline unsigned int GpbStoreText(GpbRecord &record, const GpbRecordField &field, const char *text)
{
    switch (field.kind)
    {
    case google::protobuf::FieldDescriptor::CPPTYPE_INT32:
        record.Store(field, GpbRecordNumber(GpbToInt32(text)));
        return GPB_COMPILER_OK;
    case google::protobuf::FieldDescriptor::CPPTYPE_INT64:
        record.Store(field, GpbRecordNumber(GpbToInt64(text)));
        return GPB_COMPILER_OK;
    case google::protobuf::FieldDescriptor::CPPTYPE_UINT32:
        record.Store(field, GpbRecordNumber(GpbToUInt32(text)));
        return GPB_COMPILER_OK;
    case google::protobuf::FieldDescriptor::CPPTYPE_UINT64:
        record.Store(field, GpbRecordNumber(GpbToUInt64(text)));
        return GPB_COMPILER_OK;
    case google::protobuf::FieldDescriptor::CPPTYPE_DOUBLE:
        record.Store(field, GpbRecordNumber(GpbToDouble(text)));
        return GPB_COMPILER_OK;
    case google::protobuf::FieldDescriptor::CPPTYPE_FLOAT:
        record.Store(field, GpbRecordNumber(static_cast<float>(GpbToDouble(text))));
        return GPB_COMPILER_OK;
    case google::protobuf::FieldDescriptor::CPPTYPE_BOOL:
        record.Store(field, GpbRecordNumber(GpbToBool(text)));
        return GPB_COMPILER_OK;
    case google::protobuf::FieldDescriptor::CPPTYPE_STRING:
        record.Store(field, std::string_view(text));
        return GPB_COMPILER_OK;
    case google::protobuf::FieldDescriptor::CPPTYPE_ENUM:
        return GpbStoreEnumInRecord(record, field, text);
    case google::protobuf::FieldDescriptor::CPPTYPE_MESSAGE:
        break;
    }
    return GPB_COMPILER_NO_TRANSLATOR;
}

/// Does with a record what the translator of the field's type does with a message; the same codes, and
/// GPB_COMPILER_NO_TRANSLATOR for a type that has none. A part of its callers, which are called for each leaf.
[[gnu::always_inline]] inline unsigned int
GpbStoreInRecord(GpbRecord &record, const google::protobuf::FieldDescriptor *field, const char *text)
{
    const GpbRecordField *described = record.Type().FieldOf(field);
    if (described == nullptr || text == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    return GpbNoThrow(GPB_COMPILER_ERR, [&] { return GpbStoreText(record, *described, text); });
}

#endif
