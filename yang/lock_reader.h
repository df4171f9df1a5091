/** Reads the text of a lock (number_lock.h) line by line; every error names its line. */
#ifndef GPB_YANG_LOCK_READER_H
#define GPB_YANG_LOCK_READER_H

#include <cstdint>
#include <string>
#include <vector>

#include "yang/number_lock.h"
#include "yang/yang_error.h"

namespace gpbyang
{

/** The first line of a lock. */
inline constexpr const char *kLockHeading = "gpb-numbers 1";

/** The largest number of a field, and the range that protobuf keeps for itself. */
inline constexpr std::int32_t kMostFieldNumber = 536870911;
inline constexpr std::int32_t kFirstKeptNumber = 19000;
inline constexpr std::int32_t kLastKeptNumber = 19999;

class LockReader
{
public:
    /** Fills `lock`, whose module is the one that the text has to name. */
    LockReader(std::string source, NumberLock &lock) : source_(std::move(source)), lock_(lock) {}

    /** @throws YangError (Lock) */
    void Read(const std::string &text);

private:
    using Words = std::vector<std::string>;

    void Line(const std::string &line);
    void OpenSection(const Words &words);
    void AddEntry(const Words &words);
    std::int32_t Number(const std::string &word) const;
    YangError Error(const std::string &what) const;

    std::string source_;
    NumberLock &lock_;
    std::size_t line_ = 0;
    std::size_t meaningful_ = 0; /**< lines that are neither empty nor comments */
    bool ofEnum_ = false;
    NumberLock::Entries *section_ = nullptr;
};

} // namespace gpbyang

#endif
