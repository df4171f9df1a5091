/** How much stack something needs. */
#ifndef GPB_TESTS_SUPPORT_STACK_USE_H
#define GPB_TESTS_SUPPORT_STACK_USE_H

#include <cstddef>
#include <functional>

namespace gpbtest
{

/** Calls a function in a thread of its own; gives the bytes of the thread's stack that were written to. */
size_t stackUse(const std::function<void()> &body);

} // namespace gpbtest

#endif
