// Collects what the benchmarks measure, and sets the ways of doing the same work side by side.
#ifndef GPB_BENCH_SUPPORT_MEASUREMENTS_H
#define GPB_BENCH_SUPPORT_MEASUREMENTS_H

#include <iosfwd>
#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace gpbbench
{

/// Counters that a benchmark sets for the tables.
constexpr char LEAVES_COUNTER[] = "leaves";
constexpr char ALLOCATIONS_COUNTER[] = "allocs"; ///< per iteration
constexpr char PEAK_COUNTER[] = "peak_bytes";    ///< most memory at one time of an iteration

/// One value per repetition.
struct Sample
{
    std::vector<double> values;

    double Median() const;
    double Lowest() const;
    double Highest() const;

    /// Repetition by repetition; a repetition that the other one lacks is left out.
    Sample DividedBy(const Sample &other) const;
};

/// The repetitions of one benchmark.
struct Measurement
{
    Sample nsPerLeaf; ///< CPU time, since other work may share the machine
    Sample allocationsPerLeaf;
};

/// Keeps what was measured, by benchmark name; prints the machine's description and failures only, since the tables say
/// the rest. --benchmark_out writes every repetition to a file.
class MeasurementReporter : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context &context) override;
    void ReportRuns(const std::vector<Run> &runs) override;

    /// The measurement of a benchmark, or null when it did not run.
    const Measurement *Find(const std::string &name) const;

private:
    std::map<std::string, Measurement> measurements_;
};

/// Workloads along which one thing grows, by the names under which they are measured: NAME/way.
struct Series
{
    std::string title;
    std::vector<std::string> names; ///< in ascending order
    size_t growthFrom = 0;          ///< the workload that the last one is compared with
};

/// Prints, for each workload, cost per leaf of each way with its spread and the ratio of the first way to the others;
/// then how the cost per leaf of each way grows along each series. Workloads that were not run are left out.
void PrintTables(std::ostream &out, const MeasurementReporter &reporter, const std::vector<Series> &series,
                 const std::vector<std::string> &ways);

} // namespace gpbbench

#endif
