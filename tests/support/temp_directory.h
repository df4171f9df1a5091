/** A directory of its own for a test, removed with all that is in it. */
#ifndef GPB_TESTS_SUPPORT_TEMP_DIRECTORY_H
#define GPB_TESTS_SUPPORT_TEMP_DIRECTORY_H

#include <string>

namespace gpbtest
{

class TempDirectory
{
public:
    TempDirectory();
    ~TempDirectory();
    TempDirectory(const TempDirectory &) = delete;
    TempDirectory &operator=(const TempDirectory &) = delete;

    /** Absolute path, ending with "/". */
    const std::string &path() const { return m_path; }

    /** Creates a directory below this one, with the directories on its way; returns its path, ending with "/". */
    std::string makeDirectory(const std::string &relative) const;

    /** Writes a file below this directory, creating the directories on its way; returns its path. */
    std::string writeFile(const std::string &relative, const std::string &text) const;

private:
    std::string m_path;
};

} // namespace gpbtest

#endif
