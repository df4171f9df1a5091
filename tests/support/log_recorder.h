/**
 * Records what a context logs.
 *
 *     LogRecorder log;
 *     GpbLibInitParam param = log.initParam(kModuleId);
 *     GpbLibContext *context = GPBLIB_Initial(&param);
 *     EXPECT_LOG(log, "1: GPBLIB_Initial begin", "1: GPBLIB_Initial end");
 *
 * The callbacks also check what every message comes with: the handle, the argument of its own slot and the text
 * "NULL". A message that comes with anything else fails the test.
 */
#ifndef GPB_TESTS_SUPPORT_LOG_RECORDER_H
#define GPB_TESTS_SUPPORT_LOG_RECORDER_H

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "gpb_templatelib/gpb_lib.h"
#include "support/text_lines.h"

namespace gpbtest
{

/** One message. */
struct LogLine
{
    uint32_t level;
    std::string text;

    /** "LEVEL: TEXT" */
    std::string str() const { return std::to_string(level) + ": " + text; }
};

class LogRecorder
{
public:
    LogRecorder();
    ~LogRecorder();
    LogRecorder(const LogRecorder &) = delete;
    LogRecorder &operator=(const LogRecorder &) = delete;

    /** An init record whose slots record here; closed levels get no callback. */
    GpbLibInitParam initParam(uint32_t moduleId, std::initializer_list<uint32_t> closedLevels = {}) const;

    /** All messages since the last clearing, in order. */
    const std::vector<LogLine> &lines() const { return m_lines; }

    /** The same as "LEVEL: TEXT" texts. */
    std::vector<std::string> texts() const;

    /** Texts of the messages of one level, without the level. */
    std::vector<std::string> textsOfLevel(uint32_t level) const;

    /** All messages as one text, a line each, and forgets them. */
    std::string take();

    void clear() { m_lines.clear(); }

    /** The handle that the callbacks expect; differs from recorder to recorder. */
    uint32_t printHandle() const { return m_printHandle; }

    /** The argument that the callback of a level expects. */
    static uint32_t printArg(uint32_t level) { return 0xA0 + level; }

private:
    template <uint32_t level>
    static uint32_t print(uint32_t printHandle, uint32_t printArg, const char *tag, const char *text);

    void record(uint32_t level, uint32_t printArg, const char *tag, const char *text);

    uint32_t m_printHandle;
    std::vector<LogLine> m_lines;
};

} // namespace gpbtest

/** Expects exactly these "LEVEL: TEXT" messages, in this order, and forgets them. One message at least: none is
 * EXPECT_NO_LOG. */
#define EXPECT_LOG(recorder, ...)                                                                                      \
    EXPECT_EQ(::gpbtest::joinLines(std::vector<std::string>{__VA_ARGS__}), (recorder).take())

/** Expects that nothing was logged, and forgets what was. */
#define EXPECT_NO_LOG(recorder) EXPECT_EQ("", (recorder).take())

#endif
