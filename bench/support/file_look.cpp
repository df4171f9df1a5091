#include "support/file_look.h"

#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/yos.h"

namespace gpbbench
{

void LookForFile(const std::string &file)
{
    if (YOS_VFS_IsFileExist(file.c_str()) != 1)
    {
        throw std::runtime_error("the platform does not find " + file);
    }
}

FileLook::FileLook(const std::string &file)
    : file_(file), name_(std::filesystem::path(file).filename()),
      directory_(open(std::filesystem::path(file).parent_path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC))
{
    if (directory_ < 0 || !ByStat() || !ByStatx() || !ByAccess() || !FromDirectory())
    {
        throw std::runtime_error("cannot find " + file);
    }
}

FileLook::~FileLook()
{
    close(directory_);
}

bool FileLook::ByStat() const
{
    struct stat status;
    return stat(file_.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool FileLook::ByStatx() const
{
    struct statx status;
    return statx(AT_FDCWD, file_.c_str(), 0, STATX_TYPE, &status) == 0 && S_ISREG(status.stx_mode);
}

bool FileLook::ByAccess() const
{
    return access(file_.c_str(), F_OK) == 0;
}

bool FileLook::FromDirectory() const
{
    struct stat status;
    return fstatat(directory_, name_.c_str(), &status, 0) == 0 && S_ISREG(status.st_mode);
}

} // namespace gpbbench
