/** Several threads encode what one thread does, and say it in the same order. */
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <map>
#include <regex>

#include "tool_fixture.h"

namespace
{

using gpbtest::ProcessResult;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr int kDocuments = 200;

/** The last line of a run's messages tells times, which differ from run to run. */
std::string withoutTimes(const std::string &messages)
{
    return std::regex_replace(messages, std::regex("bytes out, .* MB/s\n$"), "bytes out\n");
}

class EncodeJobs : public gpbtest::ToolTest
{
protected:
    /** Documents of different sizes; some are cut, foreign, unknown in part, or not there for long. */
    EncodeJobs()
    {
        for (int i = 0; i < kDocuments; ++i)
        {
            const std::string number = std::to_string(1000 + i);
            const bool json = i % 3 == 0;
            write("in/" + number + (json ? ".json" : ".xml"), json ? jsonDocument(i) : xmlDocument(i));
        }
    }

    static std::string xmlDocument(int i)
    {
        if (i % 20 == 7)
        {
            return "<top><name>cut";
        }
        if (i % 20 == 14)
        {
            return "<other><name>foreign</name></other>";
        }
        std::string text = "<top>\n<name>" + std::to_string(i) + "</name>\n";
        for (int box = 0; box < i * 2; ++box)
        {
            text += "<box><name>b</name><size>" + std::to_string(box) + "</size></box>\n";
        }
        return text + (i % 20 == 16 ? "<zz>1</zz>\n<i32>abc</i32>\n" : "") + "</top>";
    }

    static std::string jsonDocument(int i)
    {
        const std::string more = i % 24 == 6 ? R"(, "zz": 1)" : "";
        return R"({"top": {"i32": )" + std::to_string(i) + more + "}}";
    }

    ProcessResult encodeAll(const std::string &jobs, std::vector<std::string> more = {}) const
    {
        more.insert(more.end(), {path("in"), "--out-dir", path("out" + jobs), "--jobs", jobs});
        return encode(more);
    }

    std::map<std::string, std::string> written(const std::string &jobs) const
    {
        std::map<std::string, std::string> files;
        for (const std::string &name : list("out" + jobs))
        {
            files[name] = gpbtest::readFile(path("out" + jobs + "/" + name));
        }
        return files;
    }

    void expectSame(const std::vector<std::string> &options) const
    {
        const ProcessResult one = encodeAll("1", options);
        const ProcessResult four = encodeAll("4", options);
        EXPECT_EQ(one.exitCode, four.exitCode);
        EXPECT_EQ(withoutTimes(one.err), withoutTimes(four.err));
        EXPECT_EQ(written("1"), written("4"));
    }
};

TEST_F(EncodeJobs, NeitherOutputNorMessagesDependOnThreads)
{
    expectSame({});
    const ProcessResult again = encodeAll("4");
    EXPECT_EQ(again.exitCode, 6) << "of the first document that fails, 1006.json";
    EXPECT_THAT(again.err, ::testing::StartsWith("error: " + path("in/1006.json")));
    EXPECT_THAT(again.err, HasSubstr("\n170 of 200 documents encoded, 30 failed\n"));
    EXPECT_EQ(written("4").size(), 170u);
}

TEST_F(EncodeJobs, VerboseMessagesDoNotEither)
{
    expectSame({"-vvv"});
}

TEST_F(EncodeJobs, WarningsDoNotEither)
{
    expectSame({"--lenient", "--text", "-v"});
}

TEST_F(EncodeJobs, TheDefaultIsAsGood)
{
    encodeAll("1");
    EXPECT_EQ(encode({path("in"), "--out-dir", path("outdefault")}).exitCode, 6);
    EXPECT_EQ(written("1"), written("default"));
}

TEST_F(EncodeJobs, MessagesComeInTheOrderOfTheDocuments)
{
    const std::string messages = encodeAll("4").err;
    const std::regex error("error: [^\n]*/in/([0-9]+)\\.");
    std::vector<std::string> failed;
    for (std::sregex_iterator match(messages.begin(), messages.end(), error), end; match != end; ++match)
    {
        failed.push_back((*match)[1]);
    }
    EXPECT_EQ(failed.size(), 30u);
    EXPECT_TRUE(std::is_sorted(failed.begin(), failed.end()));
}

TEST_F(EncodeJobs, WithoutFurtherThreadsTheFirstOneDoesAll)
{
    encodeAll("1");
    gpbtest::ProcessSetup process =
        setup("encode", {"--module", "m", path("in"), "--out-dir", path("out4"), "--jobs", "4"});
    process.environment = {{PRELOAD_VARIABLE, PRELOAD_NO_THREADS_SYSTEM}, {"ASAN_OPTIONS", "verify_asan_link_order=0"}};
    const ProcessResult result = gpbtest::runProcess(process);
    EXPECT_EQ(result.exitCode, 6);
    EXPECT_THAT(result.err, HasSubstr("\n170 of 200 documents encoded, 30 failed\n"));
    EXPECT_EQ(written("1"), written("4"));
}

TEST_F(EncodeJobs, AModuleThatIsNotThereIsSaidOnce)
{
    const ProcessResult result =
        tool("encode", {"--module", "none", path("in"), "--out-dir", path("out"), "--jobs", "4"});
    EXPECT_EQ(result.exitCode, 2);
    const std::size_t said = result.err.find("error: module none not found");
    EXPECT_NE(said, std::string::npos) << result.err;
    EXPECT_EQ(result.err.find("error: ", said + 1), std::string::npos) << result.err;
    EXPECT_FALSE(gpbtest::exists(path("out")));
}

TEST_F(EncodeJobs, WhatProtobufSaysOfAModuleIsSaidOnce)
{
    writeModule("old", "package old;\nmessage Top { optional int32 a = 1; }\n");
    std::vector<std::string> arguments = {"--module", "old", "--out-dir", path("out"), "--jobs", "4"};
    for (const char *name : {"a", "b", "c", "d"})
    {
        arguments.push_back(write(std::string(name) + ".xml", "<top><a>1</a></top>"));
    }
    const ProcessResult result = tool("encode", arguments);
    EXPECT_EQ(result.exitCode, 0);
    const std::size_t said = result.err.find("WARNING");
    EXPECT_NE(said, std::string::npos) << result.err;
    EXPECT_EQ(result.err.find("WARNING", said + 1), std::string::npos) << result.err;
}

TEST_F(EncodeJobs, NumbersOutOfRangeAreWrong)
{
    for (const char *jobs : {"0", "-1", "257", "two", "1.5", ""})
    {
        const ProcessResult result = encodeAll(jobs);
        EXPECT_EQ(result.exitCode, 1) << jobs;
        EXPECT_THAT(result.err, HasSubstr("--jobs")) << jobs;
    }
    EXPECT_FALSE(gpbtest::exists(path("out0")));
}

class EncodeProgress : public gpbtest::ToolTest
{
protected:
    /** Runs the tool on one document that is there and one that comes after a while, with messages on a terminal. */
    ProcessResult encodeSlowly(bool terminal, const std::string &jobs) const
    {
        const std::string quick = write("a.xml", "<top><name>a</name></top>");
        const std::string pipe = path("b.xml");
        EXPECT_EQ(mkfifo(pipe.c_str(), 0600), 0);
        gpbtest::ProcessSetup process =
            setup("encode", {"--module", "m", quick, pipe, "--out-dir", path("out"), "--jobs", jobs});
        const std::string script = "(sleep 0.7; echo '<top><name>b</name></top>' >" + pipe + ") & exec \"$@\"";
        process.arguments.insert(process.arguments.begin(), {"-c", script, "sh", process.program});
        process.program = "/bin/sh";
        process.errIsTerminal = terminal;
        ProcessResult result = gpbtest::runProcess(process);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(list("out"), (std::vector<std::string>{"a.gpb", "b.gpb"}));
        return result;
    }
};

TEST_F(EncodeProgress, IsShownOnATerminal)
{
    const ProcessResult result = encodeSlowly(true, "2");
    EXPECT_THAT(result.err, HasSubstr("\r\033[K[........................] 0/2"));
    EXPECT_TRUE(std::regex_search(
        result.err, std::regex("\r\033\\[K\\[############............\\] 1/2, 0:0[0-9] left, [0-9.]+ documents/s, "
                               "0\\.0 MB/s\r")))
        << result.err;
    EXPECT_TRUE(std::regex_search(
        result.err, std::regex("\r\033\\[K2 of 2 documents encoded\r\n51 bytes in, 6 bytes out, [01]\\.[0-9]+ s, "
                               "[0-9.]+ documents/s, 0\\.0 MB/s\r\n$")))
        << result.err;
}

TEST_F(EncodeProgress, IsShownForOneThread)
{
    EXPECT_THAT(encodeSlowly(true, "1").err, HasSubstr("\r\033[K[############............] 1/2, "));
}

TEST_F(EncodeProgress, IsNotShownElsewhere)
{
    const std::string messages = encodeSlowly(false, "2").err;
    EXPECT_THAT(messages, ::testing::StartsWith("2 of 2 documents encoded\n51 bytes in, 6 bytes out, "));
    EXPECT_THAT(messages, Not(HasSubstr("\033")));
    EXPECT_THAT(messages, Not(HasSubstr("\r")));
}

} // namespace
