#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "support/log_recorder.h"

namespace
{

using gpbtest::LogRecorder;

/** Logs as a context does. */
void print(const GpbLibInitParam &param, uint32_t level, const char *text)
{
    const GpbLibPrintEntry &slot = param.astPrint[level];
    slot.pfnPrint(param.ulPrintHandle, slot.ulPrintArg, "NULL", text);
}

TEST(LogRecorderTest, RecordsLevelsAndTextsInOrder)
{
    LogRecorder log;
    const GpbLibInitParam param = log.initParam(5);
    EXPECT_EQ(5u, param.uiModuleId);
    for (const uint32_t level : {1u, 0u, 3u, 2u, 1u})
    {
        print(param, level, "text");
    }
    EXPECT_EQ((std::vector<std::string>{"text", "text"}), log.textsOfLevel(1));
    EXPECT_EQ(5u, log.lines().size());
    EXPECT_LOG(log, "1: text", "0: text", "3: text", "2: text", "1: text");
    EXPECT_NO_LOG(log);
}

TEST(LogRecorderTest, RecordersAreIndependent)
{
    LogRecorder first;
    LogRecorder second;
    print(first.initParam(1), 0, "first");
    print(second.initParam(1), 0, "second");
    EXPECT_LOG(first, "0: first");
    EXPECT_LOG(second, "0: second");
}

TEST(LogRecorderTest, ClosedLevelsHaveNoCallback)
{
    const LogRecorder log;
    const GpbLibInitParam param = log.initParam(1, {GPB_LOG_ERROR, GPB_LOG_DUMP});
    EXPECT_EQ(nullptr, param.astPrint[GPB_LOG_ERROR].pfnPrint);
    EXPECT_NE(nullptr, param.astPrint[GPB_LOG_PROGRESS].pfnPrint);
    EXPECT_NE(nullptr, param.astPrint[GPB_LOG_SKIP].pfnPrint);
    EXPECT_EQ(nullptr, param.astPrint[GPB_LOG_DUMP].pfnPrint);
}

TEST(LogRecorderTest, ExpectationOfOtherMessagesFails)
{
    static LogRecorder log;
    const GpbLibInitParam param = log.initParam(1);
    print(param, 1, "text");
    EXPECT_NONFATAL_FAILURE(EXPECT_NO_LOG(log), "1: text");
    print(param, 1, "text");
    EXPECT_NONFATAL_FAILURE(EXPECT_LOG(log, "0: text"), "0: text");
    print(param, 1, "a");
    print(param, 1, "b");
    EXPECT_NONFATAL_FAILURE(EXPECT_LOG(log, "1: b", "1: a"), "1: b");
    EXPECT_NONFATAL_FAILURE(EXPECT_LOG(log, "1: a"), "1: a");
}

TEST(LogRecorderTest, WrongCompanionsOfAMessageFail)
{
    static LogRecorder log;
    static const GpbLibInitParam param = log.initParam(1);
    static const GpbLibPrintEntry &slot = param.astPrint[1];
    EXPECT_NONFATAL_FAILURE(slot.pfnPrint(1, slot.ulPrintArg, "NULL", "text"), "print handle");
    EXPECT_NONFATAL_FAILURE(slot.pfnPrint(param.ulPrintHandle, slot.ulPrintArg + 1, "NULL", "text"), "arg");
    EXPECT_NONFATAL_FAILURE(slot.pfnPrint(param.ulPrintHandle, slot.ulPrintArg, "function", "text"), "function");
    EXPECT_NONFATAL_FAILURE(slot.pfnPrint(param.ulPrintHandle, slot.ulPrintArg, "NULL", nullptr), "without a text");
}

} // namespace
