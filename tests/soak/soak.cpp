/**
 * A long life in one process: documents good and bad, modules, templates and faults at random, while the memory is
 * watched. Usage: gpb_soak [--seed N] [--leak-on-purpose ledger|heap|resident] SECONDS
 *
 * What is in use of the heap is exact with GLIBC_TUNABLES=glibc.malloc.tcache_count=0.
 */
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <stdexcept>
#include <string>
#include <sys/mman.h>

#include <libxml/xmlerror.h>

#include "faults/process_memory.h"
#include "platform/zmp.h"
#include "soak/memory_watch.h"
#include "soak/operations.h"

namespace
{

using Clock = std::chrono::steady_clock;
using gpbsoak::MemorySample;

constexpr size_t kLostBytes = 16384;
constexpr double kWarmUpPart = 0.25;
constexpr unsigned int kOperationsPerSample = 64;
constexpr size_t kKib = 1024;

struct Options
{
    double seconds = 0;
    uint64_t seed = std::random_device()();
    std::string leak;
};

/** The last piece that was lost on purpose; without it the compiler would not allocate. */
void *volatile g_lost = nullptr;

/** Loses memory after an operation in the way that was asked for, to show that it is found. */
void leak(const std::string &kind)
{
    if (kind == "ledger")
    {
        g_lost = ZMP_Malloc_F(1, 0, kLostBytes, "soak", 1);
    }
    else if (kind == "heap")
    {
        // Still within reach: a leak detector would find it in another way.
        void *const lost = std::malloc(kLostBytes);
        std::memcpy(lost, const_cast<void **>(&g_lost), sizeof(lost));
        g_lost = lost;
    }
    else if (kind == "resident")
    {
        g_lost = mmap(nullptr, kLostBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_POPULATE, -1, 0);
    }
}

/** libxml2 tells standard error of each failed allocation. */
void ignoreXmlError(void *, const char *, ...) {}

Options parse(int count, char **arguments)
{
    Options options;
    for (int i = 1; i < count; ++i)
    {
        const std::string argument = arguments[i];
        const bool hasValue = i + 1 < count;
        if (argument == "--seed" && hasValue)
        {
            options.seed = std::strtoull(arguments[++i], nullptr, 10);
        }
        else if (argument == "--leak-on-purpose" && hasValue)
        {
            options.leak = arguments[++i];
        }
        else
        {
            options.seconds = std::strtod(arguments[i], nullptr);
        }
    }
    if (!(options.seconds > 0))
    {
        throw std::runtime_error("usage: gpb_soak [--seed N] [--leak-on-purpose ledger|heap|resident] SECONDS");
    }
    return options;
}

void printCount(const char *what, uint64_t count)
{
    std::printf("%-20s %12llu\n", what, static_cast<unsigned long long>(count));
}

void printSummary(const gpbsoak::Operations &operations, const MemorySample &start, const MemorySample &end)
{
    const gpbsoak::FaultLives &lives = operations.lives();
    uint64_t documents = lives.documents();
    uint64_t modules = lives.modules();
    uint64_t templates = lives.templates();
    for (const gpbsoak::Target &target : operations.targets())
    {
        documents += target.documents;
        modules += target.modules * target.runs;
        templates += target.templates * target.runs;
        printCount((std::string("  ") + target.name).c_str(), target.runs);
    }
    printCount("  lives with a fault", lives.faults());
    printCount("documents done", documents);
    printCount("modules loaded", modules);
    printCount("templates generated", templates);
    printCount("faults injected", lives.faults());
    printCount("bytes lost", end.ledger - start.ledger);
    std::printf("%-20s %12zu bytes after the warm-up, %zu at the end\n", "heap in use", start.heap, end.heap);
    std::printf("%-20s %12zu KiB after the warm-up, %zu at the end\n", "resident memory", start.resident / kKib,
                end.resident / kKib);
}

int soak(const Options &options)
{
    std::printf("soak: seed %llu, %.1f s\n", static_cast<unsigned long long>(options.seed), options.seconds);
    gpbsoak::Operations operations(options.seed);
    operations.runAll();
    gpbsoak::MemoryWatch watch(gpbsoak::sampleMemory().ledger);
    const Clock::time_point start = Clock::now();
    std::string growth;
    MemorySample sample;
    double elapsed = 0;
    do
    {
        for (unsigned int i = 0; i < kOperationsPerSample; ++i)
        {
            operations.runOne();
            leak(options.leak);
        }
        sample = gpbsoak::sampleMemory();
        elapsed = std::chrono::duration<double>(Clock::now() - start).count();
        const bool isWarmUp = elapsed < kWarmUpPart * options.seconds || watch.measure().resident == 0;
        growth = isWarmUp ? watch.warmUp(sample) : watch.findGrowth(sample);
    } while (growth.empty() && elapsed < options.seconds);
    printSummary(operations, watch.measure(), sample);
    std::printf("soak: %s%s\n", growth.empty() ? "flat" : "FAILED: ", growth.c_str());
    return growth.empty() ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    try
    {
        gpbtest::takeProcessMemory();
        xmlSetGenericErrorFunc(nullptr, ignoreXmlError);
        return soak(parse(argc, argv));
    }
    catch (const std::exception &error)
    {
        (void)std::fprintf(stderr, "error: %s\n", error.what());
        return 2;
    }
}
