#include "process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>

namespace gpbtest
{

namespace
{

constexpr auto kTimeLimit = std::chrono::seconds(60);
constexpr int kPollMilliseconds = 1000;

/** Both ends of a channel from the child: a pipe, or a terminal whose other side we hold. */
struct Channel
{
    int ours = -1;
    int theirs = -1;
};

Channel makeChannel(bool terminal)
{
    int ends[2] = {-1, -1};
    const int result = terminal ? openpty(&ends[0], &ends[1], nullptr, nullptr, nullptr) : pipe(ends);
    EXPECT_EQ(result, 0);
    fcntl(ends[0], F_SETFD, FD_CLOEXEC);
    return {ends[0], ends[1]};
}

/** A file that holds the input and is deleted already. */
int makeInput(const std::string &text)
{
    char name[] = "/tmp/gpb_tool_input_XXXXXX";
    const int fd = mkstemp(name);
    EXPECT_GE(fd, 0);
    unlink(name);
    EXPECT_EQ(write(fd, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    lseek(fd, 0, SEEK_SET);
    return fd;
}

[[noreturn]] void becomeProgram(const ProcessSetup &setup, int input, int out, int err)
{
    dup2(input, STDIN_FILENO);
    dup2(out, STDOUT_FILENO);
    dup2(err, STDERR_FILENO);
    if (setup.fileSizeLimit >= 0)
    {
        const rlimit limit = {static_cast<rlim_t>(setup.fileSizeLimit), static_cast<rlim_t>(setup.fileSizeLimit)};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    for (const auto &[name, value] : setup.environment)
    {
        setenv(name.c_str(), value.c_str(), 1);
    }
    std::vector<char *> argv = {const_cast<char *>(setup.program.c_str())};
    for (const std::string &argument : setup.arguments)
    {
        argv.push_back(const_cast<char *>(argument.c_str()));
    }
    argv.push_back(nullptr);
    execvp(argv[0], argv.data());
    _exit(127);
}

/** Reads what is there; false at the end, which a terminal reports as an error. */
bool readSome(int fd, std::string &text)
{
    char buffer[4096];
    const ssize_t count = read(fd, buffer, sizeof buffer);
    if (count <= 0)
    {
        return false;
    }
    text.append(buffer, static_cast<std::size_t>(count));
    return true;
}

void collect(pid_t child, const Channel &out, const Channel &err, ProcessResult &result)
{
    pollfd waits[2] = {{out.ours, POLLIN, 0}, {err.ours, POLLIN, 0}};
    std::string *texts[2] = {&result.out, &result.err};
    const auto end = std::chrono::steady_clock::now() + kTimeLimit;
    while (waits[0].fd >= 0 || waits[1].fd >= 0)
    {
        poll(waits, 2, kPollMilliseconds);
        for (int i = 0; i < 2; ++i)
        {
            if (waits[i].fd >= 0 && waits[i].revents != 0 && !readSome(waits[i].fd, *texts[i]))
            {
                waits[i].fd = -1;
            }
        }
        if (std::chrono::steady_clock::now() > end)
        {
            ADD_FAILURE() << "the process does not end";
            kill(child, SIGKILL);
            return;
        }
    }
}

} // namespace

ProcessResult runProcess(const ProcessSetup &setup)
{
    const Channel out = makeChannel(setup.outIsTerminal);
    const Channel err = makeChannel(setup.errIsTerminal);
    const int input = makeInput(setup.input);
    const pid_t child = fork();
    if (child == 0)
    {
        becomeProgram(setup, input, out.theirs, err.theirs);
    }
    EXPECT_GT(child, 0);
    close(input);
    close(out.theirs);
    close(err.theirs);
    ProcessResult result;
    collect(child, out, err, result);
    close(out.ours);
    close(err.ours);
    int status = 0;
    waitpid(child, &status, 0);
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

} // namespace gpbtest
