/** The fixture, driven by hand: what it must complain about, it complains about. */
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "platform/zmp.h"
#include "support/platform_fixture.h"

namespace
{

/** A test whose body is chosen by the tests below. */
class DrivenFixture : public gpbtest::PlatformFixture
{
public:
    using PlatformFixture::events;
    using PlatformFixture::expectAsserts;
    using PlatformFixture::failEachCall;
    using PlatformFixture::takeAssertText;
    using PlatformFixture::workPath;

    void TestBody() override {}
    void begin() { SetUp(); }
    void end() { TearDown(); }
};

TEST(PlatformFixtureTest, TidyTestPasses)
{
    DrivenFixture fixture;
    fixture.begin();
    ZMP_Free_F(ZMP_Malloc_F(1, 1, 1, "unit", 1), "unit", 2);
    fixture.end();
}

TEST(PlatformFixtureTest, MemoryThatStaysFails)
{
    static DrivenFixture fixture;
    fixture.begin();
    void *const memory = ZMP_Malloc_F(0x1F, 1, 10, "unit", 17);
    EXPECT_NONFATAL_FAILURE(fixture.end(), "10 bytes of module 0x1f, unit:17");
    ZMP_Free_F(memory, "unit", 18);
}

TEST(PlatformFixtureTest, MemoryOfEarlierOwnersIsNotItsMatter)
{
    void *const memory = ZMP_Malloc_F(1, 1, 10, "unit", 1);
    DrivenFixture fixture;
    fixture.begin();
    fixture.end();
    ZMP_Free_F(memory, "unit", 2);
}

TEST(PlatformFixtureTest, BadReleaseFails)
{
    static DrivenFixture fixture;
    int local = 0;
    fixture.begin();
    ZMP_Free_F(&local, "unit", 21);
    EXPECT_NONFATAL_FAILURE(fixture.end(), "BAD_FREE unit:21");
}

TEST(PlatformFixtureTest, UnannouncedAssertionFails)
{
    static DrivenFixture fixture;
    fixture.begin();
    ZMP_Assert("unit", 31, 0);
    EXPECT_NONFATAL_FAILURE(fixture.end(), "unit:31");
}

TEST(PlatformFixtureTest, AnnouncedAssertionThatDoesNotComeFails)
{
    static DrivenFixture fixture;
    fixture.begin();
    fixture.expectAsserts(2);
    ZMP_Assert("unit", 31, 0);
    EXPECT_NONFATAL_FAILURE(fixture.end(), "unit:31");
}

TEST(PlatformFixtureTest, AnnouncedOrReadAssertionsPass)
{
    DrivenFixture fixture;
    fixture.begin();
    ZMP_Assert("unit", 31, 0);
    EXPECT_EQ("unit:31\n", fixture.takeAssertText());
    ZMP_Assert("unit", 32, 0);
    fixture.expectAsserts(1);
    fixture.end();
}

TEST(PlatformFixtureTest, AssertionsAreReadOnceAroundAClearing)
{
    DrivenFixture fixture;
    fixture.begin();
    ZMP_Assert("unit", 31, 0);
    ZMP_Assert("unit", 32, 0);
    EXPECT_EQ("unit:31\nunit:32\n", fixture.takeAssertText());
    EXPECT_EQ("", fixture.takeAssertText());
    fixture.events().clear();
    EXPECT_EQ("", fixture.takeAssertText());
    ZMP_Assert("unit", 33, 0);
    EXPECT_EQ("unit:33\n", fixture.takeAssertText());
    ZMP_Assert("unit", 34, 0);
    fixture.events().clear();
    ZMP_Assert("unit", 35, 0);
    EXPECT_EQ("unit:35\n", fixture.takeAssertText()) << "a clearing forgets what was not read";
    fixture.end();
}

TEST(PlatformFixtureTest, AssertionsBelongToRunsThatFail)
{
    static DrivenFixture fixture;
    fixture.begin();
    fixture.failEachCall(
        [](const gpbtest::FaultRun &run)
        {
            void *const memory = ZMP_Malloc_F(1, 1, 1, "unit", 1);
            if (memory == nullptr)
            {
                ZMP_Assert("unit", 41, 0);
            }
            ZMP_Free_F(memory, "unit", 2);
            EXPECT_EQ(run.fails(), memory == nullptr);
        });
    EXPECT_NONFATAL_FAILURE(fixture.failEachCall(
                                [](const gpbtest::FaultRun &run)
                                {
                                    ZMP_Free_F(ZMP_Malloc_F(1, 1, 1, "unit", 1), "unit", 2);
                                    if (!run.fails())
                                    {
                                        ZMP_Assert("unit", 42, 0);
                                    }
                                }),
                            "unit:42");
    fixture.end();
}

TEST(PlatformFixtureTest, TakesOrdersAndWorkPathBack)
{
    DrivenFixture fixture;
    fixture.begin();
    char path[256];
    ASSERT_EQ(0u, ZMP_GetSysWorkPath(path, sizeof(path)));
    EXPECT_EQ(fixture.workPath(), path);
    GpbHost_FailAlways(GPB_HOST_MALLOC, 1);
    fixture.end();
    void *const memory = ZMP_Malloc_F(1, 1, 1, "unit", 1);
    EXPECT_NE(nullptr, memory);
    ZMP_Free_F(memory, "unit", 2);
    ASSERT_EQ(0u, ZMP_GetSysWorkPath(path, sizeof(path)));
    EXPECT_NE(fixture.workPath(), path);
}

} // namespace
