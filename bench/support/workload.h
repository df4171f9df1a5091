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

/// The sizes in leaves of the documents that every program measures.
constexpr size_t DOCUMENT_SIZES[] = {20, 200, 2000, 20000, 200000};

/// How the nodes of a message follow each other in the document.
enum class NodeOrder
{
    BY_FIELD_NUMBER,
    MIXED
};

/// The telemetry module, as protoc reads it.
std::string TelemetryProto();

/// Subscriptions in a list, each with containers and an inner list: 20 leaves an entry.
Workload MakeTelemetryWorkload(size_t leaves, NodeOrder order = NodeOrder::BY_FIELD_NUMBER);

/// A list whose entries have `width` leaves, of which `present` are in the document, evenly spread.
Workload MakeWideWorkload(size_t width, size_t present, size_t leaves);

/// A list whose entries hold a choice of `cases` cases; the entries take the cases in turn, since two that follow each
/// other with the same case would share its message.
Workload MakeChoiceWorkload(size_t cases, size_t leaves);

/// As above, and each case is nothing but a choice of as many cases again.
Workload MakeNestedChoiceWorkload(size_t cases, size_t leaves);

/// One container of `width` leaves, in which the same eight are set again and again: what a leaf costs is finding its
/// field and setting it, whatever a message of that width costs.
Workload MakeFieldByNameWorkload(size_t width, size_t leaves);

/// The same for leaves of the last one of `cases` cases.
Workload MakeCaseFieldByNameWorkload(size_t cases, size_t leaves);

} // namespace gpbbench

#endif
