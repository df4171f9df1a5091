/**
 * A test under the checking platform: it fails when it leaves memory held, releases memory that is not held, writes
 * behind an allocation, or raises an assertion that it did not announce.
 *
 * Every test has a directory of its own as system work path. Tests do not call GpbHost_Reset, which would end the
 * recording of events; the fixture takes all settings back.
 */
#ifndef GPB_TESTS_SUPPORT_PLATFORM_FIXTURE_H
#define GPB_TESTS_SUPPORT_PLATFORM_FIXTURE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/event_recorder.h"
#include "support/fail_each_call.h"
#include "support/ledger_snapshot.h"
#include "support/temp_directory.h"

namespace gpbtest
{

class PlatformFixture : public ::testing::Test
{
protected:
    /** The module id of the tests; no small number, so that it is not met by chance. */
    static constexpr uint32_t kModuleId = 0x5A0102F3;

    void SetUp() override;
    void TearDown() override;

    EventRecorder &events() { return m_events; }
    const TempDirectory &workDirectory() const { return m_workDirectory; }

    /** The system work path, ending with "/". */
    const std::string &workPath() const { return m_workDirectory.path(); }

    /** Announces how many assertions the test leaves unread; without it, none. */
    void expectAsserts(size_t count) { m_expectedAsserts = count; }

    /** "FILE:LINE" of the assertions raised since the last reading; these count as expected. */
    std::vector<std::string> takeAsserts();

    /** As takeAsserts, as one text to compare: a line each. */
    std::string takeAssertText();

    /**
     * gpbtest::failEachCall for this test: runs with a failing call may raise assertions (those of the bounds-checked
     * functions are how their failure is reported), the run without may not. The scenario may read them with
     * takeAsserts in either.
     */
    uint64_t failEachCall(const FaultScenario &scenario);
    uint64_t failEachCallOf(GpbHostService service, const FaultScenario &scenario);

    /** Fails the test when the platform has been misused so far: bad releases and overruns. Done at the end anyway. */
    void expectNoMisuse();

private:
    FaultScenario forgivingAsserts(const FaultScenario &scenario);

    LedgerSnapshot m_heldBefore;
    EventRecorder m_events;
    TempDirectory m_workDirectory;
    size_t m_expectedAsserts = 0;
};

} // namespace gpbtest

#endif
