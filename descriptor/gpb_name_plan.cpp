#include "descriptor/gpb_name_plan.h"

template class GpbLayerTables<GpbNameTable>;
