/** The searches of the core on a platform that answers oddly: what is asked in which order, and which answers count. */
#include <string>
#include <vector>

#include "core/odd_platform/odd_platform.h"
#include "support/library_fixture.h"

namespace
{

using gpbtest::joinLines;
using gpbtest::oddPlatform;

constexpr size_t kMaxPath = 255;
constexpr size_t kBufferSize = 256;

class OddPlatformSearch : public gpbtest::LibraryFixture
{
protected:
    void SetUp() override
    {
        oddPlatform() = {};
        oddPlatform().workPath = "/device/";
        LibraryFixture::SetUp();
    }

    void addApp(const std::string &path)
    {
        oddPlatform().directories[path] = 1;
        ASSERT_EQ(0u, GPBLIB_PkgAddInstallPath(context(), path.c_str()));
    }

    uint32_t find(std::string &out)
    {
        out.assign(kBufferSize, '\0');
        const uint32_t result = GPBLIB_GetProtoFilePath(context(), out.data(), "m");
        out = out.c_str();
        return result;
    }
};

TEST_F(OddPlatformSearch, AsksInstallPathsThenPatchDirectoryThenFixedDirectory)
{
    addApp("/b/");
    addApp("/a");
    GPBLIB_SetPatchDir(context(), "patch/");
    EXPECT_EQ(1u, GPBLIB_ProtobufLoad(context(), "m", 0));
    EXPECT_EQ(joinLines({"/b/m.proto", "/am.proto", "/device/patch/m.proto", "/device/reslink/protobuf/m.proto"}),
              joinLines(oddPlatform().askedFiles));
    EXPECT_LOG(log(), "1: File (m.proto) not exists!");
}

TEST_F(OddPlatformSearch, StopsAskingAtTheFirstHit)
{
    addApp("/a/");
    addApp("/b/");
    oddPlatform().files = {{"/a/m.proto", 1}, {"/b/m.proto", 1}};
    EXPECT_EQ(1u, GPBLIB_ProtobufLoad(context(), "m", 0)) << "found, but not there to be imported";
    EXPECT_EQ("/a/m.proto\n", joinLines(oddPlatform().askedFiles));
    EXPECT_LOG(log(), "1: GPBLIB_LoadProtoFile begin ", "1: protofile name = m.proto", "0: load protofile failed",
               "1: GPBLIB_LoadProtoFile end ");
}

TEST_F(OddPlatformSearch, FileTestCountsOnlyWhenItIsExactlyOne)
{
    addApp("/a/");
    GPBLIB_SetPatchDir(context(), "patch/");
    for (const uint32_t odd : {0u, 2u, 0x80000001u, 0xFFFFFFFFu})
    {
        oddPlatform().files = {
            {"/a/m.proto", odd}, {"/device/patch/m.proto", odd}, {"/device/reslink/protobuf/m.proto", odd}};
        char app[kBufferSize] = {};
        EXPECT_EQ(1u, GPBLIB_GetProtoAppPath(context(), "m", app)) << odd;
        std::string out;
        EXPECT_EQ(1u, find(out)) << odd;
        EXPECT_LOG(log(), "1: File (m.proto) not exists!");
    }
}

TEST_F(OddPlatformSearch, DirectoryTestCountsOnlyWhenItIsExactlyOne)
{
    for (const uint32_t odd : {0u, 2u, 0x80000001u, 0xFFFFFFFFu})
    {
        oddPlatform().directories["/a/"] = odd;
        EXPECT_EQ(0u, GPBLIB_PkgAddInstallPath(context(), "/a/"));
        EXPECT_LOG(log(), "1: The install path not exist.");
        EXPECT_EQ(0u, context()->stPkgPathList.uiCount);
    }
}

TEST_F(OddPlatformSearch, DuplicateIsNotAskedFor)
{
    addApp("/a/");
    oddPlatform().askedDirectories.clear();
    EXPECT_EQ(0u, GPBLIB_PkgAddInstallPath(context(), "/a/"));
    EXPECT_TRUE(oddPlatform().askedDirectories.empty());
}

TEST_F(OddPlatformSearch, WorkPathOf256CharactersIsTooLong)
{
    oddPlatform().workPath.assign(kMaxPath + 1, 'w');
    std::string out;
    EXPECT_EQ(1u, find(out));
    EXPECT_EQ("", out);
    EXPECT_LOG(log(), "1: Work path tool long (256)!");
    EXPECT_TRUE(oddPlatform().askedFiles.empty());
}

TEST_F(OddPlatformSearch, WorkPathOf255CharactersIsNot)
{
    oddPlatform().workPath.assign(kMaxPath, 'w');
    std::string out;
    EXPECT_EQ(1u, find(out));
    // No file name fits behind it: the work path alone, with the slash cut off as well, is asked for.
    EXPECT_LOG(log(), "1: File (" + oddPlatform().workPath + ") not exists!");
    EXPECT_EQ("gpb_template:272\n", takeAssertText());
}

TEST_F(OddPlatformSearch, AnyResultButZeroOfTheWorkPathIsAFailure)
{
    oddPlatform().files["/device/reslink/protobuf/m.proto"] = 1;
    std::string out;
    for (const uint32_t odd : {1u, 2u, 0xFFFFFFFFu})
    {
        oddPlatform().workPathResult = odd;
        EXPECT_EQ(1u, find(out));
        EXPECT_LOG(log(), "1: Get current work path fail!");
    }
    oddPlatform().workPathResult = 0;
    EXPECT_EQ(0u, find(out));
    EXPECT_EQ("/device/reslink/protobuf", out);
}

TEST_F(OddPlatformSearch, MappingTakesAWorkPathOf256CharactersAsItIs)
{
    oddPlatform().workPath.assign(kMaxPath + 1, 'w');
    GPBLIB_SetPatchDir(context(), "patch/");
    EXPECT_EQ(0u, GPBLIB_ProtoTreeInitial_(context()));
    EXPECT_EQ(joinLines({"gpb_template:334", "gpb_template:340"}), takeAssertText());
    EXPECT_NE(nullptr, context()->pstImporter);
    EXPECT_NO_LOG(log());
}

TEST_F(OddPlatformSearch, WorkPathOf257CharactersIsTooLongForEither)
{
    oddPlatform().workPath.assign(kMaxPath + 2, 'w');
    oddPlatform().workPathIgnoresTheRoom = true;
    GPBLIB_SetPatchDir(context(), "patch/");
    std::string out;
    EXPECT_EQ(1u, find(out));
    EXPECT_EQ("", out);
    EXPECT_LOG(log(), "1: Work path tool long (257)!");
    EXPECT_EQ(0u, GPBLIB_ProtoTreeInitial_(context()));
    EXPECT_EQ("", takeAssertText()) << "nothing is appended to it";
    EXPECT_NE(nullptr, context()->pstImporter);
    EXPECT_NO_LOG(log());
}

TEST_F(OddPlatformSearch, WithoutPatchDirectoryTheEmptyNameIsAskedForFirst)
{
    std::string out;
    EXPECT_EQ(1u, find(out));
    EXPECT_EQ(joinLines({"", "/device/reslink/protobuf/m.proto"}), joinLines(oddPlatform().askedFiles));
    EXPECT_LOG(log(), "1: File (m.proto) not exists!");

    oddPlatform().askedFiles.clear();
    oddPlatform().files[""] = 1;
    EXPECT_EQ(0u, find(out));
    EXPECT_EQ("/device/", out) << "the bare work path";
    EXPECT_EQ(joinLines({""}), joinLines(oddPlatform().askedFiles));
    EXPECT_NO_LOG(log());
}

TEST_F(OddPlatformSearch, MessageOfAFormatterThatFailsIsStillAText)
{
    oddPlatform().formattingOverwritesAndFails = true;
    GPBLIB_DebugPrint(context(), GPB_LOG_ERROR, "f", 1, "%s", "lost");
    EXPECT_LOG(log(), "0: " + std::string(GPB_LOG_TEXT_SIZE - 1, 'x'));
    EXPECT_EQ("gpb_template:112\n", takeAssertText());
}

TEST_F(OddPlatformSearch, EmptyWorkPathIsTaken)
{
    oddPlatform().workPath.clear();
    oddPlatform().files["reslink/protobuf/m.proto"] = 1;
    std::string out;
    EXPECT_EQ(0u, find(out));
    EXPECT_EQ("reslink/protobuf", out);
}

} // namespace
