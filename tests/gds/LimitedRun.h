#ifndef GDS_TESTS_LIMITEDRUN_H
#define GDS_TESTS_LIMITEDRUN_H

// Runs the built program, or a piece of a test, in a child process under resource limits:
// a file size limit stands in for a full disk (writes fail with EFBIG once SIGXFSZ is
// ignored) without root or a small file system, an address space limit for a small
// machine, and a CPU limit ends a run that would go on for ever.

#include <poll.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "GdsRun.h"

extern char** environ;

namespace gdstest {

struct Limits
{
    rlim_t fileBytes = RLIM_INFINITY;
    rlim_t addressBytes = RLIM_INFINITY;
    rlim_t cpuSeconds = 60;
};

namespace detail {

// Only calls that are safe between fork and exec.
inline void ApplyLimits(const Limits& limits)
{
    signal(SIGXFSZ, SIG_IGN);
    struct rlimit limit;
    limit.rlim_cur = limit.rlim_max = limits.fileBytes;
    setrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = limit.rlim_max = limits.addressBytes;
    setrlimit(RLIMIT_AS, &limit);
    limit.rlim_cur = limits.cpuSeconds;
    limit.rlim_max = limits.cpuSeconds + 1;
    setrlimit(RLIMIT_CPU, &limit);
}

inline void ReadBoth(int outFd, int errFd, std::string& out, std::string& err)
{
    struct pollfd fds[2] = {{outFd, POLLIN, 0}, {errFd, POLLIN, 0}};
    std::string* into[2] = {&out, &err};
    int open = 2;
    char buffer[65536];
    while (open > 0) {
        if (poll(fds, 2, -1) < 0) {
            if (errno == EINTR)
                continue;
            break;
        }
        for (int i = 0; i < 2; ++i) {
            if (fds[i].fd < 0 || !(fds[i].revents & (POLLIN | POLLHUP | POLLERR)))
                continue;
            ssize_t n = read(fds[i].fd, buffer, sizeof buffer);
            if (n > 0) {
                into[i]->append(buffer, size_t(n));
            } else if (n == 0 || errno != EINTR) {
                close(fds[i].fd);
                fds[i].fd = -1;
                --open;
            }
        }
    }
}

} // namespace detail

// The program with these arguments in the run's directory and with the environment
// GdsRun gives it; `finished` is false when a limit or a signal ended it.
inline RunResult RunLimited(const GdsRun& run, const std::vector<std::string>& arguments, const Limits& limits)
{
    std::vector<std::string> environment;
    for (char** entry = environ; *entry; ++entry) {
        std::string text = *entry;
        std::string name = text.substr(0, text.find('='));
        if (name == "HOME" || name.rfind("VELORA_", 0) == 0 || name.rfind("REG_VELORA_", 0) == 0)
            continue;
        environment.push_back(text);
    }
    environment.push_back("HOME=" + run.Dir().toStdString());
    std::vector<char*> envp;
    for (std::string& text : environment)
        envp.push_back(&text[0]);
    envp.push_back(nullptr);
    std::string program = GDS_BINARY;
    std::vector<std::string> words = arguments;
    std::vector<char*> argv{&program[0]};
    for (std::string& word : words)
        argv.push_back(&word[0]);
    argv.push_back(nullptr);
    std::string directory = run.Dir().toStdString();

    RunResult result;
    int outPipe[2], errPipe[2];
    if (pipe(outPipe) != 0 || pipe(errPipe) != 0)
        return result;
    pid_t child = fork();
    if (child == 0) {
        dup2(outPipe[1], 1);
        dup2(errPipe[1], 2);
        close(outPipe[0]);
        close(errPipe[0]);
        close(outPipe[1]);
        close(errPipe[1]);
        if (chdir(directory.c_str()) != 0)
            _exit(126);
        detail::ApplyLimits(limits);
        execve(program.c_str(), argv.data(), envp.data());
        _exit(127);
    }
    close(outPipe[1]);
    close(errPipe[1]);
    detail::ReadBoth(outPipe[0], errPipe[0], result.out, result.err);
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child)
        return result;
    result.finished = WIFEXITED(status);
    result.status = result.finished ? WEXITSTATUS(status) : -1;
    return result;
}

// The body's result as the exit status of a child that ran it under the limits; -1 when
// a limit or a signal ended the child. Whatever the body changes stays in the child.
inline int InChild(const std::function<int()>& body, const Limits& limits)
{
    fflush(stdout);
    fflush(stderr);
    pid_t child = fork();
    if (child == 0) {
        detail::ApplyLimits(limits);
        int code = body();
        fflush(stdout);
        _exit(code);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child)
        return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace gdstest

#endif
