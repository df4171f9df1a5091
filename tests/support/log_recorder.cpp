#include "support/log_recorder.h"

#include <map>
#include <mutex>
#include <utility>

namespace gpbtest
{

namespace
{

/** Returned by the callbacks: the library has to ignore it. */
constexpr uint32_t kPrintResult = 0xFFFFFFFF;
constexpr uint32_t kFirstPrintHandle = 0xC0DE0001;

/** Recorders by handle: a 32-bit handle cannot hold a pointer. */
std::map<uint32_t, LogRecorder *> &recorders()
{
    static std::map<uint32_t, LogRecorder *> map;
    return map;
}

// Contexts of different threads log at the same time.
std::mutex g_mutex;
uint32_t g_nextPrintHandle = kFirstPrintHandle;

LogRecorder *findRecorder(uint32_t printHandle)
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    const auto found = recorders().find(printHandle);
    return found == recorders().end() ? nullptr : found->second;
}

} // namespace

LogRecorder::LogRecorder()
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    m_printHandle = g_nextPrintHandle++;
    recorders()[m_printHandle] = this;
}

LogRecorder::~LogRecorder()
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    recorders().erase(m_printHandle);
}

template <uint32_t level>
uint32_t LogRecorder::print(uint32_t printHandle, uint32_t printArg, const char *tag, const char *text)
{
    LogRecorder *const recorder = findRecorder(printHandle);
    if (recorder == nullptr)
    {
        ADD_FAILURE() << "message of level " << level << " with the unknown print handle " << printHandle;
        return kPrintResult;
    }
    recorder->record(level, printArg, tag, text);
    return kPrintResult;
}

void LogRecorder::record(uint32_t level, uint32_t arg, const char *tag, const char *text)
{
    EXPECT_EQ(printArg(level), arg);
    EXPECT_STREQ("NULL", tag);
    if (text == nullptr)
    {
        ADD_FAILURE() << "message of level " << level << " without a text";
        return;
    }
    m_lines.push_back({level, text});
}

GpbLibInitParam LogRecorder::initParam(uint32_t moduleId, std::initializer_list<uint32_t> closedLevels) const
{
    GpbLibInitParam param{moduleId,
                          m_printHandle,
                          {{printArg(GPB_LOG_ERROR), print<GPB_LOG_ERROR>},
                           {printArg(GPB_LOG_PROGRESS), print<GPB_LOG_PROGRESS>},
                           {printArg(GPB_LOG_SKIP), print<GPB_LOG_SKIP>},
                           {printArg(GPB_LOG_DUMP), print<GPB_LOG_DUMP>}}};
    for (const uint32_t level : closedLevels)
    {
        param.astPrint[level].pfnPrint = nullptr;
    }
    return param;
}

std::vector<std::string> LogRecorder::texts() const
{
    std::vector<std::string> texts;
    for (const LogLine &line : m_lines)
    {
        texts.push_back(line.str());
    }
    return texts;
}

std::vector<std::string> LogRecorder::textsOfLevel(uint32_t level) const
{
    std::vector<std::string> texts;
    for (const LogLine &line : m_lines)
    {
        if (line.level == level)
        {
            texts.push_back(line.text);
        }
    }
    return texts;
}

std::string LogRecorder::take()
{
    std::string text = joinLines(texts());
    clear();
    return text;
}

} // namespace gpbtest
