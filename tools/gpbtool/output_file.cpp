#include "output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "tool_error.h"

namespace gpbtool
{

namespace
{

constexpr const char *kTempSuffix = ".XXXXXX";
constexpr mode_t kFileMode = 0666;

ToolError OutputError(const std::string &path)
{
    return ToolError(ExitCode::Output, path + ": cannot be written: " + std::generic_category().message(errno),
                     "is there such a directory, may you write to it, and is there room left?");
}

bool WriteAll(int fd, std::string_view bytes)
{
    while (!bytes.empty())
    {
        const ssize_t count = write(fd, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR)
        {
            return false;
        }
        bytes.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return true;
}

void WriteDirectly(const std::string &path, std::string_view bytes)
{
    const int fd = open(path.c_str(), O_WRONLY | O_CLOEXEC);
    if (fd < 0)
    {
        throw OutputError(path);
    }
    const bool written = WriteAll(fd, bytes);
    const int writeError = errno;
    const bool closed = close(fd) == 0;
    if (!written || !closed)
    {
        errno = written ? errno : writeError;
        throw OutputError(path);
    }
}

/** Reading the mask means changing it for a moment, for all threads of the process. */
mode_t ReadMask()
{
    const mode_t mask = umask(0);
    umask(mask);
    return mask;
}

/** The mode that a plain new file gets here, which mkstemp does not use. */
mode_t NewFileMode()
{
    static const mode_t mask = ReadMask();
    return kFileMode & ~mask;
}

/** The file that a path stands for: an existing link is followed, so that the link stays and its target is replaced. */
std::string RealTarget(const std::string &path)
{
    std::error_code failed;
    const std::filesystem::path target = std::filesystem::canonical(path, failed);
    return failed ? path : target.string();
}

} // namespace

void WriteFile(const std::string &path, std::string_view bytes)
{
    struct stat status = {};
    const bool exists = stat(path.c_str(), &status) == 0;
    if (exists && S_ISDIR(status.st_mode))
    {
        errno = EISDIR;
        throw OutputError(path);
    }
    if (exists && !S_ISREG(status.st_mode))
    {
        WriteDirectly(path, bytes);
        return;
    }
    const std::string target = RealTarget(path);
    std::string temp = target + kTempSuffix;
    const int fd = mkstemp(temp.data());
    if (fd < 0)
    {
        throw OutputError(path);
    }
    bool good = WriteAll(fd, bytes) && fchmod(fd, exists ? status.st_mode : NewFileMode()) == 0;
    int error = errno;
    if (close(fd) != 0 && good)
    {
        good = false;
        error = errno;
    }
    if (good && rename(temp.c_str(), target.c_str()) != 0)
    {
        good = false;
        error = errno;
    }
    if (!good)
    {
        unlink(temp.c_str());
        errno = error;
        throw OutputError(path);
    }
}

void WriteStdout(std::string_view bytes)
{
    if (!WriteAll(STDOUT_FILENO, bytes))
    {
        throw OutputError("standard output");
    }
}

void WriteOutput(const std::string &path, std::string_view bytes)
{
    if (path.empty() || path == "-")
    {
        WriteStdout(bytes);
    }
    else
    {
        WriteFile(path, bytes);
    }
}

} // namespace gpbtool
