/** The result of a bench, for people and for programs. */
#ifndef GPBTOOL_BENCH_REPORT_H
#define GPBTOOL_BENCH_REPORT_H

#include <string>

#include "document_bench.h"

namespace gpbtool
{

/** What the report says beside the times. */
struct BenchTitle
{
    std::string module;
    bool json;          /**< format of the document; else XML */
    double loadSeconds; /**< what loading the module took, once */
};

/** A table with one line for each phase; times in microseconds. */
std::string BenchTable(const BenchTitle &title, const BenchResult &result);

/** One JSON object; times in nanoseconds. */
std::string BenchJson(const BenchTitle &title, const BenchResult &result);

} // namespace gpbtool

#endif
