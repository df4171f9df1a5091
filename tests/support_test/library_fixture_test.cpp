/** The fixture with a context. */
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "support/library_fixture.h"

namespace
{

class LibraryFixtureTest : public gpbtest::LibraryFixture
{
};

TEST_F(LibraryFixtureTest, BeginsWithAContextAndAnEmptyLog)
{
    ASSERT_NE(nullptr, context());
    EXPECT_NO_LOG(log());
    EXPECT_EQ(kModuleId, GPBLIB_GetMemHandle(context()));
    for (const uint32_t level : {GPB_LOG_ERROR, GPB_LOG_PROGRESS, GPB_LOG_SKIP, GPB_LOG_DUMP})
    {
        GPBLIB_DebugPrint(context(), level, "function", 1, "%s", "text");
    }
    EXPECT_LOG(log(), "0: text", "1: text", "2: text", "3: text");
}

TEST_F(LibraryFixtureTest, RecreatedContextHasItsLevelsClosed)
{
    recreateContext({GPB_LOG_PROGRESS});
    GPBLIB_DebugPrint(context(), GPB_LOG_PROGRESS, "function", 1, "closed");
    GPBLIB_DebugPrint(context(), GPB_LOG_ERROR, "function", 1, "open");
    EXPECT_LOG(log(), "0: open");
}

TEST_F(LibraryFixtureTest, DestroyedContextLeavesNothing)
{
    const gpbtest::LedgerSnapshot withContext;
    destroyContext();
    EXPECT_EQ(nullptr, context());
    EXPECT_TRUE(withContext.added().empty());
    EXPECT_FALSE(events().sites(GPB_HOST_EVENT_FREE).empty());
}

TEST_F(LibraryFixtureTest, ProtoFilesLieWhereTheyAreLookedFor)
{
    EXPECT_EQ(workPath() + "reslink/protobuf/m.proto", writeProto("m", "text"));
    EXPECT_EQ(workPath() + "other/m.proto", writeProto("m", "other text", "other"));
    EXPECT_EQ(workPath() + "m.proto", writeProto("m", "top", ""));
    std::ostringstream text;
    text << std::ifstream(workPath() + "other/m.proto").rdbuf();
    EXPECT_EQ("other text", text.str());
}

} // namespace
