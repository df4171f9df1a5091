/** Whole scenarios of the core with each call of the platform failing in turn: nothing leaks, and the context works on.
 */
#include <string>

#include "platform/zmp.h"
#include "support/library_fixture.h"

namespace
{

constexpr char kProto[] = "syntax = 'proto3'; message Top { string name = 1; }";
constexpr char kBroken[] = "syntax = 'proto3'; nonsense";
constexpr uint32_t kTestLine = 1;

class CoreFaults : public gpbtest::LibraryFixture
{
};

TEST_F(CoreFaults, InstallPaths)
{
    const std::string path = workDirectory().makeDirectory("app");
    failEachCall(
        [&](const gpbtest::FaultRun &run)
        {
            const uint32_t result = GPBLIB_PkgAddInstallPath(context(), path.c_str());
            const bool isAdded = context()->stPkgPathList.uiCount == 1;
            EXPECT_TRUE(run.fails() || isAdded);
            EXPECT_TRUE(result == 0 || !isAdded);
            EXPECT_EQ(0u, GPBLIB_PkgDelUnInstallPath(context(), path.c_str()));
            EXPECT_EQ(0u, context()->stPkgPathList.uiCount);
        });
}

TEST_F(CoreFaults, LoadingAndListing)
{
    writeProto("m", kProto, "app");
    writeProto("n", kProto, "patch");
    writeProto("bad", kBroken);
    const std::string path = workDirectory().path() + "app/";
    ASSERT_EQ(0u, GPBLIB_PkgAddInstallPath(context(), path.c_str()));
    GPBLIB_SetPatchDir(context(), "patch/");
    failEachCall(
        [&](const gpbtest::FaultRun &run)
        {
            const uint32_t first = GPBLIB_ProtobufLoad(context(), "m", 0);
            EXPECT_TRUE(run.fails() || first == 0);
            GPBLIB_ProtobufLoad(context(), "n", 0);
            EXPECT_EQ(1u, GPBLIB_ProtobufLoad(context(), "bad", 0));
            GpbProtoFileInfo *array = nullptr;
            uint32_t count = 0;
            if (GPBLIB_GetAllProtoFileInfo(context(), &array, &count) == 0)
            {
                EXPECT_LE(count, 3u);
                ZMP_Free_F(array, "core_faults", kTestLine);
            }
            else
            {
                EXPECT_EQ(nullptr, array);
            }
            GPBLIB_UnloadProtoFile(context(), "n");
            GPBLIB_UnloadProtoFileAll(context(), 0);
            EXPECT_EQ(0u, VEC_VectorCount(context()->pstProtoFileVec));
        });
    EXPECT_EQ(0u, GPBLIB_ProtobufLoad(context(), "m", 0)) << "after all that the context still loads";
}

TEST_F(CoreFaults, WholeLife)
{
    const std::string path = workDirectory().makeDirectory("app");
    writeProto("m", kProto, "app");
    failEachCall(
        [&](const gpbtest::FaultRun &run)
        {
            gpbtest::LogRecorder ownLog;
            const GpbLibInitParam param = ownLog.initParam(kModuleId);
            GpbLibContext *const own = GPBLIB_Initial(&param);
            if (own == nullptr)
            {
                EXPECT_TRUE(run.fails());
                return;
            }
            GPBLIB_SetPatchDir(own, "patch/");
            GPBLIB_PkgAddInstallPath(own, path.c_str());
            const uint32_t first = GPBLIB_ProtobufLoad(own, "m", 0);
            const uint32_t second = GPBLIB_ProtobufLoad(own, "m", 0);
            EXPECT_TRUE(run.fails() || (first == 0 && second == 0));
            GPBLIB_Uninitial(own);
        });
}

} // namespace
