/**
 * A program's own allocator takes the place of the reference platform's, inside the reference platform too.
 *
 * A program of its own, since the override holds for everything in it.
 */
#include <cstdlib>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "gpb_templatelib/gpb_host.h"
#include "platform/vec.h"
#include "platform/yos.h"

// Programs are built with hidden visibility as well; an override has to be seen by the shared libraries.
#pragma GCC visibility push(default)
#include "platform/zmp.h"
#pragma GCC visibility pop

namespace
{

std::set<void *> g_held;
std::string g_lastFile;

} // namespace

void *ZMP_Malloc_F(uint32_t, uint8_t, size_t uiSize, const char *pcFile, uint32_t)
{
    void *const memory = std::malloc(uiSize);
    g_held.insert(memory);
    g_lastFile = pcFile;
    return memory;
}

void ZMP_Free_F(void *pvMem, const char *, uint32_t)
{
    EXPECT_EQ(1u, g_held.erase(pvMem));
    std::free(pvMem);
}

namespace
{

TEST(OverrideTest, VectorsUseTheProgramsAllocator)
{
    int item = 0;
    VecVector *const vector = VEC_VectorInit_F(1, 1, "unit", 1);
    EXPECT_EQ(2u, g_held.size());
    EXPECT_EQ("unit", g_lastFile);
    EXPECT_EQ(0u, VEC_VectorSet(vector, &item));
    EXPECT_EQ(1u, VEC_VectorSet(vector, &item)); // grows
    EXPECT_EQ(2u, g_held.size());
    VEC_VectorFree_F(vector, "unit", 2);
    EXPECT_TRUE(g_held.empty());
    EXPECT_EQ(0u, GpbHost_CallCount(GPB_HOST_MALLOC));
}

TEST(OverrideTest, StacksUseTheProgramsAllocator)
{
    void *const stack = YOS_CreateStackByHandle(ZMP_GetRelHandle(1), 1);
    EXPECT_EQ(2u, g_held.size());
    YOS_Push(stack, stack);
    YOS_Push(stack, stack); // grows
    EXPECT_EQ(2u, g_held.size());
    YOS_DeleteStack(stack);
    EXPECT_TRUE(g_held.empty());
    EXPECT_EQ(0u, GpbHost_LiveCount());
}

} // namespace
