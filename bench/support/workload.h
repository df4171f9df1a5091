// The modules and documents that benchmarks run on, made in memory.
#ifndef GPB_BENCH_SUPPORT_WORKLOAD_H
#define GPB_BENCH_SUPPORT_WORKLOAD_H

#include <cstddef>
#include <string>

namespace gpbbench
{

/// One module with one document of it.
struct Workload
{
    std::string moduleName;
    std::string protoText;
    std::string topMessage; ///< full name of the document's message type
    std::string xmlText;
    size_t leaves = 0;
};

/// Leaves of a subscription's configuration, and of each of its profiles.
constexpr size_t TELEMETRY_CONFIG_LEAVES = 11;
constexpr size_t TELEMETRY_PROFILE_LEAVES = 4;

/// Subscriptions in a list, each with containers and an inner list: 20 leaves an entry.
Workload MakeTelemetryWorkload(size_t leaves);

/// A list whose entries have `width` leaves, all of them present.
Workload MakeWideWorkload(size_t width, size_t leaves);

/// A list whose entries hold a choice of `cases` cases; the entries take the cases in turn.
Workload MakeChoiceWorkload(size_t cases, size_t leaves);

} // namespace gpbbench

#endif
