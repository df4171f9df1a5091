// Storing the texts of leaves, by translators and in records.
#ifndef GPB_COMPILER_GPB_RECORD_LEAF_H
#define GPB_COMPILER_GPB_RECORD_LEAF_H

#include "compiler/gpb_record.h"
#include "gpb_templatelib/gpb_compiler.h"

/// Does with a record what the translator of the field's type does with a message; the same codes. The field is of a
/// type that has a translator.
unsigned int GpbStoreInRecord(GpbRecord &record, const google::protobuf::FieldDescriptor *field, const char *text);

/// Stores the values of an enum leaf in a field of the record's type.
unsigned int GpbStoreEnumInRecord(GpbRecord &record, const GpbRecordField &field, const char *text);

/// Stores a leaf's text in a layer's message, for which `translate` is the translator of the field's type.
inline unsigned int GpbStoreLeaf(const GpbCompilerStackLayer &layer, const google::protobuf::FieldDescriptor *field,
                                 GpbStrTransFunc translate, const char *text)
{
    GpbRecord *record = GpbRecordOf(layer.pstMessage);
    return record == nullptr ? translate(layer, field, text) : GpbStoreInRecord(*record, field, text);
}

#endif
