// Ways to learn whether a file still is there.
#ifndef GPB_BENCH_SUPPORT_FILE_LOOK_H
#define GPB_BENCH_SUPPORT_FILE_LOOK_H

#include <string>

namespace gpbbench
{

/// Asks as the library does. Throws std::runtime_error when the file is not there.
void LookForFile(const std::string &file);

/// Asks the system in one way after the other. All find the file; what they tell beyond that differs.
class FileLook
{
public:
    /// Failures throw std::runtime_error.
    explicit FileLook(const std::string &file);
    ~FileLook();
    FileLook(const FileLook &) = delete;
    FileLook &operator=(const FileLook &) = delete;

    /// What kind of file it is, too.
    bool ByStat() const;
    bool ByStatx() const;

    /// Directories and files are one to it.
    bool ByAccess() const;

    /// From a directory that is kept open, and so stays the same where another one takes its place.
    bool FromDirectory() const;

private:
    std::string file_;
    std::string name_;
    int directory_;
};

} // namespace gpbbench

#endif
