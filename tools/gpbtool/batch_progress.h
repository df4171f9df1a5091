/** How far a run over many documents is, in words. */
#ifndef GPBTOOL_BATCH_PROGRESS_H
#define GPBTOOL_BATCH_PROGRESS_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace gpbtool
{

/** Counts of a run; sizes are in bytes. */
struct BatchCounts
{
    std::size_t documents = 0;       /**< of the run */
    std::size_t finished = 0;        /**< encoded or failed */
    std::size_t failed = 0;          /**< of those */
    std::uint64_t bytesIn = 0;       /**< of the encoded documents */
    std::uint64_t bytesOut = 0;      /**< written */
    std::uint64_t fileBytes = 0;     /**< of all files, as far as known beforehand */
    std::uint64_t finishedBytes = 0; /**< of those, of finished documents */
    double seconds = 0;              /**< since the begin */
};

/** One line with a bar, the rate and the remaining time. */
std::string ProgressLine(const BatchCounts &counts);

/** Two lines: documents; bytes, time and rate. Rates are of the encoded documents. */
std::string Summary(const BatchCounts &counts);

} // namespace gpbtool

#endif
