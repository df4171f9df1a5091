// Names that were compared before, by where they lie.
#ifndef GPB_DESCRIPTOR_GPB_NAME_MEMO_H
#define GPB_DESCRIPTOR_GPB_NAME_MEMO_H

#include <cstddef>
#include <cstdint>

class GpbNameTable;
struct GpbNamedField;

/// libxml2 keeps a name once for all elements of a document that have it, so that an address tells it as long as nobody
/// changes the document. Holds the last addresses at which names of a few fields were found, for one document.
class GpbNameMemo
{
public:
    /// Whether a field was found by the name at an address.
    bool Has(const char *nodeName, const GpbNamedField &field) const
    {
        const Seen &seen = seen_[PlaceOf(field)];
        return seen.nodeName == nodeName && seen.field == &field;
    }

    void Keep(const char *nodeName, const GpbNamedField &field) { seen_[PlaceOf(field)] = {nodeName, &field}; }

    /// A field that was found by the name at an address, probably in this table; null when there is none.
    const GpbNamedField *FieldAt(const char *nodeName, const GpbNameTable &table) const
    {
        const Seen &seen = seen_[PlaceOf(nodeName, table)];
        return seen.nodeName == nodeName ? seen.field : nullptr;
    }

    void KeepAt(const char *nodeName, const GpbNameTable &table, const GpbNamedField &field)
    {
        seen_[PlaceOf(nodeName, table)] = {nodeName, &field};
    }

private:
    static constexpr size_t PLACES = 64;

    struct Seen
    {
        const char *nodeName = nullptr;
        const GpbNamedField *field = nullptr;
    };

    static size_t PlaceOf(const GpbNamedField &field)
    {
        constexpr size_t ALIGNMENT = 16; // less than the size of a field
        return reinterpret_cast<uintptr_t>(&field) / ALIGNMENT % PLACES;
    }

    // The names of a message often lie one behind the other.
    static size_t PlaceOf(const char *nodeName, const GpbNameTable &table)
    {
        constexpr size_t SHORT_NAME = 4;
        constexpr size_t ALIGNMENT = 32;
        return (reinterpret_cast<uintptr_t>(nodeName) / SHORT_NAME + reinterpret_cast<uintptr_t>(&table) / ALIGNMENT) %
               PLACES;
    }

    Seen seen_[PLACES];
};

#endif
