// The writer of bytes, the last ones first.
#include "compiler/gpb_backward_writer.h"

#include <google/protobuf/io/coded_stream.h>
#include <google/protobuf/io/zero_copy_stream_impl_lite.h>
#include <gtest/gtest.h>
#include <limits>
#include <stdexcept>
#include <string>

namespace
{

constexpr size_t MANY = 1U << 20U;

std::string Forward(uint64_t value)
{
    std::string bytes;
    google::protobuf::io::StringOutputStream stream(&bytes);
    google::protobuf::io::CodedOutputStream(&stream).WriteVarint64(value);
    return bytes;
}

TEST(BackwardWriter, WritesEachThingBeforeTheLastOne)
{
    GpbBackwardWriter writer(MANY, 1);
    writer.Text("end");
    writer.Fixed64(UINT64_C(0x0102030405060708));
    writer.Fixed32(UINT32_C(0x01020304));
    writer.Text("");
    writer.Varint(300);
    EXPECT_EQ(17U, writer.Size());
    const std::string written = writer.Take();
    EXPECT_EQ(0U, writer.Size());
    EXPECT_EQ(std::string("\xAC\x02\x04\x03\x02\x01\x08\x07\x06\x05\x04\x03\x02\x01"
                          "end"),
              written);
}

TEST(BackwardWriter, WritesVarintsOfEverySize)
{
    for (unsigned bits = 0; bits < std::numeric_limits<uint64_t>::digits; ++bits)
    {
        for (const uint64_t value : {(UINT64_C(1) << bits) - 1, UINT64_C(1) << bits, ~UINT64_C(0) >> bits})
        {
            GpbBackwardWriter writer(MANY, 1);
            writer.Varint(value);
            EXPECT_EQ(Forward(value), writer.Take()) << value;
        }
    }
}

TEST(BackwardWriter, GrowsFromAnyRoom)
{
    for (const size_t expected : {size_t{0}, size_t{1}, size_t{100}, size_t{5000}})
    {
        GpbBackwardWriter writer(MANY, expected);
        std::string written;
        for (int i = 0; i < 2000; ++i)
        {
            const std::string text = std::to_string(i);
            writer.Text(text);
            written.insert(0, text);
        }
        EXPECT_EQ(written, writer.Take());
    }
}

TEST(BackwardWriter, TakesAsMuchAsItsLimitAndNoMore)
{
    constexpr size_t LIMIT = 1000;
    GpbBackwardWriter writer(LIMIT, 10);
    writer.Text(std::string(LIMIT - 1, 'x'));
    EXPECT_THROW(writer.Varint(300), std::length_error);
    writer.Varint(1);
    EXPECT_EQ(LIMIT, writer.Size());
    EXPECT_THROW(writer.Varint(1), std::length_error);
    EXPECT_EQ(LIMIT, writer.Size());
    GpbBackwardWriter other(LIMIT, LIMIT * 2);
    EXPECT_THROW(other.Text(std::string(LIMIT + 1, 'x')), std::length_error);
    EXPECT_EQ(0U, other.Size());
}

} // namespace
