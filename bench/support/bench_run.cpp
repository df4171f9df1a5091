#include "support/bench_run.h"

#include <cstdlib>
#include <exception>
#include <iostream>
#include <limits>
#include <memory>
#include <optional>

#include "support/allocation_counter.h"

namespace gpbbench
{

namespace
{

// Several repetitions in turn, so that other work on the machine hits all ways alike.
const char *const DEFAULT_ARGUMENTS[] = {"--benchmark_repetitions=9", "--benchmark_enable_random_interleaving=true",
                                         "--benchmark_min_time=0.05"};
constexpr std::string_view ONCE = "--once";
constexpr std::string_view MAX_ITEMS = "--max-items=";

struct Job
{
    std::string name;
    size_t items;
    std::function<void()> run;
};

// What the command line asks for beside what it asks of Google Benchmark, and what is registered.
struct Session
{
    size_t maxItems = std::numeric_limits<size_t>::max();
    bool isOnce = false;
    std::vector<Job> jobs;
};

Session &TheSession()
{
    static Session session;
    return session;
}

// The first run of a kind may make things that stay; it is not the one that counts.
MemoryUse UseWhenWarm(const std::function<void()> &run)
{
    run();
    return MeasureMemory(run);
}

void Measure(benchmark::State &state, size_t items, const MemoryUse &use, const std::function<void()> &run)
{
    for (auto step : state)
    {
        (void)step;
        run();
    }
    state.counters[LEAVES_COUNTER] = static_cast<double>(items);
    state.counters[ALLOCATIONS_COUNTER] = static_cast<double>(use.allocations);
    state.counters[PEAK_COUNTER] = static_cast<double>(use.peakBytes);
}

// Takes out the arguments that are the frame's own.
std::vector<char *> TakeOwnArguments(int argc, char **argv)
{
    std::vector<char *> others;
    for (int i = 1; i < argc; ++i)
    {
        const std::string_view argument = argv[i];
        if (argument == ONCE)
        {
            TheSession().isOnce = true;
        }
        else if (argument.substr(0, MAX_ITEMS.size()) == MAX_ITEMS)
        {
            TheSession().maxItems = std::strtoull(argv[i] + MAX_ITEMS.size(), nullptr, 0);
        }
        else
        {
            others.push_back(argv[i]);
        }
    }
    return others;
}

void DoOnce()
{
    for (const Job &job : TheSession().jobs)
    {
        job.run();
        gpb_bench_counted_run(job.run);
        std::cout << job.name << ' ' << job.items << std::endl;
    }
}

void DoRepeatedly(const std::vector<Table> &tables)
{
    MeasurementReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    for (const Table &table : tables)
    {
        PrintTables(std::cout, reporter, table.series, table.ways);
    }
}

} // namespace

bool TakesPart(size_t items)
{
    return items <= TheSession().maxItems;
}

void Register(const std::string &workload, const std::string &way, size_t items, const std::function<void()> &run)
{
    if (!TakesPart(items))
    {
        return;
    }
    const std::string name = workload + "/" + way;
    TheSession().jobs.push_back({name, items, run});
    const auto use = std::make_shared<std::optional<MemoryUse>>();
    benchmark::RegisterBenchmark(name.c_str(),
                                 [items, run, use](benchmark::State &state)
                                 {
                                     if (!use->has_value())
                                     {
                                         *use = UseWhenWarm(run);
                                     }
                                     Measure(state, items, use->value(), run);
                                 });
}

int RunTables(int argc, char **argv, const std::function<std::vector<Table>()> &prepare)
{
    std::vector<std::string> defaults(std::begin(DEFAULT_ARGUMENTS), std::end(DEFAULT_ARGUMENTS));
    std::vector<char *> arguments = {argv[0]};
    for (std::string &argument : defaults)
    {
        arguments.push_back(argument.data());
    }
    const std::vector<char *> others = TakeOwnArguments(argc, argv);
    arguments.insert(arguments.end(), others.begin(), others.end());
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
    {
        return EXIT_FAILURE;
    }
    try
    {
        const std::vector<Table> tables = prepare();
        if (TheSession().isOnce)
        {
            DoOnce();
        }
        else
        {
            DoRepeatedly(tables);
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

extern "C" __attribute__((noinline)) void gpb_bench_counted_run(const std::function<void()> &run)
{
    run();
    // So that this is no mere jump into the work: callgrind has to see it return.
    benchmark::ClobberMemory();
}
