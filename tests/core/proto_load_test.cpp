/** Loading of proto files: results, messages, and what is remembered. */
#include <google/protobuf/compiler/importer.h>
#include <google/protobuf/descriptor.h>
#include <new>
#include <string>
#include <vector>

#include "platform/zmp.h"
#include "support/library_fixture.h"

namespace
{

using gpbtest::joinLines;

constexpr char kProto[] = "syntax = 'proto3'; message Top { string name = 1; }";
constexpr char kBroken[] = "syntax = 'proto3'; message Top { string name = ; }";
constexpr uint32_t kArg = 0xFFFFFFFF;

class ProtoLoad : public gpbtest::LibraryFixture
{
protected:
    const GpbProtoFileInfo *record(const std::string &fileName) const
    {
        return GPBLIB_GetProtoFdByFileName(fileName.c_str(), context());
    }

    uint32_t load(const std::string &module) { return GPBLIB_ProtobufLoad(context(), module.c_str(), kArg); }
    uint32_t recordCount() const { return VEC_VectorCount(context()->pstProtoFileVec); }
};

/** A source tree that runs out of memory when a file is opened, as often as a test says. */
class ThrowingTree : public google::protobuf::compiler::DiskSourceTree
{
public:
    explicit ThrowingTree(int throws) : m_throws(throws) {}

    google::protobuf::io::ZeroCopyInputStream *Open(const std::string &file) override
    {
        if (m_throws > 0)
        {
            --m_throws;
            throw std::bad_alloc();
        }
        return DiskSourceTree::Open(file);
    }

private:
    int m_throws;
};

class ProtoLoadDeliberateOddities : public ProtoLoad
{
};

TEST_F(ProtoLoad, MakesARecordOfTheFile)
{
    writeProto("m", kProto);
    events().clear();
    EXPECT_EQ(0u, load("m"));
    EXPECT_LOG(log(), "1: GPBLIB_LoadProtoFile begin ", "1: protofile name = m.proto", "1: GPBLIB_LoadProtoFile end ");
    const std::vector<gpbtest::PlatformEvent> allocations = events().ofKind(GPB_HOST_EVENT_MALLOC);
    ASSERT_EQ(1u, allocations.size());
    EXPECT_EQ("gpb_template:443", allocations[0].site());
    EXPECT_EQ(sizeof(GpbProtoFileInfo), allocations[0].size);
    EXPECT_EQ(kModuleId, allocations[0].moduleId);
    EXPECT_EQ(g_aucZmpMemPt[0], allocations[0].partition);

    const GpbProtoFileInfo *const info = record("m.proto");
    ASSERT_NE(nullptr, info);
    EXPECT_EQ(allocations[0].memory, info);
    EXPECT_STREQ("m.proto", info->acFileName);
    EXPECT_EQ(GPB_PROTO_LOADED, info->ucLoadState);
    ASSERT_NE(nullptr, info->pstFileDesc);
    EXPECT_EQ("m.proto", info->pstFileDesc->name());
    EXPECT_EQ("Top", info->pstFileDesc->message_type(0)->name());
}

TEST_F(ProtoLoad, RemembersNoFailureOfAnImportThatRanOutOfMemory)
{
    writeProto("m", kProto);
    auto *const tree = new ThrowingTree(1);
    context()->pstSourceTree = tree;
    GPBLIB_AddDiskTreeMapPath(context());
    events().clear();
    EXPECT_EQ(1u, load("m"));
    EXPECT_LOG(log(), "1: GPBLIB_LoadProtoFile begin ", "1: protofile name = m.proto", "0: load protofile failed");
    EXPECT_EQ(joinLines({"MALLOC gpb_template:443", "FREE gpb_template:458"}), joinLines(events().texts()));
    EXPECT_EQ(0u, recordCount());
    EXPECT_EQ(0u, load("m")) << "the file is not at fault";
    EXPECT_EQ(tree, context()->pstSourceTree);
    EXPECT_EQ(1u, recordCount());
}

TEST_F(ProtoLoad, ImportsOnce)
{
    writeProto("m", kProto);
    ASSERT_EQ(0u, load("m"));
    const GpbProtoFileInfo *const first = record("m.proto");
    log().clear();
    events().clear();
    EXPECT_EQ(0u, load("m"));
    EXPECT_LOG(log(), "1: GPBLIB_LoadProtoFile begin ", "1: protofile name = m.proto",
               "1: this protofile has been loaded");
    EXPECT_EQ("", joinLines(events().texts()));
    EXPECT_EQ(first, record("m.proto"));
    EXPECT_EQ(1u, recordCount());
}

TEST_F(ProtoLoad, ThatDoesNotParseIsRememberedUntilItIsUnloaded)
{
    writeProto("m", kBroken);
    EXPECT_EQ(1u, load("m"));
    EXPECT_LOG(log(), "1: GPBLIB_LoadProtoFile begin ", "1: protofile name = m.proto", "0: load protofile failed",
               "1: GPBLIB_LoadProtoFile end ");
    const GpbProtoFileInfo *const info = record("m.proto");
    ASSERT_NE(nullptr, info);
    EXPECT_EQ(GPB_PROTO_LOAD_FAILED, info->ucLoadState);
    EXPECT_EQ(nullptr, info->pstFileDesc);

    // Even a file that has been put right is not tried again.
    writeProto("m", kProto);
    for (int again = 0; again < 2; ++again)
    {
        events().clear();
        EXPECT_EQ(1u, load("m"));
        EXPECT_LOG(log(), "1: GPBLIB_LoadProtoFile begin ", "1: protofile name = m.proto",
                   "1: this protofile has been load failed");
        EXPECT_EQ("", joinLines(events().texts()));
        EXPECT_EQ(1u, recordCount());
    }

    GPBLIB_UnloadProtoFile(context(), "m");
    log().clear();
    EXPECT_EQ(0u, load("m"));
    EXPECT_LOG(log(), "1: GPBLIB_LoadProtoFile begin ", "1: protofile name = m.proto", "1: GPBLIB_LoadProtoFile end ");
    EXPECT_EQ(1u, recordCount());
}

TEST_F(ProtoLoad, ThatStillFailsAfterItWasUnloadedIsRememberedAgain)
{
    writeProto("m", kBroken);
    for (int again = 0; again < 2; ++again)
    {
        EXPECT_EQ(1u, load("m"));
        EXPECT_LOG(log(), "1: GPBLIB_LoadProtoFile begin ", "1: protofile name = m.proto", "0: load protofile failed",
                   "1: GPBLIB_LoadProtoFile end ");
        EXPECT_EQ(1u, recordCount());
        GPBLIB_UnloadProtoFile(context(), "m");
        EXPECT_LOG(log(), "1: find protofile m.proto, unload from vector");
    }
}

TEST_F(ProtoLoad, OfFilePutRightSucceedsAfterAllIsUnloaded)
{
    writeProto("m", kBroken);
    EXPECT_EQ(1u, load("m"));
    writeProto("m", kProto);
    GPBLIB_UnloadProtoFileAll(context(), kArg);
    EXPECT_EQ(0u, load("m"));
    ASSERT_NE(nullptr, record("m.proto"));
    EXPECT_EQ(GPB_PROTO_LOADED, record("m.proto")->ucLoadState);
}

TEST_F(ProtoLoad, FailsForAFileWhoseImportIsMissingAndWorksOn)
{
    writeProto("m", "syntax = 'proto3'; import 'missing.proto'; message Top { string name = 1; }");
    writeProto("good", kProto);
    EXPECT_EQ(1u, load("m"));
    EXPECT_LOG(log(), "1: GPBLIB_LoadProtoFile begin ", "1: protofile name = m.proto", "0: load protofile failed",
               "1: GPBLIB_LoadProtoFile end ");
    EXPECT_EQ(0u, load("good"));
    EXPECT_EQ(2u, recordCount());
}

TEST_F(ProtoLoad, OfAMissingModuleMakesNoRecord)
{
    EXPECT_EQ(1u, load("missing"));
    EXPECT_LOG(log(), "1: File (missing.proto) not exists!");
    EXPECT_EQ(0u, recordCount());
}

TEST_F(ProtoLoad, LooksIntoInstallPathsBeforeTheWorkPathIsAskedFor)
{
    const std::string app = workDirectory().makeDirectory("app");
    ASSERT_EQ(0u, GPBLIB_PkgAddInstallPath(context(), app.c_str()));
    writeProto("m", kProto, "app");
    const uint64_t before = GpbHost_CallCount(GPB_HOST_WORK_PATH);
    EXPECT_EQ(0u, load("m"));
    EXPECT_EQ(before + 1, GpbHost_CallCount(GPB_HOST_WORK_PATH)) << "for the mapping alone";
    EXPECT_LOG(log(), "1: GPBLIB_LoadProtoFile begin ", "1: protofile name = m.proto", "1: GPBLIB_LoadProtoFile end ");
}

TEST_F(ProtoLoad, FailsWithoutMemoryForTheRecordAndSucceedsNextTime)
{
    writeProto("m", kProto);
    GpbHost_FailCall(GPB_HOST_MALLOC, 1);
    events().clear();
    EXPECT_EQ(1u, load("m"));
    EXPECT_LOG(log(), "1: GPBLIB_LoadProtoFile begin ", "1: protofile name = m.proto",
               "1: failed to malloc memory for save protofile");
    EXPECT_EQ("MALLOC_FAILED gpb_template:443\n", joinLines(events().texts()));
    EXPECT_EQ(0u, recordCount());
    EXPECT_EQ(0u, load("m"));
}

TEST_F(ProtoLoad, FreesARecordThatCannotBeStored)
{
    writeProto("m", kProto);
    GpbHost_FailCall(GPB_HOST_VEC_SET, 1);
    events().clear();
    EXPECT_EQ(1u, load("m"));
    EXPECT_LOG(log(), "1: GPBLIB_LoadProtoFile begin ", "1: protofile name = m.proto",
               "0: failed to save protofile fd to local");
    EXPECT_EQ(joinLines({"MALLOC gpb_template:443", "FREE gpb_template:458"}), joinLines(events().texts()));
    EXPECT_EQ(0u, recordCount());
    EXPECT_EQ(0u, load("m"));
}

TEST_F(ProtoLoad, FreesAFailedRecordThatCannotBeStored)
{
    writeProto("m", kBroken);
    GpbHost_FailCall(GPB_HOST_VEC_SET, 1);
    events().clear();
    EXPECT_EQ(1u, load("m"));
    EXPECT_LOG(log(), "1: GPBLIB_LoadProtoFile begin ", "1: protofile name = m.proto", "0: load protofile failed",
               "0: failed to save protofile fd to local");
    EXPECT_EQ(joinLines({"MALLOC gpb_template:443", "FREE gpb_template:458"}), joinLines(events().texts()));
}

TEST_F(ProtoLoad, RecordIsZeroedPaddingIncluded)
{
    writeProto("m", kProto);
    ASSERT_EQ(0u, load("m"));
    const auto *const bytes = reinterpret_cast<const unsigned char *>(record("m.proto"));
    for (size_t i = sizeof("m.proto") - 1; i < sizeof(GpbProtoFileInfo::acFileName); ++i)
    {
        EXPECT_EQ(0, bytes[i]) << i;
    }
    for (size_t i = offsetof(GpbProtoFileInfo, ucLoadState); i < sizeof(GpbProtoFileInfo); ++i)
    {
        EXPECT_EQ(0, bytes[i]) << i;
    }
}

TEST_F(ProtoLoad, FromAKnownDirectoryDoesNotTestForTheFile)
{
    writeProto("m", kProto);
    const uint64_t before = GpbHost_CallCount(GPB_HOST_FILE_EXIST);
    EXPECT_EQ(0u, GPBLIB_LoadProtoFile(context(), "m", kArg, "any directory at all"));
    EXPECT_EQ(before, GpbHost_CallCount(GPB_HOST_FILE_EXIST));
    EXPECT_LOG(log(), "1: GPBLIB_LoadProtoFile begin ", "1: protofile name = m.proto", "1: GPBLIB_LoadProtoFile end ");
}

TEST_F(ProtoLoad, TakesAModuleOfASubdirectory)
{
    writeProto("sub/m", kProto);
    EXPECT_EQ(0u, load("sub/m"));
    EXPECT_NE(nullptr, record("sub/m.proto"));
    EXPECT_EQ(nullptr, record("m.proto"));
}

TEST_F(ProtoLoadDeliberateOddities, BeginIsPrintedBeforeTheArgumentsAreTested)
{
    EXPECT_EQ(1u, GPBLIB_LoadProtoFile(context(), nullptr, kArg, "directory"));
    EXPECT_LOG(log(), "1: GPBLIB_LoadProtoFile begin ");
    EXPECT_EQ(1u, GPBLIB_LoadProtoFile(context(), "m", kArg, nullptr));
    EXPECT_LOG(log(), "1: GPBLIB_LoadProtoFile begin ");
    EXPECT_EQ(1u, GPBLIB_LoadProtoFile(nullptr, "m", kArg, "directory"));
    EXPECT_NO_LOG(log());
    EXPECT_EQ(1u, GPBLIB_ProtobufLoad(nullptr, "m", kArg));
    EXPECT_EQ(1u, GPBLIB_ProtobufLoad(context(), nullptr, kArg));
    EXPECT_NO_LOG(log());
    EXPECT_EQ(nullptr, context()->pstSourceTree);
}

TEST_F(ProtoLoadDeliberateOddities, RecordOfUnknownStateIsLoadedAgain)
{
    writeProto("m", kProto);
    ASSERT_EQ(0u, load("m"));
    auto *const info = const_cast<GpbProtoFileInfo *>(record("m.proto"));
    info->ucLoadState = 2;
    log().clear();
    EXPECT_EQ(0u, load("m"));
    EXPECT_LOG(log(), "1: GPBLIB_LoadProtoFile begin ", "1: protofile name = m.proto", "1: GPBLIB_LoadProtoFile end ");
    EXPECT_EQ(2u, recordCount());
    EXPECT_EQ(info, record("m.proto")) << "the first record of a name is the one that is found";
}

} // namespace
