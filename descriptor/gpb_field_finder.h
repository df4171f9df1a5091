// Fields by node name, as one compiler asks for them.
#ifndef GPB_DESCRIPTOR_GPB_FIELD_FINDER_H
#define GPB_DESCRIPTOR_GPB_FIELD_FINDER_H

#include <cstdint>

#include "descriptor/gpb_name_plan.h"
#include "gpb_templatelib/gpb_descriptor.h"

/// Answers as GPB_FindFieldDescByNodeName and GPB_GetLeafFieldDescByNodeName do, from the tables of a plan. It
/// remembers the table that it used last in each layer, so that a walk seldom has to ask the plan, which many threads
/// may do. One finder belongs to one compiler.
class GpbFieldFinder
{
public:
    /// @param plan  outlives the finder
    explicit GpbFieldFinder(GpbNamePlan &plan) : plan_(plan) {}

    GpbFoundField FindNode(const google::protobuf::Descriptor *message, const char *nodeName, uint32_t layer)
    {
        return message == nullptr || nodeName == nullptr ? GpbFoundField()
                                                         : TableOf(message, layer).Find(nodeName).node;
    }

    GpbFoundField FindLeaf(const google::protobuf::Descriptor *message, const char *nodeName, uint32_t layer)
    {
        return message == nullptr || nodeName == nullptr ? GpbFoundField()
                                                         : TableOf(message, layer).Find(nodeName).leaf;
    }

private:
    struct Used
    {
        const google::protobuf::Descriptor *message = nullptr;
        uint32_t layer = 0;
        const GpbNameTable *table = nullptr;
    };

    const GpbNameTable &TableOf(const google::protobuf::Descriptor *message, uint32_t layer)
    {
        Used &used = used_[layer % GPB_COMPILER_STACK_DEPTH];
        if (used.message != message || used.layer != layer)
        {
            used = {message, layer, &plan_.TableOf(message, layer)};
        }
        return *used.table;
    }

    GpbNamePlan &plan_;
    Used used_[GPB_COMPILER_STACK_DEPTH];
};

#endif
