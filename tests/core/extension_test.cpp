/** The settings that are kept beside a context. */
#include "gpb_templatelib/gpb_extension.h"

#include <vector>

#include "support/library_fixture.h"
#include "support/run_together.h"

namespace
{

class Extension : public gpbtest::LibraryFixture
{
protected:
    GpbLibContext *newContext()
    {
        const GpbLibInitParam param = log().initParam(kModuleId);
        return GPBLIB_Initial(&param);
    }
};

TEST_F(Extension, LosslessIsOffUntilItIsSwitchedOn)
{
    EXPECT_EQ(0u, GPBEXT_IsLossless(context()));
    EXPECT_EQ(0u, GPBEXT_SetLossless(context(), 1));
    EXPECT_EQ(1u, GPBEXT_IsLossless(context()));
    EXPECT_EQ(0u, GPBEXT_SetLossless(context(), 255));
    EXPECT_EQ(1u, GPBEXT_IsLossless(context()));
    EXPECT_EQ(0u, GPBEXT_SetLossless(context(), 0));
    EXPECT_EQ(0u, GPBEXT_IsLossless(context()));
    EXPECT_EQ(0u, GPBEXT_SetLossless(context(), 0));
    EXPECT_EQ(0u, GPBEXT_IsLossless(context()));
    EXPECT_NO_LOG(log());
}

TEST_F(Extension, NullContext)
{
    EXPECT_EQ(1u, GPBEXT_SetLossless(nullptr, 1));
    EXPECT_EQ(1u, GPBEXT_SetLossless(nullptr, 0));
    EXPECT_EQ(0u, GPBEXT_IsLossless(nullptr));
}

TEST_F(Extension, EachContextHasItsOwn)
{
    std::vector<GpbLibContext *> contexts;
    for (int i = 0; i < 5; ++i)
    {
        contexts.push_back(newContext());
    }
    for (const int i : {0, 1, 2, 4})
    {
        EXPECT_EQ(0u, GPBEXT_SetLossless(contexts[static_cast<size_t>(i)], 1));
    }
    // The one that was switched on last, one in between and the first.
    for (const int i : {4, 1, 0})
    {
        EXPECT_EQ(0u, GPBEXT_SetLossless(contexts[static_cast<size_t>(i)], 0));
    }
    const std::vector<uint8_t> expected = {0, 0, 1, 0, 0};
    std::vector<uint8_t> found;
    for (GpbLibContext *one : contexts)
    {
        found.push_back(GPBEXT_IsLossless(one));
        GPBLIB_Uninitial(one);
    }
    EXPECT_EQ(expected, found);
}

TEST_F(Extension, EndOfAContextForgetsItsSetting)
{
    EXPECT_EQ(0u, GPBEXT_SetLossless(context(), 1));
    const GpbLibContext *const before = context();
    destroyContext();
    EXPECT_EQ(0u, GPBEXT_IsLossless(before)) << "an address alone tells nothing";
}

TEST_F(Extension, WithoutMemoryNothingChanges)
{
    failEachCall(
        [&](const gpbtest::FaultRun &run)
        {
            const uint32_t result = GPBEXT_SetLossless(context(), 1);
            EXPECT_TRUE(run.fails() || result == 0);
            EXPECT_EQ(result == 0 ? 1u : 0u, GPBEXT_IsLossless(context()));
            EXPECT_EQ(0u, GPBEXT_SetLossless(context(), 0));
            EXPECT_EQ(0u, GPBEXT_IsLossless(context()));
        });
}

TEST_F(Extension, ThreadsWithAContextEach)
{
    constexpr size_t kThreads = 4;
    constexpr int kRounds = 200;
    std::vector<GpbLibContext *> contexts;
    for (size_t i = 0; i < kThreads; ++i)
    {
        contexts.push_back(newContext());
    }
    std::vector<int> wrong(kThreads, 0);
    gpbtest::runTogether(kThreads,
                         [&](size_t i)
                         {
                             for (int round = 0; round < kRounds; ++round)
                             {
                                 GPBEXT_SetLossless(contexts[i], 1);
                                 wrong[i] += GPBEXT_IsLossless(contexts[i]) == 1 ? 0 : 1;
                                 GPBEXT_SetLossless(contexts[i], 0);
                                 wrong[i] += GPBEXT_IsLossless(contexts[i]) == 0 ? 0 : 1;
                             }
                         });
    for (size_t i = 0; i < kThreads; ++i)
    {
        EXPECT_EQ(0, wrong[i]);
        GPBLIB_Uninitial(contexts[i]);
    }
}

} // namespace
