// Asking the host's mapping callbacks for the ids of leaves.
#ifndef GPB_TEMPLATE_GPB_TEMPLATE_MAPPING_H
#define GPB_TEMPLATE_GPB_TEMPLATE_MAPPING_H

#include "gpb_templatelib/gpb_template.h"

/// The pair of a node's class id and a field id; records have room for the low 8 bits of the latter.
GpbCidFid GpbMakeCidFid(uint32_t classId, uint32_t fieldId);

/// The key under which a leaf is looked up as an index: its map field id, or where that is 0 its field id.
GpbCidFid GpbIndexKey(const GpbYangNode *node, const GpbYangLeaf *leaf);

/// Calls the class-map callback, which must be registered, with an index key. Result: the callback's code.
uint32_t GpbMapIndex(const GpbLibContext *context, const GpbCidFid &key, GpbCidFid *out);

#endif
