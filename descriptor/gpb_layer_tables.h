// Tables of message types by layer, made when they are first asked for.
#ifndef GPB_DESCRIPTOR_GPB_LAYER_TABLES_H
#define GPB_DESCRIPTOR_GPB_LAYER_TABLES_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <unordered_map>

#include <google/protobuf/descriptor.h>

#include "gpb_templatelib/gpb_limits.h"

/// The tables of all message types of an importer; a table is constructed from a type and a layer, and then only read.
/// The answers depend on the layer, and types may contain themselves, so there is no end of tables that could be made
/// beforehand. There are at most as many as types times layers, however many names the documents think of. Any thread
/// may ask.
template <typename Table>
class GpbLayerTables
{
public:
    /// The table of a type in a layer; lives as long as this. A lack of memory is thrown and leaves everything as it
    /// was.
    const Table &TableOf(const google::protobuf::Descriptor *message, uint32_t layer);

private:
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

    using Tables = std::unordered_map<Place, Table, PlaceHash>;

    static constexpr size_t RECENT = 64;

    // Tables that were asked for lately, each where its place's hash says: asked again, they are found without waiting.
    std::atomic<const typename Tables::value_type *> recent_[RECENT] = {};
    std::mutex mutex_;
    Tables tables_; ///< its elements never move
};

// Instantiated once for each table: it would weigh down the look-ups that it stands in, which seldom come to it.
template <typename Table>
const Table &GpbLayerTables<Table>::TableOf(const google::protobuf::Descriptor *message, uint32_t layer)
{
    const Place place = {message, layer};
    auto &recent = recent_[PlaceHash()(place) % RECENT];
    const typename Tables::value_type *entry = recent.load(std::memory_order_acquire);
    if (entry != nullptr && entry->first == place)
    {
        return entry->second;
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    entry = &*tables_.try_emplace(place, message, static_cast<int32_t>(layer)).first;
    recent.store(entry, std::memory_order_release);
    return entry->second;
}

/// Remembers the table that was used last in each layer, so that a walk seldom has to ask for one, which many threads
/// may do. Belongs to one thread.
template <typename Table>
class GpbTableMemory
{
public:
    /// @param tables  outlives this
    explicit GpbTableMemory(GpbLayerTables<Table> &tables) : tables_(tables) {}

    const Table &TableOf(const google::protobuf::Descriptor *message, uint32_t layer)
    {
        Used &used = used_[layer % GPB_COMPILER_STACK_DEPTH];
        if (used.message != message || used.layer != layer)
        {
            used = {message, layer, &tables_.TableOf(message, layer)};
        }
        return *used.table;
    }

private:
    struct Used
    {
        const google::protobuf::Descriptor *message = nullptr;
        uint32_t layer = 0;
        const Table *table = nullptr;
    };

    GpbLayerTables<Table> &tables_;
    Used used_[GPB_COMPILER_STACK_DEPTH];
};

#endif
