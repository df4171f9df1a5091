#include "soak/inputs.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace gpbsoak
{

namespace
{

namespace fs = std::filesystem;

constexpr size_t kMaxSize = 4096;
constexpr size_t kMaxChanges = 4;
constexpr size_t kMaxPiece = 64;

/** A piece of a text: up to kMaxPiece bytes from anywhere in it. */
std::string pieceOf(const std::string &text, Random &random)
{
    return text.empty()
               ? ""
               : text.substr(static_cast<size_t>(random() % text.size()), static_cast<size_t>(random() % kMaxPiece));
}

} // namespace

Inputs::Inputs(const std::string &target)
{
    std::vector<fs::path> paths;
    for (const fs::directory_entry &entry : fs::directory_iterator(GPB_SOAK_CORPUS_DIR "/" + target))
    {
        paths.push_back(entry.path());
    }
    std::sort(paths.begin(), paths.end());
    for (const fs::path &path : paths)
    {
        std::ifstream stream(path, std::ios::binary);
        m_files.emplace_back(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
    }
    if (m_files.empty())
    {
        throw std::runtime_error("no corpus of " + target);
    }
}

std::string Inputs::next(Random &random) const
{
    std::string input = any(random);
    for (size_t changes = static_cast<size_t>(random() % (kMaxChanges + 1)); changes > 0; --changes)
    {
        change(input, random);
    }
    input.resize(std::min(input.size(), kMaxSize));
    return input;
}

void Inputs::change(std::string &input, Random &random) const
{
    const size_t position = input.empty() ? 0 : static_cast<size_t>(random() % input.size());
    switch (random() % 4)
    {
    case 0:
        input.insert(position, 1, static_cast<char>(random()));
        break;
    case 1:
        input.replace(position, 1, 1, static_cast<char>(random()));
        break;
    case 2:
        input.erase(position, random() % kMaxPiece);
        break;
    default:
        input.insert(position, pieceOf(any(random), random));
    }
}

} // namespace gpbsoak
