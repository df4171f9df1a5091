/**
 * What sharing between threads costs, paid only by processes that have several.
 *
 * The platform is entered many times in every call of the library: a locked instruction each time would cost more than
 * the rest of a service together.
 */
#ifndef GPB_HOST_THREADS_H
#define GPB_HOST_THREADS_H

#include <mutex>
#include <sys/single_threaded.h>

namespace host
{

/** Whether the calling thread is the only one, and stays it until it makes another. */
inline bool isOnlyThread()
{
    return __libc_single_threaded != 0;
}

/**
 * A number that threads may share. Not a std::atomic, whose every access compilers take word by word: the only thread
 * has nobody to share with and uses the number like any other.
 */
template <typename Number>
class SharedNumber
{
public:
    /** For the only thread. */
    Number &alone() { return m_number; }

    Number load() const { return __atomic_load_n(&m_number, __ATOMIC_ACQUIRE); }

    /** For the only thread or any other; returns the new number. */
    Number advance()
    {
        return isOnlyThread() ? ++m_number : __atomic_add_fetch(&m_number, Number{1}, __ATOMIC_RELAXED);
    }

    void setBits(Number bits) { __atomic_or_fetch(&m_number, bits, __ATOMIC_RELEASE); }
    void clearBits(Number bits) { __atomic_and_fetch(&m_number, static_cast<Number>(~bits), __ATOMIC_RELEASE); }

private:
    alignas(sizeof(Number)) Number m_number = 0;
};

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
