// Names that were compared before, by where they lie.
#ifndef GPB_DESCRIPTOR_GPB_NAME_MEMO_H
#define GPB_DESCRIPTOR_GPB_NAME_MEMO_H

#include <cstddef>
#include <cstdint>

struct GpbNamedField;

/// libxml2 keeps a name once for all elements of a document that have it, so that an address tells it as long as nobody
/// changes the document. Holds the last address at which each of a few fields was found, for one document.
class GpbNameMemo
{
public:
    bool Has(const char *nodeName, const GpbNamedField &field) const
    {
        const Seen &seen = seen_[PlaceOf(field)];
        return seen.nodeName == nodeName && seen.field == &field;
    }

    void Keep(const char *nodeName, const GpbNamedField &field) { seen_[PlaceOf(field)] = {nodeName, &field}; }

private:
    static constexpr size_t PLACES = 64;
    static constexpr size_t ALIGNMENT = 16; ///< less than the size of a field

    struct Seen
    {
        const char *nodeName = nullptr;
        const GpbNamedField *field = nullptr;
    };

    static size_t PlaceOf(const GpbNamedField &field)
    {
        return reinterpret_cast<uintptr_t>(&field) / ALIGNMENT % PLACES;
    }

    Seen seen_[PLACES];
};

#endif
