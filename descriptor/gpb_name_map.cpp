#include "descriptor/gpb_name_map.h"

namespace
{

constexpr size_t BUCKETS_PER_NAME = 2;

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
    const uint64_t hash = HashOf(name);
    auto i = static_cast<size_t>(hash >> hashShift_);
    while (buckets_[i].number != NOTHING)
    {
        i = (i + 1) & mask;
    }
    buckets_[i] = {hash, std::string_view(names_.data() + begin, name.size()), number};
}
