/** Numbers that are the same for the same seed everywhere; the standard library's distributions are not. */
#ifndef GPB_TESTS_MODELS_RANDOM_H
#define GPB_TESTS_MODELS_RANDOM_H

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace gpbtest
{

class Random
{
public:
    explicit Random(std::uint64_t seed) : m_engine(seed) {}

    /** From 0 to `bound` - 1; 0 for a bound of 0. */
    std::uint64_t below(std::uint64_t bound) { return bound == 0 ? 0 : m_engine() % bound; }

    /** The same for sizes and positions. */
    std::size_t sizeBelow(std::size_t bound) { return static_cast<std::size_t>(below(bound)); }

    /** From `least` to `most`, both included. */
    std::int64_t between(std::int64_t least, std::int64_t most)
    {
        const std::uint64_t span = static_cast<std::uint64_t>(most) - static_cast<std::uint64_t>(least) + 1;
        const std::uint64_t step = span == 0 ? m_engine() : below(span);
        return static_cast<std::int64_t>(static_cast<std::uint64_t>(least) + step);
    }

    bool percent(unsigned int chance) { return below(100) < chance; }

    template <typename Item>
    const Item &of(const std::vector<Item> &items)
    {
        return items[sizeBelow(items.size())];
    }

private:
    std::mt19937_64 m_engine;
};

} // namespace gpbtest

#endif
