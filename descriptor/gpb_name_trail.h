// The names of a document, in the order in which they came.
#ifndef GPB_DESCRIPTOR_GPB_NAME_TRAIL_H
#define GPB_DESCRIPTOR_GPB_NAME_TRAIL_H

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "descriptor/gpb_name_table.h"

/// A name that a document had, and what it stands for.
struct GpbNameStep
{
    const char *nodeName;       ///< where it lay, or as most documents spell it
    const GpbNamedField *field; ///< that it stands for
    const GpbNameTable *table;  ///< of the field
    GpbNameStep *next;          ///< that came behind it the last time; before that one without a table
};

/// Whatever the order of a document's nodes is, the entries of its lists mostly share it: so the name that came behind
/// another one is tried first when that other one comes again. Holds the last names of a few fields, for one document.
class GpbNameTrail
{
public:
    /// @param doNamesStay  libxml2 keeps a name once for all elements of a document that have it, so that an address
    ///                     tells it as long as nobody changes the document
    explicit GpbNameTrail(bool doNamesStay) : doNamesStay_(doNamesStay) {}

    GpbNameTrail(const GpbNameTrail &) = delete;
    GpbNameTrail &operator=(const GpbNameTrail &) = delete;

    /// The steps that were found last in the tables that a walk uses in a layer. Many documents have two kinds of
    /// containers in turn.
    struct Used
    {
        GpbNameStep *last = nullptr;
        GpbNameStep *before = nullptr;
    };

    /// Deeper layers share a place with higher ones.
    Used &UsedIn(uint32_t layer) { return used_[layer % LAYERS]; }

    /// Whether no step has come behind this one so far.
    bool IsEnd(const GpbNameStep &step) const { return step.next == &nothing_; }

    /// Whether a name is that of a step.
    bool IsAt(const GpbNameStep &step, const char *nodeName) const
    {
        return doNamesStay_ ? step.nodeName == nodeName : std::strcmp(step.nodeName, nodeName) == 0;
    }

    /// The step of a name that lay at the same address before; null when there is none.
    GpbNameStep *StepAt(const char *nodeName, const GpbNameTable &table)
    {
        GpbNameStep &step = steps_[stepOfAddress_[AddressPlaceOf(nodeName)]];
        return step.nodeName == nodeName && step.table == &table ? &step : nullptr;
    }

    /// The step of a field from now on.
    GpbNameStep &Keep(const char *nodeName, const GpbNamedField &field)
    {
        // Fields whose numbers are near each other are all held.
        const size_t place = field.number % STEPS;
        GpbNameStep &step = steps_[place];
        GpbNameStep *const next = step.field == &field ? step.next : &nothing_;
        step = {doNamesStay_ ? nodeName : field.name, &field, field.table, next};
        stepOfAddress_[AddressPlaceOf(nodeName)] = static_cast<uint8_t>(place);
        return step;
    }

private:
    static constexpr uint32_t LAYERS = 4; // a power of two, since each leaf's layer is divided by it
    static constexpr size_t STEPS = 64;
    static constexpr size_t ADDRESSES = 256;

    // The names of a document lie one behind the other.
    static size_t AddressPlaceOf(const char *nodeName)
    {
        constexpr size_t SHORT_NAME = 4;
        return reinterpret_cast<uintptr_t>(nodeName) / SHORT_NAME % ADDRESSES;
    }

    bool doNamesStay_;
    Used used_[LAYERS];
    GpbNameStep steps_[STEPS] = {};
    GpbNameStep nothing_ = {};
    uint8_t stepOfAddress_[ADDRESSES] = {}; ///< the number of the step that a name had last
};

#endif
