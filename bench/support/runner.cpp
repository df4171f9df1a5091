#include "support/runner.h"

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <stdexcept>

#include "support/allocation_counter.h"

namespace gpbbench
{

namespace
{

const char *const DEFAULT_ARGUMENTS[] = {
    "--benchmark_repetitions=9",
    "--benchmark_min_time=0.1",
    "--benchmark_enable_random_interleaving=true",
};

void Measure(benchmark::State &state, size_t leaves, const std::function<void()> &run)
{
    const uint64_t before = AllocationCount();
    for (auto step : state)
    {
        (void)step;
        run();
    }
    const auto allocations = static_cast<double>(AllocationCount() - before);
    state.counters[LEAVES_COUNTER] = static_cast<double>(leaves);
    state.counters[ALLOCATIONS_COUNTER] = allocations / static_cast<double>(state.iterations());
}

void Run(std::vector<char *> arguments, const std::function<void(Runner &)> &plan)
{
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
    {
        throw std::runtime_error("unknown arguments");
    }
    Runner runner;
    plan(runner);
    MeasurementReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    PrintTables(std::cout, reporter, runner.AllSeries(), runner.WayNames());
    benchmark::Shutdown();
}

} // namespace

void Runner::StartSeries(const std::string &title, size_t growthFrom)
{
    series_.push_back({title, {}, growthFrom});
}

void Runner::Add(const std::string &name, size_t leaves, const std::vector<Way> &ways)
{
    series_.back().names.push_back(name);
    wayNames_.clear();
    for (const Way &way : ways)
    {
        wayNames_.emplace_back(way.name);
        benchmark::RegisterBenchmark((name + "/" + way.name).c_str(),
                                     [leaves, run = way.run](benchmark::State &state) { Measure(state, leaves, run); });
    }
}

int RunBenchmarks(int argc, char **argv, const std::function<void(Runner &)> &plan)
{
    // Arguments of the caller come later, so they win.
    std::vector<std::string> defaults(std::begin(DEFAULT_ARGUMENTS), std::end(DEFAULT_ARGUMENTS));
    std::vector<char *> arguments = {argv[0]};
    for (std::string &argument : defaults)
    {
        arguments.push_back(argument.data());
    }
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    try
    {
        Run(arguments, plan);
        return EXIT_SUCCESS;
    }
    catch (const std::exception &error)
    {
        std::cerr << argv[0] << ": " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}

} // namespace gpbbench
