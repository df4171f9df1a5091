/** What services have to look out for. Most calls have nothing to, and a way that is as short as it can be. */
#ifndef GPB_HOST_ATTENTION_H
#define GPB_HOST_ATTENTION_H

#include <cstdint>

#include "threads.h"

namespace host
{

/** Each is a bit. */
enum Attention : uint32_t
{
    kOrders = 1,  /**< some order to fail a call has been given since all were taken back */
    kObserver = 2 /**< there is an observer of events */
};

[[gnu::visibility("hidden")]] extern SharedNumber<uint32_t> g_attention;

inline bool isAttentionPaidTo(Attention matter)
{
    return (g_attention.load() & matter) != 0;
}

inline void payAttentionTo(Attention matter)
{
    g_attention.setBits(matter);
}

inline void stopAttentionTo(Attention matter)
{
    g_attention.clearBits(matter);
}

/** Neither another thread, nor an order, nor an observer: a call need only do its work, and be counted. */
[[nodiscard]] inline bool isUndisturbed()
{
    return isOnlyThread() && g_attention.alone() == 0;
}

} // namespace host

#endif
