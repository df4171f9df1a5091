#include "support/temp_directory.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace gpbtest
{

namespace fs = std::filesystem;

TempDirectory::TempDirectory()
{
    std::string path = (fs::temp_directory_path() / "gpb-test-XXXXXX").string();
    if (mkdtemp(path.data()) == nullptr)
    {
        throw std::runtime_error("cannot create " + path);
    }
    m_path = path + "/";
}

TempDirectory::~TempDirectory()
{
    std::error_code ignored; // a directory that stays behind is no reason to end the test run
    fs::remove_all(m_path, ignored);
}

std::string TempDirectory::makeDirectory(const std::string &relative) const
{
    std::string path = m_path + relative;
    fs::create_directories(path);
    return path.back() == '/' ? path : path + "/";
}

std::string TempDirectory::writeFile(const std::string &relative, const std::string &text) const
{
    const std::string path = m_path + relative;
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    if (!file)
    {
        throw std::runtime_error("cannot write " + path);
    }
    return path;
}

} // namespace gpbtest
