// Translations that start from a material file: the process sets up the project, and the
// stream's polygons land on the levels and technology layers that the file describes.

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonObject>

#include <map>
#include <string>
#include <vector>

#include "Corpus.h"
#include "GdsRun.h"
#include "SCircuit.h"
#include "SCvtMaterialFile.h"
#include "SDimensionBlock.h"
#include "SGeoClassID.h"
#include "SGeometryBlock.h"
#include "SLevel.h"
#include "SMetalPolygon.h"
#include "SMetalType.h"
#include "SProject.h"
#include "STechLayer.h"
#include "SViaMetalType.h"
#include "SViaPolygon.h"

using gdstest::GdsRun;
using gdstest::RunResult;
using gdstest::StreamWriter;

namespace {

std::string DataFile(const std::string& name)
{
    QFile file(QString(GDS_SOURCE_DIR "/tests/translate/data/") + QString::fromStdString(name));
    if (!file.open(QIODevice::ReadOnly))
        return std::string();
    return file.readAll().toStdString();
}

// One rectangle per layer, in microns on 1 nm database units: layer 1 and 2 metal, 3 a via.
StreamWriter TwoMetalStream()
{
    StreamWriter s;
    s.Header().Bgnlib().Libname().Units(0.001, 1e-9).Bgnstr("top");
    s.Boundary(1, 0, {{0, 0}, {100000, 0}, {100000, 20000}, {0, 20000}, {0, 0}});
    s.Boundary(2, 0, {{0, 40000}, {100000, 40000}, {100000, 60000}, {0, 60000}, {0, 40000}});
    s.Boundary(3, 0, {{10000, 5000}, {15000, 5000}, {15000, 55000}, {10000, 55000}, {10000, 5000}});
    s.Endstr().Endlib();
    return s;
}

// What a written project holds, by technology layer.
struct SReadBack
{
    bool read = false;
    std::string error;
    SString lengthUnit;
    std::vector<std::string> levelNames;
    std::vector<double> thicknesses;
    std::vector<double> erels;
    std::map<std::string, int> polygonsByLayer;
    std::map<std::string, int> levelByLayer;
    std::map<std::string, int> toLevelByLayer;
    std::map<std::string, std::string> materialByLayer;
    std::map<std::string, std::pair<int, int>> streamByLayer;
    std::map<std::string, double> metalThickness;
    std::vector<std::string> viaTypes;
    int polygons = 0;
};

SReadBack ReadProject(const std::string& path)
{
    SReadBack r;
    SProject project;
    project.SetProjectType(SProject::SecondSolverProject);
    project.SetTemplateRead(true);
    project.SetFileName(SString(path.c_str()));
    r.read = project.Read(0);
    r.error = project.GetErrors().ErrorText().data();
    SCircuit* circuit = project.GetGeometryBlock()->GetCircuit();
    if (!r.read || !circuit)
        return r;
    r.lengthUnit = project.GetDimensionBlock()->GetUnitName(SDimensionBlock::Length);
    for (int i = 0; i < circuit->GetNumberOfLevels(); ++i) {
        r.levelNames.push_back(circuit->GetLevel(i)->GetLevelName().data());
        r.thicknesses.push_back(circuit->GetLevel(i)->GetThickness());
        r.erels.push_back(circuit->GetLevel(i)->GetErel());
    }
    std::vector<STechLayer*> layers;
    circuit->GetTechLayers(layers);
    for (STechLayer* layer : layers) {
        const std::string name = layer->GetName().data();
        r.levelByLayer[name] = layer->GetLevel();
        if (layer->GetLayerType() == STechLayer::Via)
            r.toLevelByLayer[name] = layer->GetToLevel();
        r.materialByLayer[name] = layer->GetMaterialName().data();
        r.streamByLayer[name] = {layer->GetStream(), layer->GetData()};
    }
    std::vector<SEnclosure*> shapes;
    circuit->CollectPolygons(shapes, SCircuit::MetalAndVia);
    for (SEnclosure* shape : shapes) {
        SMetalPolygon* polygon = static_cast<SMetalPolygon*>(shape);
        ++r.polygons;
        STechLayer* layer = polygon->GetTechLayer();
        const std::string name = layer ? layer->GetName().data() : "<none>";
        ++r.polygonsByLayer[name];
        // A polygon lies on its layer's level.
        if (layer && polygon->GetLevelIndex() != layer->GetLevel())
            ++r.polygonsByLayer["<off its layer's level>"];
    }
    std::vector<SMetalType*> metals;
    circuit->CollectObjects(metals);
    for (SMetalType* metal : metals)
        r.metalThickness[metal->GetTypeName().data()] = metal->itsThickness.GetValue();
    std::vector<SViaMetalType*> vias;
    circuit->CollectObjects(vias);
    for (SViaMetalType* via : vias)
        r.viaTypes.push_back(via->GetTypeName().data());
    return r;
}

} // namespace

TEST(MaterialTranslation, TheProcessOfAMaterialFileTakesTheStreamsLayers)
{
    GdsRun run;
    run.Write("chip.gds", TwoMetalStream());
    run.Write("process.matl", DataFile("two_metal.matl"));

    // The summary names the process's technology layers, and the layer file made with it
    // maps each stream layer onto one of them.
    RunResult made = run.Run({"-i", "process.matl", "-M", "chip.cvt", "-L", "chip.gds"});
    ASSERT_EQ(made.status, 0) << made.out << made.err;
    SCvtMaterialFile summary;
    ASSERT_TRUE(summary.Read(SString(run.Path("chip.cvt").c_str())));
    const std::string layerFile = run.Read("chip.lay");
    for (const char* name : {"M1", "M2", "V1"})
        EXPECT_NE(layerFile.find(name), std::string::npos) << layerFile;

    RunResult result = run.Run({"-i", "process.matl", "chip.gds"});
    ASSERT_EQ(result.status, 0) << result.out << result.err;
    SReadBack r = ReadProject(run.Path("chip.vel"));
    ASSERT_TRUE(r.read) << r.error;
    EXPECT_EQ(r.lengthUnit, "UM");
    EXPECT_EQ(r.levelNames, (std::vector<std::string>{"Air", "Oxide", "Silicon"}));
    EXPECT_EQ(r.thicknesses, (std::vector<double>{50, 5, 200}));
    EXPECT_EQ(r.erels, (std::vector<double>{1, 4.1, 11.9}));
    EXPECT_EQ(r.metalThickness["TopCopper"], 2);
    EXPECT_EQ(r.metalThickness["BottomCopper"], 1);
    // Beside the built-in lossless via.
    EXPECT_EQ(r.viaTypes, (std::vector<std::string>{"Lossless", "ViaCopper"}));

    // The technology layers are the file's, on its levels, with its stream numbers.
    EXPECT_EQ(r.levelByLayer, (std::map<std::string, int>{{"M1", 1}, {"M2", 0}, {"V1", 0}}));
    EXPECT_EQ(r.toLevelByLayer, (std::map<std::string, int>{{"V1", 1}}));
    EXPECT_EQ(r.streamByLayer["M1"], std::make_pair(1, 0));
    EXPECT_EQ(r.streamByLayer["M2"], std::make_pair(2, 0));
    EXPECT_EQ(r.streamByLayer["V1"], std::make_pair(3, 0));
    EXPECT_EQ(r.materialByLayer["M1"], "BottomCopper");
    EXPECT_EQ(r.materialByLayer["M2"], "TopCopper");
    EXPECT_EQ(r.materialByLayer["V1"], "ViaCopper");
    // And every polygon is on the layer of its stream layer.
    EXPECT_EQ(r.polygonsByLayer, (std::map<std::string, int>{{"M1", 1}, {"M2", 1}, {"V1", 1}}));
}

TEST(MaterialTranslation, OneRunMakesTheLayerFileFromTheProcess)
{
    GdsRun run;
    run.Write("chip.gds", TwoMetalStream());
    run.Write("process.matl", DataFile("two_metal.matl"));
    RunResult result = run.Run({"-i", "process.matl", "chip.gds"});
    ASSERT_EQ(result.status, 0) << result.out << result.err;
    // The layer file the run made maps each stream layer onto the process's layer.
    const std::string layerFile = run.Read("chip.lay");
    for (const char* line : {"via 3 0 0 \"ViaCopper\" on 1 \"V1\"", "metal_boundary 1 0 1 \"BottomCopper\" on 1 \"M1\"",
                             "metal_boundary 2 0 0 \"TopCopper\" on 0 \"M2\""})
        EXPECT_NE(layerFile.find(line), std::string::npos) << layerFile;
    SReadBack r = ReadProject(run.Path("chip.vel"));
    ASSERT_TRUE(r.read) << r.error;
    EXPECT_EQ(r.levelNames.size(), 3u);
    EXPECT_EQ(r.polygonsByLayer, (std::map<std::string, int>{{"M1", 1}, {"M2", 1}, {"V1", 1}}));
}

// The project without the times of its making, which differ from run to run.
std::string WithoutTimes(const std::string& text)
{
    std::string kept;
    size_t at = 0;
    while (at < text.size()) {
        size_t end = text.find('\n', at);
        end = end == std::string::npos ? text.size() : end + 1;
        const std::string line = text.substr(at, end - at);
        if (line.rfind("DAT ", 0) != 0 && line.rfind("MDATE ", 0) != 0 && line.rfind("HDATE ", 0) != 0 &&
            line.rfind("BUILT_BY_CREATED ", 0) != 0)
            kept += line;
        at = end;
    }
    return kept;
}

TEST(MaterialTranslation, ATechnologyFileOfTheSameProcessGivesTheSameProject)
{
    GdsRun run;
    run.Write("a.gds", TwoMetalStream());
    run.Write("b.gds", TwoMetalStream());
    run.Write("process.matl", DataFile("two_metal.matl"));
    QFile stf(GDS_SOURCE_DIR "/tests/matl/data/two_metal.stf");
    ASSERT_TRUE(stf.open(QIODevice::ReadOnly));
    run.Write("process.stf", stf.readAll().toStdString());
    ASSERT_EQ(run.Run({"-i", "process.matl", "a.gds"}).status, 0);
    RunResult result = run.Run({"-i", "process.stf", "b.gds"});
    ASSERT_EQ(result.status, 0) << result.out << result.err;
    // The layer files and the projects are the same, polygons on the same layers.
    EXPECT_EQ(run.Read("b.lay"), run.Read("a.lay"));
    EXPECT_EQ(WithoutTimes(run.Read("b.vel")), WithoutTimes(run.Read("a.vel")));
    SReadBack r = ReadProject(run.Path("b.vel"));
    ASSERT_TRUE(r.read) << r.error;
    EXPECT_EQ(r.polygonsByLayer, (std::map<std::string, int>{{"M1", 1}, {"M2", 1}, {"V1", 1}}));

    // A technology file that breaks off fails the run and writes nothing.
    std::string broken = run.Read("process.stf");
    broken.resize(broken.size() / 2);
    run.Write("broken.stf", broken);
    result = run.Run({"-i", "broken.stf", "-o", "out.vel", "-l", "a.lay", "a.gds"});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE((result.out + result.err).find("broken.stf"), std::string::npos) << result.out << result.err;
    EXPECT_FALSE(run.Exists("out.vel"));
}

TEST(MaterialTranslation, AMaterialFileThatCantBeUsedWritesNoProject)
{
    GdsRun run;
    run.Write("chip.gds", TwoMetalStream());
    std::string text = DataFile("two_metal.matl");
    // A dielectric whose relative permittivity is no number.
    const size_t at = text.find("DIEL 5 4.1");
    ASSERT_NE(at, std::string::npos);
    text.replace(at, 10, "DIEL 5 abc");
    run.Write("bad.matl", text);
    run.Write("empty.matl", "; nothing but a comment\nLUNIT um\n");

    struct SCase
    {
        const char* file;
        const char* words; // what standard output or standard error must hold
    };
    for (const SCase& c : {SCase{"bad.matl", "bad.matl"}, SCase{"empty.matl", "no dielectric layer"},
                           SCase{"missing.matl", "missing.matl"}}) {
        SCOPED_TRACE(c.file);
        RunResult result = run.Run({"-i", c.file, "-o", "out.vel", "chip.gds"});
        EXPECT_TRUE(result.finished);
        EXPECT_EQ(result.status, 1);
        EXPECT_NE((result.out + result.err).find(c.words), std::string::npos) << result.out << result.err;
        EXPECT_FALSE(run.Exists("out.vel"));
    }
}

// A real cell of a SiGe process (its MIM capacitor) with a material file written for its
// layers: every shape of the process's six stream layers lands on its technology layer,
// as many as the independent reader counts on that layer.
TEST(MaterialTranslation, ARealCellLandsOnTheLayersOfItsProcess)
{
    const std::string file = "g2p__rfcmim_30x15x10_full.gds";
    const QString stream = gdstest::CorpusStream(file);
    const QJsonObject oracle = gdstest::CorpusOracle(file);
    if (!QFile::exists(stream) || oracle.isEmpty())
        GTEST_SKIP() << "no corpus";
    GdsRun run;
    run.Write("process.matl", DataFile("sg13_rfcmim.matl"));
    const QStringList common = {"-i", "process.matl", "-p", "rfcmim", "-l", "cell.lay"};
    RunResult made = run.Run(common + QStringList{"-M", "cell.cvt", "-L", stream});
    ASSERT_EQ(made.status, 0) << made.out << made.err;
    RunResult result = run.Run(common + QStringList{"-o", "cell.vel", stream});
    ASSERT_EQ(result.status, 0) << result.out << result.err;
    SReadBack r = ReadProject(run.Path("cell.vel"));
    ASSERT_TRUE(r.read) << r.error;
    EXPECT_EQ(r.levelNames.size(), 6u);

    const QJsonObject layers = oracle["flat"].toObject()["rfcmim"].toObject()["layers"].toObject();
    const std::map<std::string, std::string> byPair = {{"TopMetal1", "126/0"}, {"MIM", "36/0"}, {"Vmim", "129/0"},
                                                       {"Metal5", "67/0"},    {"Metal1", "8/0"}, {"Cont", "6/0"}};
    std::map<std::string, int> expected;
    int total = 0;
    for (const auto& entry : byPair) {
        const QJsonObject counts = layers[QString::fromStdString(entry.second)].toObject();
        // Each of these layers holds boundaries only, none of them degenerate.
        ASSERT_EQ(counts["path"].toInt() + counts["box"].toInt(), 0) << entry.second;
        expected[entry.first] = counts["boundary"].toInt();
        total += expected[entry.first];
    }
    EXPECT_EQ(r.polygonsByLayer, expected);
    EXPECT_EQ(r.polygons, total);
    EXPECT_EQ(r.levelByLayer["Cont"], 3);
    EXPECT_EQ(r.toLevelByLayer["Cont"], 4);
    EXPECT_EQ(r.materialByLayer["MIM"], "MIMTop");
}
