// The YANG module of the telemetry workload, for a peer that reads YANG.
#ifndef GPB_BENCH_SUPPORT_YANG_TEXT_H
#define GPB_BENCH_SUPPORT_YANG_TEXT_H

#include <string>

namespace gpbbench
{

/// The namespace of the module.
constexpr char TELEMETRY_NAMESPACE[] = "urn:bench-telemetry";

/// The module that MakeTelemetryWorkload's documents are instances of.
std::string TelemetryYang();

} // namespace gpbbench

#endif
