// Rows of leaves of all kinds, for the workloads.
#ifndef GPB_BENCH_SUPPORT_LEAF_ROWS_H
#define GPB_BENCH_SUPPORT_LEAF_ROWS_H

#include <cstddef>
#include <string>

#include "support/proto_text.h"

namespace gpbbench
{

inline std::string LeafName(size_t index)
{
    return "leaf-" + std::to_string(index);
}

/// Declares leaf-0 and so on, whose kinds go in turn and whose numbers count from 1.
inline void DeclareLeaves(ProtoText &proto, size_t count)
{
    proto.DeclareEnum();
    for (size_t i = 0; i < count; ++i)
    {
        proto.LeafField(LeafName(i), LeafKindOf(i), static_cast<int>(i + 1));
    }
}

} // namespace gpbbench

#endif
