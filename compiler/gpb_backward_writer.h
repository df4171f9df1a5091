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
        const unsigned bits = WORD_BITS - static_cast<unsigned>(__builtin_clzll(value));
        const size_t size = (bits + BITS_PER_BYTE - 1) / BITS_PER_BYTE;
        char *at = Extend(size);
        for (; value >= MORE; value >>= BITS_PER_BYTE)
        {
            *at++ = static_cast<char>(value | MORE);
        }
        *at = static_cast<char>(value);
    }

    /// The lowest `size` bytes of a number, the lowest one first.
    void Fixed(uint64_t value, size_t size)
    {
        char *at = Extend(size);
        for (size_t i = 0; i < size; ++i)
        {
            at[i] = static_cast<char>(value >> (BYTE_BITS * i));
        }
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
    static constexpr unsigned BYTE_BITS = 8;
    static constexpr unsigned WORD_BITS = 64;

    char *Extend(size_t size)
    {
        if (static_cast<size_t>(begin_ - first_) < size)
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
