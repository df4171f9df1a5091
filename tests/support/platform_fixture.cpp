#include "support/platform_fixture.h"

#include "support/text_lines.h"

namespace gpbtest
{

void PlatformFixture::SetUp()
{
    GpbHost_SetWorkPath(workPath().c_str());
}

void PlatformFixture::TearDown()
{
    EXPECT_EQ("", joinLines(m_heldBefore.added())) << "memory is held after the test";
    expectNoMisuse();
    const std::vector<std::string> asserts = takeAsserts();
    EXPECT_EQ(m_expectedAsserts, asserts.size()) << "assertions raised:\n" << joinLines(asserts);
    GpbHost_Reset();
    GpbHost_SetWorkPath(nullptr);
}

std::vector<std::string> PlatformFixture::takeAsserts()
{
    return m_events.takeAsserts();
}

std::string PlatformFixture::takeAssertText()
{
    return joinLines(takeAsserts());
}

FaultScenario PlatformFixture::forgivingAsserts(const FaultScenario &scenario)
{
    return [this, scenario](const FaultRun &run)
    {
        scenario(run);
        const std::string asserts = takeAssertText();
        if (!run.fails())
        {
            EXPECT_EQ("", asserts) << "assertions raised although no call failed";
        }
    };
}

uint64_t PlatformFixture::failEachCall(const FaultScenario &scenario)
{
    return gpbtest::failEachCall(forgivingAsserts(scenario));
}

uint64_t PlatformFixture::failEachCallOf(GpbHostService service, const FaultScenario &scenario)
{
    return gpbtest::failEachCallOf(service, forgivingAsserts(scenario));
}

void PlatformFixture::expectNoMisuse()
{
    EXPECT_EQ("", joinLines(m_events.texts({GPB_HOST_EVENT_BAD_FREE, GPB_HOST_EVENT_OVERRUN})));
}

} // namespace gpbtest
