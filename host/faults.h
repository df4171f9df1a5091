/** Counts of the calls of each service, and the orders to fail some of them. */
#ifndef GPB_HOST_FAULTS_H
#define GPB_HOST_FAULTS_H

#include "platform_exports.h"

namespace host
{

/**
 * Counts a call of a service; every counted service asks this first.
 *
 * @return true when the call was ordered to fail. Any thread.
 */
[[nodiscard]] bool callFails(GpbHostService service);

/** Takes every order to fail back; counts stay. */
void clearFaults();

} // namespace host

#endif
