// Storing the texts of leaves, by translators and in records.
#ifndef GPB_COMPILER_GPB_RECORD_LEAF_H
#define GPB_COMPILER_GPB_RECORD_LEAF_H

#include "compiler/gpb_record.h"
#include "compiler/gpb_translator_table.h"
#include "gpb_templatelib/gpb_compiler.h"

/// Does with a record what the translator of the field's type does with a message; the same codes.
unsigned int GpbStoreInRecord(GpbRecord &record, const google::protobuf::FieldDescriptor *field, const char *text);

/// Stores the values of an enum leaf in a field of the record's type.
unsigned int GpbStoreEnumInRecord(GpbRecord &record, const GpbRecordField &field, const char *text);

/// Stores a leaf's text in a layer's message, by the translator of the field's type unless the message is a record;
/// GPB_COMPILER_NO_TRANSLATOR for a field of a type that has none.
inline unsigned int GpbStoreLeaf(const GpbCompilerStackLayer &layer, const google::protobuf::FieldDescriptor *field,
                                 const GpbTranslators &translators, const char *text)
{
    GpbRecord *record = GpbRecordOf(layer.pstMessage);
    return record == nullptr ? GpbTranslate(layer, field, translators, text) : GpbStoreInRecord(*record, field, text);
}

#endif
