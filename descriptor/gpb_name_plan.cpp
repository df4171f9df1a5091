#include "descriptor/gpb_name_plan.h"

using google::protobuf::Descriptor;

const GpbNameTable &GpbNamePlan::TableOf(const Descriptor *message, uint32_t layer)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return tables_.try_emplace({message, layer}, message, static_cast<int32_t>(layer)).first->second;
}
