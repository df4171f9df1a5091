// Protobuf's own reader as a judge of what is written from random trees, and as a writer of what is read.
#include <algorithm>

#include <google/protobuf/unknown_field_set.h>

#include "support/platform_fixture.h"
#include "tree_support.h"

namespace gpbtest
{
namespace
{

using google::protobuf::UnknownField;
using google::protobuf::UnknownFieldSet;

class ProtobufReaderTest : public PlatformFixture
{
protected:
    std::mt19937_64 m_random{0x5EED};
};

// A message of protobuf's reader in the form of describe(), guided by the tree, since the bytes alone do not tell
// containers from strings.
std::string describeUnknown(const UnknownFieldSet &fields, const ObjNode *node)
{
    std::string text = "(";
    for (int i = 0; i < fields.field_count(); ++i)
    {
        const UnknownField &field = fields.field(i);
        const ObjNode *child = childAt(node, static_cast<size_t>(i));
        text += i == 0 ? "" : " ";
        const std::string id = std::to_string(field.number());
        if (field.type() == UnknownField::TYPE_VARINT)
        {
            text += "I" + id + "=" + std::to_string(field.varint());
        }
        else if (child != nullptr && child->nodeType == GPB_OBJNODE_CONTAIN)
        {
            UnknownFieldSet inner;
            EXPECT_TRUE(inner.ParseFromString(field.length_delimited()));
            text += "C" + id + describeUnknown(inner, child);
        }
        else
        {
            text += "S" + id + "='" + field.length_delimited() + "'";
        }
    }
    return text + ")";
}

TEST_F(ProtobufReaderTest, PlainModeIsWhatProtobufReads)
{
    for (size_t i = 1; i < 100; ++i)
    {
        const TreePtr tree = randomTree(m_random, i, (1U << 29) - 1, kModuleId);
        const Bytes bytes = write(tree.get(), GPB_OBJTREE_MODE_PLAIN);
        UnknownFieldSet fields;
        ASSERT_TRUE(fields.ParseFromArray(bytes.data(), static_cast<int>(bytes.size())));
        ASSERT_EQ(describe(tree.get()), "R0" + describeUnknown(fields, tree.get()));
    }
}

TEST_F(ProtobufReaderTest, ProtobufWritesWhatTheReaderReads)
{
    UnknownFieldSet fields;
    fields.AddVarint(1, ~0ULL);
    fields.AddFixed32(2, 0x80000001);
    fields.AddFixed64(3, 0x8000000000000001);
    fields.AddLengthDelimited(4, "text");
    std::string content;
    ASSERT_TRUE(fields.SerializeToString(&content));
    Bytes bytes(2 + content.size());
    bytes[0] = 0x06;
    bytes[1] = static_cast<uint8_t>(content.size());
    std::copy(content.begin(), content.end(), bytes.begin() + 2);
    const ReadResult result = read(bytes, kModuleId);
    ASSERT_NE(nullptr, result.tree);
    EXPECT_EQ("R0(I1=18446744073709551615 I2=2147483649 I3=9223372036854775809 S4='text')",
              describe(result.tree.get()));
}

} // namespace
} // namespace gpbtest
