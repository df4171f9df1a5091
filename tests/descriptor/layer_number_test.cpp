/** Layer numbers of messages. */
#include "descriptor/descriptor_fixture.h"

namespace
{

constexpr char kProto[] = "message Top { message Second { message Third { message Fourth { string s = 1; } } } }"
                          "message Other { message Inner { string s = 1; } }";

class LayerNumber : public gpbtest::DescriptorFixture
{
protected:
    void SetUp() override
    {
        DescriptorFixture::SetUp();
        addProto(kProto);
    }

    uint32_t subLayer(const std::string &sub, const std::string &in, int32_t layer) const
    {
        return GPB_GetSubDescriptorLayerNum(message(sub), message(in), layer);
    }
};

TEST_F(LayerNumber, CountsTheEnclosingMessages)
{
    EXPECT_EQ(1u, GPB_GetDescriptorLayerNum(message("Top")));
    EXPECT_EQ(2u, GPB_GetDescriptorLayerNum(message("Top.Second")));
    EXPECT_EQ(3u, GPB_GetDescriptorLayerNum(message("Top.Second.Third")));
    EXPECT_EQ(4u, GPB_GetDescriptorLayerNum(message("Top.Second.Third.Fourth")));
}

TEST_F(LayerNumber, OfNullIsZero)
{
    EXPECT_EQ(0u, GPB_GetDescriptorLayerNum(nullptr));
}

TEST_F(LayerNumber, OfASubMessageIsTheLayerPlusTheSteps)
{
    EXPECT_EQ(1u, subLayer("Top", "Top", 1));
    EXPECT_EQ(2u, subLayer("Top.Second", "Top", 1));
    EXPECT_EQ(9u, subLayer("Top.Second.Third", "Top", 7));
    EXPECT_EQ(8u, subLayer("Top.Second.Third", "Top.Second", 7));
    EXPECT_EQ(3u, subLayer("Top.Second.Third.Fourth", "Top", 0));
}

TEST_F(LayerNumber, OfAForeignMessageIsZero)
{
    EXPECT_EQ(0u, subLayer("Other", "Top", 7));
    EXPECT_EQ(0u, subLayer("Other.Inner", "Top", 7));
    EXPECT_EQ(0u, subLayer("Top", "Top.Second", 7)) << "the enclosing message is not nested in its part";
}

TEST_F(LayerNumber, OfASubMessageWithNull)
{
    EXPECT_EQ(0u, GPB_GetSubDescriptorLayerNum(nullptr, message("Top"), 7));
    EXPECT_EQ(0u, GPB_GetSubDescriptorLayerNum(message("Top.Second"), nullptr, 7));
    EXPECT_EQ(7u, GPB_GetSubDescriptorLayerNum(nullptr, nullptr, 7)) << "the same message, so the same layer";
}

} // namespace
