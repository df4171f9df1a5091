/** Runs a program and collects what it writes. */
#ifndef GPB_TESTS_TOOL_PROCESS_H
#define GPB_TESTS_TOOL_PROCESS_H

#include <string>
#include <utility>
#include <vector>

namespace gpbtest
{

struct ProcessResult
{
    int exitCode = -1; /**< -1 when a signal ended the process */
    std::string out;
    std::string err;
};

struct ProcessSetup
{
    std::string program;
    std::vector<std::string> arguments;
    std::string input;                                            /**< for standard input */
    std::vector<std::pair<std::string, std::string>> environment; /**< set on top of this process's own */
    bool outIsTerminal = false;
    bool errIsTerminal = false;
    long fileSizeLimit = -1; /**< bytes that a written file may have; below 0 for no limit */
};

/** Runs to the end; a process that takes longer than a minute is ended and fails the test. */
ProcessResult runProcess(const ProcessSetup &setup);

} // namespace gpbtest

#endif
