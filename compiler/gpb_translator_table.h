// Which translator stores the text of a leaf, by protobuf field type.
#ifndef GPB_COMPILER_GPB_TRANSLATOR_TABLE_H
#define GPB_COMPILER_GPB_TRANSLATOR_TABLE_H

#include <optional>

#include "gpb_templatelib/gpb_compiler.h"

using GpbTranslators = GpbStrTransFunc[GPB_FIELD_TYPE_NUM];

/// Fills a compiler's table; groups, messages and the unused entry 0 have none. `tag` is the compiler's source.
void GpbFillTranslatorTable(GpbTranslators &table, const char *tag);

/// Stores a leaf's text by the translator of the field's type; nothing when there is none. A translator that fails may
/// be gone from the table afterwards: subclasses can reach it.
std::optional<unsigned int> GpbTranslate(const GpbCompilerStackLayer &layer,
                                         const google::protobuf::FieldDescriptor *field,
                                         const GpbTranslators &translators, const char *text);

#endif
