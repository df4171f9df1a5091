#include "support/bench_run.h"

#include <cstdlib>
#include <exception>
#include <iostream>

#include "support/allocation_counter.h"

namespace gpbbench
{

namespace
{

// Several repetitions in turn, so that other work on the machine hits all ways alike.
const char *const DEFAULT_ARGUMENTS[] = {"--benchmark_repetitions=5", "--benchmark_enable_random_interleaving=true",
                                         "--benchmark_min_time=0.1"};

void Measure(benchmark::State &state, size_t items, const std::function<void()> &run)
{
    const uint64_t before = AllocationCount();
    for (auto step : state)
    {
        (void)step;
        run();
    }
    const auto allocations = static_cast<double>(AllocationCount() - before);
    state.counters[LEAVES_COUNTER] = static_cast<double>(items);
    state.counters[ALLOCATIONS_COUNTER] = allocations / static_cast<double>(state.iterations());
}

} // namespace

void Register(const std::string &workload, const std::string &way, size_t items, const std::function<void()> &run)
{
    benchmark::RegisterBenchmark((workload + "/" + way).c_str(),
                                 [items, run](benchmark::State &state) { Measure(state, items, run); });
}

int RunTables(int argc, char **argv, const std::function<std::vector<Table>()> &prepare)
{
    std::vector<std::string> defaults(std::begin(DEFAULT_ARGUMENTS), std::end(DEFAULT_ARGUMENTS));
    std::vector<char *> arguments = {argv[0]};
    for (std::string &argument : defaults)
    {
        arguments.push_back(argument.data());
    }
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
    {
        return EXIT_FAILURE;
    }
    try
    {
        const std::vector<Table> tables = prepare();
        MeasurementReporter reporter;
        benchmark::RunSpecifiedBenchmarks(&reporter);
        for (const Table &table : tables)
        {
            PrintTables(std::cout, reporter, table.series, table.ways);
        }
    }
    catch (const std::exception &error)
    {
        std::cerr << argv[0] << ": " << error.what() << '\n';
        return EXIT_FAILURE;
    }
    benchmark::Shutdown();
    return EXIT_SUCCESS;
}

} // namespace gpbbench
