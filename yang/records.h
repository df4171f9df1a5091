/**
 * The host's records of a YANG module: what GPBLIB_UpdateProtoFileClassInfo reads.
 *
 * | YANG                                   | record                                                            |
 * |----------------------------------------|-------------------------------------------------------------------|
 * | container, list, notification          | GpbYangNode of kind 0                                             |
 * | choice                                 | GpbYangNode of kind GPB_YANG_CHOICE                               |
 * | case, also one that is only implied    | GpbYangNode of kind GPB_YANG_CASE                                 |
 * | leaf, leaf-list                        | GpbYangLeaf of the node above; a list's keys are marked and first |
 * | top-level leaf, rpc, action, anydata,  | none: templates have no place for them                            |
 * | anyxml                                 |                                                                   |
 *
 * Siblings and leaves come in the order of the compiled schema: as written, augments behind what they augment,
 * notifications behind data. `ucSkip` is 0 everywhere: by the naming rules every container and list has a message of
 * its own. A map of ids (id_map.h) marks the nodes of modules that depart from that.
 */
#ifndef GPB_YANG_RECORDS_H
#define GPB_YANG_RECORDS_H

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "gpb_templatelib/gpb_template.h"

struct lysc_node;

namespace gpbyang
{

class Schema;

class RecordTree
{
public:
    /**
     * Makes the records of all top-level nodes of a module. Names are copied: the schema is not needed afterwards.
     *
     * @param schema    a loaded module
     * @param moduleId  platform module id under which the leaf vectors are held
     * @throws std::bad_alloc also when the platform has no memory
     */
    RecordTree(const Schema &schema, std::uint32_t moduleId);
    RecordTree(const RecordTree &) = delete;
    RecordTree &operator=(const RecordTree &) = delete;
    ~RecordTree();

    /** Name of the module. */
    const std::string &Module() const { return module_; }

    /** All nodes, parents ahead of their children; valid as long as this object lives. Ids are 0 until they are set. */
    const std::vector<GpbYangNode *> &Nodes() const { return nodes_; }

    /** The leaves of a node, in the order of its vector. */
    std::vector<GpbYangLeaf *> Leaves(const GpbYangNode &node) const;

private:
    struct Record;

    void AddTree(const lysc_node &schemaNode, GpbYangNode *parent);
    void AddChildren(const lysc_node &schemaNode, GpbYangNode *parent);
    GpbYangNode *AddNode(const lysc_node &schemaNode, GpbYangNode *parent);
    void AddLeaf(const lysc_node &schemaNode, const GpbYangNode &owner);

    std::string module_;
    std::uint32_t moduleId_;
    std::deque<Record> records_;
    std::vector<GpbYangNode *> nodes_;
    std::unordered_map<const GpbYangNode *, Record *> recordOf_;
};

/** The schema path of a node, "/top/list/choice/case". */
std::string PathOf(const GpbYangNode &node);

} // namespace gpbyang

#endif
