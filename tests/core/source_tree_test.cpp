/** The protobuf source tree: when it is made, from what, and which place the importer reads a file from. */
#include <google/protobuf/compiler/importer.h>
#include <google/protobuf/descriptor.h>
#include <string>

#include "core/path_lengths.h"
#include "support/library_fixture.h"

namespace
{

constexpr size_t kMaxPath = 255;
constexpr char kFixed[] = "reslink/protobuf";

class SourceTree : public gpbtest::LibraryFixture
{
protected:
    /** Writes m.proto into a directory, marked with a name of that place. */
    void writeMarked(const std::string &directory, const std::string &mark) const
    {
        writeProto("m", "syntax = 'proto3'; message " + mark + " { string name = 1; }", directory);
    }

    std::string addApp(const std::string &relative)
    {
        const std::string path = workDirectory().makeDirectory(relative);
        EXPECT_EQ(0u, GPBLIB_PkgAddInstallPath(context(), path.c_str()));
        return path;
    }

    /** Loads m.proto past the existence test and tells from which place the importer took it; "(none)" on failure. */
    std::string loadedMark()
    {
        const uint32_t result = GPBLIB_LoadProtoFile(context(), "m", 0, "anywhere");
        const GpbProtoFileInfo *const info = GPBLIB_GetProtoFdByFileName("m.proto", context());
        EXPECT_EQ(result == 0, info != nullptr && info->pstFileDesc != nullptr);
        return result == 0 ? info->pstFileDesc->message_type(0)->name() : "(none)";
    }

    std::string reloadedMark()
    {
        GPBLIB_UnloadProtoFileAll(context(), 0);
        return loadedMark();
    }
};

class SourceTreeDeliberateOddities : public SourceTree
{
};

TEST_F(SourceTree, IsMadeAtTheFirstLoadAndKept)
{
    EXPECT_EQ(nullptr, context()->pstSourceTree);
    EXPECT_EQ(nullptr, GPBLIB_GetImporter(context()));
    writeMarked(kFixed, "Fixed");
    ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context(), "m", 0));
    GpbPbSourceTree *const tree = context()->pstSourceTree;
    GpbPbImporter *const importer = GPBLIB_GetImporter(context());
    EXPECT_NE(nullptr, tree);
    ASSERT_NE(nullptr, importer);
    EXPECT_EQ(context()->pstImporter, importer);
    EXPECT_NE(nullptr, importer->pool()->FindMessageTypeByName("Fixed"));

    EXPECT_EQ(0u, GPBLIB_ProtoTreeInitial_(context()));
    EXPECT_EQ(tree, context()->pstSourceTree);
    EXPECT_EQ(importer, context()->pstImporter);
    EXPECT_EQ(nullptr, GPBLIB_GetImporter(nullptr));
}

TEST_F(SourceTree, IsMadeEvenByALoadThatFindsNothingToImport)
{
    EXPECT_EQ(1u, GPBLIB_LoadProtoFile(context(), "missing", 0, "anywhere"));
    EXPECT_NE(nullptr, context()->pstSourceTree);
    EXPECT_NE(nullptr, context()->pstImporter);
}

TEST_F(SourceTree, IsNotMadeByALoadThatFindsNoFile)
{
    EXPECT_EQ(1u, GPBLIB_ProtobufLoad(context(), "missing", 0));
    EXPECT_EQ(nullptr, context()->pstSourceTree);
    EXPECT_EQ(nullptr, context()->pstImporter);
}

TEST_F(SourceTree, GetsANewImporterOverAnOldTree)
{
    ASSERT_EQ(0u, GPBLIB_ProtoTreeInitial_(context()));
    GpbPbSourceTree *const tree = context()->pstSourceTree;
    delete context()->pstImporter;
    context()->pstImporter = nullptr;
    EXPECT_EQ(0u, GPBLIB_ProtoTreeInitial_(context()));
    EXPECT_EQ(tree, context()->pstSourceTree);
    EXPECT_NE(nullptr, context()->pstImporter);
}

TEST_F(SourceTree, IsDeletedWithItsImporter)
{
    ASSERT_EQ(0u, GPBLIB_ProtoTreeInitial_(context()));
    GPBLIB_ProtoTreeUninitial_(context());
    EXPECT_EQ(nullptr, context()->pstImporter);
    EXPECT_EQ(nullptr, context()->pstSourceTree);
    GPBLIB_ProtoTreeUninitial_(context());
    EXPECT_EQ(nullptr, context()->pstImporter);
    EXPECT_NO_LOG(log());
}

TEST_F(SourceTree, MapsInstallPathsThenPatchDirectoryThenFixedDirectory)
{
    const std::string first = addApp("app1");
    const std::string second = addApp("app2");
    ASSERT_EQ(0u, GPBLIB_SetPatchDir(context(), "patch/"));
    writeMarked("app1", "First");
    writeMarked("app2", "Second");
    writeMarked("patch", "Patch");
    writeMarked(kFixed, "Fixed");
    EXPECT_EQ("First", loadedMark());
    GPBLIB_PkgDelUnInstallPath(context(), first.c_str());
    EXPECT_EQ("Second", reloadedMark());
    GPBLIB_PkgDelUnInstallPath(context(), second.c_str());
    EXPECT_EQ("Patch", reloadedMark());
    GPBLIB_SetPatchDir(context(), nullptr);
    EXPECT_EQ("Fixed", reloadedMark());
}

TEST_F(SourceTree, FollowsTheOrderOfAddingNotTheNames)
{
    addApp("zebra");
    addApp("ant");
    writeMarked("zebra", "Zebra");
    writeMarked("ant", "Ant");
    EXPECT_EQ("Zebra", loadedMark());
}

TEST_F(SourceTree, LetsAFileImportFromOtherPlaces)
{
    addApp("app");
    writeProto("m", "syntax = 'proto3'; import 'types.proto'; message Top { Type type = 1; }", "app");
    writeProto("types", "syntax = 'proto3'; message Type { string name = 1; }");
    EXPECT_EQ("Top", loadedMark());
}

TEST_F(SourceTree, MapsNothingWithoutATree)
{
    addApp("app");
    const uint64_t before = GpbHost_TotalCallCount();
    GPBLIB_AddDiskTreeMapPath(context());
    GPBLIB_AddAppPathToDiskTree(context());
    EXPECT_EQ(before, GpbHost_TotalCallCount());
    EXPECT_EQ(nullptr, context()->pstSourceTree);
}

TEST_F(SourceTree, MapsInstallPathsOnlyWithoutWorkPath)
{
    addApp("app");
    writeMarked(kFixed, "Fixed");
    GpbHost_FailCall(GPB_HOST_WORK_PATH, 1);
    EXPECT_EQ("(none)", loadedMark());
    EXPECT_LOG(log(), "1: GPBLIB_LoadProtoFile begin ", "1: protofile name = m.proto", "0: load protofile failed",
               "1: GPBLIB_LoadProtoFile end ");
    writeMarked("app", "App");
    GpbHost_FailCall(GPB_HOST_WORK_PATH, 1);
    EXPECT_EQ("App", reloadedMark());
}

TEST_F(SourceTree, StopsAtAnInstallPathWithoutText)
{
    addApp("app1");
    addApp("app2");
    writeMarked("app2", "Second");
    writeMarked(kFixed, "Fixed");
    auto *const first = reinterpret_cast<GpbPkgPathNode *>(context()->stPkgPathList.pstFirst);
    char *const text = first->pcPath;
    first->pcPath = nullptr;
    EXPECT_EQ("Fixed", loadedMark()) << "the places below the work path are mapped all the same";
    first->pcPath = text;
    EXPECT_EQ("Second", reloadedMark());
}

TEST_F(SourceTree, AssertsWhenThePatchDirectoryCannotBeAppendedAndMapsTheWorkPath)
{
    GPBLIB_SetPatchDir(context(), "patch/");
    writeMarked("patch", "Patch");
    writeMarked("", "Work");
    writeMarked(kFixed, "Fixed");
    GpbHost_FailCall(GPB_HOST_STRNCPY, 1);
    EXPECT_EQ("Work", loadedMark());
    EXPECT_EQ("gpb_template:334\n", takeAssertText());
}

TEST_F(SourceTree, AssertsWhenTheFixedDirectoryCannotBeAppendedAndMapsTheWorkPath)
{
    writeMarked("", "Work");
    writeMarked(kFixed, "Fixed");
    GpbHost_FailCall(GPB_HOST_STRNCPY, 1);
    EXPECT_EQ("Work", loadedMark());
    EXPECT_EQ("gpb_template:340\n", takeAssertText());
}

TEST_F(SourceTree, TakesAPatchDirectoryUpTo255CharactersInAll)
{
    const std::string fits = gpbtest::directoryUpToLength(workPath(), kMaxPath);
    GPBLIB_SetPatchDir(context(), fits.c_str());
    writeMarked(fits, "Patch");
    writeMarked("", "Work");
    EXPECT_EQ("Patch", loadedMark());
    EXPECT_EQ("", takeAssertText());

    const std::string tooLong = gpbtest::directoryUpToLength(workPath(), kMaxPath + 1);
    GPBLIB_SetPatchDir(context(), tooLong.c_str());
    writeMarked(tooLong, "Patch");
    EXPECT_EQ("Work", reloadedMark());
    EXPECT_EQ("gpb_template:334\n", takeAssertText());
}

TEST_F(SourceTree, TakesAFixedDirectoryUpTo255CharactersInAll)
{
    const size_t longestWorkPath = kMaxPath - (sizeof(kFixed) - 1);
    for (const size_t length : {longestWorkPath, longestWorkPath + 1})
    {
        const std::string relative = gpbtest::directoryUpToLength(workPath(), length);
        GpbHost_SetWorkPath(workDirectory().makeDirectory(relative).c_str());
        writeMarked(relative + kFixed, "Fixed");
        writeMarked(relative, "Work");
        const bool fits = length == longestWorkPath;
        EXPECT_EQ(fits ? "Fixed" : "Work", reloadedMark());
        EXPECT_EQ(fits ? "" : "gpb_template:340\n", takeAssertText());
    }
}

TEST_F(SourceTree, NullContextIsLeftAlone)
{
    GPBLIB_AddDiskTreeMapPath(nullptr);
    GPBLIB_AddAppPathToDiskTree(nullptr);
    GPBLIB_ProtoTreeUninitial_(nullptr);
    EXPECT_NE(0u, GPBLIB_ProtoTreeInitial_(nullptr));
}

TEST_F(SourceTreeDeliberateOddities, PathAddedAfterTheFirstLoadIsFoundButNotImportedUntilAllIsUnloaded)
{
    writeProto("other", "syntax = 'proto3';");
    ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context(), "other", 0));
    const std::string app = addApp("app");
    writeMarked("app", "App");
    log().clear();

    char out[GPB_PATH_SIZE] = {};
    EXPECT_EQ(0u, GPBLIB_GetProtoAppPath(context(), "m", out));
    EXPECT_EQ(app, out);
    EXPECT_EQ(1u, GPBLIB_ProtobufLoad(context(), "m", 0));
    EXPECT_LOG(log(), "1: GPBLIB_LoadProtoFile begin ", "1: protofile name = m.proto", "0: load protofile failed",
               "1: GPBLIB_LoadProtoFile end ");
    EXPECT_EQ("App", reloadedMark());
}

TEST_F(SourceTreeDeliberateOddities, RemovedPathStaysMappedUntilAllIsUnloaded)
{
    const std::string app = addApp("app");
    writeMarked("app", "App");
    writeMarked(kFixed, "Fixed");
    ASSERT_EQ(0u, GPBLIB_ProtoTreeInitial_(context()));
    GPBLIB_PkgDelUnInstallPath(context(), app.c_str());
    EXPECT_EQ("App", loadedMark());
    EXPECT_EQ("Fixed", reloadedMark());
}

TEST_F(SourceTreeDeliberateOddities, PatchDirectorySetAfterTheFirstLoadIsNotImportedFromUntilAllIsUnloaded)
{
    ASSERT_EQ(0u, GPBLIB_ProtoTreeInitial_(context()));
    GPBLIB_SetPatchDir(context(), "patch/");
    writeMarked("patch", "Patch");
    writeMarked(kFixed, "Fixed");
    EXPECT_EQ("Fixed", loadedMark());
    EXPECT_EQ("Patch", reloadedMark());
}

TEST_F(SourceTreeDeliberateOddities, InstallPathWithoutSlashIsTestedAndOpenedUnderDifferentNames)
{
    const std::string app = workDirectory().makeDirectory("app");
    const std::string bare = app.substr(0, app.size() - 1);
    ASSERT_EQ(0u, GPBLIB_PkgAddInstallPath(context(), bare.c_str()));
    writeMarked("app", "App");
    EXPECT_EQ(1u, GPBLIB_ProtobufLoad(context(), "m", 0)) << "the existence test looks for appm.proto";
    EXPECT_LOG(log(), "1: File (m.proto) not exists!");
    EXPECT_EQ("App", loadedMark()) << "the importer adds the slash";
}

} // namespace
