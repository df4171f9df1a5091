#include "core/odd_platform/odd_platform.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

// Visible to the library, which is linked with this program: a program's definition comes before the platform's.
#pragma GCC visibility push(default)
#include "platform/safe_string.h"
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
    const size_t room = oddPlatform().workPathIgnoresTheRoom ? SIZE_MAX : uiSize;
    std::memcpy(pcBuf, path.c_str(), std::min(path.size() + 1, room));
    return oddPlatform().workPathResult;
}

int vsnprintf_truncated_s(char *pcDest, size_t uiDestSize, const char *pcFormat, va_list stArgs)
{
    if (oddPlatform().formattingOverwritesAndFails)
    {
        std::memset(pcDest, 'x', uiDestSize);
        return -1;
    }
    // The platform's answer to a text that was cut: its length.
    return std::min(std::vsnprintf(pcDest, uiDestSize, pcFormat, stArgs), static_cast<int>(uiDestSize) - 1);
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
