#include "document_bench.h"

#include <algorithm>
#include <chrono>
#include <numeric>
#include <vector>

#include "compiler.h"
#include "json_document.h"
#include "tool_error.h"
#include "xml_document.h"

namespace gpbtool
{

namespace
{

using Clock = std::chrono::steady_clock;
using Times = std::vector<double>;

constexpr std::size_t kTenth = 10;

ToolError NotAgainError(const std::string &path)
{
    return ToolError(ExitCode::Internal, path + ": encoded at first, but not again", "is there enough memory?");
}

std::size_t CountLeaves(const xmlNode &element)
{
    std::size_t leaves = 0;
    bool isLeaf = true;
    for (const xmlNode *child = element.children; child != nullptr; child = child->next)
    {
        if (child->type == XML_ELEMENT_NODE)
        {
            isLeaf = false;
            leaves += CountLeaves(*child);
        }
    }
    return isLeaf ? 1 : leaves;
}

std::size_t CountLeaves(const cJSON &item)
{
    if (cJSON_IsObject(&item) == 0 && cJSON_IsArray(&item) == 0)
    {
        return 1;
    }
    std::size_t leaves = 0;
    for (const cJSON *child = item.child; child != nullptr; child = child->next)
    {
        leaves += CountLeaves(*child);
    }
    return leaves;
}

/** How an XML document is treated. */
struct XmlWay
{
    using Tree = XmlDocument;

    static Tree Parse(const BenchSubject &subject) { return ParseXmlText(subject.text, subject.path); }
    static Compiler Create(const Session &session, const BenchSubject &subject)
    {
        return Compiler(GpbXmlCompiler_CreateCompiler(session.Context(), subject.module.c_str()));
    }
    static bool Walk(GpbXmlCompilerBase &compiler, const Tree &tree)
    {
        return compiler.Encode(tree.get()) == GPB_COMPILER_OK;
    }
    static std::size_t Leaves(const Tree &tree) { return CountLeaves(*xmlDocGetRootElement(tree.get())); }
};

/** How a JSON document is treated. */
struct JsonWay
{
    using Tree = JsonTree;

    static Tree Parse(const BenchSubject &subject)
    {
        Tree tree(cJSON_ParseWithLength(subject.text.data(), subject.text.size()));
        if (tree == nullptr || tree->child == nullptr)
        {
            throw NotAgainError(subject.path);
        }
        if (subject.stripPrefixes)
        {
            StripJsonPrefixes(*tree);
        }
        return tree;
    }
    static Compiler Create(const Session &session, const BenchSubject &subject)
    {
        return Compiler(GpbJsonCompiler_CreateJsonCompiler(session.Context(), subject.module.c_str()));
    }
    static bool Walk(GpbXmlCompilerBase &compiler, const Tree &tree)
    {
        return compiler.EncodeJson(tree->child, tree->child) == GPB_COMPILER_OK;
    }
    static std::size_t Leaves(const Tree &tree) { return CountLeaves(*tree->child); }
};

/** One repetition: the points in time between its phases. */
using Points = std::array<Clock::time_point, kBenchPhases.size() + 1>;

template <typename Way>
Points Repeat(const Session &session, const BenchSubject &subject, std::size_t &encodedBytes)
{
    Points points;
    Clock::time_point *point = points.data();
    *point++ = Clock::now();
    typename Way::Tree tree = Way::Parse(subject);
    *point++ = Clock::now();
    Compiler compiler = Way::Create(session, subject);
    *point++ = Clock::now();
    const bool walked = compiler != nullptr && Way::Walk(*compiler, tree);
    *point++ = Clock::now();
    unsigned int length = 0;
    const bool encoded = walked && compiler->GetResult(&length) != nullptr;
    *point++ = Clock::now();
    compiler.reset();
    *point++ = Clock::now();
    tree.reset();
    *point = Clock::now();
    if (!encoded)
    {
        throw NotAgainError(subject.path);
    }
    encodedBytes = length;
    return points;
}

double Nanoseconds(Clock::time_point from, Clock::time_point to)
{
    return std::chrono::duration<double, std::nano>(to - from).count();
}

/** @param times  at least one */
TimeSpread Spread(Times times)
{
    std::sort(times.begin(), times.end());
    const std::size_t tenth = times.size() / kTenth;
    const double sum = std::accumulate(times.begin(), times.end(), 0.0);
    return {times[times.size() / 2], times[tenth], times[times.size() - 1 - tenth],
            sum / static_cast<double>(times.size())};
}

TimeSpread Sum(const TimeSpread &a, const TimeSpread &b)
{
    return {a.median + b.median, a.low + b.low, a.high + b.high, a.mean + b.mean};
}

template <typename Way>
BenchResult Bench(const Session &session, const BenchSubject &subject, double seconds)
{
    BenchResult result = {};
    result.documentBytes = subject.text.size();
    result.leaves = Way::Leaves(Way::Parse(subject));
    // The first one finds cold memory and does not count.
    Repeat<Way>(session, subject, result.encodedBytes);

    std::array<Times, kBenchPhases.size()> phases;
    const auto end = Clock::now() + std::chrono::duration<double>(seconds);
    for (; result.repetitions < kMinRepetitions || (result.repetitions < kMaxRepetitions && Clock::now() < end);
         ++result.repetitions)
    {
        const Points points = Repeat<Way>(session, subject, result.encodedBytes);
        for (std::size_t i = 0; i < phases.size(); ++i)
        {
            phases[i].push_back(Nanoseconds(points[i], points[i + 1]));
        }
        result.seconds += std::chrono::duration<double>(points.back() - points.front()).count();
    }
    std::transform(phases.begin(), phases.end(), result.phases.begin(), Spread);
    result.total = std::accumulate(result.phases.begin(), result.phases.end(), TimeSpread{}, Sum);
    return result;
}

} // namespace

BenchResult BenchDocument(Session &session, const BenchSubject &subject, double seconds)
{
    return subject.json ? Bench<JsonWay>(session, subject, seconds) : Bench<XmlWay>(session, subject, seconds);
}

} // namespace gpbtool
