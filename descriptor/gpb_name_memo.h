// Names of a document that were looked up before, by where they lie.
#ifndef GPB_DESCRIPTOR_GPB_NAME_MEMO_H
#define GPB_DESCRIPTOR_GPB_NAME_MEMO_H

#include <cstddef>
#include <cstdint>
#include <utility>

#include "descriptor/gpb_named_field.h"

/// libxml2 keeps a name once for all elements of a document that have it, so that an address tells it as long as nobody
/// changes the document. And whatever the order of a document's nodes is, the entries of its lists mostly share it, so
/// that what came behind a node once will come behind it again. Holds both for a few fields, for one document.
class GpbNameMemo
{
public:
    /// Whether a field was found by the name at an address.
    bool Has(const char *nodeName, const GpbNamedField &field) const
    {
        const Seen &seen = seen_[PlaceOf(field)];
        return seen.nodeName == nodeName && seen.field == &field;
    }

    void Keep(const char *nodeName, const GpbNamedField &field)
    {
        seen_[PlaceOf(field)] = {nodeName, &field, NextOf(field)};
    }

    /// The field of a table that was found by the name at an address, if `KeepAt` told so; else null.
    const GpbNamedField *FieldAt(const char *nodeName, const GpbNameTable &table) const
    {
        const Seen &seen = seen_[placeOfAddress_[AddressPlaceOf(nodeName)]];
        return seen.nodeName == nodeName && seen.field->table == &table ? seen.field : nullptr;
    }

    /// Keeps a name so that it is found when nobody guesses what it is.
    void KeepAt(const char *nodeName, const GpbNamedField &field)
    {
        Keep(nodeName, field);
        placeOfAddress_[AddressPlaceOf(nodeName)] = static_cast<uint8_t>(PlaceOf(field));
    }

    /// What came behind a field, or else is declared there.
    const GpbNamedField *NextOf(const GpbNamedField &field) const
    {
        const Seen &seen = seen_[PlaceOf(field)];
        return seen.field == &field ? seen.next : field.next;
    }

    /// A document is walked in several tables at once, one for each open layer. Walks are told apart by a number below
    /// this one.
    static constexpr uint32_t WALKS = 4;

    /// Notes the field that a walk found last.
    void SetLast(uint32_t walk, const GpbNamedField &field) { walks_[walk].last = &field; }

    /// Notes what came behind the field that a walk found last.
    void SetNextOfLast(uint32_t walk, const GpbNamedField &next)
    {
        const GpbNamedField *const last = walks_[walk].last;
        if (last == nullptr)
        {
            return;
        }
        Seen &seen = seen_[PlaceOf(*last)];
        // A walk that has come to a third table found its last field in another one.
        if (seen.field == last && last->table == next.table)
        {
            seen.next = &next;
        }
    }

    /// Notes that a walk goes back to the table in which it was before the present one.
    void Change(uint32_t walk) { std::swap(walks_[walk].last, walks_[walk].before); }

private:
    static constexpr size_t PLACES = 64;
    static constexpr size_t ADDRESSES = 256;

    struct Seen
    {
        const char *nodeName;
        const GpbNamedField *field;
        const GpbNamedField *next;
    };

    // Fields whose numbers are near each other are all held.
    static size_t PlaceOf(const GpbNamedField &field) { return field.number % PLACES; }

    // The names of a document often lie one behind the other.
    static size_t AddressPlaceOf(const char *nodeName)
    {
        constexpr size_t SHORT_NAME = 4;
        return reinterpret_cast<uintptr_t>(nodeName) / SHORT_NAME % ADDRESSES;
    }

    struct Walk
    {
        const GpbNamedField *last;
        const GpbNamedField *before; ///< that was last in the other table
    };

    Walk walks_[WALKS] = {};
    Seen seen_[PLACES] = {};
    uint8_t placeOfAddress_[ADDRESSES] = {};
};

#endif
