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
    /// @param bytes  their lengths together, without terminators
    GpbNameMap(size_t count, size_t bytes);

    /// Adds a name that is not there yet, with any number but NOTHING; the name as it is kept, with a terminator.
    const char *Add(std::string_view name, uint32_t number);

    uint32_t Find(std::string_view name) const
    {
        const size_t mask = buckets_.size() - 1;
        const uint64_t hash = HashOf(name);
        for (auto i = static_cast<size_t>(hash >> hashShift_);; i = (i + 1) & mask)
        {
            const Bucket &bucket = buckets_[i];
            if (bucket.number == NOTHING || (bucket.hash == hash && IsSame(bucket.name, name)))
            {
                return bucket.number;
            }
        }
    }

private:
    static constexpr unsigned HASH_BITS = 64;
    static constexpr unsigned BYTE_BITS = 8;
    static constexpr unsigned HALF = 32;

    struct Bucket
    {
        uint64_t hash = 0;
        std::string_view name; ///< lies in names_
        uint32_t number = NOTHING;
    };

    /// One of the words of a name; `at` + 8 is not behind its end.
    static uint64_t WordAt(std::string_view name, size_t at)
    {
        uint64_t word = 0;
        std::memcpy(&word, name.data() + at, sizeof(word));
        return word;
    }

    /// The bytes of a name that is shorter than a word in a number: different ones for different names of a length.
    static uint64_t ShortWordOf(std::string_view name)
    {
        uint64_t word = 0;
        uint32_t first = 0;
        uint32_t last = 0;
        if (name.size() >= sizeof(first))
        {
            // The two may share bytes.
            std::memcpy(&first, name.data(), sizeof(first));
            std::memcpy(&last, name.data() + name.size() - sizeof(last), sizeof(last));
            return (uint64_t{first} << HALF) | last;
        }
        for (const char c : name)
        {
            word = (word << BYTE_BITS) | static_cast<unsigned char>(c);
        }
        return word;
    }

    /// As the operator for names of one hash, but without a call: all words but the last are compared, since among
    /// names that are alike so far each last word has a hash of its own.
    static bool IsSame(std::string_view left, std::string_view right)
    {
        if (left.size() != right.size())
        {
            return false;
        }
        for (size_t at = 0; at + sizeof(uint64_t) < left.size(); at += sizeof(uint64_t))
        {
            if (WordAt(left, at) != WordAt(right, at))
            {
                return false;
            }
        }
        return true;
    }

    /// The highest bits are the best. Each step can be undone: multiplying by an odd number, and adding the upper half
    /// to the lower one without carry.
    static uint64_t HashOf(std::string_view name)
    {
        constexpr uint64_t MIX = UINT64_C(0x9E3779B97F4A7C15);
        uint64_t hash = name.size();
        if (name.size() < sizeof(uint64_t))
        {
            return (hash ^ ShortWordOf(name)) * MIX;
        }
        for (size_t at = 0; at + sizeof(uint64_t) < name.size(); at += sizeof(uint64_t))
        {
            hash = (hash ^ WordAt(name, at)) * MIX;
            hash ^= hash >> HALF;
        }
        // The last word may share bytes with the one before.
        return (hash ^ WordAt(name, name.size() - sizeof(uint64_t))) * MIX;
    }

    std::string names_;                  ///< one behind the other
    std::vector<Bucket> buckets_;        ///< a power of two of them, at most half of them used
    unsigned hashShift_ = HASH_BITS - 1; ///< leaves as many bits of a hash as there are bits in a bucket's index
};

#endif
