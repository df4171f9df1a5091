/** Random documents in the lossless setting: nothing is lost, and what the default does not lose is the same in both.
 */
#include "compiler/exact_fixture.h"
#include "compiler/exact_random.h"

namespace
{

constexpr uint32_t kSeeds = 60;
constexpr int kDocuments = 4;

using ExactRandomTest = gpbtest::ExactFixture;

TEST_F(ExactRandomTest, KeepsEveryValueOfEveryDocument)
{
    size_t withCases = 0;
    for (uint32_t seed = 0; seed < kSeeds; ++seed)
    {
        SCOPED_TRACE("seed " + std::to_string(seed));
        gpbtest::RandomModel model(seed);
        useModule("r" + std::to_string(seed), model.protoContent());
        for (int i = 0; i < kDocuments && !HasFailure(); ++i)
        {
            const gpbtest::RandomDocument random = model.makeDocument(true);
            expectLossless(random.content, random.textForm);
            withCases += random.textForm.find("case_x") == std::string::npos ? 0 : 1;
        }
        ASSERT_FALSE(HasFailure()) << model.protoContent();
    }
    EXPECT_GT(withCases, 100u);
}

TEST_F(ExactRandomTest, IsTheDefaultWhereThatLosesNothing)
{
    size_t characters = 0;
    for (uint32_t seed = 0; seed < kSeeds; ++seed)
    {
        SCOPED_TRACE("seed " + std::to_string(seed));
        gpbtest::RandomModel model(seed);
        useModule("r" + std::to_string(seed), model.protoContent());
        for (int i = 0; i < kDocuments && !HasFailure(); ++i)
        {
            const gpbtest::RandomDocument random = model.makeDocument(false);
            expectBoth(random.content, random.textForm);
            setLossless(false);
            const gpbtest::Encoded usual = encode(document(random.content));
            setLossless(true);
            EXPECT_EQ(usual.bytes, encode(document(random.content)).bytes);
            characters += random.content.size();
        }
        ASSERT_FALSE(HasFailure()) << model.protoContent();
    }
    EXPECT_GT(characters, 10000u);
}

} // namespace
