/** Runs a target over files and directories of files: its corpus, with any compiler and without a fuzzer. */
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace
{

namespace fs = std::filesystem;

std::vector<fs::path> filesOf(int count, char **arguments)
{
    std::vector<fs::path> files;
    for (int i = 1; i < count; ++i)
    {
        if (!fs::is_directory(arguments[i]))
        {
            files.emplace_back(arguments[i]);
            continue;
        }
        for (const fs::directory_entry &entry : fs::directory_iterator(arguments[i]))
        {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace

int main(int argc, char **argv)
{
    const std::vector<fs::path> files = filesOf(argc, argv);
    for (const fs::path &file : files)
    {
        std::ifstream stream(file, std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
        if (!stream)
        {
            (void)std::fprintf(stderr, "error: cannot read %s\n", file.c_str());
            return 1;
        }
        (void)std::fprintf(stderr, "%s\n", file.filename().c_str());
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size());
    }
    (void)std::fprintf(stderr, "%zu inputs\n", files.size());
    return files.empty() ? 1 : 0;
}
