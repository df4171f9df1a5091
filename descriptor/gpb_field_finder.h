// Fields by node name, as one compiler asks for them.
#ifndef GPB_DESCRIPTOR_GPB_FIELD_FINDER_H
#define GPB_DESCRIPTOR_GPB_FIELD_FINDER_H

#include <cstdint>

#include "descriptor/gpb_name_plan.h"
#include "gpb_templatelib/gpb_descriptor.h"

/// Answers as GPB_FindFieldDescByNodeName and GPB_GetLeafFieldDescByNodeName do, from the tables of a plan. One finder
/// belongs to one compiler.
class GpbFieldFinder
{
public:
    /// @param plan  outlives the finder
    explicit GpbFieldFinder(GpbNamePlan &plan) : tables_(plan) {}

    GpbFoundField FindNode(const google::protobuf::Descriptor *message, const char *nodeName, uint32_t layer)
    {
        return message == nullptr || nodeName == nullptr ? GpbFoundField()
                                                         : tables_.TableOf(message, layer).Find(nodeName).node;
    }

    GpbFoundField FindLeaf(const google::protobuf::Descriptor *message, const char *nodeName, uint32_t layer)
    {
        return message == nullptr || nodeName == nullptr ? GpbFoundField()
                                                         : tables_.TableOf(message, layer).Find(nodeName).leaf;
    }

private:
    GpbTableMemory<GpbNameTable> tables_;
};

#endif
