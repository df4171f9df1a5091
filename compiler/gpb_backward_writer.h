// Bytes of the wire format, the last ones first.
#ifndef GPB_COMPILER_GPB_BACKWARD_WRITER_H
#define GPB_COMPILER_GPB_BACKWARD_WRITER_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

/// Writes each thing before what was written last. A length stands before what it counts: written this way round, it is
/// known when its turn comes, so that nothing has to be measured beforehand.
class GpbBackwardWriter
{
public:
    /// @param limit     bytes that may be written; one more is std::length_error
    /// @param expected  bytes for which there is room before it has to grow
    GpbBackwardWriter(size_t limit, size_t expected) : limit_(limit), nextRoom_(expected) {}

    void Varint(uint64_t value)
    {
        if (value < MORE)
        {
            *Extend(1) = static_cast<char>(value);
            return;
        }
        // Seven bits to a byte: for all 64 numbers of bits, what the division by seven gives.
        const unsigned highest = HIGHEST_BIT ^ static_cast<unsigned>(__builtin_clzll(value));
        const size_t size = (highest * 9U + 73U) / 64U;
        char *at = Extend(size);
        for (; value >= MORE; value >>= BITS_PER_BYTE)
        {
            *at++ = static_cast<char>(value | MORE);
        }
        *at = static_cast<char>(value);
    }

    /// A number with a tag before it.
    void Varint(uint64_t value, uint32_t tag)
    {
        // Most take a byte each.
        if ((value | tag) < MORE && Room() >= 2)
        {
            char *const at = begin_ - 2;
            begin_ = at;
            at[0] = static_cast<char>(tag);
            at[1] = static_cast<char>(value);
            return;
        }
        Varint(value);
        Varint(tag);
    }

    /// The bytes of a number, the lowest one first.
    void Fixed32(uint32_t value) { Put(Extend(sizeof(value)), value); }
    void Fixed64(uint64_t value)
    {
        char *at = Extend(sizeof(value));
        Put(at, static_cast<uint32_t>(value));
        Put(at + sizeof(uint32_t), static_cast<uint32_t>(value >> HALF));
    }

    void Text(std::string_view text)
    {
        if (!text.empty())
        {
            std::memcpy(Extend(text.size()), text.data(), text.size());
        }
    }

    size_t Size() const { return static_cast<size_t>(end_ - begin_); }

    /// The bytes that have been written; the writer begins anew.
    std::string Take();

private:
    static constexpr uint64_t MORE = 0x80;
    static constexpr unsigned BITS_PER_BYTE = 7;
    static constexpr unsigned HIGHEST_BIT = 63;
    static constexpr unsigned HALF = 32;

    static void Put(char *at, uint32_t value)
    {
        at[0] = static_cast<char>(value);
        at[1] = static_cast<char>(value >> 8U);
        at[2] = static_cast<char>(value >> 16U);
        at[3] = static_cast<char>(value >> 24U);
    }

    size_t Room() const { return static_cast<size_t>(begin_ - first_); }

    char *Extend(size_t size)
    {
        if (Room() < size)
        {
            Grow(size);
        }
        begin_ -= size;
        return begin_;
    }

    void Grow(size_t size);

    size_t limit_;
    size_t nextRoom_; ///< how large the buffer gets when it grows, at least
    std::string buffer_;
    char *first_ = nullptr; ///< of the buffer
    char *begin_ = nullptr; ///< of what has been written
    char *end_ = nullptr;   ///< of the buffer, and of what has been written
};

#endif
