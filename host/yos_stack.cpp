/** The pointer stack: an array from the platform's allocator that doubles when it is full. */
#include <cstring>

#include "faults.h"
#include "pointer_array.h"

namespace
{

constexpr const char *kFileTag = "yos_stack";
constexpr uint32_t kLineStack = 1;
constexpr uint32_t kLineItems = 2;
constexpr uint32_t kLineGrow = 3;
constexpr uint32_t kFirstGrowth = 16;

struct Stack
{
    uint32_t moduleId;
    uint32_t count;
    uint32_t room;
    void **items;
};

void **allocateItems(uint32_t moduleId, uint32_t room, uint32_t line)
{
    return static_cast<void **>(
        ZMP_Malloc_F(moduleId, g_aucZmpMemPt[0], host::pointerArrayBytes(room), kFileTag, line));
}

bool grow(Stack &stack)
{
    if (stack.room > UINT32_MAX / 2)
    {
        return false;
    }
    const uint32_t room = stack.room == 0 ? kFirstGrowth : stack.room * 2;
    void **const items = allocateItems(stack.moduleId, room, kLineGrow);
    if (items == nullptr)
    {
        return false;
    }
    std::memcpy(items, stack.items, size_t{stack.count} * sizeof(void *));
    ZMP_Free_F(stack.items, kFileTag, kLineGrow);
    stack.items = items;
    stack.room = room;
    return true;
}

} // namespace

// The handle is the module id itself: stacks need nothing else of it.
void *ZMP_GetRelHandle(uint32_t uiModuleId)
{
    return reinterpret_cast<void *>(uintptr_t{uiModuleId});
}

void *YOS_CreateStackByHandle(void *pvHandle, uint32_t uiDepth)
{
    if (host::callFails(GPB_HOST_STACK_CREATE))
    {
        return nullptr;
    }
    const auto moduleId = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(pvHandle));
    auto *const stack =
        static_cast<Stack *>(ZMP_Malloc_F(moduleId, g_aucZmpMemPt[0], sizeof(Stack), kFileTag, kLineStack));
    if (stack == nullptr)
    {
        return nullptr;
    }
    *stack = {moduleId, 0, uiDepth, allocateItems(moduleId, uiDepth, kLineItems)};
    if (stack->items == nullptr)
    {
        ZMP_Free_F(stack, kFileTag, kLineStack);
        return nullptr;
    }
    return stack;
}

uint32_t YOS_Push(void *pvStack, void *pvItem)
{
    auto *const stack = static_cast<Stack *>(pvStack);
    if (host::callFails(GPB_HOST_STACK_PUSH) || stack == nullptr)
    {
        return 1;
    }
    if (stack->count == stack->room && !grow(*stack))
    {
        return 1;
    }
    stack->items[stack->count++] = pvItem;
    return 0;
}

uint32_t YOS_Pop(void *pvStack, void **ppvItem)
{
    auto *const stack = static_cast<Stack *>(pvStack);
    if (host::callFails(GPB_HOST_STACK_POP) || stack == nullptr || ppvItem == nullptr || stack->count == 0)
    {
        return 1;
    }
    *ppvItem = stack->items[--stack->count];
    return 0;
}

uint32_t YOS_GetSize(void *pvStack)
{
    return pvStack == nullptr ? 0 : static_cast<const Stack *>(pvStack)->count;
}

void YOS_DeleteStack(void *pvStack)
{
    auto *const stack = static_cast<Stack *>(pvStack);
    if (stack == nullptr)
    {
        return;
    }
    ZMP_Free_F(stack->items, kFileTag, kLineItems);
    ZMP_Free_F(stack, kFileTag, kLineStack);
}
