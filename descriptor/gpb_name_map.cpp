#include "descriptor/gpb_name_map.h"

#include <cstring>

namespace
{

constexpr size_t BUCKETS_PER_NAME = 2;

// Eight bytes at a time, the last ones once more where they do not come out even. The highest bits are the best.
uint64_t HashOf(std::string_view name)
{
    constexpr uint64_t MIX = UINT64_C(0x9E3779B97F4A7C15);
    constexpr unsigned HALF = 32;
    uint64_t hash = name.size();
    uint64_t word = 0;
    const char *at = name.data();
    size_t left = name.size();
    for (; left > sizeof(word); left -= sizeof(word), at += sizeof(word))
    {
        std::memcpy(&word, at, sizeof(word));
        hash = (hash ^ word) * MIX;
        hash ^= hash >> HALF;
    }
    word = 0;
    if (name.size() >= sizeof(word))
    {
        std::memcpy(&word, name.data() + name.size() - sizeof(word), sizeof(word));
    }
    else if (left != 0)
    {
        std::memcpy(&word, at, left);
    }
    return (hash ^ word) * MIX;
}

} // namespace

GpbNameMap::GpbNameMap(size_t count, size_t bytes)
{
    names_.reserve(bytes); // so that the names stay where they are
    while ((size_t{1} << (HASH_BITS - hashShift_)) < count * BUCKETS_PER_NAME)
    {
        --hashShift_;
    }
    buckets_.resize(size_t{1} << (HASH_BITS - hashShift_));
}

void GpbNameMap::Add(std::string_view name, uint32_t number)
{
    const size_t begin = names_.size();
    names_.append(name);
    const size_t mask = buckets_.size() - 1;
    size_t i = static_cast<size_t>(HashOf(name) >> hashShift_);
    while (buckets_[i].number != NOTHING)
    {
        i = (i + 1) & mask;
    }
    buckets_[i] = {std::string_view(names_.data() + begin, name.size()), number};
}

uint32_t GpbNameMap::Find(std::string_view name) const
{
    const size_t mask = buckets_.size() - 1;
    for (size_t i = static_cast<size_t>(HashOf(name) >> hashShift_);; i = (i + 1) & mask)
    {
        const Bucket &bucket = buckets_[i];
        if (bucket.number == NOTHING || bucket.name == name)
        {
            return bucket.number;
        }
    }
}
