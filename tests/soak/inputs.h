/** Inputs of the fuzz targets: their corpora as they are, and changed at random. */
#ifndef GPB_TESTS_SOAK_INPUTS_H
#define GPB_TESTS_SOAK_INPUTS_H

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace gpbsoak
{

using Random = std::mt19937_64;

class Inputs
{
public:
    /** Reads all files of a target's corpus; throws std::runtime_error when there are none. */
    explicit Inputs(const std::string &target);

    const std::vector<std::string> &files() const { return m_files; }

    /** A file of the corpus, as it is or with a few changes. */
    std::string next(Random &random) const;

private:
    const std::string &any(Random &random) const { return m_files[static_cast<size_t>(random() % m_files.size())]; }
    void change(std::string &input, Random &random) const;

    std::vector<std::string> m_files;
};

} // namespace gpbsoak

#endif
