#include "compiler/gpb_record_arena.h"

#include <algorithm>
#include <new>

namespace
{

constexpr size_t FIRST_BLOCK = 736; // some twenty leaves; the C library has pieces up to this size at hand
constexpr size_t LARGEST_BLOCK = size_t{64} * 1024;

} // namespace

GpbRecordArena::~GpbRecordArena()
{
    while (newest_ != nullptr)
    {
        Block *const block = newest_;
        newest_ = block->previous;
        ::operator delete(block);
    }
}

void GpbRecordArena::AddBlock(size_t size)
{
    // A quarter of what is there, so that little is left over in the end.
    const size_t usual = std::clamp(taken_ / 4, FIRST_BLOCK, LARGEST_BLOCK);
    const size_t needed = size + sizeof(Block);
    const size_t blockSize = std::max(usual, needed);
    char *const memory = static_cast<char *>(::operator new(blockSize));
    newest_ = new (memory) Block{newest_};
    next_ = memory + sizeof(Block);
    left_ = blockSize - sizeof(Block);
}
