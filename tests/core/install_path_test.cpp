/** The list of package install paths. */
#include <filesystem>
#include <string>
#include <vector>

#include "core/path_lengths.h"
#include "platform/zmp.h"
#include "support/library_fixture.h"

namespace
{

using gpbtest::joinLines;

class InstallPath : public gpbtest::LibraryFixture
{
protected:
    std::string makeApp(const std::string &name) const { return workDirectory().makeDirectory(name); }

    uint32_t add(const std::string &path) { return GPBLIB_PkgAddInstallPath(context(), path.c_str()); }
    uint32_t remove(const std::string &path) { return GPBLIB_PkgDelUnInstallPath(context(), path.c_str()); }

    /** The paths from the first to the last; the links back and the count are checked on the way. */
    std::vector<std::string> paths() const
    {
        const DllHead &head = context()->stPkgPathList;
        const void *const end = &head;
        std::vector<std::string> found;
        const void *previous = end;
        const DllNode *node = head.pstFirst;
        while (node != end)
        {
            EXPECT_EQ(previous, node->pstPrev);
            found.emplace_back(reinterpret_cast<const GpbPkgPathNode *>(node)->pcPath);
            previous = node;
            node = node->pstNext;
        }
        EXPECT_EQ(previous, head.pstLast);
        EXPECT_EQ(found.size(), head.uiCount);
        return found;
    }
};

class InstallPathDeliberateOddities : public InstallPath
{
};

TEST_F(InstallPath, AreKeptInTheOrderOfAdding)
{
    const std::string b = makeApp("b");
    const std::string a = makeApp("a");
    const std::string c = makeApp("c");
    EXPECT_EQ(0u, add(b));
    EXPECT_EQ(0u, add(a));
    EXPECT_EQ(0u, add(c));
    EXPECT_EQ((std::vector<std::string>{b, a, c}), paths());
    EXPECT_NO_LOG(log());
}

TEST_F(InstallPath, LiesInOneAllocationWithItsText)
{
    const std::string path = makeApp("app");
    events().clear();
    ASSERT_EQ(0u, add(path));
    const std::vector<gpbtest::PlatformEvent> allocations = events().ofKind(GPB_HOST_EVENT_MALLOC);
    ASSERT_EQ(1u, allocations.size());
    EXPECT_EQ("gpb_template:1688", allocations[0].site());
    EXPECT_EQ(path.size() + sizeof(GpbPkgPathNode) + 1, allocations[0].size);
    EXPECT_EQ(kModuleId, allocations[0].moduleId);
    EXPECT_EQ(g_aucZmpMemPt[0], allocations[0].partition);
    const auto *const node = reinterpret_cast<const GpbPkgPathNode *>(context()->stPkgPathList.pstFirst);
    EXPECT_EQ(allocations[0].memory, node);
    EXPECT_EQ(static_cast<const void *>(node + 1), node->pcPath) << "right behind the node";
    EXPECT_EQ(path, node->pcPath);
    EXPECT_EQ(0u, node->ulHandle);
}

TEST_F(InstallPath, IsRemovedAndFreed)
{
    const std::string a = makeApp("a");
    const std::string b = makeApp("b");
    const std::string c = makeApp("c");
    add(a);
    add(b);
    add(c);
    events().clear();
    EXPECT_EQ(0u, remove(b));
    EXPECT_EQ("FREE gpb_template:1719\n", joinLines(events().texts()));
    EXPECT_EQ((std::vector<std::string>{a, c}), paths());
    EXPECT_EQ(0u, remove(a));
    EXPECT_EQ(0u, remove(c));
    EXPECT_TRUE(paths().empty());
    EXPECT_EQ(0u, add(b));
    EXPECT_EQ((std::vector<std::string>{b}), paths());
    EXPECT_NO_LOG(log());
}

TEST_F(InstallPath, ThatWasNeverAddedCannotBeRemoved)
{
    EXPECT_EQ(0u, remove("/never/"));
    EXPECT_LOG(log(), "1: The path not install.");
    const std::string path = makeApp("app");
    add(path);
    EXPECT_EQ(0u, remove(path.substr(0, path.size() - 1)));
    EXPECT_LOG(log(), "1: The path not install.");
    EXPECT_EQ((std::vector<std::string>{path}), paths());
}

TEST_F(InstallPath, NeedsMemory)
{
    const std::string path = makeApp("app");
    GpbHost_FailCall(GPB_HOST_MALLOC, 1);
    events().clear();
    EXPECT_EQ(1u, add(path));
    EXPECT_EQ("MALLOC_FAILED gpb_template:1688\n", joinLines(events().texts()));
    EXPECT_TRUE(paths().empty());
    EXPECT_NO_LOG(log());
}

TEST_F(InstallPath, IsGivenUpWhenItsTextCannotBeCopied)
{
    const std::string path = makeApp("app");
    GpbHost_FailCall(GPB_HOST_STRCPY, 1);
    events().clear();
    EXPECT_EQ(1u, add(path));
    EXPECT_EQ(joinLines({"MALLOC gpb_template:1688", "FREE gpb_template:1699"}), joinLines(events().texts()));
    EXPECT_TRUE(paths().empty());
    EXPECT_NO_LOG(log());
}

TEST_F(InstallPath, MayBeLongerThanAnyPathBuffer)
{
    for (const size_t length : {size_t{255}, size_t{256}, size_t{600}})
    {
        const std::string path = workDirectory().makeDirectory(gpbtest::directoryUpToLength(workPath(), length));
        ASSERT_EQ(length, path.size());
        EXPECT_EQ(0u, add(path));
        EXPECT_EQ((std::vector<std::string>{path}), paths());
        EXPECT_EQ(0u, remove(path));
    }
    EXPECT_NO_LOG(log());
}

TEST_F(InstallPath, AreAllReleasedTogether)
{
    add(makeApp("a"));
    add(makeApp("b"));
    const void *const first = context()->stPkgPathList.pstFirst;
    const void *const last = context()->stPkgPathList.pstLast;
    events().clear();
    GPBLIB_DeInitPkgSearchPath(context());
    const std::vector<gpbtest::PlatformEvent> releases = events().events();
    ASSERT_EQ(2u, releases.size());
    EXPECT_EQ("FREE gpb_template:1655", releases[0].str());
    EXPECT_EQ("FREE gpb_template:1655", releases[1].str());
    EXPECT_EQ(first, releases[0].memory);
    EXPECT_EQ(last, releases[1].memory);
    EXPECT_TRUE(paths().empty());

    events().clear();
    GPBLIB_DeInitPkgSearchPath(context());
    EXPECT_EQ("", joinLines(events().texts()));
    EXPECT_NO_LOG(log());
}

TEST_F(InstallPath, ListThatWasNeverMadeIsLeftAlone)
{
    GpbLibContext blank = {};
    blank.stPkgPathList.uiCount = 1; // with a null first link
    GPBLIB_DeInitPkgSearchPath(&blank);
    EXPECT_EQ(1u, blank.stPkgPathList.uiCount);
    char out[GPB_PATH_SIZE] = "before";
    EXPECT_EQ(1u, GPBLIB_GetProtoAppPath(&blank, "m", out));
    EXPECT_STREQ("before", out);
}

TEST_F(InstallPath, ListIsMadeEmptyWithoutFreeing)
{
    GpbLibContext blank = {};
    blank.stPkgPathList.uiCount = 5;
    events().clear();
    EXPECT_EQ(0u, GPBLIB_InitPkgSearchPath(&blank));
    EXPECT_EQ(0u, blank.stPkgPathList.uiCount);
    EXPECT_EQ(static_cast<void *>(&blank.stPkgPathList), blank.stPkgPathList.pstFirst);
    EXPECT_EQ(static_cast<void *>(&blank.stPkgPathList), blank.stPkgPathList.pstLast);
    EXPECT_EQ("", joinLines(events().texts()));
}

TEST_F(InstallPath, ComparesNodeWithKeyAsTexts)
{
    char path[] = "/b/";
    GpbPkgPathNode node = {};
    node.pcPath = path;
    EXPECT_EQ(0, GPBLIB_PkgDllCompare("/b/", &node));
    EXPECT_GT(GPBLIB_PkgDllCompare("/a/", &node), 0) << "the node stands on the left";
    EXPECT_LT(GPBLIB_PkgDllCompare("/c/", &node), 0);
    EXPECT_NE(0, GPBLIB_PkgDllCompare("/b", &node));
    EXPECT_NE(0, GPBLIB_PkgDllCompare("/B/", &node));
}

TEST_F(InstallPath, NullArgumentsChangeNothing)
{
    EXPECT_EQ(1u, GPBLIB_PkgAddInstallPath(nullptr, "/"));
    EXPECT_EQ(1u, GPBLIB_PkgAddInstallPath(context(), nullptr));
    EXPECT_EQ(0u, GPBLIB_PkgDelUnInstallPath(nullptr, "/"));
    EXPECT_EQ(0u, GPBLIB_PkgDelUnInstallPath(context(), nullptr));
    EXPECT_EQ(0u, GPBLIB_InitPkgSearchPath(nullptr));
    GPBLIB_DeInitPkgSearchPath(nullptr);
    EXPECT_TRUE(paths().empty());
}

TEST_F(InstallPathDeliberateOddities, AddingTwiceSucceedsAndLeavesOneNode)
{
    const std::string path = makeApp("app");
    ASSERT_EQ(0u, add(path));
    EXPECT_EQ(0u, add(path));
    EXPECT_LOG(log(), "1: The app already install.");
    EXPECT_EQ((std::vector<std::string>{path}), paths());
}

TEST_F(InstallPathDeliberateOddities, MissingDirectorySucceedsAndAddsNothing)
{
    EXPECT_EQ(0u, add(workPath() + "nowhere/"));
    EXPECT_LOG(log(), "1: The install path not exist.");
    EXPECT_EQ(0u, add(workDirectory().writeFile("file", "")));
    EXPECT_LOG(log(), "1: The install path not exist.");
    EXPECT_EQ(0u, add(""));
    EXPECT_LOG(log(), "1: The install path not exist.");
    EXPECT_TRUE(paths().empty());
}

TEST_F(InstallPathDeliberateOddities, DuplicateIsFoundBeforeTheDirectoryIsLookedAt)
{
    const std::string path = makeApp("app");
    ASSERT_EQ(0u, add(path));
    std::filesystem::remove(path);
    const uint64_t before = GpbHost_CallCount(GPB_HOST_DIR_EXIST);
    EXPECT_EQ(0u, add(path));
    EXPECT_EQ(before, GpbHost_CallCount(GPB_HOST_DIR_EXIST));
    EXPECT_LOG(log(), "1: The app already install.");
}

TEST_F(InstallPathDeliberateOddities, OneDirectoryInTwoSpellingsIsTwoPaths)
{
    const std::string path = makeApp("app");
    const std::string bare = path.substr(0, path.size() - 1);
    EXPECT_EQ(0u, add(path));
    EXPECT_EQ(0u, add(bare));
    EXPECT_EQ((std::vector<std::string>{path, bare}), paths());
    EXPECT_NO_LOG(log());
}

} // namespace
