/** Contexts, search paths and the registry: what comes of each failing call. */
#include "faults/fault_outcomes.h"
#include "platform/zmp.h"

namespace
{

using gpbtest::FaultResult;

constexpr const char *kProto = "syntax = 'proto3'; message Top { string name = 1; }";

class CoreOutcomes : public gpbtest::FaultOutcomes
{
protected:
    void SetUp() override
    {
        FaultOutcomes::SetUp();
        m_installed = workDirectory().makeDirectory("app");
        writeProto("installed", kProto, "app");
        writeProto("patched", kProto, "patch");
        writeProto("fixed", kProto);
    }

    /** A life that is a call with a code. */
    static FaultResult of(uint32_t code)
    {
        FaultResult result;
        result.isDone = code == 0;
        result.code = code;
        return result;
    }

    std::string m_installed;
};

TEST_F(CoreOutcomes, Context)
{
    const GpbLibInitParam param = log().initParam(kModuleId);
    expectOutcomes(
        [&]
        {
            GpbLibContext *const made = GPBLIB_Initial(&param);
            FaultResult result;
            result.isDone = made != nullptr;
            if (made != nullptr)
            {
                result.add(GPBLIB_GetPatchDir(made));
                GPBLIB_Uninitial(made);
            }
            return result;
        },
        {"MALLOC 1: none, code 0; 2 lines gone", "MALLOC 2-6: none, code 0; -1: GPBLIB_Initial end",
         "VEC_INIT 1-2: none, code 0; -1: GPBLIB_Initial end", "MEMCPY 1: none, code 0; 2 lines gone",
         "MEMSET 1: same; gpb_template:170 asserted", "MEMSET 2: same",
         "VSNPRINTF_TRUNCATED 1-2: same; gpb_template:112 asserted; a line is empty"});
}

TEST_F(CoreOutcomes, InstallPath)
{
    expectOutcomes(
        [&]
        {
            FaultResult result = of(GPBLIB_PkgAddInstallPath(context(), m_installed.c_str()));
            const uint32_t count = context()->stPkgPathList.uiCount;
            result.add(&count, sizeof(count));
            if (count == 1)
            {
                EXPECT_EQ(0u, GPBLIB_PkgDelUnInstallPath(context(), m_installed.c_str()));
            }
            return result;
        },
        {"MALLOC 1: none, code 1", "MEMSET 1: same; gpb_template:1693 asserted", "STRCPY 1: none, code 1",
         "DIR_EXIST 1: other bytes; +1: The install path not exist."});
}

TEST_F(CoreOutcomes, PatchDirectory)
{
    const auto life = [&](const char *directory)
    {
        FaultResult result = of(GPBLIB_SetPatchDir(context(), directory));
        result.add(GPBLIB_GetPatchDir(context()));
        return result;
    };
    expectOutcomes([&] { return life("patch/"); }, {"STRCPY 1: other bytes; gpb_template:1578 asserted"});
    expectOutcomes([&] { return life(nullptr); }, {"MEMSET 1: none, code 1"});
}

TEST_F(CoreOutcomes, SearchPlaces)
{
    GPBLIB_PkgAddInstallPath(context(), m_installed.c_str());
    GPBLIB_SetPatchDir(context(), "patch/");
    char place[GPB_PATH_SIZE] = {};
    const auto tell = [&](uint32_t code)
    {
        FaultResult result = of(code);
        result.add(place);
        place[0] = '\0';
        return result;
    };
    expectOutcomes([&] { return tell(GPBLIB_GetProtoAppPath(context(), "installed", place)); },
                   {"STRNCPY 1: other bytes; gpb_template:1740 asserted",
                    "SNPRINTF_TRUNCATED 1: none, code 1; gpb_template:1737 asserted", "FILE_EXIST 1: none, code 1"});
    expectOutcomes(
        [&] { return tell(GPBLIB_GetProtoFilePath(context(), place, "patched")); },
        {"MEMCPY 1: other bytes; gpb_template:284 asserted",
         "STRNCPY 1: none, code 1; gpb_template:262 asserted; +1: File (patched.proto) not exists!",
         "SNPRINTF_TRUNCATED 1: none, code 1; gpb_template:265 asserted; +1: File (patched.proto) not exists!",
         "WORK_PATH 1: none, code 1; +1: Get current work path fail!",
         "FILE_EXIST 1: none, code 1; +1: File (patched.proto) not exists!"});
    expectOutcomes([&] { return tell(GPBLIB_GetProtoFilePath(context(), place, "fixed")); },
                   {"MEMCPY 1: other bytes; gpb_template:284 asserted", "STRNCPY 1: same; gpb_template:262 asserted",
                    "STRNCPY 2: none, code 1; gpb_template:272 asserted; +1: File (fixed.proto) not exists!",
                    "SNPRINTF_TRUNCATED 1: same; gpb_template:265 asserted",
                    "SNPRINTF_TRUNCATED 2: none, code 1; gpb_template:275 asserted; +1: File () not exists!",
                    "WORK_PATH 1: none, code 1; +1: Get current work path fail!", "FILE_EXIST 1: same",
                    "FILE_EXIST 2: none, code 1; +1: File (fixed.proto) not exists!"});
}

TEST_F(CoreOutcomes, LoadAndUnload)
{
    GPBLIB_PkgAddInstallPath(context(), m_installed.c_str());
    GPBLIB_SetPatchDir(context(), "patch/");
    const auto life = [&](const char *module)
    {
        const FaultResult result = of(GPBLIB_ProtobufLoad(context(), module, 0));
        GPBLIB_UnloadProtoFile(context(), module);
        GPBLIB_UnloadProtoFileAll(context(), 0);
        return result;
    };
    expectOutcomes([&] { return life("installed"); },
                   {"MALLOC 1: none, code 1; 2 lines gone; +1: failed to malloc memory for save protofile",
                    "VEC_SET 1: none, code 1; 2 lines gone; +0: failed to save protofile fd to local",
                    "MEMSET 1: same; gpb_template:448 asserted", "STRNCPY 1: same; gpb_template:1740 asserted",
                    "STRNCPY 2: same; gpb_template:334 asserted", "STRNCPY 3: same; gpb_template:340 asserted",
                    "STRNCPY 4: same; gpb_template:394 asserted",
                    "SNPRINTF_TRUNCATED 1: none, code 1; gpb_template:1737 asserted; 4 lines gone; +1: File "
                    "(installed.proto) not exists!",
                    "VSNPRINTF_TRUNCATED 1-4: same; gpb_template:112 asserted; a line is empty", "WORK_PATH 1: same",
                    "FILE_EXIST 1: none, code 1; 4 lines gone; +1: File (installed.proto) not exists!"});
    expectOutcomes(
        [&] { return life("fixed"); },
        {"MALLOC 1: none, code 1; 2 lines gone; +1: failed to malloc memory for save protofile",
         "VEC_SET 1: none, code 1; 2 lines gone; +0: failed to save protofile fd to local",
         "MEMCPY 1: same; gpb_template:284 asserted", "MEMSET 1: same; gpb_template:448 asserted",
         "STRNCPY 1: same; gpb_template:262 asserted",
         "STRNCPY 2: none, code 1; gpb_template:272 asserted; 4 lines gone; +1: File (fixed.proto) not exists!",
         "STRNCPY 3: same; gpb_template:334 asserted",
         "STRNCPY 4: none, code 1; gpb_template:340 asserted; +0: load protofile failed",
         "STRNCPY 5: same; gpb_template:394 asserted", "SNPRINTF_TRUNCATED 1: same; gpb_template:1737 asserted",
         "SNPRINTF_TRUNCATED 2: same; gpb_template:265 asserted",
         "SNPRINTF_TRUNCATED 3: none, code 1; gpb_template:275 asserted; 4 lines gone; +1: File () not exists!",
         "VSNPRINTF_TRUNCATED 1-4: same; gpb_template:112 asserted; a line is empty",
         "WORK_PATH 1: none, code 1; 4 lines gone; +1: Get current work path fail!",
         "WORK_PATH 2: none, code 1; +0: load protofile failed", "FILE_EXIST 1-2: same",
         "FILE_EXIST 3: none, code 1; 4 lines gone; +1: File (fixed.proto) not exists!"});
}

// A file that cannot be imported is remembered as such; without fault that is what has to come of it.
TEST_F(CoreOutcomes, BadFile)
{
    writeProto("bad", "syntax = 'proto3'; nonsense");
    expectOutcomes(
        [&]
        {
            FaultResult result = of(GPBLIB_ProtobufLoad(context(), "bad", 0));
            result.isDone = GPBLIB_GetProtoFdByFileName("bad.proto", context()) != nullptr;
            EXPECT_EQ(1u, result.code);
            GPBLIB_UnloadProtoFileAll(context(), 0);
            return result;
        },
        {"MALLOC 1: none, code 1; 2 lines gone; +1: failed to malloc memory for save protofile",
         "VEC_SET 1: none, code 1; -1: GPBLIB_LoadProtoFile end ; +0: failed to save protofile fd to local",
         "MEMCPY 1: same; gpb_template:284 asserted", "MEMSET 1: same; gpb_template:448 asserted",
         "STRNCPY 1: none, code 1; gpb_template:272 asserted; 4 lines gone; +1: File (bad.proto) not exists!",
         "STRNCPY 2: same; gpb_template:340 asserted", "STRNCPY 3: same; gpb_template:394 asserted",
         "SNPRINTF_TRUNCATED 1: none, code 1; gpb_template:275 asserted; 4 lines gone; +1: File () not exists!",
         "VSNPRINTF_TRUNCATED 1-4: same; gpb_template:112 asserted; a line is empty",
         "WORK_PATH 1: none, code 1; 4 lines gone; +1: Get current work path fail!", "WORK_PATH 2: same",
         "FILE_EXIST 1: same", "FILE_EXIST 2: none, code 1; 4 lines gone; +1: File (bad.proto) not exists!"});
}

TEST_F(CoreOutcomes, ListOfFiles)
{
    ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context(), "fixed", 0));
    expectOutcomes(
        [&]
        {
            GpbProtoFileInfo *files = nullptr;
            uint32_t count = 0;
            FaultResult result = of(GPBLIB_GetAllProtoFileInfo(context(), &files, &count));
            EXPECT_EQ(result.isDone, files != nullptr);
            if (files != nullptr)
            {
                result.add(files[0].acFileName);
                ZMP_Free_F(files, "faults", 1);
            }
            return result;
        },
        {"MALLOC 1: none, code 1; +1: failed to malloc memory for get protofile info", "MEMCPY 1: none, code 1"});
}

} // namespace
