#include "core/odd_platform/odd_platform.h"

#include <algorithm>
#include <cstring>

// Visible to the library, which is linked with this program: a program's definition comes before the platform's.
#pragma GCC visibility push(default)
#include "platform/yos.h"
#include "platform/zmp.h"
#pragma GCC visibility pop

namespace gpbtest
{

OddPlatform &oddPlatform()
{
    static OddPlatform platform;
    return platform;
}

namespace
{

uint32_t answer(const std::map<std::string, uint32_t> &answers, const char *path)
{
    const auto found = answers.find(path);
    return found == answers.end() ? 0 : found->second;
}

} // namespace

} // namespace gpbtest

using gpbtest::oddPlatform;

uint32_t ZMP_GetSysWorkPath(char *pcBuf, uint32_t uiSize)
{
    const std::string &path = oddPlatform().workPath;
    std::memcpy(pcBuf, path.c_str(), std::min<size_t>(path.size() + 1, uiSize));
    return oddPlatform().workPathResult;
}

uint32_t YOS_VFS_IsFileExist(const char *pcPath)
{
    oddPlatform().askedFiles.emplace_back(pcPath);
    return gpbtest::answer(oddPlatform().files, pcPath);
}

uint32_t YOS_VFS_IsDirExist(const char *pcPath)
{
    oddPlatform().askedDirectories.emplace_back(pcPath);
    return gpbtest::answer(oddPlatform().directories, pcPath);
}
