/** The patch directory of a context. */
#include <string>

#include "support/library_fixture.h"

namespace
{

constexpr size_t kBufferSize = 256;
constexpr size_t kMaxPath = 255;
constexpr uint32_t kAssertResult = 77;

class PatchDirectory : public gpbtest::LibraryFixture
{
protected:
    std::string wholeBuffer() { return {GPBLIB_GetPatchDir(context()), kBufferSize}; }
};

TEST_F(PatchDirectory, IsKeptAsGiven)
{
    EXPECT_EQ(0u, GPBLIB_SetPatchDir(context(), "patch/"));
    EXPECT_STREQ("patch/", GPBLIB_GetPatchDir(context()));
    EXPECT_EQ(context()->pcPatchDir, GPBLIB_GetPatchDir(context()));
    EXPECT_EQ(0u, GPBLIB_SetPatchDir(context(), "no-slash"));
    EXPECT_STREQ("no-slash", GPBLIB_GetPatchDir(context()));
    EXPECT_EQ(0u, GPBLIB_SetPatchDir(context(), ""));
    EXPECT_STREQ("", GPBLIB_GetPatchDir(context()));
    EXPECT_NO_LOG(log());
}

TEST_F(PatchDirectory, NullZeroesTheWholeBuffer)
{
    ASSERT_EQ(0u, GPBLIB_SetPatchDir(context(), std::string(kMaxPath, 'p').c_str()));
    EXPECT_EQ(0u, GPBLIB_SetPatchDir(context(), nullptr));
    EXPECT_EQ(std::string(kBufferSize, '\0'), wholeBuffer());
}

TEST_F(PatchDirectory, Takes255Characters)
{
    const std::string longest(kMaxPath, 'p');
    EXPECT_EQ(0u, GPBLIB_SetPatchDir(context(), longest.c_str()));
    EXPECT_EQ(longest, GPBLIB_GetPatchDir(context()));
}

TEST_F(PatchDirectory, AssertsAt256CharactersAndReturnsWhatTheHookSays)
{
    ASSERT_EQ(0u, GPBLIB_SetPatchDir(context(), "before/"));
    const std::string tooLong(kMaxPath + 1, 'p');
    GpbHost_SetAssertResult(kAssertResult);
    EXPECT_EQ(kAssertResult, GPBLIB_SetPatchDir(context(), tooLong.c_str()));
    EXPECT_EQ("gpb_template:1578\n", takeAssertText());
    EXPECT_STREQ("", GPBLIB_GetPatchDir(context())) << "what the bounded copy leaves";
    GpbHost_SetAssertResult(0);
    EXPECT_EQ(0u, GPBLIB_SetPatchDir(context(), tooLong.c_str()));
    EXPECT_EQ("gpb_template:1578\n", takeAssertText());
}

TEST_F(PatchDirectory, AssertsWhenTheCopyFails)
{
    GpbHost_FailCall(GPB_HOST_STRCPY, 1);
    GpbHost_SetAssertResult(kAssertResult);
    EXPECT_EQ(kAssertResult, GPBLIB_SetPatchDir(context(), "patch/"));
    EXPECT_EQ("gpb_template:1578\n", takeAssertText());
}

TEST_F(PatchDirectory, ReturnsWhatTheFillOfTheBufferReturns)
{
    GpbHost_FailCall(GPB_HOST_MEMSET, 1);
    EXPECT_NE(0u, GPBLIB_SetPatchDir(context(), nullptr));
}

TEST_F(PatchDirectory, NeedsAContext)
{
    EXPECT_EQ(0u, GPBLIB_SetPatchDir(nullptr, "patch/"));
    EXPECT_EQ(0u, GPBLIB_SetPatchDir(nullptr, nullptr));
    EXPECT_EQ(nullptr, GPBLIB_GetPatchDir(nullptr));
}

} // namespace
