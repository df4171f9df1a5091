/** The library's own use of the free store when that runs out: the failure its header names, no exception, and work
 * goes on.
 */
#include <google/protobuf/descriptor.h>
#include <string>

#include "core/odd_platform/free_store.h"
#include "core/odd_platform/odd_platform.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "support/library_fixture.h"
#include "support/proto_judge.h"

namespace
{

using gpbtest::failAllocation;
using gpbtest::hasAllocationFailed;

// Longer than what a string keeps inside itself.
constexpr char kLongName[] = "a_name_that_needs_memory_of_the_free_store";
constexpr char kProto[] = "syntax = 'proto3'; message Top { string a_name_that_needs_memory_of_the_free_store = 1; }";

class FreeStore : public gpbtest::LibraryFixture
{
protected:
    void SetUp() override
    {
        gpbtest::oddPlatform() = {};
        gpbtest::oddPlatform().workPath = workPath();
        LibraryFixture::SetUp();
    }

    void TearDown() override
    {
        failAllocation(0);
        LibraryFixture::TearDown();
    }
};

TEST_F(FreeStore, WithoutSourceTreeALoadFailsAndTheNextSucceeds)
{
    writeProto("m", kProto);
    recreateContext({GPB_LOG_ERROR, GPB_LOG_PROGRESS}); // closed, since the recorder needs the free store itself
    failAllocation(1);
    EXPECT_EQ(1u, GPBLIB_LoadProtoFile(context(), "m", 0, ""));
    EXPECT_TRUE(hasAllocationFailed());
    EXPECT_EQ(nullptr, context()->pstSourceTree);
    EXPECT_EQ(nullptr, context()->pstImporter);
    EXPECT_EQ(0u, GPBLIB_LoadProtoFile(context(), "m", 0, ""));
}

TEST_F(FreeStore, WithoutImporterTheTreeIsKept)
{
    ASSERT_EQ(0u, GPBLIB_ProtoTreeInitial_(context()));
    bool hasFailedForTheImporter = false;
    for (uint64_t nth = 1; !hasFailedForTheImporter; ++nth)
    {
        GPBLIB_UnloadProtoFileAll(context(), 0);
        failAllocation(nth);
        const uint32_t result = GPBLIB_ProtoTreeInitial_(context());
        ASSERT_TRUE(hasAllocationFailed()) << "the importer is never without memory";
        hasFailedForTheImporter = result != 0 && context()->pstSourceTree != nullptr;
    }
    EXPECT_EQ(nullptr, context()->pstImporter);
    EXPECT_EQ(0u, GPBLIB_ProtoTreeInitial_(context()));
    EXPECT_NE(nullptr, context()->pstImporter);
}

TEST_F(FreeStore, ATreeWithoutAllOfItsMappingsIsNotKept)
{
    // The app's directory is below a name that needs memory, as the other two are.
    const std::string app = workDirectory().makeDirectory("app");
    gpbtest::oddPlatform().directories[app] = 1;
    ASSERT_EQ(0u, GPBLIB_PkgAddInstallPath(context(), app.c_str()));
    GPBLIB_SetPatchDir(context(), "patch/");
    writeProto("in_app", "syntax = 'proto3'; message App { string a = 1; }", "app");
    writeProto("in_patch", "syntax = 'proto3'; message Patch { string p = 1; }", "patch");
    writeProto("in_fixed", kProto);
    // The importer, which comes after the tree, is left out: protobuf leaks memory when its pool cannot be made.
    uint64_t failures = 0;
    for (bool isTreeMade = false; !isTreeMade;)
    {
        GPBLIB_UnloadProtoFileAll(context(), 0);
        failAllocation(failures + 1);
        EXPECT_EQ(1u, GPBLIB_ProtoTreeInitial_(context())) << failures;
        ASSERT_TRUE(hasAllocationFailed());
        isTreeMade = context()->pstSourceTree != nullptr;
        EXPECT_EQ(nullptr, context()->pstImporter) << failures;
        for (const char *const module : {"in_app", "in_patch", "in_fixed"})
        {
            EXPECT_EQ(0u, GPBLIB_LoadProtoFile(context(), module, 0, "")) << module << " after failure " << failures;
        }
        ++failures;
    }
    EXPECT_GT(failures, 4u) << "the tree, three mappings and the importer";
}

TEST_F(FreeStore, UnloadOfAFileWithALongNameGivesUp)
{
    // A file name of usual length needs no memory.
    const std::string module(GPB_PROTO_FILE_NAME_SIZE, 'm');
    writeProto(module, kProto);
    ASSERT_EQ(0u, GPBLIB_LoadProtoFile(context(), module.c_str(), 0, ""));
    failAllocation(1);
    GPBLIB_UnloadProtoFile(context(), module.c_str());
    EXPECT_TRUE(hasAllocationFailed());
    EXPECT_NE(nullptr, Gpb_ModuleAdapt_GetFileHandle(context(), module.c_str()));
    failAllocation(1);
    EXPECT_EQ(nullptr, Gpb_ModuleAdapt_GetFileHandle(context(), module.c_str()));
    EXPECT_TRUE(hasAllocationFailed());
    GPBLIB_UnloadProtoFile(context(), module.c_str());
    EXPECT_EQ(nullptr, Gpb_ModuleAdapt_GetFileHandle(context(), module.c_str()));
}

TEST_F(FreeStore, UnloadOfAFileWithAUsualNameNeedsNone)
{
    const std::string module(GPB_PROTO_FILE_NAME_SIZE - sizeof(".proto"), 'm');
    writeProto(module, kProto);
    recreateContext({GPB_LOG_ERROR, GPB_LOG_PROGRESS}); // closed, since the recorder needs the free store itself
    ASSERT_EQ(0u, GPBLIB_LoadProtoFile(context(), module.c_str(), 0, ""));
    failAllocation(1);
    EXPECT_NE(nullptr, Gpb_ModuleAdapt_GetFileHandle(context(), module.c_str()));
    GPBLIB_UnloadProtoFile(context(), module.c_str());
    EXPECT_FALSE(hasAllocationFailed());
    EXPECT_EQ(nullptr, Gpb_ModuleAdapt_GetFileHandle(context(), module.c_str()));
}

TEST_F(FreeStore, LookupsFindNothing)
{
    gpbtest::ProtoJudge judge;
    judge.addFile("m.proto", kProto);
    const google::protobuf::Descriptor *const top = judge.findType("Top");
    const auto findNode = [top] { return GPB_FindFieldDescByNodeName(top, kLongName, 1, nullptr); };
    const auto findByPath = [top] { return Gpb_ModuleAdapt_GetFieldHandle(nullptr, top->file(), "top", kLongName); };
    const auto findMessage = [top] { return Gpb_ModuleAdapt_GetMessageDescOfField_(top, kLongName); };
    ASSERT_NE(nullptr, findNode());
    ASSERT_NE(nullptr, findByPath());
    failAllocation(1);
    EXPECT_EQ(nullptr, findByPath());
    EXPECT_TRUE(hasAllocationFailed());
    failAllocation(1);
    EXPECT_EQ(nullptr, findMessage());
    EXPECT_TRUE(hasAllocationFailed());
    failAllocation(1);
    EXPECT_EQ(nullptr, findNode());
    EXPECT_TRUE(hasAllocationFailed());
    EXPECT_NE(nullptr, findNode());
}

TEST_F(FreeStore, CollectionOfNestedCasesFails)
{
    gpbtest::ProtoJudge judge;
    judge.addFile("m.proto", "syntax = 'proto3'; message Top { message Case { message Inner { string s = 1; }"
                             " oneof inner { Inner in_case = 1; } } oneof choice { Case a = 1; } }");
    const google::protobuf::Descriptor *const top = judge.findType("Top");
    const google::protobuf::FieldDescriptor *fields[10] = {};
    uint32_t count = 0;
    failAllocation(1);
    EXPECT_EQ(1u, GPB_GetOneofCaseChilds(top, fields, 10, &count));
    EXPECT_TRUE(hasAllocationFailed());
    failAllocation(1);
    EXPECT_EQ(1u, GPB_GetEachOneofCaseChilds(top, fields, 10, &count));
    EXPECT_TRUE(hasAllocationFailed());
    EXPECT_EQ(0u, count);
    EXPECT_EQ(0u, GPB_GetOneofCaseChilds(top, fields, 10, &count));
    EXPECT_EQ(2u, count);
}

} // namespace
