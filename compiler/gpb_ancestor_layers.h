// Opening the layers of a case from inside a compiler.
#ifndef GPB_COMPILER_GPB_ANCESTOR_LAYERS_H
#define GPB_COMPILER_GPB_ANCESTOR_LAYERS_H

#include "gpb_templatelib/gpb_compiler.h"

/// GPB_PushAncesDescriptor without its barrier: a failed allocation goes up to the barrier of the encode. The walk must
/// not go on behind it, because the message factory may be left with types that are made half.
unsigned int GpbPushAncestorLayers(const google::protobuf::FieldDescriptor *field, GpbCompilerStack &stack);

#endif
