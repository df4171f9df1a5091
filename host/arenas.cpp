#include "arenas.h"

#include <mutex>
#include <sys/mman.h>

namespace
{

std::mutex g_mutex;
size_t g_arenaCount = 0;  // under g_mutex
char *g_unused = nullptr; // under g_mutex; the next region of the newest arena
char *g_end = nullptr;    // under g_mutex; of the newest arena

void enter(void *arena)
{
    size_t place = host::arenaPlaceOf(arena);
    while (host::g_arenas[place].load(std::memory_order_relaxed) != nullptr)
    {
        place = (place + 1) % host::kArenaPlaces;
    }
    host::g_arenas[place].store(arena, std::memory_order_release);
    ++g_arenaCount;
}

/** Address space that begins at a multiple of its size, or null: the middle of twice as much, the rest given back. */
char *reserveArena()
{
    constexpr size_t kSize = host::kArenaSize;
    void *const mapped =
        mmap(nullptr, 2 * kSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (mapped == MAP_FAILED)
    {
        return nullptr;
    }
    char *const begin = static_cast<char *>(mapped);
    char *const arena = static_cast<char *>(host::alignDown(begin + kSize - 1, kSize));
    const auto before = static_cast<size_t>(arena - begin);
    if (before != 0)
    {
        (void)munmap(begin, before);
    }
    (void)munmap(arena + kSize, kSize - before);
    return arena;
}

} // namespace

namespace host
{

std::atomic<void *> g_arenas[kArenaPlaces]; // written under g_mutex

void *newRegion()
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    if (g_unused == g_end)
    {
        char *const arena = g_arenaCount < kMaxArenas ? reserveArena() : nullptr;
        if (arena == nullptr)
        {
            return nullptr;
        }
        enter(arena);
        g_unused = arena;
        g_end = arena + kArenaSize;
    }
    char *const region = g_unused;
    g_unused += kRegionSize;
    return region;
}

} // namespace host
