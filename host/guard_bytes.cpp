#include "guard_bytes.h"

#include <algorithm>
#include <cstring>

#if defined(__SANITIZE_ADDRESS__)
#define GPB_HOST_HAS_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define GPB_HOST_HAS_ASAN 1
#endif
#endif

#ifdef GPB_HOST_HAS_ASAN
#include <sanitizer/asan_interface.h>
#endif

namespace
{

constexpr unsigned char kNewByte = 0xA5;
constexpr unsigned char kReleasedByte = 0xDD;
constexpr unsigned char kGuardByte = 0xFD;

void forbid([[maybe_unused]] const unsigned char *guard)
{
#ifdef GPB_HOST_HAS_ASAN
    __asan_poison_memory_region(guard, host::kGuardSize);
#endif
}

void allow([[maybe_unused]] const unsigned char *guard)
{
#ifdef GPB_HOST_HAS_ASAN
    __asan_unpoison_memory_region(guard, host::kGuardSize);
#endif
}

} // namespace

namespace host
{

void dressMemory(void *memory, size_t size)
{
    unsigned char *const guard = static_cast<unsigned char *>(memory) + size;
    std::memset(memory, kNewByte, size);
    std::memset(guard, kGuardByte, kGuardSize);
    forbid(guard);
}

bool undressMemory(void *memory, size_t size)
{
    const unsigned char *const guard = static_cast<unsigned char *>(memory) + size;
    allow(guard);
    const bool isWhole = std::all_of(guard, guard + kGuardSize, [](unsigned char byte) { return byte == kGuardByte; });
    std::memset(memory, kReleasedByte, size);
    return isWhole;
}

} // namespace host
