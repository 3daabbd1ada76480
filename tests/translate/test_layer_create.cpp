// Layer files made from a stream: one line for each pair reachable from the
// structure, the level options, technology layers, hierarchies placed past
// counting, and the corpus.

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Corpus.h"
#include "GdsRun.h"
#include "LimitedRun.h"
#include "RecordReader.h"
#include "SErrorMessages.h"
#include "SGdsLayerFile.h"
#include "SInitializationFile.h"

using namespace gdstest;

namespace {

class CreateLayerFile : public testing::Test
{
protected:
    void SetUp() override
    {
        // LEAF is placed through MID and an array of MID; OTHER is reached by nothing.
        StreamWriter s;
        s.Begin().Bgnstr("LEAF").Boundary(1, 0, StreamWriter::Rect(0, 0, 5, 5));
        s.Path(3, 2, 10, {{0, 0}, {50, 0}}).Box(2, 5, StreamWriter::Rect(0, 0, 1, 1)).Endstr();
        s.Bgnstr("MID").Sref("LEAF", 0, 0).Boundary(10, 0, StreamWriter::Rect(0, 0, 5, 5));
        s.Boundary(1, 0, StreamWriter::Rect(9, 9, 15, 15)).Endstr();
        s.Bgnstr("TOP").Aref("MID", 2, 2, {{0, 0}, {200, 0}, {0, 200}}).Sref("MID", 500, 0).Endstr();
        s.Bgnstr("OTHER").Boundary(99, 0, StreamWriter::Rect(0, 0, 5, 5)).Endstr();
        s.Bgnstr("LOOP_A").Sref("LOOP_B", 0, 0).Endstr();
        s.Bgnstr("LOOP_B").Boundary(4, 0, StreamWriter::Rect(0, 0, 5, 5)).Sref("LOOP_A", 0, 0).Endstr();
        ASSERT_TRUE(reader.Load(s.Endlib()));
        ASSERT_TRUE(reader.Build());
    }

    // Creates the file, keeping what was printed; the file's text, or "<missing>".
    std::string Create(const char* structure, const SLayerFileCreateOptions& options = {}, const char* name = "a.lay")
    {
        QString path = itsDir.filePath(name);
        QFile::remove(path);
        testing::internal::CaptureStdout();
        made = SGdsLayerFile().Create(reader.List(), structure, options, SString(path));
        printed = testing::internal::GetCapturedStdout();
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : "<missing>";
    }

    // The line of a pair without a technology layer, on the given level.
    static std::string Line(int layer, int datatype, int level, const char* mapped = "on")
    {
        std::string n = std::to_string(level);
        return "Not_defined metal_boundary " + std::to_string(layer) + " " + std::to_string(datatype) + " " + n +
               " \"Unknown_metal\" " + mapped + " " + n + "\n";
    }

    RecordReader reader;
    QTemporaryDir itsDir;
    std::string printed;
    bool made = false;
};

SLayerFileTechLayer Tech(const char* name, int type, int layer, int datatype, int level, const char* material = "")
{
    SLayerFileTechLayer tech;
    tech.itsName = name;
    tech.itsLayerType = type;
    tech.itsStreamLayer = layer;
    tech.itsStreamDatatype = datatype;
    tech.itsLevel = level;
    tech.itsMaterialName = material;
    return tech;
}

// Sixty structures each placing the one before twice: 2^60 placements of B0, which holds
// two shapes, and 2^30 of a shape of B30.
StreamWriter Bomb()
{
    StreamWriter s;
    s.Begin().Bgnstr("B0").Boundary(1, 0, StreamWriter::Rect(0, 0, 5, 5)).Box(2, 3, StreamWriter::Rect(0, 0, 1, 1));
    s.Endstr();
    for (int i = 1; i <= 60; ++i) {
        std::string previous = "B" + std::to_string(i - 1);
        s.Bgnstr("B" + std::to_string(i)).Sref(previous, 0, 0).Sref(previous, 10, 0);
        if (i == 30)
            s.Boundary(7, 1, StreamWriter::Rect(0, 0, 5, 5));
        s.Endstr();
    }
    return s.Endlib();
}

// Small enough that a walk of every placement would end by a limit, not by itself.
Limits SmallMachine()
{
    Limits limits;
    // AddressSanitizer reserves terabytes of shadow at start: there the CPU limit alone must do.
#if !defined(__SANITIZE_ADDRESS__)
    limits.addressBytes = rlim_t(2) << 30;
#endif
    limits.cpuSeconds = 5;
    return limits;
}

} // namespace

TEST_F(CreateLayerFile, OneLineForEachPairUnderTheStructureWithTheLevelOptions)
{
    EXPECT_EQ(Create("TOP"), Line(1, 0, 1) + Line(2, 5, 2) + Line(3, 2, 3) + Line(10, 0, 10));
    EXPECT_TRUE(made);
    EXPECT_EQ(printed, "");

    SLayerFileCreateOptions options;
    options.itsRemoveEmptyLayers = true;
    EXPECT_EQ(Create("TOP", options), Line(1, 0, 0) + Line(2, 5, 1) + Line(3, 2, 2) + Line(10, 0, 3));
    // With both, the single level wins.
    options.itsSingleLayer = true;
    EXPECT_EQ(Create("MID", options), Line(1, 0, 0) + Line(2, 5, 0) + Line(3, 2, 0) + Line(10, 0, 0));
}

TEST_F(CreateLayerFile, RefusalsPrintTheirMessage)
{
    EXPECT_EQ(Create("NONE"), "<missing>");
    EXPECT_EQ(printed, "Could not find structure \"NONE\" the GDSII file\n");
    EXPECT_EQ(Create("LOOP_A"), "<missing>");
    EXPECT_EQ(printed, "GDSII file contains a circular reference for structure = LOOP_B\n");

    SErrorMessages* messages = SErrorMessages::Instance();
    ASSERT_TRUE(messages->LoadFile(SString(GDS_SOURCE_DIR "/resource/strings_util.h")));
    Create("TOP", {}, "no/dir/a.lay");
    messages->ClearAll();
    EXPECT_FALSE(made);
    EXPECT_EQ(printed, "Unable to write the file " + itsDir.filePath("no/dir/a.lay").toStdString() + "\n");
}

TEST_F(CreateLayerFile, TechnologyLayersNameTheirPairs)
{
    SLayerFileCreateOptions options;
    options.itsTechLayers.push_back(Tech("M1", 1, 1, 0, 2, "Gold  "));
    options.itsTechLayers.push_back(Tech("V12", 2, 3, 2, 3));
    options.itsTechLayers.back().itsToLevel = 2;
    // A second layer of the same pair gets a line of its own.
    options.itsTechLayers.push_back(Tech("VTOP", 2, 3, 2, 1, "Via"));
    options.itsTechLayers.back().itsToLevelType = kLevelTop;
    options.itsTechLayers.push_back(Tech("B", 3, 2, 5, 7, "Diel"));
    options.itsTechLayers.back().itsOnGround = true;
    options.itsTechLayers.push_back(Tech("NO_STREAM", 1, -1, 0, 4));
    std::string text = Create("TOP", options);
    EXPECT_EQ(text, "Not_defined metal_boundary 1 0 2 \"Gold\" on 2 \"M1\"\n"
                    "Not_defined brick_boundary 2 5 gnd \"Diel\" on gnd \"B\"\n"
                    "Not_defined via 3 2 1 \"Via\" on TOP \"VTOP\"\n"
                    "Not_defined via 3 2 3 \"Unknown\" on 2 \"V12\"\n" +
                        Line(10, 0, 10, "off"));
    SGdsLayerFile file;
    EXPECT_TRUE(file.Read(SString(itsDir.filePath("a.lay")))) << file.GetErrorText().data();

    // The setting keeps pairs without a technology layer on.
    QString ini = itsDir.filePath("settings.ini");
    QFile settings(ini);
    ASSERT_TRUE(settings.open(QIODevice::WriteOnly));
    settings.write("[Gds]\nMapWithoutTechLayer=true\n");
    settings.close();
    QByteArray before = qgetenv("VELORA_INI_FILE");
    bool hadSettings = SInitializationFile::GetGlobal() != nullptr;
    qputenv("VELORA_INI_FILE", ini.toUtf8());
    SInitializationFile::DestroyGlobal();
    SInitializationFile::CreateGlobal();
    text = Create("TOP", options);
    SInitializationFile::DestroyGlobal();
    before.isNull() ? qunsetenv("VELORA_INI_FILE") : qputenv("VELORA_INI_FILE", before);
    if (hadSettings)
        SInitializationFile::CreateGlobal();
    EXPECT_NE(text.find(Line(10, 0, 10, "on")), std::string::npos) << text;
}

TEST_F(CreateLayerFile, ExponentialHierarchyIsWalkedOncePerStructure)
{
    RecordReader bomb;
    ASSERT_TRUE(bomb.Load(Bomb()));
    ASSERT_TRUE(bomb.Build());
    QString path = itsDir.filePath("bomb.lay");
    int made = InChild([&]() { return SGdsLayerFile().Create(bomb.List(), "B60", {}, SString(path)) ? 0 : 1; },
                       SmallMachine());
    EXPECT_EQ(made, 0) << "-1: ended by a limit";
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll().toStdString(), Line(1, 0, 1) + Line(2, 3, 2) + Line(7, 1, 7));
}

TEST(LayerFileBomb, TranslationMakesTheLayerFileThenRefusesTheSizeInTheProgramsWords)
{
    GdsRun run;
    run.Write("bomb.gds", Bomb());
    RunResult result = RunLimited(run, {"bomb.gds"}, SmallMachine());
    EXPECT_TRUE(result.finished) << "ended by a limit";
    EXPECT_EQ(result.status, 1);
    // 2 * 2^60 + 2^30 polygons.
    EXPECT_EQ(result.out, "ERROR: Structure B60 flattens to 2305843010287435776 polygons, too large for this "
                          "machine's memory\nConversion failed\n");
    EXPECT_EQ(result.err, "");
    EXPECT_NE(run.Read("bomb.lay").find("Not_defined metal_boundary 7 1 7 "), std::string::npos);
    EXPECT_FALSE(run.Exists("bomb.vel"));
}

// Real streams: the pairs of a created layer file are those of the
// boundaries, boxes and paths an independent walker found under the structure,
// and the file that -L writes reads back.
namespace {

class LayerFileCorpus : public testing::TestWithParam<std::string>
{
};

// Why a corpus stream makes no layer file to check; empty when it makes one.
std::string NothingToMap(const QJsonObject& oracle)
{
    if (oracle.isEmpty())
        return "no corpus or oracle";
    if (oracle.value("gzip_compressed").toBool())
        return "compressed stream";
    return oracle.value("best").isNull() ? "no structure holds a shape" : "";
}

} // namespace

TEST_P(LayerFileCorpus, CreatedPairsAreThoseOfTheReachableShapes)
{
    QJsonObject oracle = CorpusOracle(GetParam());
    std::string skip = NothingToMap(oracle);
    if (!skip.empty())
        GTEST_SKIP() << skip << ": " << GetParam();

    // As the program does: read, build, take the best structure.
    RecordReader state;
    QTemporaryDir dir;
    SGdsFile stream(SString(CorpusStream(GetParam())));
    SGdsStructureList structures;
    testing::internal::CaptureStdout();
    bool read = stream.CheckHeader() && stream.Read() && stream.BuildStructures(structures);
    SString best = structures.GetDefaultStructure(kDefaultStructureBest);
    SString path(dir.filePath("corpus.lay"));
    bool made = read && SGdsLayerFile().Create(structures, best, {}, path);
    std::string printed = testing::internal::GetCapturedStdout();
    ASSERT_TRUE(read && made) << printed;
    ASSERT_EQ(best, SString(oracle.value("best").toString()));

    SGdsLayerFile file;
    ASSERT_TRUE(file.Read(path)) << file.GetErrorText().data();
    std::set<std::pair<int, int>> pairs;
    for (size_t i = 0; i < file.Entries(); ++i) {
        auto* mapping = static_cast<SGdsLayerMapping*>(file.At(i));
        pairs.insert({mapping->itsStreamLayer, mapping->itsStreamDatatype});
    }
    EXPECT_EQ(pairs.size(), file.Entries()) << "one line a pair";

    std::set<std::pair<int, int>> expected;
    QJsonObject layers = oracle.value("flat").toObject().value(best.qstring()).toObject().value("layers").toObject();
    for (auto it = layers.begin(); it != layers.end(); ++it) {
        QJsonObject n = it.value().toObject();
        QStringList key = it.key().split('/');
        if (n.value("boundary").toInt() + n.value("box").toInt() + n.value("path").toInt() > 0 && key.size() == 2)
            expected.insert({key[0].toInt(), key[1].toInt()});
    }
    EXPECT_EQ(pairs, expected);
}

TEST_P(LayerFileCorpus, WhatDashLWritesReadsBack)
{
    QJsonObject oracle = CorpusOracle(GetParam());
    std::string skip = NothingToMap(oracle);
    if (!skip.empty())
        GTEST_SKIP() << skip << ": " << GetParam();
    // -L flattens the structure before it writes: the layout of 8.5 million shapes spends
    // twenty seconds on that alone, as its translation does.
    QJsonObject best = oracle.value("flat").toObject().value(oracle.value("best").toString()).toObject();
    QJsonObject totals = best.value("totals").toObject();
    if (totals.value("boundary").toDouble() + totals.value("box").toDouble() + totals.value("path").toDouble() > 1e6)
        GTEST_SKIP() << "over a million shapes: " << GetParam();

    GdsRun run;
    RunResult made = run.Run({"-L", "-l", "made.lay", CorpusStream(GetParam())});
    ASSERT_EQ(made.status, 0) << made.out;
    SGdsLayerFile file;
    EXPECT_TRUE(file.Read(SString(run.Path("made.lay").c_str()))) << file.GetErrorText().data();
    EXPECT_GT(file.Entries(), 0u);
}

INSTANTIATE_TEST_SUITE_P(Corpus, LayerFileCorpus, testing::ValuesIn(CorpusFiles()), CorpusTestName);
