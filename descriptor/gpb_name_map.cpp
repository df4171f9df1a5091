#include "descriptor/gpb_name_map.h"

namespace
{

constexpr size_t BUCKETS_PER_NAME = 2;

} // namespace

GpbNameMap::GpbNameMap(size_t count, size_t bytes)
{
    names_.reserve(bytes + count); // so that the names stay where they are
    while ((size_t{1} << (HASH_BITS - hashShift_)) < count * BUCKETS_PER_NAME)
    {
        --hashShift_;
    }
    buckets_.resize(size_t{1} << (HASH_BITS - hashShift_));
}

const char *GpbNameMap::Add(std::string_view name, uint32_t number)
{
    const size_t begin = names_.size();
    names_.append(name).push_back('\0');
    const size_t mask = buckets_.size() - 1;
    const uint64_t hash = HashOf(name);
    auto i = static_cast<size_t>(hash >> hashShift_);
    while (buckets_[i].number != NOTHING)
    {
        i = (i + 1) & mask;
    }
    const char *const kept = names_.data() + begin;
    buckets_[i] = {hash, std::string_view(kept, name.size()), number};
    return kept;
}
