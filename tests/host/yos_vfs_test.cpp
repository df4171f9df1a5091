/** File-system tests. */
#include <filesystem>

#include "platform/yos.h"
#include "support/platform_fixture.h"

namespace
{

class YosVfsTest : public gpbtest::PlatformFixture
{
};

TEST_F(YosVfsTest, TellsFilesFromDirectories)
{
    const std::string file = workDirectory().writeFile("file", "text");
    const std::string directory = workDirectory().makeDirectory("directory");
    EXPECT_EQ(1u, YOS_VFS_IsFileExist(file.c_str()));
    EXPECT_NE(1u, YOS_VFS_IsDirExist(file.c_str()));
    EXPECT_NE(1u, YOS_VFS_IsFileExist(directory.c_str()));
    EXPECT_EQ(1u, YOS_VFS_IsDirExist(directory.c_str()));
    const std::string withoutSlash = directory.substr(0, directory.size() - 1);
    EXPECT_NE(1u, YOS_VFS_IsFileExist(withoutSlash.c_str()));
    EXPECT_EQ(1u, YOS_VFS_IsDirExist(withoutSlash.c_str()));
}

TEST_F(YosVfsTest, LinkIsWhatItPointsAt)
{
    const std::string file = workDirectory().writeFile("file", "text");
    const std::string link = workPath() + "link";
    std::filesystem::create_symlink(file, link);
    EXPECT_EQ(1u, YOS_VFS_IsFileExist(link.c_str()));
    std::filesystem::remove(file);
    EXPECT_NE(1u, YOS_VFS_IsFileExist(link.c_str()));
    EXPECT_NE(1u, YOS_VFS_IsDirExist(link.c_str()));
}

TEST_F(YosVfsTest, NothingIsThereUnderNoName)
{
    const std::string missing = workPath() + "missing";
    for (const char *const path : {missing.c_str(), "", static_cast<const char *>(nullptr)})
    {
        EXPECT_NE(1u, YOS_VFS_IsFileExist(path));
        EXPECT_NE(1u, YOS_VFS_IsDirExist(path));
    }
}

TEST_F(YosVfsTest, ProvokedFailureSaysThatNothingIsThere)
{
    const std::string file = workDirectory().writeFile("file", "text");
    GpbHost_FailCall(GPB_HOST_FILE_EXIST, 1);
    EXPECT_NE(1u, YOS_VFS_IsFileExist(file.c_str()));
    EXPECT_EQ(1u, YOS_VFS_IsFileExist(file.c_str()));
    GpbHost_FailCall(GPB_HOST_DIR_EXIST, 1);
    EXPECT_NE(1u, YOS_VFS_IsDirExist(workPath().c_str()));
    EXPECT_EQ(1u, YOS_VFS_IsDirExist(workPath().c_str()));
}

} // namespace
