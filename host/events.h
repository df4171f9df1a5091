/** The way of platform events to the observer. */
#ifndef GPB_HOST_EVENTS_H
#define GPB_HOST_EVENTS_H

#include "platform_exports.h"

namespace host
{

/** Tells the observer, if there is one; observers are called by one thread at a time. Any thread. */
void notify(const GpbHostEvent &event);

} // namespace host

#endif
