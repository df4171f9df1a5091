/** Runs one body on several threads at the same moment. */
#ifndef GPB_TESTS_SUPPORT_RUN_TOGETHER_H
#define GPB_TESTS_SUPPORT_RUN_TOGETHER_H

#include <atomic>
#include <cstddef>
#include <thread>
#include <vector>

namespace gpbtest
{

/** Runs `body` on each of `count` threads with the thread's number, from 0; all of them are let go together. */
template <typename Body>
void runTogether(size_t count, const Body &body)
{
    std::atomic<size_t> waiting{count};
    std::vector<std::thread> threads;
    for (size_t i = 0; i < count; ++i)
    {
        threads.emplace_back(
            [&, i]
            {
                --waiting;
                while (waiting != 0)
                {
                    std::this_thread::yield();
                }
                body(i);
            });
    }
    for (std::thread &thread : threads)
    {
        thread.join();
    }
}

} // namespace gpbtest

#endif
