#include "compiler/gpb_backward_writer.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

void GpbBackwardWriter::Grow(size_t size)
{
    const size_t written = Size();
    if (size > limit_ - written)
    {
        throw std::length_error("more bytes than a message may have");
    }
    const size_t room = std::min(limit_, std::max(nextRoom_, written + size));
    std::string larger(room, '\0');
    std::copy_n(begin_, written, larger.data() + room - written);
    buffer_ = std::move(larger);
    first_ = buffer_.data();
    end_ = first_ + room;
    begin_ = end_ - written;
    nextRoom_ = room + room / 2;
}

std::string GpbBackwardWriter::Take()
{
    buffer_.erase(0, static_cast<size_t>(begin_ - first_));
    first_ = begin_ = end_ = nullptr;
    return std::exchange(buffer_, std::string());
}
