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

/// Registers one way of a workload; `items` is what its cost is divided by.
void Register(const std::string &workload, const std::string &way, size_t items, const std::function<void()> &run);

/// Runs what is registered and prints the tables. Arguments of the caller win over the defaults.
/// @return exit status; what `prepare` throws is reported and makes it a failure
int RunTables(int argc, char **argv, const std::function<std::vector<Table>()> &prepare);

} // namespace gpbbench

#endif
