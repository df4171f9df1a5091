/** The input of a target as a supply of small decisions; when it runs out, every answer is 0. */
#ifndef GPB_FUZZ_SUPPORT_BYTES_H
#define GPB_FUZZ_SUPPORT_BYTES_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace gpbfuzz
{

class Bytes
{
public:
    Bytes(const uint8_t *data, size_t size) : m_data(data), m_left(size) {}

    bool empty() const { return m_left == 0; }

    uint8_t byte()
    {
        if (m_left == 0)
        {
            return 0;
        }
        --m_left;
        return *m_data++;
    }

    /** A number below `limit`, which is not 0. */
    uint32_t below(uint32_t limit) { return limit <= 256 ? byte() % limit : number() % limit; }

    bool flag() { return (byte() & 1) != 0; }

    uint32_t number()
    {
        uint32_t value = 0;
        for (int i = 0; i < 4; ++i)
        {
            value = value << 8 | byte();
        }
        return value;
    }

    uint64_t wide()
    {
        const uint64_t high = number();
        return high << 32 | number();
    }

    /** Up to `max` bytes, as many as the next byte says. */
    std::string text(size_t max)
    {
        std::string result;
        for (size_t count = byte() % (max + 1); count > 0 && m_left > 0; --count)
        {
            result.push_back(static_cast<char>(byte()));
        }
        return result;
    }

    /** All that is left. */
    std::string rest()
    {
        std::string result(reinterpret_cast<const char *>(m_data), m_left);
        m_data += m_left;
        m_left = 0;
        return result;
    }

private:
    const uint8_t *m_data;
    size_t m_left;
};

} // namespace gpbfuzz

#endif
