/** Search below the system work path for MODULE.proto: patch directory, then "reslink/protobuf". */
#include <filesystem>
#include <string>

#include "core/path_lengths.h"
#include "support/library_fixture.h"

namespace
{

constexpr char kProto[] = "syntax = 'proto3'; message Top { string name = 1; }";
constexpr char kFixed[] = "reslink/protobuf";
constexpr size_t kMaxPath = 255;
constexpr size_t kFixedLength = sizeof(kFixed) - 1;
constexpr size_t kSuffixLength = 6; // ".proto"
constexpr char kFill = '\x7E';

class ProtoFilePath : public gpbtest::LibraryFixture
{
protected:
    /** The directory found; "(none)" when the result is 1, the buffer being untouched then. */
    std::string find(const std::string &module)
    {
        std::string out(GPB_PATH_SIZE, kFill);
        const uint32_t result = GPBLIB_GetProtoFilePath(context(), out.data(), module.c_str());
        if (result != 0)
        {
            EXPECT_EQ(1u, result);
            EXPECT_EQ(std::string(GPB_PATH_SIZE, kFill), out);
            return "(none)";
        }
        EXPECT_EQ(std::string::npos, out.find(kFill)) << "the whole buffer is written";
        return out.c_str();
    }

    /** Makes a work path of exactly that length below the test's directory; returns it relative to that. */
    std::string moveWorkPath(size_t length)
    {
        const std::string relative = gpbtest::directoryUpToLength(workPath(), length);
        const std::string path = workDirectory().makeDirectory(relative);
        EXPECT_EQ(length, path.size());
        GpbHost_SetWorkPath(path.c_str());
        return relative;
    }
};

class ProtoFilePathDeliberateOddities : public ProtoFilePath
{
};

TEST_F(ProtoFilePath, IsTheFixedDirectoryWithoutPatchDirectory)
{
    writeProto("m", kProto);
    EXPECT_EQ(workPath() + kFixed, find("m"));
    EXPECT_NO_LOG(log());
}

TEST_F(ProtoFilePath, MissingFileIsNamedWithoutItsDirectory)
{
    EXPECT_EQ("(none)", find("m"));
    EXPECT_LOG(log(), "1: File (m.proto) not exists!");
    EXPECT_EQ("(none)", find("sub/m"));
    EXPECT_LOG(log(), "1: File (m.proto) not exists!");
    EXPECT_EQ("(none)", find(""));
    EXPECT_LOG(log(), "1: File (.proto) not exists!");
}

TEST_F(ProtoFilePath, PatchDirectoryComesFirst)
{
    ASSERT_EQ(0u, GPBLIB_SetPatchDir(context(), "patch/"));
    writeProto("both", kProto, "patch");
    writeProto("both", kProto);
    writeProto("fixed", kProto);
    EXPECT_EQ(workPath() + "patch/", find("both"));
    EXPECT_EQ(workPath() + kFixed, find("fixed"));
    EXPECT_EQ("(none)", find("neither"));
    EXPECT_LOG(log(), "1: File (neither.proto) not exists!");
}

TEST_F(ProtoFilePath, PatchDirectoryTakesEffectAtOnce)
{
    writeProto("m", kProto, "patch");
    writeProto("m", kProto);
    EXPECT_EQ(workPath() + kFixed, find("m"));
    GPBLIB_SetPatchDir(context(), "patch/");
    EXPECT_EQ(workPath() + "patch/", find("m"));
    GPBLIB_SetPatchDir(context(), nullptr);
    EXPECT_EQ(workPath() + kFixed, find("m"));
}

TEST_F(ProtoFilePath, WithoutPatchBufferIsAsWithoutPatchDirectory)
{
    GpbLibContext blank = {};
    writeProto("m", kProto);
    char out[GPB_PATH_SIZE] = {};
    EXPECT_EQ(0u, GPBLIB_GetProtoFilePath(&blank, out, "m"));
    EXPECT_EQ(workPath() + kFixed, out);
}

TEST_F(ProtoFilePath, FailsWithoutWorkPath)
{
    writeProto("m", kProto);
    GpbHost_FailCall(GPB_HOST_WORK_PATH, 1);
    EXPECT_EQ("(none)", find("m"));
    EXPECT_LOG(log(), "1: Get current work path fail!");
}

TEST_F(ProtoFilePath, FixedDirectoryOf255CharactersFits)
{
    const std::string relative = moveWorkPath(kMaxPath - kFixedLength);
    // Candidates need room behind the directory, so no file of it can be found.
    workDirectory().makeDirectory(relative + kFixed);
    EXPECT_EQ("(none)", find("m"));
    EXPECT_EQ("", takeAssertText());
    EXPECT_LOG(log(), "1: File (protobuf) not exists!");
}

TEST_F(ProtoFilePath, FixedDirectoryOf256CharactersIsAssertedAndTheWorkPathSearchedItself)
{
    const std::string relative = moveWorkPath(kMaxPath + 1 - kFixedLength);
    EXPECT_EQ("(none)", find("m"));
    EXPECT_EQ("gpb_template:272\n", takeAssertText());
    EXPECT_LOG(log(), "1: File (m.proto) not exists!");
    const std::string file = workDirectory().writeFile(relative + "m.proto", kProto);
    EXPECT_EQ(file.substr(0, file.size() - std::string("m.proto").size()), find("m"));
    EXPECT_EQ("gpb_template:272\n", takeAssertText());
}

TEST_F(ProtoFilePath, WorkPathOf255CharactersIsTaken)
{
    moveWorkPath(kMaxPath);
    ASSERT_EQ(0u, GPBLIB_SetPatchDir(context(), "patch/"));
    EXPECT_EQ("(none)", find("m"));
    EXPECT_EQ("gpb_template:272\n", takeAssertText()) << "the patch directory is cut to nothing without assertion";
    EXPECT_LOG(log(), "1: File () not exists!");
}

TEST_F(ProtoFilePath, WorkPathOf256CharactersIsMoreThanThePlatformGives)
{
    moveWorkPath(kMaxPath + 1);
    EXPECT_EQ("(none)", find("m"));
    EXPECT_LOG(log(), "1: Get current work path fail!");
}

TEST_F(ProtoFilePath, FixedCandidateOf255CharactersIsWholeAndOneOf256IsCut)
{
    const std::string module = "module";
    const size_t tail = kFixedLength + 1 + module.size() + kSuffixLength;
    const std::string fits = moveWorkPath(kMaxPath - tail);
    writeProto(module, kProto, fits + kFixed);
    EXPECT_EQ(workPath() + fits + kFixed, find(module));
    EXPECT_NO_LOG(log());

    const std::string tooLong = moveWorkPath(kMaxPath + 1 - tail);
    writeProto(module, kProto, tooLong + kFixed);
    EXPECT_EQ("(none)", find(module));
    EXPECT_LOG(log(), "1: File (module.prot) not exists!");
    workDirectory().writeFile(tooLong + kFixed + "/module.prot", "");
    EXPECT_EQ(workPath() + tooLong + kFixed, find(module));
}

TEST_F(ProtoFilePath, PatchCandidateOf255CharactersIsWholeAndOneOf256IsCut)
{
    const std::string module = "module";
    const size_t tail = module.size() + kSuffixLength;
    const std::string fits = gpbtest::directoryUpToLength(workPath(), kMaxPath - tail);
    writeProto(module, kProto, fits);
    ASSERT_EQ(0u, GPBLIB_SetPatchDir(context(), fits.c_str()));
    EXPECT_EQ(workPath() + fits, find(module));

    const std::string tooLong = gpbtest::directoryUpToLength(workPath(), kMaxPath + 1 - tail);
    writeProto(module, kProto, tooLong);
    ASSERT_EQ(0u, GPBLIB_SetPatchDir(context(), tooLong.c_str()));
    EXPECT_EQ("(none)", find(module));
    EXPECT_LOG(log(), "1: File (module.proto) not exists!");
}

TEST_F(ProtoFilePath, PatchDirectoryThatIsTooLongIsCutWithoutAssertion)
{
    // Room for 255 characters: the cut directory is itself a file here, so that the search shows where it was cut.
    const std::string whole = gpbtest::relativePathOfLength(kMaxPath + 1 - workPath().size());
    const std::string cut = whole.substr(0, whole.size() - 1);
    workDirectory().writeFile(cut, "");
    ASSERT_EQ(0u, GPBLIB_SetPatchDir(context(), whole.c_str()));
    EXPECT_EQ(workPath() + cut, find("m"));
    EXPECT_EQ("", takeAssertText());
}

TEST_F(ProtoFilePath, AssertsWhenThePatchDirectoryCannotBeAppended)
{
    GPBLIB_SetPatchDir(context(), "patch/");
    writeProto("m", kProto, "patch");
    writeProto("m", kProto);
    GpbHost_FailCall(GPB_HOST_STRNCPY, 1);
    EXPECT_EQ(workPath() + kFixed, find("m"));
    EXPECT_EQ("gpb_template:262\n", takeAssertText());
}

TEST_F(ProtoFilePath, AssertsWhenThePatchCandidateCannotBeFormatted)
{
    GPBLIB_SetPatchDir(context(), "patch/");
    writeProto("m", kProto, "patch");
    writeProto("m", kProto);
    GpbHost_FailCall(GPB_HOST_SNPRINTF_TRUNCATED, 1);
    EXPECT_EQ(workPath() + kFixed, find("m"));
    EXPECT_EQ("gpb_template:265\n", takeAssertText());
}

TEST_F(ProtoFilePath, AssertsWhenTheFixedDirectoryCannotBeAppended)
{
    writeProto("m", kProto, "");
    GpbHost_FailCall(GPB_HOST_STRNCPY, 1);
    EXPECT_EQ(workPath(), find("m")) << "the search goes on with what the buffer holds";
    EXPECT_EQ("gpb_template:272\n", takeAssertText());
}

TEST_F(ProtoFilePath, AssertsWhenTheFixedCandidateCannotBeFormatted)
{
    writeProto("m", kProto);
    GpbHost_FailCall(GPB_HOST_SNPRINTF_TRUNCATED, 1);
    EXPECT_EQ("(none)", find("m"));
    EXPECT_EQ("gpb_template:275\n", takeAssertText());
    EXPECT_LOG(log(), "1: File () not exists!");
}

TEST_F(ProtoFilePath, AssertsWhenTheResultCannotBeCopiedAndSucceeds)
{
    writeProto("m", kProto);
    char out[GPB_PATH_SIZE] = "untouched";
    GpbHost_FailCall(GPB_HOST_MEMCPY, 1);
    EXPECT_EQ(0u, GPBLIB_GetProtoFilePath(context(), out, "m"));
    EXPECT_STREQ("untouched", out);
    EXPECT_EQ("gpb_template:284\n", takeAssertText());
}

TEST_F(ProtoFilePath, NullArgumentsFindNothing)
{
    char out[GPB_PATH_SIZE] = "untouched";
    EXPECT_EQ(1u, GPBLIB_GetProtoFilePath(nullptr, out, "m"));
    EXPECT_EQ(1u, GPBLIB_GetProtoFilePath(context(), nullptr, "m"));
    EXPECT_EQ(1u, GPBLIB_GetProtoFilePath(context(), out, nullptr));
    EXPECT_STREQ("untouched", out);
}

TEST_F(ProtoFilePathDeliberateOddities, NoSlashIsAddedToThePatchDirectory)
{
    ASSERT_EQ(0u, GPBLIB_SetPatchDir(context(), "patch"));
    writeProto("m", kProto, "patch");
    writeProto("m", kProto);
    EXPECT_EQ(workPath() + kFixed, find("m"));
    workDirectory().writeFile("patchm.proto", kProto);
    EXPECT_EQ(workPath() + "patch", find("m"));
}

TEST_F(ProtoFilePathDeliberateOddities, FixedDirectoryComesWithoutTrailingSlashAndPatchDirectoryAsGiven)
{
    writeProto("fixed", kProto);
    writeProto("patched", kProto, "patch");
    GPBLIB_SetPatchDir(context(), "patch/");
    EXPECT_EQ('f', find("fixed").back());
    EXPECT_EQ('/', find("patched").back());
}

} // namespace
