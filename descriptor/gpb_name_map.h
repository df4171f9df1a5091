// Names with a number each, found as fast as can be.
#ifndef GPB_DESCRIPTOR_GPB_NAME_MAP_H
#define GPB_DESCRIPTOR_GPB_NAME_MAP_H

#include <cstddef>
#include <cstdint>
#include <cstring>
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

    uint32_t Find(std::string_view name) const
    {
        const size_t mask = buckets_.size() - 1;
        const uint64_t hash = HashOf(name);
        for (size_t i = static_cast<size_t>(hash >> hashShift_);; i = (i + 1) & mask)
        {
            const Bucket &bucket = buckets_[i];
            if (bucket.number == NOTHING || (bucket.hash == hash && bucket.name == name))
            {
                return bucket.number;
            }
        }
    }

private:
    static constexpr unsigned HASH_BITS = 64;
    static constexpr unsigned BYTE_BITS = 8;

    struct Bucket
    {
        uint64_t hash = 0;
        std::string_view name; ///< lies in names_
        uint32_t number = NOTHING;
    };

    /// Takes eight bytes at a time, the last ones once more where they do not come out even. The highest bits are the
    /// best.
    static uint64_t HashOf(std::string_view name)
    {
        constexpr uint64_t MIX = UINT64_C(0x9E3779B97F4A7C15);
        constexpr unsigned HALF = 32;
        uint64_t hash = name.size();
        uint64_t word = 0;
        const char *at = name.data();
        if (name.size() < sizeof(word))
        {
            for (const char c : name)
            {
                word = (word << BYTE_BITS) | static_cast<unsigned char>(c);
            }
            return (hash ^ word) * MIX;
        }
        const char *const last = at + name.size() - sizeof(word);
        for (; at < last; at += sizeof(word))
        {
            std::memcpy(&word, at, sizeof(word));
            hash = (hash ^ word) * MIX;
            hash ^= hash >> HALF;
        }
        std::memcpy(&word, last, sizeof(word));
        return (hash ^ word) * MIX;
    }

    std::string names_;                  ///< one behind the other
    std::vector<Bucket> buckets_;        ///< a power of two of them, at most half of them used
    unsigned hashShift_ = HASH_BITS - 1; ///< leaves as many bits of a hash as there are bits in a bucket's index
};

#endif
