#include "compiler/gpb_backward_writer.h"

#include <algorithm>
#include <stdexcept>

void GpbBackwardWriter::Grow(size_t size)
{
    const size_t written = Size();
    if (size > limit_ - written)
    {
        throw std::length_error("more bytes than a message may have");
    }
    const size_t room = std::min(limit_, std::max(nextRoom_, written + size));
    std::unique_ptr<char[]> larger(new char[room]);
    char *const begin = larger.get() + room - written;
    if (written != 0)
    {
        std::memcpy(begin, begin_, written);
    }
    nextRoom_ = room * 2;
    buffer_ = std::move(larger);
    room_ = room;
    begin_ = begin;
}
