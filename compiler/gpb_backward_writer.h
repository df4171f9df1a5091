// Bytes of the wire format, the last ones first.
#ifndef GPB_COMPILER_GPB_BACKWARD_WRITER_H
#define GPB_COMPILER_GPB_BACKWARD_WRITER_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
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

    /// Bytes that have been written; they move when more are written.
    std::string_view Written() const { return {begin_, Size()}; }
    size_t Size() const { return static_cast<size_t>(buffer_.get() + room_ - begin_); }

private:
    static constexpr uint64_t MORE = 0x80;
    static constexpr unsigned BITS_PER_BYTE = 7;
    static constexpr unsigned BYTE_BITS = 8;
    static constexpr unsigned WORD_BITS = 64;

    char *Extend(size_t size)
    {
        if (static_cast<size_t>(begin_ - buffer_.get()) < size)
        {
            Grow(size);
        }
        begin_ -= size;
        return begin_;
    }

    void Grow(size_t size);

    size_t limit_;
    size_t nextRoom_; ///< how large the buffer gets when it grows, at least
    std::unique_ptr<char[]> buffer_;
    size_t room_ = 0;
    char *begin_ = nullptr; ///< of what has been written; it ends with the buffer
};

#endif
