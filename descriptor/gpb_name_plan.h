// What node names stand for, for all message types of an importer.
#ifndef GPB_DESCRIPTOR_GPB_NAME_PLAN_H
#define GPB_DESCRIPTOR_GPB_NAME_PLAN_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <unordered_map>

#include "descriptor/gpb_name_table.h"

/// The name tables of message types. A table is made when it is first asked for: the answers depend on the layer, and
/// types may contain themselves, so there is no end of tables that could be made beforehand. There are at most as many
/// as types times layers, however many names the documents think of. Any thread may ask.
class GpbNamePlan
{
public:
    /// The table of a type in a layer; lives as long as the plan. A lack of memory is thrown and leaves the plan as it
    /// was.
    const GpbNameTable &TableOf(const google::protobuf::Descriptor *message, uint32_t layer);

private:
    static constexpr size_t RECENT = 64;

    struct Place
    {
        const google::protobuf::Descriptor *message;
        uint32_t layer;

        bool operator==(const Place &other) const { return message == other.message && layer == other.layer; }
    };

    struct PlaceHash
    {
        size_t operator()(const Place &place) const
        {
            constexpr uint64_t MIX = UINT64_C(0x9E3779B97F4A7C15);
            constexpr unsigned HALF = 32;
            return static_cast<size_t>(((std::hash<const void *>()(place.message) + place.layer) * MIX) >> HALF);
        }
    };

    // Tables that were asked for lately, each where its place's hash says: asked again, they are found without waiting.
    std::atomic<const GpbNameTable *> recent_[RECENT] = {};
    std::mutex mutex_;
    std::unordered_map<Place, GpbNameTable, PlaceHash> tables_; ///< its elements never move
};

#endif
