/** The way of platform events to the observer. */
#ifndef GPB_HOST_EVENTS_H
#define GPB_HOST_EVENTS_H

#include <atomic>

#include "platform_exports.h"

namespace host
{

/** Whether there is an observer; spares making events, and the lock, where nobody listens. */
extern std::atomic<bool> g_isObserved;

inline bool isObserved()
{
    return g_isObserved.load(std::memory_order_acquire);
}

/** Tells the observer, if there is one; observers are called by one thread at a time. Any thread. */
void notify(const GpbHostEvent &event);

} // namespace host

#endif
