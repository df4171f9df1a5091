// Which translator stores the text of a leaf, by protobuf field type.
#ifndef GPB_COMPILER_GPB_TRANSLATOR_TABLE_H
#define GPB_COMPILER_GPB_TRANSLATOR_TABLE_H

#include "gpb_templatelib/gpb_compiler.h"

/// Fills a compiler's table; groups, messages and the unused entry 0 have none. `tag` is the compiler's source.
void GpbFillTranslatorTable(GpbStrTransFunc (&table)[GPB_FIELD_TYPE_NUM], const char *tag);

#endif
