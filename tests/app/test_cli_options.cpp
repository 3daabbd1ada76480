// The command line as a user meets it: the built program, its output and
// its exit status.

#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <algorithm>
#include <string>

namespace {

struct Outcome
{
    int status = -1;
    std::string out;
    std::string err;
};

class CliOptionsTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!QFileInfo(GDS_BINARY).isExecutable())
            GTEST_SKIP() << "program not built: " << GDS_BINARY;
        ASSERT_TRUE(itsDir.isValid());
    }

    Outcome Run(const QStringList& arguments)
    {
        QProcess process;
        process.setWorkingDirectory(itsDir.path());
        process.start(GDS_BINARY, arguments);
        Outcome outcome;
        if (!process.waitForFinished(30000)) {
            process.kill();
            process.waitForFinished();
            return outcome;
        }
        outcome.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -2;
        outcome.out = process.readAllStandardOutput().toStdString();
        outcome.err = process.readAllStandardError().toStdString();
        return outcome;
    }

    QTemporaryDir itsDir;
};

} // namespace

TEST_F(CliOptionsTest, NoFileFailsTheConversion)
{
    const Outcome outcome = Run({});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "ERROR: Must specify at least one gds file.\nConversion failed\n");

    const Outcome two = Run({ "a.gds", "b.gds" });
    EXPECT_EQ(two.status, 1);
    EXPECT_EQ(two.out, "ERROR: Can only convert one gds file.\nConversion failed\n");
}

TEST_F(CliOptionsTest, BadValueFailsTheConversion)
{
    const Outcome outcome = Run({ "-s", "0,5", "-h", "a.gds" });
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "Bad argument to -s option, argument = 0,5\nConversion failed\n");
}

TEST_F(CliOptionsTest, HelpAndVersionEndWithSuccess)
{
    const Outcome help = Run({ "-h" });
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.out.rfind("gds [options] gdsfile\n\n  -v             - Verbose output\n", 0), 0u) << help.out;
    EXPECT_EQ(std::count(help.out.begin(), help.out.end(), '\n'), 60);

    const Outcome version = Run({ "-h", "-V", "a.gds" });
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out, "Version: 17.52.1\n");
}

TEST_F(CliOptionsTest, UnknownOptionIsReportedOnStandardError)
{
    const Outcome outcome = Run({ "-vd" });
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.find("-d"), std::string::npos) << outcome.err;
    EXPECT_EQ(outcome.out, "ERROR: Must specify at least one gds file.\nConversion failed\n");
}

TEST_F(CliOptionsTest, VersionLaterOnTheLineLetsTheRunGoOn)
{
    const Outcome outcome = Run({ "missing.gds", "-version", "-s", "bad" });
    EXPECT_EQ(outcome.out.rfind("Version: 17.52.1\n", 0), 0u) << outcome.out;
    // The run went on to the stream, which doesn't exist; -s was never read.
    EXPECT_EQ(outcome.out.find("Bad argument"), std::string::npos) << outcome.out;
    EXPECT_EQ(outcome.status, 1);
}

TEST_F(CliOptionsTest, UsageTextIsPrintedWhole)
{
    QFile expected(QString(GDS_SOURCE_DIR) + "/tests/app/expected/usage.txt");
    ASSERT_TRUE(expected.open(QIODevice::ReadOnly));
    const Outcome help = Run({ "-h" });
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.out, expected.readAll().toStdString());
    EXPECT_EQ(help.err, "");
}

TEST_F(CliOptionsTest, CommandLinesAUserTypes)
{
    struct Case
    {
        QStringList arguments;
        int status;
        std::string out;
    };
    const Case cases[] = {
        { { "-v" }, 1, "ERROR: Must specify at least one gds file.\nConversion failed\n" },
        { { "-D" }, 1, "ERROR: Must specify at least one gds file.\nConversion failed\n" },
        { { "--", "-a.gds" }, 1, "Can not read GDSII file -a.gds\nConversion failed\n" },
        { { "-version" }, 0, "Version: 17.52.1\n" },
        { { "-VER", "whatever", "-s", "bad" }, 0, "Version: 17.52.1\n" },
        { { "-V" }, 0, "Version: 17.52.1\n" },
        { { "-d", "missing.gds" }, 1, "Can not read GDSII file missing.gds\n" },
        { { "-T", "no/such/dir/trace.txt", "a.gds" }, 1,
          "Can not write to trace file no/such/dir/trace.txt\nConversion failed\n" },
        { { "-lx.lay", "a.gds" }, 1, "ERROR: Must specify at least one gds file.\nConversion failed\n" },
    };
    for (const Case& c : cases) {
        const Outcome outcome = Run(c.arguments);
        EXPECT_EQ(outcome.status, c.status) << c.arguments.join(' ').toStdString();
        EXPECT_EQ(outcome.out, c.out) << c.arguments.join(' ').toStdString();
    }
}
