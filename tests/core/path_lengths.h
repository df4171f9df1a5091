/** Paths of an exact length, for the limits of the path buffers. */
#ifndef GPB_TESTS_CORE_PATH_LENGTHS_H
#define GPB_TESTS_CORE_PATH_LENGTHS_H

#include <cstddef>
#include <string>

namespace gpbtest
{

/** A relative path of exactly `length` characters, made of names that a file system takes, without a "/" at its ends.
 */
inline std::string relativePathOfLength(size_t length)
{
    constexpr size_t kNameLength = 100;
    std::string path;
    while (path.size() < length)
    {
        const bool isNameFull = path.size() % (kNameLength + 1) == kNameLength;
        path += isNameFull && path.size() + 1 < length ? '/' : 'd';
    }
    return path;
}

/** What follows `base` in a path of exactly `length` characters that ends with "/". */
inline std::string directoryUpToLength(const std::string &base, size_t length)
{
    return relativePathOfLength(length - base.size() - 1) + "/";
}

} // namespace gpbtest

#endif
