// Writing and reading as inverse operations over random trees.
#include "support/platform_fixture.h"
#include "tree_support.h"

namespace gpbtest
{
namespace
{

class RoundTripTest : public PlatformFixture
{
protected:
    std::mt19937_64 m_random{0x5EED};
};

TEST_F(RoundTripTest, TemplateModeGivesTheSameTreeBack)
{
    for (size_t i = 0; i < 300; ++i)
    {
        const TreePtr tree = randomTree(m_random, i, 0xFFFFFFFF, kModuleId);
        const Bytes bytes = write(tree.get(), GPB_OBJTREE_MODE_TEMPLATE);
        ASSERT_EQ(GPBLIB_ObjTree_GetWriteLen(tree.get()), bytes.size());
        const ReadResult result = read(bytes, kModuleId);
        ASSERT_NE(nullptr, result.tree);
        EXPECT_EQ(bytes.size(), result.consumed);
        ASSERT_EQ(describe(tree.get()), describe(result.tree.get()));
        ASSERT_EQ(bytes, write(result.tree.get(), GPB_OBJTREE_MODE_TEMPLATE));
    }
}

} // namespace
} // namespace gpbtest
