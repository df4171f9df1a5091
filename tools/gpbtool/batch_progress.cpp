#include "batch_progress.h"

#include <cmath>
#include <cstdio>

namespace gpbtool
{

namespace
{

constexpr std::size_t kBarWidth = 24;
constexpr double kMegabyte = 1e6;
constexpr std::uint64_t kMinute = 60;
constexpr std::uint64_t kHour = 3600;

std::string Fixed(double value, int digits)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", digits, value);
    return text;
}

std::string Rate(const BatchCounts &counts)
{
    const auto encoded = static_cast<double>(counts.finished - counts.failed);
    return Fixed(encoded / counts.seconds, 1) + " documents/s, " +
           Fixed(static_cast<double>(counts.bytesIn) / kMegabyte / counts.seconds, 1) + " MB/s";
}

/** The finished part of the work: by size, since documents differ in that, where sizes are known. */
double FinishedPart(const BatchCounts &counts)
{
    return counts.fileBytes > 0 ? static_cast<double>(counts.finishedBytes) / static_cast<double>(counts.fileBytes)
                                : static_cast<double>(counts.finished) / static_cast<double>(counts.documents);
}

std::string TwoDigits(std::uint64_t number)
{
    return (number < 10 ? "0" : "") + std::to_string(number);
}

/** As 0:05, 12:34 or 1:23:45. */
std::string Duration(double seconds)
{
    const auto whole = static_cast<std::uint64_t>(std::ceil(seconds));
    const std::uint64_t minutes = whole % kHour / kMinute;
    const std::string start =
        whole < kHour ? std::to_string(minutes) : std::to_string(whole / kHour) + ":" + TwoDigits(minutes);
    return start + ":" + TwoDigits(whole % kMinute);
}

} // namespace

std::string ProgressLine(const BatchCounts &counts)
{
    const std::size_t filled = kBarWidth * counts.finished / counts.documents;
    std::string line = "[" + std::string(filled, '#') + std::string(kBarWidth - filled, '.') + "] " +
                       std::to_string(counts.finished) + "/" + std::to_string(counts.documents);
    if (counts.seconds <= 0)
    {
        return line;
    }
    const double part = FinishedPart(counts);
    if (part > 0)
    {
        line += ", " + Duration(counts.seconds * (1 - part) / part) + " left";
    }
    return line + ", " + Rate(counts);
}

std::string Summary(const BatchCounts &counts)
{
    std::string text = std::to_string(counts.finished - counts.failed) + " of " + std::to_string(counts.documents) +
                       " documents encoded";
    if (counts.failed > 0)
    {
        text += ", " + std::to_string(counts.failed) + " failed";
    }
    return text + "\n" + std::to_string(counts.bytesIn) + " bytes in, " + std::to_string(counts.bytesOut) +
           " bytes out, " + Fixed(counts.seconds, 2) + " s, " + Rate(counts);
}

} // namespace gpbtool
