// The frame of a benchmark program: arguments, measurement, tables.
#ifndef GPB_BENCH_SUPPORT_BENCH_RUN_H
#define GPB_BENCH_SUPPORT_BENCH_RUN_H

#include <functional>
#include <string>
#include <vector>

#include "support/measurements.h"

namespace gpbbench
{

/// Workloads that are measured in the same ways; the first way is the one that is compared with the others.
struct Table
{
    std::vector<Series> series;
    std::vector<std::string> ways;
};

/// Whether work on so many items takes part: `--max-items=N` leaves out what is larger, so that a short run need not
/// even prepare it. Register leaves out such work by itself.
bool TakesPart(size_t items);

/// Registers one way of a workload; `items` is what its cost is divided by.
void Register(const std::string &workload, const std::string &way, size_t items, const std::function<void()> &run);

/// Runs what is registered and prints the tables. Arguments of the caller win over the defaults. With `--once` each
/// benchmark is done once, in gpb_bench_counted_run, and a line with its name and its items is printed.
/// @return exit status; what `prepare` throws is reported and makes it a failure
int RunTables(int argc, char **argv, const std::function<std::vector<Table>()> &prepare);

} // namespace gpbbench

/// What `--once` does the work in: its instructions are those that count, and nothing else calls it.
extern "C" void gpb_bench_counted_run(const std::function<void()> &run);

#endif
