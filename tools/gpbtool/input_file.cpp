#include "input_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "tool_error.h"

namespace gpbtool
{

namespace
{

constexpr const char *kStdin = "-";
constexpr std::size_t kChunk = 65536;

ToolError InputError(const std::string &path, int error)
{
    return ToolError(ExitCode::Input, path + ": cannot be read: " + std::generic_category().message(error),
                     "give a file that can be read");
}

} // namespace

InputFile::InputFile(const std::string &path)
    : path_(path), fd_(path == kStdin ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC))
{
    if (fd_ < 0)
    {
        throw InputError(path, errno);
    }
    struct stat status = {};
    if (fstat(fd_, &status) == 0 && S_ISDIR(status.st_mode))
    {
        close(fd_);
        throw InputError(path, EISDIR);
    }
}

InputFile::~InputFile()
{
    if (fd_ != STDIN_FILENO)
    {
        close(fd_);
    }
}

std::size_t InputFile::Read(char *buffer, std::size_t size)
{
    for (;;)
    {
        const ssize_t count = read(fd_, buffer, size);
        if (count >= 0)
        {
            bytesRead_ += static_cast<std::uint64_t>(count);
            return static_cast<std::size_t>(count);
        }
        if (errno != EINTR)
        {
            throw InputError(path_, errno);
        }
    }
}

std::string InputFile::ReadAll()
{
    std::string bytes;
    for (;;)
    {
        const std::size_t size = bytes.size();
        bytes.resize(size + kChunk);
        const std::size_t count = Read(bytes.data() + size, kChunk);
        bytes.resize(size + count);
        if (count == 0)
        {
            return bytes;
        }
    }
}

} // namespace gpbtool
