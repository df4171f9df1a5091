#include "compiler/gpb_backward_writer.h"

#include <algorithm>
#include <stdexcept>

namespace
{

constexpr size_t FIRST_ROOM = 1000; // the C library has pieces of up to about this size at hand

} // namespace

void GpbBackwardWriter::Grow(size_t size)
{
    const size_t written = Size();
    if (size > limit_ - written)
    {
        throw std::length_error("more bytes than a message may have");
    }
    const size_t room = std::min(limit_, std::max({FIRST_ROOM, room_ * 2, written + size}));
    std::unique_ptr<char[]> larger(new char[room]);
    char *const begin = larger.get() + room - written;
    if (written != 0)
    {
        std::memcpy(begin, begin_, written);
    }
    buffer_ = std::move(larger);
    room_ = room;
    begin_ = begin;
}
