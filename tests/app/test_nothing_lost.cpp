// What a user's files go through when a run goes wrong: outputs named like inputs, two runs
// saving one project, a full disk, write-protected targets, odd names and installations.
// Each case runs the built program as a user would and checks what is left on disk.

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QThread>

#include <csignal>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "GdsRun.h"
#include "Undated.h"

using gdstest::GdsRun;
using gdstest::RunResult;
using gdstest::StreamWriter;

namespace {

// A stream of one structure holding `count` boundaries on `layers` layers.
StreamWriter Stream(int count, int layers = 1)
{
    StreamWriter stream;
    stream.Begin().Bgnstr("TOP");
    for (int i = 0; i < count; ++i) {
        const long long x = (i % 1000) * 2000, y = (i / 1000) * 2000;
        stream.Boundary(1 + i % layers, 0, StreamWriter::Rect(x, y, x + 1000, y + 1000));
    }
    return stream.Endstr().Endlib();
}

std::string Bash()
{
    return "/bin/bash";
}

// Runs gds through bash, so that the shell can set limits, an argv[0] or raw bytes first:
// `script` ends by exec'ing "$GDS" with what it wants.
RunResult RunScript(const GdsRun& run, const std::string& script, int timeoutMs = 120000)
{
    QProcess process;
    process.setWorkingDirectory(run.Dir());
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("HOME", run.Dir());
    env.insert("GDS", GDS_BINARY);
    for (const char* name : {"VELORA_DIR", "REG_VELORA_DIR", "VELORA_APPDATA_DIR", "REG_VELORA_APPDATA_DIR",
                             "VELORA_RESOURCE_DIR", "VELORA_INI_FILE", "VELORA_USER_INI_FILE", "VELORA_TRACE"})
        env.remove(name);
    process.setProcessEnvironment(env);
    process.start(QString::fromStdString(Bash()), {"-c", QString::fromStdString(script)});
    RunResult result;
    if (!process.waitForStarted(20000))
        return result;
    const bool ended = process.waitForFinished(timeoutMs);
    if (!ended) {
        process.kill();
        process.waitForFinished(5000);
    }
    const QByteArray out = process.readAllStandardOutput();
    const QByteArray err = process.readAllStandardError();
    result.out = std::string(out.constData(), size_t(out.size()));
    result.err = std::string(err.constData(), size_t(err.size()));
    result.finished = ended && process.exitStatus() == QProcess::NormalExit;
    result.status = result.finished ? process.exitCode() : -1;
    return result;
}

bool Has(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

QStringList Temporaries(const GdsRun& run)
{
    return QDir(run.Dir()).entryList(QStringList{"*.saving*"}, QDir::Files | QDir::System | QDir::Hidden);
}

// A whole project ends its last block.
bool Whole(const std::string& project)
{
    return project.size() > 8 && project.compare(project.size() - 8, 8, "END GEO\n") == 0;
}

} // namespace

// ---- outputs named like inputs

TEST(OutputsOntoInputs, AnOutputThatIsAnInputIsRefusedAndTheInputStaysAsItWas)
{
    GdsRun run;
    run.Write("a.gds", Stream(3));
    const std::string stream = run.Read("a.gds");
    QFile::copy(GDS_SOURCE_DIR "/examples/chip.txt", run.Dir() + "/a.txt");
    const std::string text = run.Read("a.txt");
    ASSERT_EQ(::link(run.Path("a.gds").c_str(), run.Path("hard.gds").c_str()), 0);
    ASSERT_EQ(::symlink("a.gds", run.Path("soft.gds").c_str()), 0);
    ASSERT_TRUE(QDir(run.Dir()).mkdir("sub"));

    const std::vector<QStringList> commands = {
        {"-A", "-G", "a.txt", "-d", "a.txt"},
        {"-o", "a.gds", "a.gds"},
        {"-z", "a.gds", "a.gds"},
        {"-L", "-l", "a.gds", "a.gds"},
        {"-T", "a.gds", "-D", "1", "a.gds"},
        {"-M", "a.gds", "a.gds"},
        // The same file under other names.
        {"-G", "hard.gds", "-d", "a.gds"},
        {"-o", "soft.gds", "a.gds"},
        {"-z", "sub/../a.gds", "a.gds"},
    };
    for (const QStringList& command : commands) {
        SCOPED_TRACE(command.join(' ').toStdString());
        const RunResult result = run.Run(command);
        EXPECT_TRUE(result.finished);
        EXPECT_EQ(result.status, 1);
        EXPECT_TRUE(Has(result.out, "input stream itself; it is not written over")) << result.out;
        EXPECT_EQ(run.Read("a.gds"), stream);
        EXPECT_EQ(run.Read("a.txt"), text);
        EXPECT_TRUE(Temporaries(run).isEmpty());
    }

    // A layer file that is read, or the project that -g reads, is an input as well.
    const RunResult layers = run.Run({"-l", "a.txt", "-o", "a.txt", "a.gds"});
    EXPECT_EQ(layers.status, 1);
    EXPECT_EQ(run.Read("a.txt"), text);
}

TEST(OutputsOntoInputs, TwoOutputsOfOneNameAreRefusedButAProjectIsUpdatedInPlace)
{
    GdsRun run;
    run.Write("a.gds", Stream(3));
    const RunResult twice = run.Run({"-z", "list.txt", "-M", "list.txt", "a.gds"});
    EXPECT_EQ(twice.status, 1);
    EXPECT_TRUE(Has(twice.out, "are one file, list.txt")) << twice.out;
    EXPECT_FALSE(run.Exists("list.txt"));

    ASSERT_EQ(run.Run({"a.gds"}).status, 0);
    const RunResult update = run.Run({"-g", "-i", "a.vel", "-o", "a.vel", "a.gds"});
    EXPECT_EQ(update.status, 0) << update.out;
    EXPECT_TRUE(Whole(run.Read("a.vel")));
}

// ---- saves that meet other runs, kills and full disks

TEST(ConcurrentSaves, RunsSavingOneProjectAtOnceLeaveOneOfTheirProjectsWhole)
{
    GdsRun run;
    const int kRuns = 4;
    std::vector<std::string> alone;
    for (int i = 0; i < kRuns; ++i) {
        const std::string name = "s" + std::to_string(i);
        run.Write(name + ".gds", Stream(4000 + 3000 * i, 1 + i));
        ASSERT_EQ(run.Run({"-o", QString::fromStdString(name + ".vel"), QString::fromStdString(name + ".gds")}).status,
                  0);
        alone.push_back(Undated(run.Read(name + ".vel")));
    }
    std::vector<std::unique_ptr<QProcess>> processes;
    for (int i = 0; i < kRuns; ++i) {
        auto process = std::make_unique<QProcess>();
        process->setWorkingDirectory(run.Dir());
        process->start(GDS_BINARY, {"-l", QString("s%1.lay").arg(i), "-o", "T.vel", QString("s%1.gds").arg(i)});
        processes.push_back(std::move(process));
    }
    for (auto& process : processes) {
        ASSERT_TRUE(process->waitForFinished(60000));
        EXPECT_EQ(process->exitCode(), 0) << process->readAllStandardOutput().toStdString();
    }
    const std::string result = Undated(run.Read("T.vel"));
    EXPECT_TRUE(std::find(alone.begin(), alone.end(), result) != alone.end());
    EXPECT_TRUE(Temporaries(run).isEmpty());
}

TEST(ConcurrentSaves, ARunKilledWhileSavingLeavesThePreviousProjectAndItsTemporaryFile)
{
    GdsRun run;
    run.Write("small.gds", Stream(10));
    ASSERT_EQ(run.Run({"-o", "T.vel", "small.gds"}).status, 0);
    const std::string previous = run.Read("T.vel");
    // Another run's temporary file, still being written as far as anyone knows.
    run.Write("T.vel.saving-1", "another run's half");

    run.Write("big.gds", Stream(300000, 3));
    QProcess process;
    process.setWorkingDirectory(run.Dir());
    process.start(GDS_BINARY, {"-o", "T.vel", "big.gds"});
    ASSERT_TRUE(process.waitForStarted());
    bool killed = false;
    for (int i = 0; i < 60000 && process.state() == QProcess::Running; ++i) {
        const QStringList saving = Temporaries(run).filter(QRegularExpression("saving-[0-9]{2,}"));
        if (!saving.isEmpty()) {
            ::kill(pid_t(process.processId()), SIGKILL);
            killed = true;
            break;
        }
        QThread::usleep(200);
    }
    process.waitForFinished(60000);
    ASSERT_TRUE(killed) << "the save ended before it was seen";
    EXPECT_EQ(run.Read("T.vel"), previous);
    EXPECT_EQ(run.Read("T.vel.saving-1"), "another run's half");
    // What a kill leaves: the target untouched and the run's own temporary file beside it.
    EXPECT_EQ(Temporaries(run).size(), 2);
}

// The file size limit makes every write past it fail as a full disk does.
TEST(FullDisk, AProjectThatDoesNotFitFailsTheRunAndKeepsThePreviousOne)
{
    GdsRun run;
    run.Write("small.gds", Stream(5));
    run.Write("big.gds", Stream(3000));
    ASSERT_EQ(run.Run({"-o", "T.vel", "small.gds"}).status, 0);
    ASSERT_EQ(run.Run({"-L", "big.gds"}).status, 0);
    const std::string previous = run.Read("T.vel");

    const std::string limited = "ulimit -f 64; trap '' XFSZ; exec \"$GDS\" ";
    const RunResult kept = RunScript(run, limited + "-o T.vel big.gds");
    EXPECT_TRUE(kept.finished);
    EXPECT_EQ(kept.status, 1);
    EXPECT_TRUE(Has(kept.out, "Conversion failed")) << kept.out;
    EXPECT_TRUE(Has(kept.err + kept.out, "The previous file is unchanged")) << kept.err;
    EXPECT_EQ(run.Read("T.vel"), previous);

    const RunResult none = RunScript(run, limited + "-o new.vel big.gds");
    EXPECT_EQ(none.status, 1);
    EXPECT_TRUE(Has(none.err + none.out, "No file was written")) << none.err;
    EXPECT_FALSE(Has(none.err + none.out, "previous file"));
    EXPECT_FALSE(run.Exists("new.vel"));
    EXPECT_TRUE(Temporaries(run).isEmpty());
}

TEST(FullDisk, TheStreamCopyAndTheSummaryAreWholeOrNotWritten)
{
    GdsRun run;
    run.Write("big.gds", Stream(3000));
    run.Write("copy.gds", "old copy");
    const RunResult copy = RunScript(run, "ulimit -f 64; trap '' XFSZ; exec \"$GDS\" -G copy.gds -d big.gds");
    EXPECT_EQ(copy.status, 1);
    EXPECT_TRUE(Has(copy.out, "Can not write to GDSII file copy.gds")) << copy.out;
    EXPECT_EQ(run.Read("copy.gds"), "old copy");

    ASSERT_EQ(run.Run({"-L", "big.gds"}).status, 0);
    run.Write("summary.txt", "old summary");
    const RunResult summary = RunScript(run, "ulimit -f 0; trap '' XFSZ; exec \"$GDS\" -M summary.txt big.gds");
    EXPECT_EQ(summary.status, 1);
    EXPECT_TRUE(Has(summary.out, "Can not write to file summary.txt")) << summary.out;
    EXPECT_EQ(run.Read("summary.txt"), "old summary");
    EXPECT_TRUE(Temporaries(run).isEmpty());
}

// ---- targets that can't be written

namespace {

// As root every file is writable: such cases run as the unprivileged user "nobody".
std::string AsUser()
{
    return ::geteuid() == 0 ? "exec setpriv --reuid=65534 --regid=65534 --clear-groups \"$GDS\" " : "exec \"$GDS\" ";
}

void HandOver(const GdsRun& run)
{
    if (::geteuid() != 0)
        return;
    const QByteArray dir = QFile::encodeName(run.Dir());
    ASSERT_EQ(::chmod(dir.constData(), 0777), 0);
    for (const QString& name : QDir(run.Dir()).entryList(QDir::Files))
        ASSERT_EQ(::chown(QFile::encodeName(run.Dir() + "/" + name).constData(), 65534, 65534), 0);
    ASSERT_EQ(::chown(dir.constData(), 65534, 65534), 0);
}

// Nobody may not enter a checkout only its owner may enter, and then finds no installation.
bool UserFindsTheInstallation(const GdsRun& run)
{
    if (::geteuid() != 0)
        return true;
    const RunResult probe = RunScript(run, "exec setpriv --reuid=65534 --regid=65534 --clear-groups "
                                           "test -r \"$(dirname \"$GDS\")/../../resource/strings_util.h\"");
    return probe.status == 0;
}

} // namespace

TEST(ReadOnlyTargets, AWriteProtectedProjectIsKeptAndTheRunFails)
{
    if (::geteuid() == 0 && ::access("/usr/bin/setpriv", X_OK) != 0)
        GTEST_SKIP() << "root without setpriv can't act as another user";
    GdsRun run;
    if (!UserFindsTheInstallation(run))
        GTEST_SKIP() << "nobody can't read the installation where the tests run";
    run.Write("chip.gds", Stream(5));
    ASSERT_EQ(run.Run({"chip.gds"}).status, 0);
    const std::string previous = run.Read("chip.vel");
    ASSERT_EQ(::chmod(run.Path("chip.vel").c_str(), 0444), 0);
    HandOver(run);

    const RunResult result = RunScript(run, AsUser() + "-g chip.gds");
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(Has(result.err + result.out, "write-protected")) << result.err << result.out;
    EXPECT_EQ(run.Read("chip.vel"), previous);
    EXPECT_TRUE(Temporaries(run).isEmpty());

    // A directory that can't be written keeps its project too.
    ASSERT_EQ(::chmod(run.Path("chip.vel").c_str(), 0644), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(run.Dir()).constData(), 0555), 0);
    const RunResult locked = RunScript(run, AsUser() + "-g chip.gds");
    ::chmod(QFile::encodeName(run.Dir()).constData(), 0755);
    EXPECT_EQ(locked.status, 1);
    EXPECT_TRUE(Has(locked.err + locked.out, "The previous file is unchanged")) << locked.err;
    EXPECT_EQ(run.Read("chip.vel"), previous);
}

TEST(FailedSaves, AProjectThatCanNotBeSavedFailsTheRunAndSaysOnlyWhatIsTrue)
{
    GdsRun run;
    run.Write("chip.gds", Stream(5));
    ASSERT_TRUE(QDir(run.Dir()).mkpath("folder.vel/inside"));
    for (const char* target : {"folder.vel", "missing/chip.vel"}) {
        SCOPED_TRACE(target);
        const RunResult result = run.Run({"-o", target, "chip.gds"});
        EXPECT_EQ(result.status, 1);
        EXPECT_TRUE(Has(result.out, "Conversion failed\n")) << result.out;
        EXPECT_TRUE(Has(result.err, "No file was written")) << result.err;
        EXPECT_FALSE(Has(result.err, "previous file"));
    }
    EXPECT_TRUE(QFileInfo(run.Dir() + "/folder.vel/inside").isDir());
    EXPECT_FALSE(QFileInfo::exists(run.Dir() + "/missing"));
}

// ---- what the program says

TEST(Messages, NumberedReportsShowTheirTextAndNoFormatCodes)
{
    GdsRun run;
    run.Write("chip.gds", Stream(2));
    run.Write("process.matl", "");
    const RunResult result = run.Run({"-i", "process.matl", "chip.gds"});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(Has(result.err, "process.matl")) << result.err;
    EXPECT_FALSE(Has(result.err + result.out, "%s")) << result.err;
    EXPECT_FALSE(Has(result.err + result.out, ".cpp")) << result.err;
}

TEST(Messages, AStructureThatIsNotThereIsNotBlamedOnTheLayerFile)
{
    GdsRun run;
    run.Write("chip.gds", Stream(2));
    const RunResult result = run.Run({"-p", "NOSUCH", "chip.gds"});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(Has(result.out, "Could not find structure \"NOSUCH\" the GDSII file\n")) << result.out;
    EXPECT_FALSE(Has(result.out + result.err, "layer file")) << result.out << result.err;
    EXPECT_FALSE(run.Exists("chip.lay"));
}

TEST(Messages, AUnitThatIsNotPositiveIsWarnedOf)
{
    GdsRun run;
    StreamWriter stream;
    stream.Header().Bgnlib().Libname().Units(0.0, 0.0).Bgnstr("TOP");
    stream.Boundary(1, 0, StreamWriter::Rect(0, 0, 10, 10)).Endstr().Endlib();
    run.Write("zero.gds", stream);
    const RunResult result = run.Run({"-d", "zero.gds"});
    EXPECT_TRUE(Has(result.out, "WARNING: UNITS record 4 gives a database unit of 0 user units and 0 meters")) << result.out;
}

// ---- names and installations

TEST(Installation, IsFoundThroughALinkAndThroughThePath)
{
    GdsRun run;
    run.Write("chip.gds", Stream(2));
    run.Write("process.matl", "");
    ASSERT_TRUE(QDir(run.Dir()).mkdir("bin"));
    ASSERT_EQ(::symlink(GDS_BINARY, run.Path("bin/gds").c_str()), 0);
    for (const std::string& script : {std::string("exec bin/gds -i process.matl chip.gds"),
                                      std::string("PATH=\"$PWD/bin:$PATH\" exec gds -i process.matl chip.gds"),
                                      std::string("PATH=\"$PWD/bin:$PATH\" exec -a gds gds -i process.matl chip.gds")}) {
        SCOPED_TRACE(script);
        const RunResult result = RunScript(run, script);
        EXPECT_EQ(result.status, 1);
        // The numbered message has its text, and nothing complains of the installation.
        EXPECT_TRUE(Has(result.err, "Unable to read the material or technology file process.matl")) << result.err;
        EXPECT_FALSE(Has(result.err + result.out, "directory test failed"));
        EXPECT_FALSE(Has(result.err + result.out, "VELORA_DIR"));
    }
}

TEST(Names, AFileNameThatIsNotUtf8IsReadAndItsOutputsNamedAfterIt)
{
    GdsRun run;
    // Raw bytes: the runner's own names are text and would turn the byte into U+FFFD.
    const std::string dir = QFile::encodeName(run.Dir()).toStdString() + "/";
    const std::string name = dir + "caf\xe9.gds";
    {
        const StreamWriter stream = Stream(3);
        const int fd = ::open(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        ASSERT_GE(fd, 0);
        const auto& bytes = stream.bytes();
        ASSERT_EQ(::write(fd, bytes.data(), bytes.size()), ssize_t(bytes.size()));
        ::close(fd);
    }
    const RunResult result = RunScript(run, "exec \"$GDS\" -G \"$(printf 'caf\\351.copy.gds')\" \"$(printf 'caf\\351.gds')\"");
    EXPECT_EQ(result.status, 0) << result.out << result.err;
    for (const char* output : {"caf\xe9.vel", "caf\xe9.lay", "caf\xe9.copy.gds"})
        EXPECT_EQ(::access((dir + output).c_str(), R_OK), 0) << output;
}
