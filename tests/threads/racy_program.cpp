/**
 * Two threads that write one variable without a lock: what ThreadSanitizer has to report. scripts/test-threads runs it
 * first, so that a build in which nothing is watched cannot pass.
 *
 * With the argument "none", the same with a lock: nothing to report.
 */
#include <cstdio>
#include <cstring>
#include <mutex>
#include <thread>

namespace
{

constexpr int kRounds = 1000;

int g_count = 0;
std::mutex g_mutex;

void countUp(bool isLocked)
{
    for (int i = 0; i < kRounds; ++i)
    {
        std::unique_lock<std::mutex> lock(g_mutex, std::defer_lock);
        if (isLocked)
        {
            lock.lock();
        }
        ++g_count;
    }
}

} // namespace

int main(int argc, char **argv)
{
    const bool isLocked = argc > 1 && std::strcmp(argv[1], "none") == 0;
    std::thread other(countUp, isLocked);
    countUp(isLocked);
    other.join();
    std::printf("%d\n", g_count);
    return 0;
}
