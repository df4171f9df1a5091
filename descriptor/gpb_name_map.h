// Names with a number each, found as fast as can be.
#ifndef GPB_DESCRIPTOR_GPB_NAME_MAP_H
#define GPB_DESCRIPTOR_GPB_NAME_MAP_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// A table that is filled once and then only read, by any number of threads.
class GpbNameMap
{
public:
    /// Under all names that were not added.
    static constexpr uint32_t NOTHING = 0;

    /// @param count  names that will be added at most
    /// @param bytes  their lengths together
    GpbNameMap(size_t count, size_t bytes);

    /// Adds a name that is not there yet, with any number but NOTHING.
    void Add(std::string_view name, uint32_t number);

    uint32_t Find(std::string_view name) const;

private:
    static constexpr unsigned HASH_BITS = 64;

    struct Bucket
    {
        std::string_view name; ///< lies in names_
        uint32_t number = NOTHING;
    };

    std::string names_;                  ///< one behind the other
    std::vector<Bucket> buckets_;        ///< a power of two of them, at most half of them used
    unsigned hashShift_ = HASH_BITS - 1; ///< leaves as many bits of a hash as there are bits in a bucket's index
};

#endif
