// The record of object trees linked by hand: what a tree costs that does nothing but exist.
#ifndef GPB_BENCH_SUPPORT_LINKED_NODES_H
#define GPB_BENCH_SUPPORT_LINKED_NODES_H

#include <cstdint>
#include <memory>
#include <string>

#include "gpb_templatelib/gpb_objtree.h"

namespace gpbbench
{

/// A node of one malloc, the last child of its parent; null is the parent of a root.
ObjNode *AddLinkedNode(ObjNode *parent, uint32_t type, uint32_t id);
ObjNode *AddLinkedInteger(ObjNode *parent, uint32_t id, uint64_t value);

/// The text lies behind the node, in the same allocation.
ObjNode *AddLinkedString(ObjNode *parent, uint32_t id, const std::string &text);

/// Bytes of the subtree on the wire; each node's size and length are stored in it.
uint32_t MeasureLinkedNodes(ObjNode *node);

void FreeLinkedNodes(ObjNode *node);

struct FreeLinked
{
    void operator()(ObjNode *root) const { FreeLinkedNodes(root); }
};
using LinkedNodesPtr = std::unique_ptr<ObjNode, FreeLinked>;

} // namespace gpbbench

#endif
