#include "descriptor/gpb_name_plan.h"

using google::protobuf::Descriptor;

const GpbNameTable &GpbNamePlan::TableOf(const Descriptor *message, uint32_t layer)
{
    const Place place = {message, layer};
    std::atomic<const GpbNameTable *> &recent = recent_[PlaceHash()(place) % RECENT];
    const GpbNameTable *table = recent.load(std::memory_order_acquire);
    if (table != nullptr && table->IsOf(message, static_cast<int32_t>(layer)))
    {
        return *table;
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    table = &tables_.try_emplace(place, message, static_cast<int32_t>(layer)).first->second;
    recent.store(table, std::memory_order_release);
    return *table;
}
