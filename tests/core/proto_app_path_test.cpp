/** Search of the package install paths for MODULE.proto. */
#include <filesystem>
#include <string>

#include "core/path_lengths.h"
#include "support/library_fixture.h"

namespace
{

constexpr char kProto[] = "syntax = 'proto3'; message Top { string name = 1; }";
constexpr size_t kMaxPath = 255;
constexpr size_t kSuffixLength = 6; // ".proto"

class ProtoAppPath : public gpbtest::LibraryFixture
{
protected:
    std::string addApp(const std::string &relative)
    {
        const std::string path = workDirectory().makeDirectory(relative);
        EXPECT_EQ(0u, GPBLIB_PkgAddInstallPath(context(), path.c_str()));
        return path;
    }

    /** The path found; "(none)" when the result is 1, the buffer being untouched then. */
    std::string find(const std::string &module)
    {
        char out[GPB_PATH_SIZE] = "untouched";
        const uint32_t result = GPBLIB_GetProtoAppPath(context(), module.c_str(), out);
        if (result != 0)
        {
            EXPECT_EQ(1u, result);
            EXPECT_STREQ("untouched", out);
            return "(none)";
        }
        return out;
    }
};

class ProtoAppPathDeliberateOddities : public ProtoAppPath
{
};

TEST_F(ProtoAppPath, IsTheFirstThatHoldsTheFile)
{
    const std::string first = addApp("app1");
    const std::string second = addApp("app2");
    writeProto("both", kProto, "app1");
    writeProto("both", kProto, "app2");
    writeProto("late", kProto, "app2");
    EXPECT_EQ(first, find("both"));
    EXPECT_EQ(second, find("late"));
    EXPECT_EQ("(none)", find("neither"));
    GPBLIB_PkgDelUnInstallPath(context(), first.c_str());
    EXPECT_EQ(second, find("both"));
    EXPECT_NO_LOG(log());
}

TEST_F(ProtoAppPath, IsNoneWithoutPathsOrWhenTheFileIsADirectory)
{
    EXPECT_EQ("(none)", find("m"));
    addApp("app");
    workDirectory().makeDirectory("app/m.proto");
    EXPECT_EQ("(none)", find("m"));
    EXPECT_NO_LOG(log());
}

TEST_F(ProtoAppPath, EndsAtANodeWithoutText)
{
    addApp("app1");
    addApp("app2");
    writeProto("m", kProto, "app2");
    auto *const first = reinterpret_cast<GpbPkgPathNode *>(context()->stPkgPathList.pstFirst);
    char *const text = first->pcPath;
    first->pcPath = nullptr;
    EXPECT_EQ("(none)", find("m"));
    first->pcPath = text;
    EXPECT_NE("(none)", find("m"));
}

TEST_F(ProtoAppPath, CandidateOf255CharactersIsWhole)
{
    const std::string module = "module";
    const size_t pathLength = kMaxPath - module.size() - kSuffixLength;
    const std::string relative = gpbtest::directoryUpToLength(workPath(), pathLength);
    const std::string path = addApp(relative);
    ASSERT_EQ(pathLength, path.size());
    writeProto(module, kProto, relative);
    EXPECT_EQ(path, find(module));
}

TEST_F(ProtoAppPath, CandidateOf256CharactersIsCut)
{
    const std::string module = "module";
    const std::string relative = gpbtest::directoryUpToLength(workPath(), kMaxPath + 1 - module.size() - kSuffixLength);
    const std::string path = addApp(relative);
    writeProto(module, kProto, relative);
    EXPECT_EQ("(none)", find(module));
    // The cut name is what is looked for.
    workDirectory().writeFile(relative + "module.prot", "");
    EXPECT_EQ(path, find(module));
}

TEST_F(ProtoAppPath, PathOf255CharactersIsReturnedWhole)
{
    const std::string relative = gpbtest::directoryUpToLength(workPath(), kMaxPath + 1);
    const std::string bare = workDirectory().makeDirectory(relative).substr(0, kMaxPath);
    ASSERT_EQ(0u, GPBLIB_PkgAddInstallPath(context(), bare.c_str()));
    std::filesystem::remove(bare);
    workDirectory().writeFile(bare.substr(workPath().size()), "");
    EXPECT_EQ(bare, find("m")) << "the cut candidate is the path itself";
}

TEST_F(ProtoAppPath, PathOf256CharactersIsAssertedAndReturnedEmpty)
{
    const std::string relative = gpbtest::directoryUpToLength(workPath(), kMaxPath + 1);
    const std::string path = workDirectory().makeDirectory(relative);
    ASSERT_EQ(kMaxPath + 1, path.size());
    ASSERT_EQ(0u, GPBLIB_PkgAddInstallPath(context(), path.c_str()));
    const std::string bare = path.substr(0, kMaxPath);
    std::filesystem::remove(bare);
    workDirectory().writeFile(bare.substr(workPath().size()), "");
    EXPECT_EQ("", find("m"));
    EXPECT_EQ("gpb_template:1740\n", takeAssertText());
}

TEST_F(ProtoAppPath, AssertsWhenTheCandidateCannotBeFormatted)
{
    const std::string first = addApp("app1");
    const std::string second = addApp("app2");
    writeProto("m", kProto, "app1");
    writeProto("m", kProto, "app2");
    GpbHost_FailCall(GPB_HOST_SNPRINTF_TRUNCATED, 1);
    EXPECT_EQ(second, find("m")) << "an empty candidate names no file";
    EXPECT_EQ("gpb_template:1737\n", takeAssertText());
}

TEST_F(ProtoAppPath, AssertsWhenThePathCannotBeCopied)
{
    addApp("app");
    writeProto("m", kProto, "app");
    GpbHost_FailCall(GPB_HOST_STRNCPY, 1);
    EXPECT_EQ("", find("m")) << "found all the same";
    EXPECT_EQ("gpb_template:1740\n", takeAssertText());
}

TEST_F(ProtoAppPath, NullArgumentsFindNothing)
{
    char out[GPB_PATH_SIZE] = "untouched";
    addApp("app");
    EXPECT_EQ(1u, GPBLIB_GetProtoAppPath(nullptr, "m", out));
    EXPECT_EQ(1u, GPBLIB_GetProtoAppPath(context(), nullptr, out));
    EXPECT_EQ(1u, GPBLIB_GetProtoAppPath(context(), "m", nullptr));
    EXPECT_STREQ("untouched", out);
}

TEST_F(ProtoAppPathDeliberateOddities, NoSlashIsAddedToAPath)
{
    const std::string path = workDirectory().makeDirectory("app");
    const std::string bare = path.substr(0, path.size() - 1);
    ASSERT_EQ(0u, GPBLIB_PkgAddInstallPath(context(), bare.c_str()));
    writeProto("m", kProto, "app");
    EXPECT_EQ("(none)", find("m"));
    workDirectory().writeFile("appm.proto", "");
    EXPECT_EQ(bare, find("m"));
}

} // namespace
