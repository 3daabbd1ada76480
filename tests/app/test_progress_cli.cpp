// The progress line as a user at a terminal meets it: the built program with standard error
// on a pseudo-terminal, against the same run with standard error on a pipe.

#include <gtest/gtest.h>

#include <QFileInfo>

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <regex>
#include <string>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>
#include <vector>

#include "GdsRun.h"
#include "Undated.h"

using gdstest::GdsRun;
using gdstest::StreamWriter;

namespace {

struct Captured
{
    int status = -1;
    std::string out;
    std::string err;
    double seconds = 0;
};

// Appends what a descriptor holds; false once it has ended (a pty's master reports its end
// as EIO when the last writer is gone).
bool Drain(int fd, std::string& into)
{
    char buffer[4096];
    const ssize_t got = read(fd, buffer, sizeof buffer);
    if (got > 0) {
        into.append(buffer, size_t(got));
        return true;
    }
    return got < 0 && errno == EINTR;
}

// Runs gds in `dir` with standard output on a pipe and standard error on a pseudo-terminal
// in raw mode (so that what arrives is what the program wrote) or on a second pipe.
Captured RunGds(const std::string& dir, const std::vector<std::string>& arguments, bool terminal)
{
    Captured result;
    int out[2], err[2];
    if (pipe(out) != 0)
        return result;
    if (terminal) {
        struct termios raw;
        cfmakeraw(&raw);
        if (openpty(&err[0], &err[1], nullptr, &raw, nullptr) != 0)
            return result;
    } else if (pipe(err) != 0) {
        return result;
    }
    std::vector<char*> argv;
    argv.push_back(const_cast<char*>(GDS_BINARY));
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    const std::string home = "HOME=" + dir;
    char* environment[] = {const_cast<char*>(home.c_str()), const_cast<char*>("PATH=/usr/bin:/bin"), nullptr};

    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) {
        const int null = open("/dev/null", O_RDONLY);
        if (chdir(dir.c_str()) != 0 || null < 0)
            _exit(127);
        dup2(null, 0);
        dup2(out[1], 1);
        dup2(err[1], 2);
        execve(GDS_BINARY, argv.data(), environment);
        _exit(127);
    }
    close(out[1]);
    close(err[1]);
    bool outOpen = true, errOpen = true;
    while (child > 0 && (outOpen || errOpen)) {
        pollfd fds[2] = {{out[0], POLLIN, 0}, {err[0], POLLIN, 0}};
        if (poll(fds, 2, 60000) <= 0)
            break;
        if (outOpen && fds[0].revents)
            outOpen = Drain(out[0], result.out);
        if (errOpen && fds[1].revents)
            errOpen = Drain(err[0], result.err);
    }
    close(out[0]);
    close(err[0]);
    int status = 0;
    if (child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status))
        result.status = WEXITSTATUS(status);
    result.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return result;
}

// Standard error without the progress line: its draws and its clears.
std::string WithoutLine(const std::string& text)
{
    static const std::regex line("\r(gds: [^\r\n]*| *)");
    return std::regex_replace(text, line, "");
}

} // namespace

TEST(ProgressCli, TerminalOnStandardErrorChangesNoOutput)
{
    if (!QFileInfo(GDS_BINARY).isExecutable())
        GTEST_SKIP() << "program not built: " << GDS_BINARY;
    // A million polygons from a few records, of which the keep box passes four: on a busy
    // machine long enough to draw the line, and a small project to compare. The box is in the
    // project's unit, the micrometre; the cell is 10 by 10 database units of a nanometre.
    GdsRun run;
    StreamWriter stream;
    stream.Begin().Cell("C");
    stream.Bgnstr("TOP").Aref("C", 1000, 1000, {{0, 0}, {20000, 0}, {0, 20000}}).Endstr();
    run.Write("chip.gds", stream.Endlib());
    const std::vector<std::string> arguments = {"-v", "-k", "0,0.03,0,0.03", "chip.gds"};

    const Captured piped = RunGds(run.Dir().toStdString(), arguments, false);
    ASSERT_EQ(piped.status, 0) << piped.out;
    // The same but for the time of writing.
    const std::string project = Undated(run.Read("chip.vel"));
    ASSERT_NE(project, "<missing>");
    EXPECT_EQ(piped.err.find('\r'), std::string::npos);

    const Captured shown = RunGds(run.Dir().toStdString(), arguments, true);
    ASSERT_EQ(shown.status, 0) << shown.out;
    EXPECT_EQ(shown.out, piped.out);
    EXPECT_EQ(Undated(run.Read("chip.vel")), project);
    // The line's draws and clears were all that was added, and a clear came last.
    EXPECT_EQ(WithoutLine(shown.err), piped.err);
    const bool drawn = shown.err.find("\rgds: ") != std::string::npos;
    if (drawn) {
        EXPECT_EQ(shown.err.substr(shown.err.size() - 2), " \r") << shown.err;
    }
    // Past the first second a phase that ticks draws.
    if (shown.seconds > 2.0) {
        EXPECT_TRUE(drawn) << "a run of " << shown.seconds << " s drew nothing";
    }
}
