// What the context releases of protobuf, where there is no protobuf: nothing was ever made.
#include "gpb_templatelib/gpb_lib.h"

void GPBLIB_ProtoTreeUninitial_(GpbLibContext * /*pstCtx*/) {}
