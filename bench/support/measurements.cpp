#include "support/measurements.h"

#include <algorithm>
#include <iomanip>
#include <ostream>
#include <sstream>

namespace gpbbench
{

namespace
{

constexpr double NS_PER_SECOND = 1e9;
constexpr int NAME_COLUMN = 22;
constexpr int WAY_COLUMN = 20;
constexpr int COLUMN = 26;

std::string WithSpread(const Sample &sample, int digits)
{
    std::ostringstream text;
    text << std::fixed << std::setprecision(digits) << sample.Median() << " [" << sample.Lowest() << " - "
         << sample.Highest() << "]";
    return text.str();
}

std::string WayName(const std::string &name, const std::string &way)
{
    return name + "/" + way;
}

void PrintCosts(std::ostream &out, const MeasurementReporter &reporter, const Series &series,
                const std::vector<std::string> &ways)
{
    for (const std::string &name : series.names)
    {
        const Measurement *first = reporter.Find(WayName(name, ways.front()));
        for (const std::string &way : ways)
        {
            const Measurement *here = reporter.Find(WayName(name, way));
            if (first == nullptr || here == nullptr)
            {
                continue;
            }
            std::ostringstream allocations;
            allocations << std::fixed << std::setprecision(2) << here->allocationsPerLeaf.Median();
            out << std::left << std::setw(NAME_COLUMN) << name << std::setw(WAY_COLUMN) << way << std::setw(COLUMN)
                << WithSpread(here->nsPerLeaf, 1) << std::setw(COLUMN)
                << (here == first ? "" : WithSpread(first->nsPerLeaf.DividedBy(here->nsPerLeaf), 2))
                << allocations.str() << '\n';
        }
    }
}

void PrintGrowth(std::ostream &out, const MeasurementReporter &reporter, const Series &series,
                 const std::vector<std::string> &ways)
{
    // A short run may have left out all that could have grown.
    if (series.names.size() <= series.growthFrom + 1)
    {
        return;
    }
    for (const std::string &way : ways)
    {
        const Measurement *from = reporter.Find(WayName(series.names[series.growthFrom], way));
        const Measurement *to = reporter.Find(WayName(series.names.back(), way));
        if (from == nullptr || to == nullptr)
        {
            continue;
        }
        out << std::left << std::setw(NAME_COLUMN) << series.title << std::setw(WAY_COLUMN) << way << std::setw(COLUMN)
            << WithSpread(to->nsPerLeaf.DividedBy(from->nsPerLeaf), 2) << series.names[series.growthFrom] << " -> "
            << series.names.back() << '\n';
    }
}

} // namespace

double Sample::Median() const
{
    std::vector<double> sorted = values;
    std::sort(sorted.begin(), sorted.end());
    const size_t middle = sorted.size() / 2;
    return sorted.size() % 2 == 1 ? sorted[middle] : (sorted[middle - 1] + sorted[middle]) / 2;
}

double Sample::Lowest() const
{
    return *std::min_element(values.begin(), values.end());
}

double Sample::Highest() const
{
    return *std::max_element(values.begin(), values.end());
}

Sample Sample::DividedBy(const Sample &other) const
{
    Sample ratios;
    for (size_t i = 0; i < std::min(values.size(), other.values.size()); ++i)
    {
        ratios.values.push_back(values[i] / other.values[i]);
    }
    return ratios;
}

bool MeasurementReporter::ReportContext(const Context &context)
{
    PrintBasicContext(&GetErrorStream(), context);
    return true;
}

void MeasurementReporter::ReportRuns(const std::vector<Run> &runs)
{
    for (const Run &run : runs)
    {
        if (run.error_occurred)
        {
            GetErrorStream() << run.benchmark_name() << ": " << run.error_message << '\n';
        }
        if (run.error_occurred || run.run_type != Run::RT_Iteration)
        {
            continue;
        }
        const double leaves = run.counters.at(LEAVES_COUNTER).value;
        Measurement &measurement = measurements_[run.run_name.function_name];
        measurement.nsPerLeaf.values.push_back(run.cpu_accumulated_time * NS_PER_SECOND /
                                               static_cast<double>(run.iterations) / leaves);
        measurement.allocationsPerLeaf.values.push_back(run.counters.at(ALLOCATIONS_COUNTER).value / leaves);
    }
}

const Measurement *MeasurementReporter::Find(const std::string &name) const
{
    const auto found = measurements_.find(name);
    return found == measurements_.end() ? nullptr : &found->second;
}

void PrintTables(std::ostream &out, const MeasurementReporter &reporter, const std::vector<Series> &series,
                 const std::vector<std::string> &ways)
{
    out << "\nCPU time per leaf in ns and allocations per leaf: median of the repetitions [lowest - highest].\n\n"
        << std::left << std::setw(NAME_COLUMN) << "workload" << std::setw(WAY_COLUMN) << "way" << std::setw(COLUMN)
        << "ns per leaf" << std::setw(COLUMN) << ways.front() + " / way"
        << "allocations per leaf\n";
    for (const Series &one : series)
    {
        PrintCosts(out, reporter, one, ways);
    }
    out << "\nGrowth of the cost per leaf, which should stay near 1 or near the growth of the floor.\n\n"
        << std::left << std::setw(NAME_COLUMN) << "series" << std::setw(WAY_COLUMN) << "way" << std::setw(COLUMN)
        << "growth"
        << "from -> to\n";
    for (const Series &one : series)
    {
        PrintGrowth(out, reporter, one, ways);
    }
}

} // namespace gpbbench
