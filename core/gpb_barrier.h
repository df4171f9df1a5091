// The barrier at the library's boundary: no exception crosses it.
#ifndef GPB_CORE_GPB_BARRIER_H
#define GPB_CORE_GPB_BARRIER_H

#include <utility>

/// Runs `body`; what it throws (std::bad_alloc, protobuf's fatal errors) becomes the failure its header names.
template <typename Result, typename Body>
Result GpbNoThrow(Result failure, Body &&body) noexcept
{
    try
    {
        return std::forward<Body>(body)();
    }
    catch (...)
    {
        return failure;
    }
}

/// As above for operations without a result.
template <typename Body>
void GpbNoThrow(Body &&body) noexcept
{
    try
    {
        std::forward<Body>(body)();
    }
    catch (...) // NOLINT(bugprone-empty-catch): nothing can be reported, what was done so far stands
    {
    }
}

#endif
