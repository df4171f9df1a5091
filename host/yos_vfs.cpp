/** File-system tests. A link counts as what it points at. */
#include <sys/stat.h>

#include "faults.h"

namespace
{

enum class PathKind
{
    kNone,
    kFile,
    kDirectory
};

PathKind kindOf(const char *path)
{
    // An empty path names nothing. It is asked for often, where no patch directory is set, and needs no system call.
    struct stat status = {};
    if (path == nullptr || *path == '\0' || stat(path, &status) != 0)
    {
        return PathKind::kNone;
    }
    return S_ISDIR(status.st_mode) ? PathKind::kDirectory : PathKind::kFile;
}

} // namespace

uint32_t YOS_VFS_IsFileExist(const char *pcPath)
{
    return !host::callFails(GPB_HOST_FILE_EXIST) && kindOf(pcPath) == PathKind::kFile ? 1 : 0;
}

uint32_t YOS_VFS_IsDirExist(const char *pcPath)
{
    return !host::callFails(GPB_HOST_DIR_EXIST) && kindOf(pcPath) == PathKind::kDirectory ? 1 : 0;
}
