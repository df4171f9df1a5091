/** The diagnostic channel: slots, cutting, and what a failing formatter leaves. */
#include <cstdint>
#include <cstdio>
#include <string>

#include "core/gpb_log.h"
#include "support/library_fixture.h"

namespace
{

constexpr size_t kMaxMessage = 1023;
constexpr uint32_t kNoLevel = GPB_LOG_LEVELS;

/** What the last call of a callback was given. */
struct PrintCall
{
    uint32_t handle;
    uint32_t arg;
    std::string tag;
    std::string text;
    uint32_t count;
};

PrintCall g_call;

uint32_t keepCall(uint32_t handle, uint32_t arg, const char *tag, const char *text)
{
    g_call = {handle, arg, tag, text, g_call.count + 1};
    return 1; // a result that must not matter
}

class DebugPrint : public gpbtest::LibraryFixture
{
};

TEST_F(DebugPrint, HandsHandleSlotArgumentTagAndTextToTheSlotOfTheLevel)
{
    for (uint32_t level = 0; level < GPB_LOG_LEVELS; ++level)
    {
        GpbLibContext local = {};
        local.ulPrintHandle = 0xFFFFFFF0;
        local.astPrint[level] = {100 + level, keepCall};
        g_call = {};
        GPBLIB_DebugPrint(&local, level, "function", 4711, "%s is %d", "answer", 42);
        EXPECT_EQ(1u, g_call.count);
        EXPECT_EQ(0xFFFFFFF0u, g_call.handle);
        EXPECT_EQ(100 + level, g_call.arg);
        EXPECT_EQ("NULL", g_call.tag);
        EXPECT_EQ("answer is 42", g_call.text);
    }
}

TEST_F(DebugPrint, AddsNeitherFunctionNorLineNorLineFeed)
{
    GPBLIB_DebugPrint(context(), GPB_LOG_ERROR, "SomeFunction", 4711, "text");
    GPBLIB_DebugPrint(context(), GPB_LOG_PROGRESS, nullptr, 0, "%s", "");
    EXPECT_LOG(log(), "0: text", "1: ");
}

TEST_F(DebugPrint, CutsAMessageTo1023Characters)
{
    for (const size_t length : {kMaxMessage - 1, kMaxMessage, kMaxMessage + 1, kMaxMessage + 2, size_t{5000}})
    {
        const std::string text(length, 'x');
        GPBLIB_DebugPrint(context(), GPB_LOG_ERROR, "f", 1, "%s", text.c_str());
        ASSERT_EQ(1u, log().lines().size());
        EXPECT_EQ(text.substr(0, kMaxMessage), log().lines()[0].text) << length;
        log().clear();
    }
}

TEST_F(DebugPrint, FormatsNothingForAClosedLevel)
{
    recreateContext({GPB_LOG_SKIP});
    const uint64_t before = GpbHost_TotalCallCount();
    GPBLIB_DebugPrint(context(), GPB_LOG_SKIP, "f", 1, "%s", "unheard");
    EXPECT_EQ(before, GpbHost_TotalCallCount());
    GPBLIB_DebugPrint(context(), GPB_LOG_DUMP, "f", 1, "%s", "heard");
    EXPECT_EQ(before + 1, GpbHost_TotalCallCount());
    EXPECT_LOG(log(), "3: heard");
}

// The macro is the library's own; what it evaluates shows in what a level costs only.
TEST_F(DebugPrint, EachLevelWithEachSetOfSlotsComputesAndSaysWhatSomebodyHears)
{
    size_t cases = 0;
    uint32_t computed = 0;
    const auto compute = [&computed] { return ++computed; };
    for (uint32_t open = 0; open < (1U << GPB_LOG_LEVELS); ++open)
    {
        GpbLibContext local = {};
        for (uint32_t level = 0; level < GPB_LOG_LEVELS; ++level)
        {
            local.astPrint[level] = {level, (open >> level & 1) != 0 ? keepCall : nullptr};
        }
        for (uint32_t level = 0; level < GPB_LOG_LEVELS; ++level)
        {
            const uint32_t heard = open >> level & 1;
            g_call = {};
            GPBLIB_DebugPrint(&local, level, "f", 1, "%s", "text");
            EXPECT_EQ(heard, g_call.count) << open << " " << level;
            computed = 0;
            GPB_LOG(&local, level, 1, "%u", compute());
            EXPECT_EQ(heard, computed) << open << " " << level;
            EXPECT_EQ(2 * heard, g_call.count) << open << " " << level;
            EXPECT_EQ(heard != 0 ? "1" : "", g_call.text);
            EXPECT_EQ(heard != 0 ? level : 0, g_call.arg);
            cases += 2;
        }
    }
    computed = 0;
    GPB_LOG(nullptr, GPB_LOG_ERROR, 1, "%u", compute());
    EXPECT_EQ(0u, computed);
    std::printf("print levels: %zu cases\n", cases);
}

TEST_F(DebugPrint, AllocatesNothing)
{
    const uint64_t before = GpbHost_CallCount(GPB_HOST_MALLOC);
    GPBLIB_DebugPrint(context(), GPB_LOG_ERROR, "f", 1, "%1000d", 1);
    EXPECT_EQ(before, GpbHost_CallCount(GPB_HOST_MALLOC));
}

TEST_F(DebugPrint, AssertsAndGoesOnWithTheEmptyBufferWhenFormattingFails)
{
    GpbHost_FailCall(GPB_HOST_VSNPRINTF_TRUNCATED, 1);
    GPBLIB_DebugPrint(context(), GPB_LOG_ERROR, "f", 1, "%s", "lost");
    EXPECT_LOG(log(), "0: ");
    EXPECT_EQ("gpb_template:112\n", takeAssertText());
}

TEST_F(DebugPrint, SaysNothingWithoutContextOrForALevelThatIsNone)
{
    GPBLIB_DebugPrint(nullptr, GPB_LOG_ERROR, "f", 1, "nobody");
    GPBLIB_DebugPrint(context(), kNoLevel, "f", 1, "nobody");
    GPBLIB_DebugPrint(context(), UINT32_MAX, "f", 1, "nobody");
    EXPECT_NO_LOG(log());
}

} // namespace
