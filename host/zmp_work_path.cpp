/** The system work path. */
#include <cstdlib>
#include <cstring>
#include <exception>
#include <filesystem>
#include <mutex>
#include <string>

#include "faults.h"

namespace
{

constexpr const char *kWorkPathVariable = "GPB_WORK_PATH";

std::mutex g_mutex;
std::string g_setPath; // under g_mutex; empty: not set

std::string workPath()
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    std::string path = g_setPath;
    if (path.empty())
    {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): a program that changes its environment does so before it has threads
        const char *const variable = std::getenv(kWorkPathVariable);
        path =
            variable != nullptr && *variable != '\0' ? std::string(variable) : std::filesystem::current_path().string();
    }
    if (path.back() != '/')
    {
        path += '/';
    }
    return path;
}

/** Fails for a path that does not fit, a current directory that is gone, and want of memory. */
bool copyWorkPath(char *buffer, uint32_t size)
{
    try
    {
        const std::string path = workPath();
        if (path.size() >= size)
        {
            return false;
        }
        std::memcpy(buffer, path.c_str(), path.size() + 1);
        return true;
    }
    catch (const std::exception &)
    {
        return false;
    }
}

} // namespace

uint32_t ZMP_GetSysWorkPath(char *pcBuf, uint32_t uiSize)
{
    const bool fails = host::callFails(GPB_HOST_WORK_PATH);
    if (pcBuf == nullptr || uiSize == 0)
    {
        return 1;
    }
    if (fails || !copyWorkPath(pcBuf, uiSize))
    {
        *pcBuf = '\0';
        return 1;
    }
    return 0;
}

void GpbHost_SetWorkPath(const char *pcPath)
{
    try
    {
        std::string path(pcPath != nullptr ? pcPath : "");
        const std::lock_guard<std::mutex> lock(g_mutex);
        g_setPath.swap(path);
    }
    catch (const std::exception &)
    {
        return; // no memory for the text: the path stays as it was
    }
}
