// Runs benchmarks that do the same work in several ways, and prints their tables.
#ifndef GPB_BENCH_SUPPORT_RUNNER_H
#define GPB_BENCH_SUPPORT_RUNNER_H

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "support/measurements.h"

namespace gpbbench
{

/// One way of doing the work of a workload.
struct Way
{
    const char *name;
    std::function<void()> run;
};

/// Takes the workloads of a program in the order of its tables.
class Runner
{
public:
    /// The workloads that follow are compared along what `title` says; growth is looked at from the n-th on.
    void StartSeries(const std::string &title, size_t growthFrom);

    /// Registers NAME/way for each way. All workloads have the same ways, the one that is compared first.
    void Add(const std::string &name, size_t leaves, const std::vector<Way> &ways);

    const std::vector<Series> &AllSeries() const { return series_; }
    const std::vector<std::string> &WayNames() const { return wayNames_; }

private:
    std::vector<Series> series_;
    std::vector<std::string> wayNames_;
};

/// The main function of a benchmark: lets `plan` add the workloads, runs them and prints the tables. Arguments of the
/// caller win over the defaults. A std::exception ends it with a message and a failure.
int RunBenchmarks(int argc, char **argv, const std::function<void(Runner &)> &plan);

} // namespace gpbbench

#endif
