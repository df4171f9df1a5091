// Writing and reading as inverse operations over random trees, and protobuf's own reader as a judge.
#include <random>

#include <google/protobuf/unknown_field_set.h>

#include "support/platform_fixture.h"
#include "tree_support.h"

namespace gpbtest
{
namespace
{

using google::protobuf::UnknownField;
using google::protobuf::UnknownFieldSet;

class RoundTripTest : public PlatformFixture
{
protected:
    // A tree of up to `nodes` nodes, with ids and values of all sizes.
    TreePtr randomTree(size_t nodes, uint32_t maxId)
    {
        TreePtr tree(GPBLIB_ObjTree_Create(0, kModuleId));
        std::vector<ObjNode *> parents = {tree.get()};
        for (size_t i = 0; i < nodes; ++i)
        {
            ObjNode *parent = parents[m_random() % parents.size()];
            const uint32_t id = 1 + (static_cast<uint32_t>(m_random()) >> (m_random() % 32)) % maxId;
            switch (m_random() % 3)
            {
            case 0:
                GPBLIB_ObjTree_CreateInteger(tree.get(), parent, id, m_random() >> (m_random() % 64), 1);
                break;
            case 1:
            {
                const std::string content(1 + m_random() % 300, static_cast<char>('a' + m_random() % 26));
                GPBLIB_ObjTree_CreateString(tree.get(), parent, id, static_cast<uint32_t>(content.size()),
                                            content.data(), 1);
                break;
            }
            default:
                parents.push_back(GPBLIB_ObjTree_CreateNode(tree.get(), parent, id, 1));
            }
        }
        return tree;
    }

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

TEST_F(RoundTripTest, TemplateModeGivesTheSameTreeBack)
{
    for (size_t i = 0; i < 300; ++i)
    {
        const TreePtr tree = randomTree(i, 0xFFFFFFFF);
        const Bytes bytes = write(tree.get(), GPB_OBJTREE_MODE_TEMPLATE);
        ASSERT_EQ(GPBLIB_ObjTree_GetWriteLen(tree.get()), bytes.size());
        const ReadResult result = read(bytes, kModuleId);
        ASSERT_NE(nullptr, result.tree);
        EXPECT_EQ(bytes.size(), result.consumed);
        ASSERT_EQ(describe(tree.get()), describe(result.tree.get()));
        ASSERT_EQ(bytes, write(result.tree.get(), GPB_OBJTREE_MODE_TEMPLATE));
    }
}

TEST_F(RoundTripTest, PlainModeIsWhatProtobufReads)
{
    for (size_t i = 1; i < 100; ++i)
    {
        const TreePtr tree = randomTree(i, (1U << 29) - 1);
        const Bytes bytes = write(tree.get(), GPB_OBJTREE_MODE_PLAIN);
        UnknownFieldSet fields;
        ASSERT_TRUE(fields.ParseFromArray(bytes.data(), static_cast<int>(bytes.size())));
        ASSERT_EQ(describe(tree.get()), "R0" + describeUnknown(fields, tree.get()));
    }
}

TEST_F(RoundTripTest, ProtobufWritesWhatTheReaderReads)
{
    UnknownFieldSet fields;
    fields.AddVarint(1, ~0ULL);
    fields.AddFixed32(2, 0x80000001);
    fields.AddFixed64(3, 0x8000000000000001);
    fields.AddLengthDelimited(4, "text");
    std::string content;
    ASSERT_TRUE(fields.SerializeToString(&content));
    Bytes bytes = {0x06, static_cast<uint8_t>(content.size())};
    bytes.insert(bytes.end(), content.begin(), content.end());
    const ReadResult result = read(bytes, kModuleId);
    ASSERT_NE(nullptr, result.tree);
    EXPECT_EQ("R0(I1=18446744073709551615 I2=2147483649 I3=9223372036854775809 S4='text')",
              describe(result.tree.get()));
}

} // namespace
} // namespace gpbtest
