/** Object trees in tests: ownership, bytes as hexadecimal text, and a tree as one line. */
#ifndef GPB_TESTS_TEMPLATE_TREE_SUPPORT_H
#define GPB_TESTS_TEMPLATE_TREE_SUPPORT_H

#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "gpb_templatelib/gpb_objtree.h"

namespace gpbtest
{

using Bytes = std::vector<uint8_t>;

struct DeleteTree
{
    void operator()(ObjNode *tree) const { GPBLIB_ObjTree_Delete(&tree); }
};

/** A tree that is deleted at the end of its scope. */
using TreePtr = std::unique_ptr<ObjNode, DeleteTree>;

/** "06 0C FE" as bytes. */
Bytes fromHex(const std::string &text);

/** Bytes as "06 0C FE". */
std::string toHex(const Bytes &bytes);

/** What GPBLIB_ObjTree_Write makes of a tree, in a room of exactly the write length. */
Bytes write(ObjTree tree, uint32_t mode, const GpbLibContext *context = nullptr);

/** A read tree, and where reading stopped. */
struct ReadResult
{
    TreePtr tree;
    uint32_t consumed;
};

/** GPBLIB_ObjTree_Read from a heap copy of exactly the given size, so that a sanitizer sees every byte read behind. */
ReadResult read(const Bytes &bytes, uint32_t moduleId, const GpbLibContext *context = nullptr);

/**
 * A tree as one line: "R0(I2=0 S3='ab' C4(I1=5))", with R, C, I and S for the node types. Names of nodes with encode
 * flag 0, other than the root's, are followed by "-" when `withFlags`.
 */
std::string describe(const ObjNode *node, bool withFlags = false);

/** The child of a node by position; null when there are not so many. */
ObjNode *childAt(const ObjNode *node, size_t index);

/** A root with `count` containers (id 1) nested in one another. */
TreePtr nestedTree(uint32_t moduleId, size_t count);

/** A tree of up to `nodes` nodes, with ids up to `maxId` and values of all sizes. */
TreePtr randomTree(std::mt19937_64 &random, size_t nodes, uint32_t maxId, uint32_t moduleId);

} // namespace gpbtest

#endif
