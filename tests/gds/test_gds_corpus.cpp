// Streams written by other tools: each reads to its ENDLIB, lists the
// structures an independent walker found, chooses the same best structure,
// and survives the way through the short dump and back byte for byte.

#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <cctype>
#include <string>
#include <vector>

#include "Corpus.h"
#include "GdsRun.h"

using namespace gdstest;

namespace {

// The bytes of a stream up to and including its ENDLIB record.
std::string UpToEndlib(const std::string& stream)
{
    size_t position = 0;
    while (position + 4 <= stream.size()) {
        size_t length = size_t((unsigned char)stream[position]) * 256 + (unsigned char)stream[position + 1];
        int type = (unsigned char)stream[position + 2];
        if (length < 4)
            break;
        position += length;
        if (type == 4)
            break;
    }
    return stream.substr(0, position < stream.size() ? position : stream.size());
}

class Corpus : public testing::TestWithParam<std::string>
{
protected:
    void SetUp() override
    {
        if (GetParam() == kNoCorpus)
            GTEST_SKIP() << "no corpus at " << CorpusDir().toStdString();
        path = CorpusStream(GetParam()).toStdString();
        oracle = CorpusOracle(GetParam());
        ASSERT_FALSE(oracle.isEmpty()) << "no oracle for " << GetParam();
        gzip = oracle.value("gzip_compressed").toBool();
    }

    std::string path;
    QJsonObject oracle;
    // Compressed streams are not read; they fail at the first four bytes.
    bool gzip = false;
    GdsRun gds;
};

} // namespace

TEST_P(Corpus, ListsTheStructuresAndChoosesTheBest)
{
    RunResult run = gds.Run({"-v", "-d", QString::fromStdString(path)});
    ASSERT_TRUE(run.finished);
    EXPECT_EQ(run.err, "");
    QStringList lines = QString::fromUtf8(run.out.data(), int(run.out.size())).split('\n');
    if (lines.last().isEmpty())
        lines.removeLast();
    if (gzip) {
        EXPECT_EQ(run.status, 1);
        EXPECT_TRUE(lines.contains("All GDS files must begin with a HEADER record.")) << run.out;
        return;
    }

    QString records = QString("Read %1 records").arg(oracle.value("records").toInt());
    EXPECT_TRUE(lines.contains(records)) << records.toStdString() << " in\n" << run.out;

    ASSERT_FALSE(lines.isEmpty());
    if (oracle.value("best").isNull()) {
        // Every structure is empty, so there is nothing to convert or list.
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(lines.last(), "No structures are defined in the gds file");
        return;
    }
    int primary = lines.indexOf(QString("Primary structure \"%1\"").arg(oracle.value("best").toString()));
    ASSERT_GE(primary, 0) << "best " << oracle.value("best").toString().toStdString() << " in\n" << run.out;
    EXPECT_EQ(run.status, 0);

    // Unnamed structures are given numbered names in the order met.
    QStringList expected;
    int unnamed = 0;
    for (const QJsonValue& name : oracle.value("structures").toArray())
        expected << (name.toString().isEmpty() ? QString("NoName_%1").arg(++unnamed) : name.toString());
    QStringList listed = lines.mid(primary + 1);
    EXPECT_EQ(listed.size(), expected.size());
    EXPECT_TRUE(listed == expected) << "listed:\n" << listed.join('\n').toStdString();
}

TEST_P(Corpus, ShortDumpReadsBackToTheSameBytes)
{
    if (gzip)
        GTEST_SKIP() << "compressed stream";
    QFile original(QString::fromStdString(path));
    ASSERT_TRUE(original.open(QIODevice::ReadOnly));
    QByteArray all = original.readAll();
    std::string expected = UpToEndlib(std::string(all.constData(), size_t(all.size())));

    QElapsedTimer timer;
    timer.start();
    // The dump and a binary copy taken while reading it.
    RunResult dump = gds.Run({"-S", "-G", "binary.gds", QString::fromStdString(path)}, "dump.txt");
    ASSERT_TRUE(dump.finished);
    ASSERT_EQ(dump.status, 0) << dump.err;
    std::string binary = gds.Read("binary.gds");
    EXPECT_EQ(binary.size(), expected.size());
    EXPECT_TRUE(binary == expected) << "the -G copy differs from the original";

    RunResult back = gds.Run({"-A", "-G", "copy.gds", "-F", "dump.txt"}, "tags.txt");
    ASSERT_TRUE(back.finished);
    EXPECT_EQ(back.status, 0);
    EXPECT_EQ(back.err, "");
    std::string copy = gds.Read("copy.gds");
    EXPECT_EQ(copy.size(), expected.size());
    EXPECT_TRUE(copy == expected) << "the copy differs from the original";
    RecordProperty("seconds", std::to_string(timer.elapsed() / 1000.0));
}

INSTANTIATE_TEST_SUITE_P(Public, Corpus, testing::ValuesIn(CorpusFiles()), CorpusTestName);
