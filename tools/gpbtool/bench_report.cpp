#include "bench_report.h"

#include <cjson/cJSON.h>

#include <cstdio>
#include <memory>
#include <new>

#include "json_document.h"

namespace gpbtool
{

namespace
{

constexpr double kNanoseconds = 1e9; // in a second
constexpr double kMicrosecond = 1e3; // in nanoseconds
constexpr double kMegabyte = 1e6;
constexpr double kPercent = 100;

const char *FormatName(bool json)
{
    return json ? "json" : "xml";
}

double DocumentsPerSecond(const BenchResult &result)
{
    return kNanoseconds / result.total.median;
}

double MegabytesPerSecond(const BenchResult &result)
{
    return static_cast<double>(result.documentBytes) / kMegabyte * DocumentsPerSecond(result);
}

double Share(const BenchResult &result, const TimeSpread &time)
{
    return time.median / result.total.median;
}

/** A document without leaves is counted as if it had one. */
double PerLeaf(const BenchResult &result, double nanoseconds)
{
    return nanoseconds / static_cast<double>(result.leaves > 0 ? result.leaves : 1);
}

template <typename... Argument>
std::string Format(const char *format, Argument... argument)
{
    char text[256];
    std::snprintf(text, sizeof text, format, argument...);
    return text;
}

std::string Row(const BenchResult &result, const BenchPhase &phase, const TimeSpread &time)
{
    return Format("%-10s %12.2f %12.2f %12.2f %12.2f %7.1f %10.1f  %s\n", phase.name, time.median / kMicrosecond,
                  time.low / kMicrosecond, time.high / kMicrosecond, time.mean / kMicrosecond,
                  kPercent * Share(result, time), PerLeaf(result, time.median), phase.meaning);
}

/** A JSON object in the making; cJSON's failures are a lack of memory. */
class JsonObject
{
public:
    JsonObject() : item_(Made(cJSON_CreateObject())) {}

    void Add(const char *name, double value) { Made(cJSON_AddNumberToObject(item_.get(), name, value)); }
    void Add(const char *name, const char *value) { Made(cJSON_AddStringToObject(item_.get(), name, value)); }
    void Add(const char *name, JsonTree value)
    {
        if (cJSON_AddItemToObject(item_.get(), name, value.get()) == 0)
        {
            throw std::bad_alloc();
        }
        static_cast<void>(value.release());
    }

    JsonTree Take() { return std::move(item_); }

    static cJSON *Made(cJSON *item) { return item != nullptr ? item : throw std::bad_alloc(); }

private:
    JsonTree item_;
};

JsonObject TimesObject(const BenchResult &result, const TimeSpread &time)
{
    JsonObject object;
    object.Add("median_ns", time.median);
    object.Add("p10_ns", time.low);
    object.Add("p90_ns", time.high);
    object.Add("mean_ns", time.mean);
    object.Add("share", Share(result, time));
    object.Add("ns_per_leaf", PerLeaf(result, time.median));
    return object;
}

struct TextDeleter
{
    void operator()(char *text) const { cJSON_free(text); }
};

} // namespace

std::string BenchTable(const BenchTitle &title, const BenchResult &result)
{
    std::string text = title.module + ", " + FormatName(title.json) + ": " + std::to_string(result.documentBytes) +
                       " bytes in, " + std::to_string(result.encodedBytes) + " bytes out, " +
                       std::to_string(result.leaves) + " leaves\n" +
                       Format("%zu repetitions in %.2f s; the module was loaded once, in %.2f ms\n\n",
                              result.repetitions, result.seconds, title.loadSeconds * 1000);
    text += Format("%-10s %12s %12s %12s %12s %7s %10s\n", "PHASE", "MEDIAN us", "10% us", "90% us", "MEAN us",
                   "SHARE %", "ns/LEAF");
    for (std::size_t i = 0; i < kBenchPhases.size(); ++i)
    {
        text += Row(result, kBenchPhases[i], result.phases[i]);
    }
    text += Row(result, {"total", "sum of these"}, result.total);
    return text + Format("\n%.1f documents/s, %.1f MB/s, %.1f ns per leaf\n", DocumentsPerSecond(result),
                         MegabytesPerSecond(result), PerLeaf(result, result.total.median));
}

std::string BenchJson(const BenchTitle &title, const BenchResult &result)
{
    JsonObject report;
    report.Add("module", title.module.c_str());
    report.Add("format", FormatName(title.json));
    report.Add("document_bytes", static_cast<double>(result.documentBytes));
    report.Add("encoded_bytes", static_cast<double>(result.encodedBytes));
    report.Add("leaves", static_cast<double>(result.leaves));
    report.Add("repetitions", static_cast<double>(result.repetitions));
    report.Add("seconds", result.seconds);
    report.Add("module_load_ns", title.loadSeconds * kNanoseconds);
    JsonObject phases;
    for (std::size_t i = 0; i < kBenchPhases.size(); ++i)
    {
        phases.Add(kBenchPhases[i].name, TimesObject(result, result.phases[i]).Take());
    }
    report.Add("phases", phases.Take());
    report.Add("total", TimesObject(result, result.total).Take());
    report.Add("documents_per_second", DocumentsPerSecond(result));
    report.Add("mb_per_second", MegabytesPerSecond(result));
    report.Add("ns_per_leaf", PerLeaf(result, result.total.median));
    const JsonTree tree = report.Take();
    const std::unique_ptr<char, TextDeleter> text(cJSON_Print(tree.get()));
    if (text == nullptr)
    {
        throw std::bad_alloc();
    }
    return std::string(text.get()) + "\n";
}

} // namespace gpbtool
