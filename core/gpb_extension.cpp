// Which contexts have an extension on. Hosts know the layout of the context, so this is kept beside it.
#include "core/gpb_extension.h"

#include <atomic>
#include <mutex>

#include "core/gpb_memory.h"
#include "gpb_templatelib/gpb_extension.h"

namespace
{

constexpr char EXTENSION_TAG[] = "gpb_extension.cpp";
constexpr uint32_t LINE_ALLOC_ENTRY = 1;
constexpr uint32_t LINE_FREE_KNOWN_ENTRY = 2;
constexpr uint32_t LINE_FREE_ENTRY = 3;

// A context whose lossless setting is on.
struct LosslessEntry
{
    const GpbLibContext *context;
    LosslessEntry *next;
};

// No container, which the end of the process would destroy: contexts may end later than that. A process in which nobody
// switches the setting on pays for one look at the first entry.
std::atomic<LosslessEntry *> g_firstLossless{nullptr};

// Guards the list; never held while the platform is called.
std::mutex g_losslessMutex;

LosslessEntry *FindLossless(const GpbLibContext *context)
{
    LosslessEntry *entry = g_firstLossless.load(std::memory_order_relaxed);
    while (entry != nullptr && entry->context != context)
    {
        entry = entry->next;
    }
    return entry;
}

// Adds an entry; false when its context is in the list already.
bool AddLossless(LosslessEntry *entry)
{
    const std::lock_guard<std::mutex> lock(g_losslessMutex);
    if (FindLossless(entry->context) != nullptr)
    {
        return false;
    }
    entry->next = g_firstLossless.load(std::memory_order_relaxed);
    g_firstLossless.store(entry, std::memory_order_relaxed);
    return true;
}

// Takes the entry of a context out of the list; null when there is none.
LosslessEntry *TakeLossless(const GpbLibContext *context)
{
    const std::lock_guard<std::mutex> lock(g_losslessMutex);
    LosslessEntry *found = FindLossless(context);
    if (found == nullptr)
    {
        return nullptr;
    }
    LosslessEntry *first = g_firstLossless.load(std::memory_order_relaxed);
    if (first == found)
    {
        g_firstLossless.store(found->next, std::memory_order_relaxed);
        return found;
    }
    LosslessEntry *before = first;
    while (before->next != found)
    {
        before = before->next;
    }
    before->next = found->next;
    return found;
}

uint32_t SwitchLosslessOn(const GpbLibContext *context)
{
    auto *entry = static_cast<LosslessEntry *>(
        GpbMalloc(context->uiModuleId, sizeof(LosslessEntry), EXTENSION_TAG, LINE_ALLOC_ENTRY));
    if (entry == nullptr)
    {
        return 1;
    }
    *entry = {context, nullptr};
    if (!AddLossless(entry))
    {
        ZMP_Free_F(entry, EXTENSION_TAG, LINE_FREE_KNOWN_ENTRY);
    }
    return 0;
}

} // namespace

void GpbForgetExtensions(const GpbLibContext *context)
{
    LosslessEntry *entry = TakeLossless(context);
    if (entry != nullptr)
    {
        ZMP_Free_F(entry, EXTENSION_TAG, LINE_FREE_ENTRY);
    }
}

uint32_t GPBEXT_SetLossless(GpbLibContext *pstCtx, uint8_t ucOn)
{
    if (pstCtx == nullptr)
    {
        return 1;
    }
    if (ucOn != 0)
    {
        return GPBEXT_IsLossless(pstCtx) != 0 ? 0 : SwitchLosslessOn(pstCtx);
    }
    GpbForgetExtensions(pstCtx);
    return 0;
}

uint8_t GPBEXT_IsLossless(const GpbLibContext *pstCtx)
{
    if (pstCtx == nullptr || g_firstLossless.load(std::memory_order_relaxed) == nullptr)
    {
        return 0;
    }
    const std::lock_guard<std::mutex> lock(g_losslessMutex);
    return FindLossless(pstCtx) == nullptr ? 0 : 1;
}
