// Which translator stores the text of a leaf, by protobuf field type.
#ifndef GPB_COMPILER_GPB_TRANSLATOR_TABLE_H
#define GPB_COMPILER_GPB_TRANSLATOR_TABLE_H

#include "gpb_templatelib/gpb_compiler.h"

using GpbTranslators = GpbStrTransFunc[GPB_FIELD_TYPE_NUM];

/// Fills a compiler's table; groups, messages and the unused entry 0 have none. `tag` is the compiler's source.
void GpbFillTranslatorTable(GpbTranslators &table, const char *tag);

/// The translator of the field's type; null when there is none.
GpbStrTransFunc GpbTranslatorOf(const google::protobuf::FieldDescriptor &field, const GpbTranslators &translators);

#endif
