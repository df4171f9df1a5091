/** Where the time of one document goes, from its text to the encoded message and back to nothing. */
#ifndef GPBTOOL_DOCUMENT_BENCH_H
#define GPBTOOL_DOCUMENT_BENCH_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "session.h"

namespace gpbtool
{

/** Steps of one repetition, one after the other without a gap: what each costs is a part of the whole. */
struct BenchPhase
{
    const char *name;
    const char *meaning;
};
inline constexpr std::array<BenchPhase, 6> kBenchPhases = {{
    {"parse", "text to document tree"},
    {"create", "compiler created"},
    {"walk", "tree to message"},
    {"serialize", "message to bytes"},
    {"destroy", "compiler destroyed"},
    {"free", "document tree freed"},
}};

struct BenchSubject
{
    std::string module; /**< loaded in the session */
    std::string path;   /**< of the document, for messages */
    std::string text;   /**< of the document, which encodes without loss */
    bool json;          /**< else XML */
    bool stripPrefixes; /**< take "MODULE:" off the names of a JSON document */
};

/** Nanoseconds over all repetitions: median, the limits that a tenth lies below and above, and mean. */
struct TimeSpread
{
    double median;
    double low;
    double high;
    double mean;
};

struct BenchResult
{
    std::array<TimeSpread, kBenchPhases.size()> phases;
    TimeSpread total; /**< sums of the phases: other work of the machine, which hits now this phase and now that one,
                           moves them less than it moves whole repetitions */
    std::size_t repetitions;
    double seconds; /**< of all repetitions together */
    std::size_t documentBytes;
    std::size_t encodedBytes;
    std::size_t leaves; /**< XML elements without elements, JSON values that are no object or array */
};

/**
 * Encodes a document again and again, as a host would: without the tool's own checks.
 *
 * @param seconds  when to stop; at least kMinRepetitions and at most kMaxRepetitions are made
 * @throws ToolError (Input, Module, Internal)
 */
BenchResult BenchDocument(Session &session, const BenchSubject &subject, double seconds);

inline constexpr std::size_t kMinRepetitions = 5;
inline constexpr std::size_t kMaxRepetitions = 100000;

} // namespace gpbtool

#endif
