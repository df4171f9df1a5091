// Leaves of JSON documents.
#ifndef GPB_COMPILER_GPB_JSON_LEAF_H
#define GPB_COMPILER_GPB_JSON_LEAF_H

#include "compiler/gpb_json_document.h"
#include "gpb_templatelib/gpb_compiler.h"

/// The item that an adder of the library would make of a text, as an item of a document; null where the adder gives
/// null.
cJSON *GpbJsonNewLeaf(GpbJsonDocument &document, GpbJsonAddFunc add, const char *text);

#endif
