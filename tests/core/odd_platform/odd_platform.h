/**
 * Services of the platform replaced by ones that answer as a test says: what the reference platform never does, though
 * a platform may.
 */
#ifndef GPB_TESTS_CORE_ODD_PLATFORM_ODD_PLATFORM_H
#define GPB_TESTS_CORE_ODD_PLATFORM_ODD_PLATFORM_H

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace gpbtest
{

/** What the replaced services answer, and what they were asked. */
struct OddPlatform
{
    std::string workPath; /**< written without terminator when it fills the room */
    uint32_t workPathResult = 0;
    bool workPathIgnoresTheRoom = false;         /**< written whole, with its terminator */
    bool formattingOverwritesAndFails = false;   /**< leaves a text without terminator */
    std::map<std::string, uint32_t> files;       /**< results of the file test; 0 for all others */
    std::map<std::string, uint32_t> directories; /**< results of the directory test; 0 for all others */
    std::vector<std::string> askedFiles;
    std::vector<std::string> askedDirectories;
};

/** The one platform of the process. */
OddPlatform &oddPlatform();

} // namespace gpbtest

#endif
