#include "yang/records.h"

#include <libyang/libyang.h>

#include <new>

#include "platform/vec.h"
#include "yang/schema.h"

namespace gpbyang
{

namespace
{

/** Under this name the vectors stand in the platform's books. */
constexpr const char *kTag = "gpb_yang_records";
constexpr std::uint32_t kLineInit = 1;
constexpr std::uint32_t kLineFree = 2;
constexpr std::uint32_t kFirstSlots = 8;

struct VectorDeleter
{
    void operator()(VecVector *vector) const { VEC_VectorFree_F(vector, kTag, kLineFree); }
};

bool IsLeaf(const lysc_node &node)
{
    return (node.nodetype & (LYS_LEAF | LYS_LEAFLIST)) != 0;
}

bool IsKey(const lysc_node &node)
{
    return node.nodetype == LYS_LEAF && (node.flags & LYS_KEY) != 0;
}

bool HasRecord(const lysc_node &node)
{
    return (node.nodetype & (LYS_CONTAINER | LYS_LIST | LYS_NOTIF | LYS_CHOICE | LYS_CASE)) != 0;
}

std::uint8_t KindOf(const lysc_node &node)
{
    switch (node.nodetype)
    {
    case LYS_CHOICE:
        return GPB_YANG_CHOICE;
    case LYS_CASE:
        return GPB_YANG_CASE;
    default:
        return 0;
    }
}

void Append(GpbYangNode &parent, GpbYangNode &child)
{
    GpbYangNode **link = &parent.pstFirstChild;
    while (*link != nullptr)
    {
        link = &(*link)->pstNextSibling;
    }
    *link = &child;
}

} // namespace

/** A node with all that it points to. */
struct RecordTree::Record
{
    GpbYangNode node = {};
    std::string name;
    std::deque<GpbYangLeaf> leaves;
    std::deque<std::string> leafNames;
    std::unique_ptr<VecVector, VectorDeleter> vector; /**< of the leaves; the node points to it too */
};

RecordTree::RecordTree(const Schema &schema, std::uint32_t moduleId)
    : module_(schema.Module().name), moduleId_(moduleId)
{
    const lysc_module *compiled = schema.Module().compiled;
    for (const lysc_node *node = compiled->data; node != nullptr; node = node->next)
    {
        AddTree(*node, nullptr);
    }
    for (const lysc_node_notif *notification = compiled->notifs; notification != nullptr;
         notification = notification->next)
    {
        AddTree(notification->node, nullptr);
    }
}

RecordTree::~RecordTree() = default;

void RecordTree::AddTree(const lysc_node &schemaNode, GpbYangNode *parent)
{
    if (HasRecord(schemaNode))
    {
        AddChildren(schemaNode, AddNode(schemaNode, parent));
    }
    else if (IsLeaf(schemaNode) && parent != nullptr)
    {
        AddLeaf(schemaNode, *parent);
    }
}

void RecordTree::AddChildren(const lysc_node &schemaNode, GpbYangNode *parent)
{
    for (const lysc_node *child = lysc_node_child(&schemaNode); child != nullptr; child = child->next)
    {
        AddTree(*child, parent);
    }
    for (const lysc_node_notif *notification = lysc_node_notifs(&schemaNode); notification != nullptr;
         notification = notification->next)
    {
        AddTree(notification->node, parent);
    }
}

GpbYangNode *RecordTree::AddNode(const lysc_node &schemaNode, GpbYangNode *parent)
{
    Record &record = records_.emplace_back();
    record.name = schemaNode.name;
    record.node.pstParent = parent;
    record.node.pcName = record.name.c_str();
    record.node.ucNodeKind = KindOf(schemaNode);
    nodes_.push_back(&record.node);
    recordOf_[&record.node] = &record;
    if (parent != nullptr)
    {
        Append(*parent, record.node);
    }
    return &record.node;
}

void RecordTree::AddLeaf(const lysc_node &schemaNode, const GpbYangNode &owner)
{
    Record &record = *recordOf_.at(&owner);
    if (record.vector == nullptr)
    {
        record.vector.reset(VEC_VectorInit_F(moduleId_, kFirstSlots, kTag, kLineInit));
        record.node.pstLeafVec = record.vector.get();
    }
    GpbYangLeaf &leaf = record.leaves.emplace_back();
    leaf.pcName = record.leafNames.emplace_back(schemaNode.name).c_str();
    leaf.uiIsKey = IsKey(schemaNode) ? 1 : 0;
    if (record.vector == nullptr || VEC_VectorSet(record.vector.get(), &leaf) == VEC_INVALID_INDEX)
    {
        throw std::bad_alloc();
    }
}

std::vector<GpbYangLeaf *> RecordTree::Leaves(const GpbYangNode &node) const
{
    std::vector<GpbYangLeaf *> leaves;
    for (GpbYangLeaf &leaf : recordOf_.at(&node)->leaves)
    {
        leaves.push_back(&leaf);
    }
    return leaves;
}

std::string PathOf(const GpbYangNode &node)
{
    std::string path;
    for (const GpbYangNode *step = &node; step != nullptr; step = step->pstParent)
    {
        path.insert(0, std::string("/") + step->pcName);
    }
    return path;
}

} // namespace gpbyang
