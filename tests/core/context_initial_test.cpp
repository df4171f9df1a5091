/** Creation of a context: its steps, its memory, and what every failure exit takes back. */
#include <string>
#include <vector>

#include "gpb_templatelib/gpb_lib.h"
#include "platform/zmp.h"
#include "support/log_recorder.h"
#include "support/platform_fixture.h"

namespace
{

using gpbtest::joinLines;

constexpr uint32_t kFirstSlots = 32;
constexpr size_t kPatchDirSize = 256;

class ContextInitial : public gpbtest::PlatformFixture
{
protected:
    GpbLibContext *create()
    {
        const GpbLibInitParam param = log.initParam(kModuleId);
        return GPBLIB_Initial(&param);
    }

    /** Expects that a creation fails after exactly these platform events and messages. */
    void expectFailure(const std::vector<std::string> &expectedEvents, const std::vector<std::string> &expectedLog)
    {
        EXPECT_EQ(nullptr, create());
        EXPECT_EQ(joinLines(expectedEvents), joinLines(events().texts()));
        EXPECT_EQ(joinLines(expectedLog), log.take());
    }

    gpbtest::LogRecorder log;
};

TEST_F(ContextInitial, AllocatesInItsOrderUnderItsTags)
{
    GpbLibContext *const context = create();
    ASSERT_NE(nullptr, context);
    EXPECT_EQ(joinLines({"MALLOC gpb_template:165", "MALLOC gpb_template:182", "MALLOC gpb_template:182",
                         "VEC_INIT gpb_template:182", "MALLOC gpb_template:188", "MALLOC gpb_template:188",
                         "VEC_INIT gpb_template:188", "MALLOC gpb_template:195"}),
              joinLines(events().texts()));
    EXPECT_LOG(log, "1: GPBLIB_Initial begin", "1: GPBLIB_Initial end");
    GPBLIB_Uninitial(context);
}

TEST_F(ContextInitial, PassesModulePartitionAndSizes)
{
    GpbLibContext *const context = create();
    ASSERT_NE(nullptr, context);
    const std::vector<gpbtest::PlatformEvent> allocations = events().ofKind(GPB_HOST_EVENT_MALLOC);
    ASSERT_EQ(6u, allocations.size());
    for (const gpbtest::PlatformEvent &allocation : allocations)
    {
        EXPECT_EQ(kModuleId, allocation.moduleId) << allocation.str();
        EXPECT_EQ(g_aucZmpMemPt[0], allocation.partition) << allocation.str();
    }
    EXPECT_EQ(context, allocations.front().memory);
    EXPECT_EQ(sizeof(GpbLibContext), allocations.front().size);
    EXPECT_EQ(context->pcPatchDir, allocations.back().memory);
    EXPECT_EQ(kPatchDirSize, allocations.back().size);

    const std::vector<gpbtest::PlatformEvent> vectors = events().ofKind(GPB_HOST_EVENT_VEC_INIT);
    ASSERT_EQ(2u, vectors.size());
    EXPECT_EQ(context->pstProtoFileVec, vectors[0].memory);
    EXPECT_EQ(context->pstTemplateVec, vectors[1].memory);
    for (const gpbtest::PlatformEvent &vector : vectors)
    {
        EXPECT_EQ(kModuleId, vector.moduleId) << vector.str();
        EXPECT_EQ(kFirstSlots, vector.size) << vector.str();
    }
    GPBLIB_Uninitial(context);
}

TEST_F(ContextInitial, IsEmptyAtFirst)
{
    GpbLibContext *const context = create();
    ASSERT_NE(nullptr, context);
    EXPECT_EQ(kModuleId, context->uiModuleId);
    EXPECT_EQ(nullptr, context->pstSourceTree);
    EXPECT_EQ(nullptr, context->pstImporter);
    EXPECT_EQ(nullptr, GPBLIB_GetImporter(context));
    EXPECT_EQ(0u, VEC_VectorCount(context->pstProtoFileVec));
    EXPECT_EQ(0u, VEC_VectorCount(context->pstTemplateVec));
    EXPECT_EQ(nullptr, context->pfnClassMap);
    EXPECT_EQ(nullptr, context->pfnFieldNameMap);
    EXPECT_EQ(0u, context->ulMapArg);
    EXPECT_EQ(std::string(kPatchDirSize, '\0'), std::string(context->pcPatchDir, kPatchDirSize));
    EXPECT_EQ(0u, context->stPkgPathList.uiCount);
    EXPECT_EQ(static_cast<void *>(&context->stPkgPathList), context->stPkgPathList.pstFirst);
    EXPECT_EQ(static_cast<void *>(&context->stPkgPathList), context->stPkgPathList.pstLast);
    EXPECT_EQ(0u, context->stPkgPathList.ulHandle);
    GPBLIB_Uninitial(context);
}

TEST_F(ContextInitial, CopiesHandleAndSlotsSoThatTheRecordMayChangeAfterwards)
{
    GpbLibInitParam param = log.initParam(kModuleId);
    const GpbLibInitParam given = param;
    GpbLibContext *const context = GPBLIB_Initial(&param);
    ASSERT_NE(nullptr, context);
    param = {};
    EXPECT_EQ(log.printHandle(), context->ulPrintHandle);
    for (size_t level = 0; level < GPB_LOG_LEVELS; ++level)
    {
        EXPECT_EQ(given.astPrint[level].ulPrintArg, context->astPrint[level].ulPrintArg) << level;
        EXPECT_EQ(given.astPrint[level].pfnPrint, context->astPrint[level].pfnPrint) << level;
    }
    log.clear();
    GPBLIB_DebugPrint(context, GPB_LOG_DUMP, "f", 1, "still heard");
    EXPECT_LOG(log, "3: still heard");
    GPBLIB_Uninitial(context);
}

TEST_F(ContextInitial, WorksWithoutAnyPrintSlot)
{
    const GpbLibInitParam param = log.initParam(kModuleId, {0, 1, 2, 3});
    GpbLibContext *const context = GPBLIB_Initial(&param);
    ASSERT_NE(nullptr, context);
    GPBLIB_Uninitial(context);
    EXPECT_NO_LOG(log);
}

TEST_F(ContextInitial, GivesNothingForNull)
{
    EXPECT_EQ(nullptr, GPBLIB_Initial(nullptr));
    EXPECT_EQ("", joinLines(events().texts()));
}

TEST_F(ContextInitial, FailsSilentlyWithoutMemoryForTheContext)
{
    GpbHost_FailCall(GPB_HOST_MALLOC, 1);
    expectFailure({"MALLOC_FAILED gpb_template:165"}, {});
}

TEST_F(ContextInitial, FailsSilentlyWhenTheSlotsCannotBeCopied)
{
    GpbHost_FailCall(GPB_HOST_MEMCPY, 1);
    expectFailure({"MALLOC gpb_template:165", "FREE gpb_template:176"}, {});
}

TEST_F(ContextInitial, TakesTheContextBackWithoutFileVector)
{
    GpbHost_FailCall(GPB_HOST_VEC_INIT, 1);
    expectFailure({"MALLOC gpb_template:165", "FREE gpb_template:184"}, {"1: GPBLIB_Initial begin"});
}

TEST_F(ContextInitial, TakesTheContextBackWithoutSlotsOfTheFileVector)
{
    GpbHost_FailCall(GPB_HOST_MALLOC, 3);
    expectFailure({"MALLOC gpb_template:165", "MALLOC gpb_template:182", "MALLOC_FAILED gpb_template:182",
                   "FREE gpb_template:182", "FREE gpb_template:184"},
                  {"1: GPBLIB_Initial begin"});
}

TEST_F(ContextInitial, FreesTheFileVectorBeforeTheContextWithoutTemplateVector)
{
    GpbHost_FailCall(GPB_HOST_VEC_INIT, 2);
    expectFailure({"MALLOC gpb_template:165", "MALLOC gpb_template:182", "MALLOC gpb_template:182",
                   "VEC_INIT gpb_template:182", "VEC_FREE gpb_template:191", "FREE gpb_template:191",
                   "FREE gpb_template:191", "FREE gpb_template:191"},
                  {"1: GPBLIB_Initial begin"});
    const std::vector<gpbtest::PlatformEvent> allocations = events().ofKind(GPB_HOST_EVENT_MALLOC);
    const std::vector<gpbtest::PlatformEvent> releases = events().ofKind(GPB_HOST_EVENT_FREE);
    ASSERT_EQ(3u, releases.size());
    EXPECT_EQ(allocations[0].memory, releases[2].memory) << "the context goes last";
}

TEST_F(ContextInitial, FreesFileThenTemplateVectorThenContextWithoutPatchDirectory)
{
    GpbHost_FailCall(GPB_HOST_MALLOC, 6);
    expectFailure({"MALLOC gpb_template:165", "MALLOC gpb_template:182", "MALLOC gpb_template:182",
                   "VEC_INIT gpb_template:182", "MALLOC gpb_template:188", "MALLOC gpb_template:188",
                   "VEC_INIT gpb_template:188", "MALLOC_FAILED gpb_template:195", "VEC_FREE gpb_template:199",
                   "FREE gpb_template:199", "FREE gpb_template:199", "VEC_FREE gpb_template:199",
                   "FREE gpb_template:199", "FREE gpb_template:199", "FREE gpb_template:199"},
                  {"1: GPBLIB_Initial begin"});
    const std::vector<gpbtest::PlatformEvent> made = events().ofKind(GPB_HOST_EVENT_VEC_INIT);
    const std::vector<gpbtest::PlatformEvent> freed = events().ofKind(GPB_HOST_EVENT_VEC_FREE);
    ASSERT_EQ(2u, freed.size());
    EXPECT_EQ(made[0].memory, freed[0].memory);
    EXPECT_EQ(made[1].memory, freed[1].memory);
    EXPECT_EQ(events().ofKind(GPB_HOST_EVENT_MALLOC)[0].memory, events().ofKind(GPB_HOST_EVENT_FREE)[4].memory);
}

TEST_F(ContextInitial, IsZeroedEvenWhereZeroingFails)
{
    GpbHost_FailCall(GPB_HOST_MEMSET, 1);
    GpbLibContext *const context = create();
    ASSERT_NE(nullptr, context);
    EXPECT_EQ(1u, takeAsserts().size());
    EXPECT_EQ(nullptr, context->pstSourceTree);
    EXPECT_EQ(nullptr, context->pstImporter);
    EXPECT_EQ(nullptr, context->pfnClassMap);
    EXPECT_EQ(nullptr, context->pfnFieldNameMap);
    GPBLIB_Uninitial(context);
}

TEST_F(ContextInitial, HasNoPatchDirectoryEvenWhereClearingItFails)
{
    GpbHost_FailCall(GPB_HOST_MEMSET, 2);
    GpbLibContext *const context = create();
    ASSERT_NE(nullptr, context);
    EXPECT_STREQ("", context->pcPatchDir);
    EXPECT_LOG(log, "1: GPBLIB_Initial begin", "1: GPBLIB_Initial end");
    GPBLIB_Uninitial(context);
}

TEST_F(ContextInitial, LeavesNothingBehindWhicheverCallFails)
{
    const uint64_t calls = failEachCall(
        [this](const gpbtest::FaultRun &)
        {
            GpbLibContext *const context = create();
            if (context != nullptr)
            {
                EXPECT_EQ(kModuleId, GPBLIB_GetMemHandle(context));
                EXPECT_STREQ("", GPBLIB_GetPatchDir(context));
                GPBLIB_Uninitial(context);
            }
        });
    EXPECT_GE(calls, 13u) << "six allocations, two vectors, two fills, a copy and two messages";
}

} // namespace
