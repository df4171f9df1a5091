// Memory for the values of one document.
#ifndef GPB_COMPILER_GPB_RECORD_ARENA_H
#define GPB_COMPILER_GPB_RECORD_ARENA_H

#include <cstddef>

/// Hands out pieces of blocks, which all go at once. The blocks stay below the size from which the C library fetches
/// every block from the system anew.
class GpbRecordArena
{
public:
    GpbRecordArena() = default;
    ~GpbRecordArena();

    GpbRecordArena(const GpbRecordArena &) = delete;
    GpbRecordArena &operator=(const GpbRecordArena &) = delete;

    /// Memory for anything that is aligned as numbers and pointers are; its content is undefined. A lack of memory is
    /// thrown.
    void *Take(size_t size)
    {
        size = (size + ALIGNMENT - 1) / ALIGNMENT * ALIGNMENT;
        if (size > left_)
        {
            AddBlock(size);
        }
        left_ -= size;
        taken_ += size;
        char *const piece = next_;
        next_ += size;
        return piece;
    }

    /// Adds up bytes that the values will be written as, by their owners' guess.
    void Expect(size_t bytes) { expected_ += bytes; }
    size_t Expected() const { return expected_; }

private:
    static constexpr size_t ALIGNMENT = 8;

    /// Stands at the begin of each block.
    struct alignas(ALIGNMENT) Block
    {
        Block *previous;
    };

    void AddBlock(size_t size);

    Block *newest_ = nullptr;
    char *next_ = nullptr;
    size_t left_ = 0;
    size_t taken_ = 0; ///< bytes that were handed out
    size_t expected_ = 0;
};

#endif
