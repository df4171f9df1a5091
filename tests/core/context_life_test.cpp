/** The end of a context, and the settings that are plain fields of it. */
#include <string>

#include "gpb_templatelib/gpb_template.h"
#include "platform/zmp.h"
#include "support/library_fixture.h"

namespace
{

using gpbtest::joinLines;

constexpr char kProto[] = "syntax = 'proto3'; message Top { string name = 1; }";
constexpr uint32_t kTestLine = 1;
constexpr uint32_t kMapArg = 0x1234;
constexpr uint32_t kOtherMapArg = 0x5678;

uint32_t mapClass(uint32_t, const GpbCidFid *, const GpbCidFid *, GpbCidFid *)
{
    return 0;
}

uint32_t mapFieldName(uint32_t, const char *, GpbCidFid *)
{
    return 0;
}

class ContextLife : public gpbtest::LibraryFixture
{
protected:
    /** A record of the template vector with a tree of its root alone. */
    static GpbTemplateInfo *makeTemplate()
    {
        auto *const root = static_cast<ObjNode *>(
            ZMP_Malloc_F(kModuleId, g_aucZmpMemPt[0], sizeof(ObjNode), "context_life", kTestLine));
        *root = {};
        root->nodeType = GPB_OBJNODE_ROOTDOC;
        auto *const info = static_cast<GpbTemplateInfo *>(
            ZMP_Malloc_F(kModuleId, g_aucZmpMemPt[0], sizeof(GpbTemplateInfo), "context_life", kTestLine));
        *info = {1, root};
        return info;
    }
};

TEST_F(ContextLife, EndReleasesPathsFilesTemplatesVectorsPatchDirectoryAndContext)
{
    const std::string first = workDirectory().makeDirectory("app1");
    const std::string second = workDirectory().makeDirectory("app2");
    ASSERT_EQ(0u, GPBLIB_PkgAddInstallPath(context(), first.c_str()));
    ASSERT_EQ(0u, GPBLIB_PkgAddInstallPath(context(), second.c_str()));
    writeProto("m", kProto);
    ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context(), "m", 0));
    ASSERT_NE(VEC_INVALID_INDEX, VEC_VectorSet(context()->pstTemplateVec, makeTemplate()));
    const void *const files = context()->pstProtoFileVec;
    const void *const templates = context()->pstTemplateVec;

    events().clear();
    log().clear();
    destroyContext();
    EXPECT_NO_LOG(log());
    const std::vector<gpbtest::PlatformEvent> vectors = events().ofKind(GPB_HOST_EVENT_VEC_FREE);
    ASSERT_EQ(2u, vectors.size());
    EXPECT_EQ(files, vectors[0].memory);
    EXPECT_EQ(templates, vectors[1].memory);
    EXPECT_EQ(
        joinLines({"FREE gpb_template:1655", "FREE gpb_template:1655", "FREE gpb_template:1500", "FREE cmf_tree:1",
                   "FREE gpb_template:1511", "VEC_FREE " + vectors[0].site(), "FREE " + vectors[0].site(),
                   "FREE " + vectors[0].site(), "VEC_FREE " + vectors[1].site(), "FREE " + vectors[1].site(),
                   "FREE " + vectors[1].site(), "FREE gpb_template:225", "FREE gpb_template:226"}),
        joinLines(events().texts()));
    EXPECT_EQ("gpb_template", vectors[0].file);
    EXPECT_EQ("gpb_template", vectors[1].file);
}

TEST_F(ContextLife, EndOfNullDoesNothing)
{
    events().clear();
    GPBLIB_Uninitial(nullptr);
    EXPECT_EQ("", joinLines(events().texts()));
}

TEST_F(ContextLife, MemHandleIsTheModuleId)
{
    EXPECT_EQ(kModuleId, GPBLIB_GetMemHandle(context()));
    EXPECT_EQ(0u, GPBLIB_GetMemHandle(nullptr));
}

TEST_F(ContextLife, RegisteringTheClassMapClearsTheFieldNameMap)
{
    GPBLIB_RegisterFieldNameMapFunc(context(), kMapArg, mapFieldName);
    EXPECT_EQ(mapFieldName, context()->pfnFieldNameMap);
    EXPECT_EQ(nullptr, context()->pfnClassMap);
    EXPECT_EQ(kMapArg, context()->ulMapArg);

    GPBLIB_RegisterClassMapFunc(context(), kOtherMapArg, mapClass);
    EXPECT_EQ(nullptr, context()->pfnFieldNameMap);
    EXPECT_EQ(mapClass, context()->pfnClassMap);
    EXPECT_EQ(kOtherMapArg, context()->ulMapArg);
}

TEST_F(ContextLife, RegisteringTheFieldNameMapClearsTheClassMap)
{
    GPBLIB_RegisterClassMapFunc(context(), kMapArg, mapClass);
    EXPECT_EQ(mapClass, context()->pfnClassMap);
    EXPECT_EQ(nullptr, context()->pfnFieldNameMap);
    EXPECT_EQ(kMapArg, context()->ulMapArg);

    GPBLIB_RegisterFieldNameMapFunc(context(), kOtherMapArg, mapFieldName);
    EXPECT_EQ(nullptr, context()->pfnClassMap);
    EXPECT_EQ(mapFieldName, context()->pfnFieldNameMap);
    EXPECT_EQ(kOtherMapArg, context()->ulMapArg);
}

TEST_F(ContextLife, RegisteringNullClearsBothMapsAndSetsTheArgument)
{
    GPBLIB_RegisterClassMapFunc(context(), kMapArg, mapClass);
    GPBLIB_RegisterFieldNameMapFunc(context(), kOtherMapArg, nullptr);
    EXPECT_EQ(nullptr, context()->pfnClassMap);
    EXPECT_EQ(nullptr, context()->pfnFieldNameMap);
    EXPECT_EQ(kOtherMapArg, context()->ulMapArg);
}

TEST_F(ContextLife, RegisteringWithoutContextDoesNothing)
{
    const uint64_t before = GpbHost_TotalCallCount();
    GPBLIB_RegisterClassMapFunc(nullptr, kMapArg, mapClass);
    GPBLIB_RegisterFieldNameMapFunc(nullptr, kMapArg, mapFieldName);
    EXPECT_EQ(before, GpbHost_TotalCallCount());
}

TEST_F(ContextLife, ContextsAreIndependentOfEachOther)
{
    gpbtest::LogRecorder otherLog;
    const GpbLibInitParam param = otherLog.initParam(kModuleId + 1);
    GpbLibContext *const other = GPBLIB_Initial(&param);
    ASSERT_NE(nullptr, other);
    otherLog.clear();
    GPBLIB_DebugPrint(context(), GPB_LOG_SKIP, "f", 1, "one");
    GPBLIB_DebugPrint(other, GPB_LOG_SKIP, "f", 1, "other");
    EXPECT_LOG(log(), "2: one");
    EXPECT_LOG(otherLog, "2: other");
    EXPECT_EQ(kModuleId + 1, GPBLIB_GetMemHandle(other));
    EXPECT_EQ(kModuleId, GPBLIB_GetMemHandle(context()));
    GPBLIB_Uninitial(other);
}

} // namespace
