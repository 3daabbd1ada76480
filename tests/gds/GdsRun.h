#ifndef GDS_TESTS_GDSRUN_H
#define GDS_TESTS_GDSRUN_H

// Runs the built program in a scratch directory of its own and keeps what it
// printed, so that a test can compare whole outputs.

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <string>

#include "StreamWriter.h"

namespace gdstest {

struct RunResult
{
    int status = -1;
    bool finished = false; // false: crashed, or did not end in time
    std::string out;
    std::string err;
};

class GdsRun
{
public:
    GdsRun() { itsDir.setAutoRemove(true); }

    QString Dir() const { return itsDir.path(); }
    std::string Path(const std::string& name) const { return (itsDir.path() + "/" + QString::fromStdString(name)).toStdString(); }

    void Write(const std::string& name, const std::string& text) const
    {
        QFile file(QString::fromStdString(Path(name)));
        file.open(QIODevice::WriteOnly | QIODevice::Truncate);
        file.write(text.data(), qint64(text.size()));
    }

    void Write(const std::string& name, const Bytes& bytes) const
    {
        Write(name, std::string(bytes.begin(), bytes.end()));
    }

    void Write(const std::string& name, const StreamWriter& stream) const { Write(name, stream.bytes()); }

    std::string Read(const std::string& name) const
    {
        QFile file(QString::fromStdString(Path(name)));
        if (!file.open(QIODevice::ReadOnly))
            return std::string("<missing>");
        QByteArray data = file.readAll();
        return std::string(data.constData(), size_t(data.size()));
    }

    bool Exists(const std::string& name) const { return QFile::exists(QString::fromStdString(Path(name))); }

    // Standard output may go to a file of the scratch directory instead of
    // memory, for dumps of large streams.
    RunResult Run(const QStringList& arguments, const QString& stdoutFile = QString(), int timeoutMs = 120000) const
    {
        QProcess process;
        process.setWorkingDirectory(itsDir.path());
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        // The settings of whoever runs the tests must not reach the program.
        env.insert("HOME", itsDir.path());
        for (const char* name : {"VELORA_DIR", "REG_VELORA_DIR", "VELORA_APPDATA_DIR", "REG_VELORA_APPDATA_DIR",
                                 "VELORA_RESOURCE_DIR", "VELORA_INI_FILE", "VELORA_USER_INI_FILE", "VELORA_TRACE"})
            env.remove(name);
        process.setProcessEnvironment(env);
        if (!stdoutFile.isEmpty())
            process.setStandardOutputFile(itsDir.path() + "/" + stdoutFile);
        process.start(GDS_BINARY, arguments);
        RunResult result;
        if (!process.waitForStarted(20000))
            return result;
        process.closeWriteChannel();
        bool ended = process.waitForFinished(timeoutMs);
        if (!ended) {
            process.kill();
            process.waitForFinished(5000);
        }
        QByteArray out = stdoutFile.isEmpty() ? process.readAllStandardOutput() : QByteArray();
        QByteArray err = process.readAllStandardError();
        result.out = std::string(out.constData(), size_t(out.size()));
        result.err = std::string(err.constData(), size_t(err.size()));
        result.finished = ended && process.exitStatus() == QProcess::NormalExit;
        result.status = result.finished ? process.exitCode() : -1;
        return result;
    }

private:
    QTemporaryDir itsDir;
};

} // namespace gdstest

// A finished run with this exit status and exactly this on standard output,
// nothing on standard error.
#define EXPECT_RUN(result, expectedStatus, expectedOut)                                                        \
    do {                                                                                                       \
        const gdstest::RunResult& run_ = (result);                                                             \
        EXPECT_TRUE(run_.finished) << "the program crashed or hung";                                           \
        EXPECT_EQ(run_.out, std::string(expectedOut));                                                         \
        EXPECT_EQ(run_.status, (expectedStatus));                                                              \
        EXPECT_EQ(run_.err, "");                                                                               \
    } while (0)

#endif
