#include "compiler/gpb_record_leaf.h"

#include <string_view>

#include "compiler/gpb_leaf_value.h"
#include "core/gpb_barrier.h"

using google::protobuf::FieldDescriptor;

namespace
{

// Not a part of what all leaves go through, since it needs room on the stack.
[[gnu::noinline]] double ToDouble(const char *text)
{
    return GpbReadDouble(text);
}

// What a lack of memory throws goes through.
unsigned int Store(GpbRecord &record, const GpbRecordField &field, const char *text)
{
    switch (field.kind)
    {
    case FieldDescriptor::CPPTYPE_INT32:
        record.Store(field, GpbRecordNumber(GpbToInt32(text)));
        return GPB_COMPILER_OK;
    case FieldDescriptor::CPPTYPE_INT64:
        record.Store(field, GpbRecordNumber(GpbToInt64(text)));
        return GPB_COMPILER_OK;
    case FieldDescriptor::CPPTYPE_UINT32:
        record.Store(field, GpbRecordNumber(GpbToUInt32(text)));
        return GPB_COMPILER_OK;
    case FieldDescriptor::CPPTYPE_UINT64:
        record.Store(field, GpbRecordNumber(GpbToUInt64(text)));
        return GPB_COMPILER_OK;
    case FieldDescriptor::CPPTYPE_DOUBLE:
        record.Store(field, GpbRecordNumber(ToDouble(text)));
        return GPB_COMPILER_OK;
    case FieldDescriptor::CPPTYPE_FLOAT:
        record.Store(field, GpbRecordNumber(static_cast<float>(ToDouble(text))));
        return GPB_COMPILER_OK;
    case FieldDescriptor::CPPTYPE_BOOL:
        record.Store(field, GpbRecordNumber(GpbToBool(text)));
        return GPB_COMPILER_OK;
    case FieldDescriptor::CPPTYPE_STRING:
        record.Store(field, std::string_view(text));
        return GPB_COMPILER_OK;
    case FieldDescriptor::CPPTYPE_ENUM:
        return GpbStoreEnumInRecord(record, field, text);
    case FieldDescriptor::CPPTYPE_MESSAGE:
        break;
    }
    return GPB_COMPILER_NO_TRANSLATOR;
}

} // namespace

unsigned int GpbStoreInRecord(GpbRecord &record, const FieldDescriptor *field, const char *text)
{
    const GpbRecordField *described = record.Type().FieldOf(field);
    if (described == nullptr || text == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    return GpbNoThrow(GPB_COMPILER_ERR, [&] { return Store(record, *described, text); });
}
