/**
 * What sharing between threads costs, paid only by processes that have several.
 *
 * The platform is entered many times in every call of the library: a locked instruction each time would cost more than
 * the rest of a service together.
 */
#ifndef GPB_HOST_THREADS_H
#define GPB_HOST_THREADS_H

#include <atomic>
#include <cstdint>
#include <mutex>
#include <sys/single_threaded.h>

namespace host
{

/** Whether the calling thread is the only one, and stays it until it makes another. */
inline bool isOnlyThread()
{
    return __libc_single_threaded != 0;
}

/** Counts up; returns the count that this call has reached. For the only thread. */
inline uint64_t advanceAlone(std::atomic<uint64_t> &counter)
{
    const uint64_t reached = counter.load(std::memory_order_relaxed) + 1;
    counter.store(reached, std::memory_order_relaxed);
    return reached;
}

/** As above, for any thread. */
inline uint64_t advance(std::atomic<uint64_t> &counter)
{
    if (isOnlyThread())
    {
        return advanceAlone(counter);
    }
    return counter.fetch_add(1, std::memory_order_relaxed) + 1;
}

/** Holds a mutex when there are several threads. No thread may be made while it is held. */
class ThreadLock
{
public:
    explicit ThreadLock(std::mutex &mutex) : m_mutex(isOnlyThread() ? nullptr : &mutex)
    {
        if (m_mutex != nullptr)
        {
            m_mutex->lock();
        }
    }
    ~ThreadLock()
    {
        if (m_mutex != nullptr)
        {
            m_mutex->unlock();
        }
    }
    ThreadLock(const ThreadLock &) = delete;
    ThreadLock &operator=(const ThreadLock &) = delete;

private:
    std::mutex *const m_mutex;
};

} // namespace host

#endif
