// The program finds its installation (message files, settings) from its own
// path, from an installed prefix, and from VELORA_DIR, with nothing else set.

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

struct Result
{
    int status;
    QString out;
    QString err;
};

Result RunGds(const QString& program, const QStringList& arguments, const QProcessEnvironment& environment)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    process.waitForFinished(60000);
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

// The environment of a user who has set nothing for the suite.
QProcessEnvironment Clean()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"VELORA_DIR", "REG_VELORA_DIR", "VELORA_APPDATA_DIR", "REG_VELORA_APPDATA_DIR",
                             "VELORA_RESOURCE_DIR", "VELORA_INI_FILE", "VELORA_USER_INI_FILE", "VELORA_TRACE"})
        environment.remove(name);
    return environment;
}

const QString kExample = QString(GDS_SOURCE_DIR) + "/examples/chip.gds";

// An unknown option is reported through the numbered messages, whose texts
// come from the installation's message files.
bool FoundMessages(const Result& result)
{
    return result.err.contains("The option -Z is not known") && !result.err.contains("Message Resource Not Found");
}

TEST(Installation, StagedProgramFindsItsOwnInstallation)
{
    Result result = RunGds(GDS_BINARY, {"-Z", "-d", kExample}, Clean());
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(FoundMessages(result)) << result.err.toStdString();
    EXPECT_FALSE(result.err.contains("Unable to open error data file"));
    EXPECT_EQ(result.out, "via\nline\ntop\n");
}

TEST(Installation, ProgramAwayFromAnyInstallationStillLists)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    QString copy = dir.filePath("gds");
    ASSERT_TRUE(QFile::copy(GDS_BINARY, copy));
    QFile::setPermissions(copy, QFile::permissions(GDS_BINARY));
    Result result = RunGds(copy, {"-Z", "-d", kExample}, Clean());
    EXPECT_EQ(result.status, 0);
    EXPECT_FALSE(FoundMessages(result));
    EXPECT_EQ(result.out, "via\nline\ntop\n");

    // VELORA_DIR points it at the staged installation.
    QProcessEnvironment environment = Clean();
    environment.insert("VELORA_DIR", GDS_STAGE_DIR);
    result = RunGds(copy, {"-Z", "-d", kExample}, environment);
    EXPECT_TRUE(FoundMessages(result)) << result.err.toStdString();
}

TEST(Installation, InstalledPrefixIsFoundFromTheProgramsPath)
{
    QTemporaryDir prefix;
    ASSERT_TRUE(prefix.isValid());
    QProcess install;
    install.start(GDS_CMAKE, {"--install", GDS_BUILD_DIR, "--prefix", prefix.path()});
    ASSERT_TRUE(install.waitForFinished(120000));
    ASSERT_EQ(install.exitCode(), 0) << install.readAllStandardError().toStdString();
    EXPECT_TRUE(QFile::exists(prefix.filePath("velora.ver")));
    EXPECT_TRUE(QFile::exists(prefix.filePath("data/velora.ini")));
    EXPECT_TRUE(QFile::exists(prefix.filePath("resource/strings_gds.h")));
    Result result = RunGds(prefix.filePath("bin/x86_64/gds"), {"-Z", "-d", kExample}, Clean());
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(FoundMessages(result)) << result.err.toStdString();
}

TEST(Installation, SettingsOfTheInstallationAndOfTheUserApply)
{
    // DumpCommands in the user's file makes every run leave its command line.
    QTemporaryDir home;
    ASSERT_TRUE(home.isValid());
    QString userIni = home.filePath("user.ini");
    QFile file(userIni);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[VELORA]\ndumpcommands = yes ; keep a log\n");
    file.close();
    QProcessEnvironment environment = Clean();
    environment.insert("HOME", home.path());
    environment.insert("VELORA_USER_INI_FILE", userIni);
    Result result = RunGds(GDS_BINARY, {"-d", kExample}, environment);
    EXPECT_EQ(result.status, 0);
    QFile log(home.filePath("velora_cmds.txt"));
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    QString line = QString::fromUtf8(log.readAll());
    EXPECT_TRUE(line.contains("   " + QString(GDS_BINARY) + " -d " + kExample + " \n")) << line.toStdString();

    // Without the user's file the installation's default (off) holds.
    QFile::remove(home.filePath("velora_cmds.txt"));
    environment.remove("VELORA_USER_INI_FILE");
    RunGds(GDS_BINARY, {"-d", kExample}, environment);
    EXPECT_FALSE(QFile::exists(home.filePath("velora_cmds.txt")));
}

} // namespace
