#include "faults/fault_outcomes.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <set>

namespace gpbtest
{

namespace
{

constexpr const char *kServiceNames[GPB_HOST_SERVICE_COUNT] = {
    "MALLOC",    "VEC_INIT",   "VEC_SET",  "STACK_CREATE", "STACK_PUSH", "STACK_POP",          "MEMCPY",
    "MEMSET",    "STRCPY",     "STRNCPY",  "SPRINTF",      "SNPRINTF",   "SNPRINTF_TRUNCATED", "VSNPRINTF_TRUNCATED",
    "WORK_PATH", "FILE_EXIST", "DIR_EXIST"};

uint64_t g_scenarios = 0;
uint64_t g_runs = 0;

/** Prints how much was failed when a program ends that did any of it. */
class Summary : public ::testing::Environment
{
public:
    void TearDown() override
    {
        if (g_scenarios > 0)
        {
            std::printf("failing services: %llu scenarios, %llu runs with a failing call\n",
                        static_cast<unsigned long long>(g_scenarios), static_cast<unsigned long long>(g_runs));
        }
    }
};

const ::testing::Environment *const kSummary = ::testing::AddGlobalTestEnvironment(new Summary);

/** Numbers as "1-3,7". */
std::string rangesOf(const std::vector<uint64_t> &numbers)
{
    std::string text;
    for (size_t i = 0; i < numbers.size();)
    {
        size_t last = i;
        while (last + 1 < numbers.size() && numbers[last + 1] == numbers[last] + 1)
        {
            ++last;
        }
        text += (text.empty() ? "" : ",") + std::to_string(numbers[i]);
        text += last == i ? "" : "-" + std::to_string(numbers[last]);
        i = last + 1;
    }
    return text;
}

/** Whether one line is all that differs, and only its text is missing. */
bool isOneLineEmpty(const std::vector<std::string> &good, const std::vector<std::string> &bad)
{
    if (good.size() != bad.size())
    {
        return false;
    }
    const auto difference = std::mismatch(good.begin(), good.end(), bad.begin());
    return difference.first != good.end() && *difference.second == difference.first->substr(0, 3) &&
           std::equal(difference.first + 1, good.end(), difference.second + 1);
}

/** Where an assertion was raised; these sources raise theirs at lines that are not part of the interface. */
std::string siteOf(const std::string &site)
{
    const std::string file = site.substr(0, site.find(':'));
    const std::set<std::string> withoutLines = {"gpb_util", "gpb_module_adapt", "gpb_xmlcompiler.cpp",
                                                "gpb_jsoncompiler"};
    return withoutLines.count(file) == 0 ? site : file;
}

/** The lines between the first and the last difference: how many are gone, and those that are new. */
std::string differenceOf(const std::vector<std::string> &good, const std::vector<std::string> &bad)
{
    if (isOneLineEmpty(good, bad))
    {
        return "; a line is empty";
    }
    const size_t shorter = std::min(good.size(), bad.size());
    const auto first = static_cast<size_t>(
        std::mismatch(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(shorter), bad.begin()).first -
        good.begin());
    size_t last = 0;
    while (last < shorter - first && good[good.size() - 1 - last] == bad[bad.size() - 1 - last])
    {
        ++last;
    }
    const size_t gone = good.size() - last - first;
    std::string text = gone == 0 ? "" : gone == 1 ? "; -" + good[first] : "; " + std::to_string(gone) + " lines gone";
    for (size_t i = first; i < bad.size() - last; ++i)
    {
        text += "; +" + bad[i];
    }
    return text;
}

} // namespace

FaultOutcomes::Run FaultOutcomes::run(const Life &life)
{
    log().clear();
    (void)takeAsserts();
    Run result;
    result.result = life();
    for (const std::string &line : log().texts())
    {
        result.lines.push_back(line.substr(0, line.find('\n')));
    }
    result.asserts = takeAsserts();
    log().clear();
    events().clear();
    return result;
}

std::string FaultOutcomes::tell(const Run &good, const Run &bad)
{
    std::string text = "same";
    if (!(bad.result == good.result))
    {
        text = bad.result.isDone ? "other bytes" : "none, code " + std::to_string(bad.result.code);
    }
    for (const std::string &site : bad.asserts)
    {
        text += "; " + siteOf(site) + " asserted";
    }
    return text + differenceOf(good.lines, bad.lines);
}

std::vector<std::string> FaultOutcomes::outcomesOf(const Service &service, const Run &good, const Life &life)
{
    const uint64_t before = service.callCount();
    run(life);
    const uint64_t calls = service.callCount() - before;
    std::vector<std::string> order;
    std::map<std::string, std::vector<uint64_t>> callsOf;
    for (uint64_t failing = 1; failing <= calls; ++failing)
    {
        SCOPED_TRACE(service.name + " " + std::to_string(failing));
        const LedgerSnapshot held;
        const uint64_t start = service.callCount();
        service.failCall(failing);
        const Run bad = run(life);
        service.failCall(0);
        EXPECT_GE(service.callCount() - start, failing) << "the call that was to fail was not made";
        EXPECT_EQ("", joinLines(held.added())) << "memory is held after the run";
        const Run after = run(life);
        EXPECT_TRUE(after.result == good.result && after.lines == good.lines && after.asserts.empty())
            << "the context is not what it was";
        const std::string outcome = tell(good, bad);
        std::vector<uint64_t> &numbers = callsOf[outcome];
        if (numbers.empty())
        {
            order.push_back(outcome);
        }
        numbers.push_back(failing);
        ++g_runs;
    }
    std::vector<std::string> texts;
    for (const std::string &outcome : order)
    {
        texts.push_back(service.name + " " + rangesOf(callsOf[outcome]) + ": " + outcome);
    }
    return texts;
}

void FaultOutcomes::expectOutcomesOf(const std::vector<Service> &services, const Life &life,
                                     const std::vector<std::string> &expected)
{
    ++g_scenarios;
    run(life); // what is made once is made
    const Run good = run(life);
    EXPECT_TRUE(good.result.isDone);
    EXPECT_EQ("", joinLines(good.asserts));
    std::vector<std::string> outcomes;
    for (const Service &service : services)
    {
        const std::vector<std::string> some = outcomesOf(service, good, life);
        outcomes.insert(outcomes.end(), some.begin(), some.end());
    }
    EXPECT_EQ(joinLines(expected), joinLines(outcomes));
}

void FaultOutcomes::expectOutcomes(const Life &life, const std::vector<std::string> &expected)
{
    std::vector<Service> services;
    for (int i = 0; i < GPB_HOST_SERVICE_COUNT; ++i)
    {
        const auto service = static_cast<GpbHostService>(i);
        services.push_back({kServiceNames[i], [service] { return GpbHost_CallCount(service); },
                            [service](uint64_t nth) { GpbHost_FailCall(service, nth); }});
    }
    expectOutcomesOf(services, life, expected);
}

} // namespace gpbtest
