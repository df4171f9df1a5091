// What a node name stands for.
#ifndef GPB_DESCRIPTOR_GPB_NAMED_FIELD_H
#define GPB_DESCRIPTOR_GPB_NAMED_FIELD_H

#include <cstdint>

#include "descriptor/gpb_field_search.h"

class GpbNameTable;

/// What a node name stands for: as a node of any kind, and as a leaf.
struct GpbNamedField
{
    GpbFoundField node; ///< GPB_FindFieldDescByNodeName's answer
    GpbFoundField leaf; ///< GPB_GetLeafFieldDescByNodeName's answer

    const char *name = "";               ///< as most documents spell it
    const GpbNameTable *table = nullptr; ///< that it is in
    const GpbNamedField *next = nullptr; ///< that most documents have behind this one
    uint32_t number = 0;                 ///< among those of all tables, for memos
};

#endif
