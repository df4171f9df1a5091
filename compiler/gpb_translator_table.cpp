#include "compiler/gpb_translator_table.h"

#include <google/protobuf/descriptor.h>

#include "core/gpb_memory.h"

using google::protobuf::FieldDescriptor;

namespace
{

static_assert(FieldDescriptor::MAX_TYPE + 1 == GPB_FIELD_TYPE_NUM, "one entry per protobuf field type");

} // namespace

void GpbFillTranslatorTable(GpbTranslators &table, const char *tag)
{
    GpbZero(table, sizeof(table), tag, __LINE__);
    table[FieldDescriptor::TYPE_DOUBLE] = GpbCompiler_StrTrans_ToDouble;
    // A float leaf is read as a double too; the translator narrows it when it stores it.
    table[FieldDescriptor::TYPE_FLOAT] = GpbCompiler_StrTrans_ToDouble;
    table[FieldDescriptor::TYPE_INT64] = GpbCompiler_StrTrans_ToInt64;
    table[FieldDescriptor::TYPE_UINT64] = GpbCompiler_StrTrans_ToUInt64;
    table[FieldDescriptor::TYPE_INT32] = GpbCompiler_StrTrans_ToInt32;
    table[FieldDescriptor::TYPE_FIXED64] = GpbCompiler_StrTrans_ToUInt64;
    table[FieldDescriptor::TYPE_FIXED32] = GpbCompiler_StrTrans_ToUInt32;
    table[FieldDescriptor::TYPE_BOOL] = GpbCompiler_StrTrans_ToBool;
    table[FieldDescriptor::TYPE_STRING] = GpbCompiler_StrTrans_ToString;
    table[FieldDescriptor::TYPE_BYTES] = GpbCompiler_StrTrans_ToString;
    table[FieldDescriptor::TYPE_UINT32] = GpbCompiler_StrTrans_ToUInt32;
    table[FieldDescriptor::TYPE_ENUM] = GpbCompiler_StrTrans_ToEnum;
    table[FieldDescriptor::TYPE_SFIXED32] = GpbCompiler_StrTrans_ToInt32;
    table[FieldDescriptor::TYPE_SFIXED64] = GpbCompiler_StrTrans_ToInt64;
    table[FieldDescriptor::TYPE_SINT32] = GpbCompiler_StrTrans_ToInt32;
    table[FieldDescriptor::TYPE_SINT64] = GpbCompiler_StrTrans_ToInt64;
}

GpbStrTransFunc GpbTranslatorOf(const FieldDescriptor &field, const GpbTranslators &translators)
{
    const auto type = static_cast<unsigned int>(field.type());
    return type < GPB_FIELD_TYPE_NUM ? translators[type] : nullptr;
}
