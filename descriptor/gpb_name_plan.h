// What node names stand for, for all message types of an importer.
#ifndef GPB_DESCRIPTOR_GPB_NAME_PLAN_H
#define GPB_DESCRIPTOR_GPB_NAME_PLAN_H

#include "descriptor/gpb_layer_tables.h"
#include "descriptor/gpb_name_table.h"

/// The name tables of message types.
using GpbNamePlan = GpbLayerTables<GpbNameTable>;

extern template class GpbLayerTables<GpbNameTable>;

#endif
