#include "support/linked_nodes.h"

#include <cstdlib>
#include <cstring>
#include <new>

#include <google/protobuf/io/coded_stream.h>

namespace gpbbench
{

namespace
{

using google::protobuf::io::CodedOutputStream;

constexpr uint32_t WIRE_TYPE_BITS = 3;

ObjNode *NodeOf(CmfTreeNode *link)
{
    return reinterpret_cast<ObjNode *>(link);
}

void Link(CmfTreeNode *parent, CmfTreeNode *child)
{
    child->pstParent = parent;
    child->pstPrevSibling = parent->pstLastChild;
    (parent->pstLastChild != nullptr ? parent->pstLastChild->pstNextSibling : parent->pstFirstChild) = child;
    parent->pstLastChild = child;
}

ObjNode *Add(ObjNode *parent, uint32_t type, uint32_t id, size_t extra)
{
    void *memory = std::malloc(sizeof(ObjNode) + extra);
    if (memory == nullptr)
    {
        throw std::bad_alloc();
    }
    auto *node = new (memory) ObjNode{};
    node->nodeType = type;
    node->id = id;
    node->gpbFlg = 1;
    if (parent != nullptr)
    {
        Link(&parent->stTree, &node->stTree);
    }
    return node;
}

uint32_t VarintSize(uint64_t value)
{
    return static_cast<uint32_t>(CodedOutputStream::VarintSize64(value));
}

} // namespace

ObjNode *AddLinkedNode(ObjNode *parent, uint32_t type, uint32_t id)
{
    return Add(parent, type, id, 0);
}

ObjNode *AddLinkedInteger(ObjNode *parent, uint32_t id, uint64_t value)
{
    ObjNode *node = Add(parent, GPB_OBJNODE_INTLEAF, id, 0);
    node->value = value;
    return node;
}

ObjNode *AddLinkedString(ObjNode *parent, uint32_t id, const std::string &text)
{
    ObjNode *node = Add(parent, GPB_OBJNODE_STRLEAF, id, text.size());
    node->pucString = reinterpret_cast<uint8_t *>(node + 1);
    node->objLen = static_cast<uint32_t>(text.size());
    std::memcpy(node->pucString, text.data(), text.size());
    return node;
}

uint32_t MeasureLinkedNodes(ObjNode *node)
{
    for (CmfTreeNode *child = node->stTree.pstFirstChild; child != nullptr; child = child->pstNextSibling)
    {
        node->objLen += MeasureLinkedNodes(NodeOf(child));
    }
    const uint32_t tagSize = VarintSize(static_cast<uint64_t>(node->id) << WIRE_TYPE_BITS);
    node->gpbSize = node->nodeType == GPB_OBJNODE_INTLEAF ? tagSize + VarintSize(node->value)
                                                          : tagSize + VarintSize(node->objLen) + node->objLen;
    return node->gpbSize;
}

void FreeLinkedNodes(ObjNode *node)
{
    for (CmfTreeNode *child = node->stTree.pstFirstChild; child != nullptr;)
    {
        CmfTreeNode *next = child->pstNextSibling;
        FreeLinkedNodes(NodeOf(child));
        child = next;
    }
    std::free(node);
}

} // namespace gpbbench
