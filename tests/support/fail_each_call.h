/**
 * Count, then fail each one: runs a scenario once to count its calls of the platform, and then once per call with that
 * call failing.
 *
 *     failEachCall([&](const FaultRun &run) {
 *         ObjTree tree = GPBLIB_RDMI_CreateRoot(kModuleId, "top");
 *         EXPECT_EQ(run.fails(), tree == nullptr);
 *         GPBLIB_ObjTree_Delete(&tree);
 *     });
 */
#ifndef GPB_TESTS_SUPPORT_FAIL_EACH_CALL_H
#define GPB_TESTS_SUPPORT_FAIL_EACH_CALL_H

#include <cstdint>
#include <functional>

#include "gpb_templatelib/gpb_host.h"

namespace gpbtest
{

/** Which run of a scenario this is. */
struct FaultRun
{
    uint64_t failingCall; /**< number of the platform call that fails, from 1; 0 in the first run */

    bool fails() const { return failingCall != 0; }
};

using FaultScenario = std::function<void(const FaultRun &)>;

/**
 * Fails each call of any service in turn. After every run, a failing one or not, nothing that the scenario allocated
 * may be held, and the call that was to fail must have been made.
 *
 * The scenario must do the same in every run up to the failing call. Calls of all services count, those that vectors
 * and stacks make for their memory included.
 *
 * @return number of calls in the first run, each of which has been failed
 */
uint64_t failEachCall(const FaultScenario &scenario);

/** As failEachCall, for the calls of one service. */
uint64_t failEachCallOf(GpbHostService service, const FaultScenario &scenario);

} // namespace gpbtest

#endif
