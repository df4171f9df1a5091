/** The system work path: where it comes from and what fits. */
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/zmp.h"
#include "support/platform_fixture.h"

namespace
{

constexpr const char *kVariable = "GPB_WORK_PATH";

/** Changes the environment and the current directory of the process, and takes both back. */
class ZmpWorkPathTest : public gpbtest::PlatformFixture
{
protected:
    void SetUp() override
    {
        PlatformFixture::SetUp();
        const char *const variable = std::getenv(kVariable);
        m_hadVariable = variable != nullptr;
        m_variable = m_hadVariable ? variable : "";
        m_directory = std::filesystem::current_path();
    }

    void TearDown() override
    {
        std::filesystem::current_path(m_directory);
        m_hadVariable ? setenv(kVariable, m_variable.c_str(), 1) : unsetenv(kVariable);
        PlatformFixture::TearDown();
    }

    static std::string readWorkPath()
    {
        char buffer[4096] = "untouched";
        EXPECT_EQ(0u, ZMP_GetSysWorkPath(buffer, sizeof(buffer)));
        return buffer;
    }

private:
    bool m_hadVariable = false;
    std::string m_variable;
    std::filesystem::path m_directory;
};

TEST_F(ZmpWorkPathTest, PathFromCodeComesFirst)
{
    setenv(kVariable, "/from/environment", 1);
    GpbHost_SetWorkPath("/from/code");
    EXPECT_EQ("/from/code/", readWorkPath());
    GpbHost_SetWorkPath("/from/code/");
    EXPECT_EQ("/from/code/", readWorkPath());
    GpbHost_SetWorkPath("/");
    EXPECT_EQ("/", readWorkPath());
}

TEST_F(ZmpWorkPathTest, EnvironmentComesNext)
{
    setenv(kVariable, "/from/environment", 1);
    for (const char *const none : {static_cast<const char *>(nullptr), ""})
    {
        GpbHost_SetWorkPath("/from/code");
        GpbHost_SetWorkPath(none);
        EXPECT_EQ("/from/environment/", readWorkPath());
    }
    setenv(kVariable, "/from/environment/", 1);
    EXPECT_EQ("/from/environment/", readWorkPath());
}

TEST_F(ZmpWorkPathTest, CurrentDirectoryComesLast)
{
    GpbHost_SetWorkPath(nullptr);
    std::filesystem::current_path(workPath());
    const std::string expected = std::filesystem::current_path().string() + "/";
    unsetenv(kVariable);
    EXPECT_EQ(expected, readWorkPath());
    setenv(kVariable, "", 1);
    EXPECT_EQ(expected, readWorkPath());
}

TEST_F(ZmpWorkPathTest, FailsWhenTheCurrentDirectoryIsGone)
{
    GpbHost_SetWorkPath(nullptr);
    unsetenv(kVariable);
    const std::string directory = workDirectory().makeDirectory("gone");
    std::filesystem::current_path(directory);
    std::filesystem::remove(directory);
    char buffer[256] = "untouched";
    EXPECT_NE(0u, ZMP_GetSysWorkPath(buffer, sizeof(buffer)));
    EXPECT_STREQ("", buffer);
}

TEST_F(ZmpWorkPathTest, NeedsRoomForItsTerminator)
{
    GpbHost_SetWorkPath("/abc");
    char buffer[8] = "#######";
    EXPECT_EQ(0u, ZMP_GetSysWorkPath(buffer, 6));
    EXPECT_STREQ("/abc/", buffer);
    EXPECT_EQ('#', buffer[6]);
    EXPECT_NE(0u, ZMP_GetSysWorkPath(buffer, 5));
    EXPECT_STREQ("", buffer);
}

TEST_F(ZmpWorkPathTest, RejectsNoBuffer)
{
    char buffer[] = "untouched";
    EXPECT_NE(0u, ZMP_GetSysWorkPath(nullptr, 10));
    EXPECT_NE(0u, ZMP_GetSysWorkPath(buffer, 0));
    EXPECT_STREQ("untouched", buffer);
}

TEST_F(ZmpWorkPathTest, ProvokedFailureGivesAnEmptyText)
{
    char buffer[4096] = "untouched";
    GpbHost_FailCall(GPB_HOST_WORK_PATH, 1);
    EXPECT_NE(0u, ZMP_GetSysWorkPath(buffer, sizeof(buffer)));
    EXPECT_STREQ("", buffer);
    EXPECT_EQ(workPath(), readWorkPath());
}

} // namespace
