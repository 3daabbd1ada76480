// Translations as a user runs them: a stream and a layer file in, a project file out,
// read back with the project reader to see what it holds.

#include <gtest/gtest.h>

#include <QDir>
#include <QRegularExpression>

#include <algorithm>
#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "GdsRun.h"
#include "SCircuit.h"
#include "SDimensionBlock.h"
#include "SGeoClassID.h"
#include "SGeoObjectIO.h"
#include "SGeometryBlock.h"
#include "SLevel.h"
#include "SMetalPolygon.h"
#include "SMetalType.h"
#include "SPort.h"
#include "SProject.h"
#include "SRefPlane.h"
#include "STechLayer.h"
#include "SViaPolygon.h"

using gdstest::GdsRun;
using gdstest::RunResult;
using gdstest::StreamWriter;

namespace {

// Rectangles in microns on a stream of 1 nm database units.
struct Shape
{
    int layer;
    int datatype;
    double x1, y1, x2, y2;
};

StreamWriter Stream(const std::vector<Shape>& shapes, double userPerDbu = 0.001, double metresPerDbu = 1e-9)
{
    StreamWriter s;
    s.Header().Bgnlib().Libname().Units(userPerDbu, metresPerDbu).Bgnstr("top");
    auto dbu = [userPerDbu](double v) { return static_cast<long long>(v / userPerDbu + (v < 0 ? -0.5 : 0.5)); };
    for (const Shape& r : shapes)
        s.Boundary(r.layer, r.datatype,
                   {{dbu(r.x1), dbu(r.y1)}, {dbu(r.x2), dbu(r.y1)}, {dbu(r.x2), dbu(r.y2)},
                    {dbu(r.x1), dbu(r.y2)}, {dbu(r.x1), dbu(r.y1)}});
    s.Endstr().Endlib();
    return s;
}

// Layer 1 metal on level 0, 2 metal on level 1, 3 a via from 0 to ground, 5 brick on 0,
// 8/0 ports on level 0 and 8/1 on level 1, 9 the substrate.
const char* const kLayers = "M1 metal_boundary 1 0 0 \"Gold\"\n"
                            "M2 metal_boundary 2 0 1 \"Copper\"\n"
                            "V1 via 3 0 0 \"Copper\" on gnd\n"
                            "B brick_boundary 5 0 0 \"Oxide\"\n"
                            "P wall_port 8 0 0 \"Port\"\n"
                            "P1 wall_port 8 1 1 \"Port\"\n"
                            "S substrate 9 0 0 \"Box\"\n";

struct Polygon
{
    int level;
    int id;
    std::string kind;
    SRect box;
    std::vector<SPoint> points;
    int ports;
};

// What a written project holds.
struct Written
{
    bool read = false;
    std::string error;
    SSize box;
    int cellsX = 0;
    int levels = 0;
    SString lengthUnit;
    std::vector<Polygon> polygons;
    std::vector<std::string> metals;
    std::vector<std::string> techLayers;
    std::vector<int> portNumbers;
    double leftPlane = 0.0;

    int Count(int level) const
    {
        int n = 0;
        for (const Polygon& p : polygons)
            n += p.level == level;
        return n;
    }
};

Written ReadBack(const GdsRun& run, const std::string& name)
{
    Written w;
    SProject project;
    project.SetProjectType(SProject::SecondSolverProject);
    project.SetTemplateRead(true);
    project.SetFileName(SString(run.Path(name).c_str()));
    w.read = project.Read(0);
    w.error = project.GetErrors().ErrorText().data();
    SCircuit* circuit = project.GetGeometryBlock()->GetCircuit();
    if (!w.read || !circuit)
        return w;
    w.box = circuit->GetBoxSize();
    w.cellsX = circuit->GetNumCellsX();
    w.levels = circuit->GetNumberOfLevels();
    w.lengthUnit = project.GetDimensionBlock()->GetUnitName(SDimensionBlock::Length);
    std::vector<SEnclosure*> shapes;
    circuit->CollectPolygons(shapes, SCircuit::MetalAndVia);
    for (SEnclosure* shape : shapes) {
        SMetalPolygon* metal = static_cast<SMetalPolygon*>(shape);
        std::vector<SPort*> ports;
        SGeoObjectIO::GetPorts(*metal, ports);
        w.polygons.push_back(Polygon{metal->GetLevelIndex(), int(metal->GetId()),
                                     shape->isA() == SID_VIAPOLYGON ? "via" : "metal", metal->GetBoundingRect(),
                                     metal->GetVertices(), int(ports.size())});
        for (SPort* port : ports)
            w.portNumbers.push_back(port->GetNumber());
    }
    std::vector<SMetalType*> metals;
    circuit->CollectObjects(metals);
    for (SMetalType* metal : metals)
        w.metals.push_back(metal->GetTypeName().data());
    std::vector<STechLayer*> layers;
    circuit->GetTechLayers(layers);
    for (STechLayer* layer : layers)
        w.techLayers.push_back(layer->GetName().data());
    if (SRefPlane* plane = circuit->GetRefPlane(SBoxSide::Left))
        w.leftPlane = plane->GetLength();
    return w;
}

// The files of the scratch directory.
QStringList Files(const GdsRun& run)
{
    return QDir(run.Dir()).entryList(QDir::Files, QDir::Name);
}

TEST(Translation, ANewProjectTakesTheStreamsUnitAndTheNormalBox)
{
    GdsRun run;
    run.Write("chip.gds", Stream({{1, 0, 0, 0, 100, 40}}));
    run.Write("chip.lay", kLayers);
    RunResult result = run.Run({"-v", "chip.gds"});
    EXPECT_EQ(result.status, 0) << result.out;
    EXPECT_NE(result.out.find("Created 1 polygons in project file\nConversion completed\n"), std::string::npos)
        << result.out;
    Written w = ReadBack(run, "chip.vel");
    ASSERT_TRUE(w.read) << w.error;
    EXPECT_EQ(w.lengthUnit, "UM");
    EXPECT_NEAR(w.box.width(), 153.6, 1e-9);
    EXPECT_EQ(w.cellsX, 256);
    ASSERT_EQ(w.polygons.size(), 1u);
    // Centred with a quarter of the extent on each side, y flipped into the box.
    const SRect& placed = w.polygons[0].box;
    EXPECT_NEAR(placed.x1(), 25, 1e-9);
    EXPECT_NEAR(placed.x2(), 125, 1e-9);
    EXPECT_NEAR(placed.y1(), w.box.height() - 50, 1e-9);
    EXPECT_NEAR(placed.y2(), w.box.height() - 10, 1e-9);
    EXPECT_EQ(w.polygons[0].id, 1);
    // Level 0, the only one in use, and ground.
    EXPECT_EQ(w.levels, 2);
}

TEST(Translation, AnExistingProjectConvertsStreamUnitsToItsOwn)
{
    GdsRun run;
    run.Write("chip.gds", Stream({{1, 0, 0, 0, 100, 40}}));
    run.Write("chip.lay", kLayers);
    ASSERT_EQ(run.Run({"chip.gds"}).status, 0);
    // The same project in mils: the stream's microns shrink by 2.54e-5.
    std::string text = run.Read("chip.vel");
    text.replace(text.find("LNG UM"), 6, "LNG MIL");
    run.Write("mils.vel", text);
    RunResult result = run.Run({"-g", "-i", "mils.vel", "-o", "out.vel", "-s", "min", "-t", "min", "chip.gds"});
    EXPECT_EQ(result.status, 0) << result.out;
    Written w = ReadBack(run, "out.vel");
    ASSERT_TRUE(w.read) << w.error;
    EXPECT_EQ(w.lengthUnit, "MIL");
    ASSERT_EQ(w.polygons.size(), 1u);
    EXPECT_NEAR(w.polygons[0].box.width(), 100 * 1e-6 / 2.54e-5, 1e-5);
    EXPECT_NEAR(w.box.width(), 3.93701, 1e-5);

    // A user unit of half a metre matches no unit and is taken as 1 metre.
    run.Write("odd.gds", Stream({{1, 0, 0, 0, 2, 1}}, 1.0, 0.5));
    result = run.Run({"-g", "-i", "chip.vel", "-o", "odd.vel", "-l", "chip.lay", "-s", "min", "odd.gds"});
    EXPECT_EQ(result.status, 0) << result.out;
    w = ReadBack(run, "odd.vel");
    ASSERT_EQ(w.polygons.size(), 1u);
    EXPECT_NEAR(w.polygons[0].box.width(), 2e6, 1e-3);
}

TEST(Translation, SizeFiltersAndTheKeepBox)
{
    GdsRun run;
    run.Write("chip.gds", Stream({{1, 0, 0, 0, 100, 100}, {1, 0, 10, 10, 15, 30}, {1, 0, 30, 30, 35, 35}}));
    run.Write("chip.lay", kLayers);
    ASSERT_EQ(run.Run({"-o", "b.vel", "-b", "10,10", "chip.gds"}).status, 0);
    Written w = ReadBack(run, "b.vel");
    // 5 by 20 is tall enough; 5 by 5 is neither wide nor tall enough.
    ASSERT_EQ(w.polygons.size(), 2u);
    EXPECT_DOUBLE_EQ(w.polygons[1].box.height(), 20.0);

    // Per cent of the union: 10% of 100 by 100.
    ASSERT_EQ(run.Run({"-o", "B.vel", "-B", "10,10", "chip.gds"}).status, 0);
    EXPECT_EQ(ReadBack(run, "B.vel").polygons.size(), 2u);
    // Per cent of the keep box, which here is all that stays.
    ASSERT_EQ(run.Run({"-o", "kB.vel", "-k", "0,40,0,40", "-B", "60,60", "chip.gds"}).status, 0);
    EXPECT_EQ(ReadBack(run, "kB.vel").polygons.size(), 0u);

    // Touching the keep box is inside; crossing it is not.
    ASSERT_EQ(run.Run({"-o", "k.vel", "-k", "35,10,10,35", "chip.gds"}).status, 0);
    w = ReadBack(run, "k.vel");
    ASSERT_EQ(w.polygons.size(), 2u);
    ASSERT_EQ(run.Run({"-o", "kb.vel", "-k", "10,35,10,35", "-b", "10,10", "chip.gds"}).status, 0);
    EXPECT_EQ(ReadBack(run, "kb.vel").polygons.size(), 1u);
}

TEST(Translation, PolygonsGoToTheirLevelsOncePerMapping)
{
    GdsRun run;
    run.Write("chip.gds", Stream({{1, 0, 0, 0, 50, 50}, {2, 0, 10, 10, 20, 20}, {3, 0, 12, 12, 14, 14},
                                  {7, 0, 0, 0, 5, 5}, {4, 0, 0, 0, 1, 1}}));
    run.Write("chip.lay", std::string(kLayers) + "Twice metal_boundary 4 0 2 \"Gold\"\n"
                                                 "Twice metal_boundary 4 0 0 \"Gold\"\n");
    ASSERT_EQ(run.Run({"chip.gds"}).status, 0);
    Written w = ReadBack(run, "chip.vel");
    ASSERT_TRUE(w.read) << w.error;
    // Levels 0 to 2 and ground; the unmapped layer 7 is left out without complaint.
    EXPECT_EQ(w.levels, 4);
    EXPECT_EQ(w.Count(0), 3);
    EXPECT_EQ(w.Count(1), 1);
    EXPECT_EQ(w.Count(2), 1);
    int vias = 0;
    std::vector<int> ids;
    for (const Polygon& p : w.polygons) {
        vias += p.kind == "via";
        ids.push_back(p.id);
    }
    EXPECT_EQ(vias, 1);
    std::sort(ids.begin(), ids.end());
    EXPECT_EQ(ids, (std::vector<int>{1, 2, 3, 4, 5}));
    EXPECT_NE(std::find(w.metals.begin(), w.metals.end(), "Gold"), w.metals.end());
    // One technology layer for each material mapping, used or not.
    EXPECT_EQ(w.techLayers.size(), 6u);

    // Without technology layers (-e) the polygons stand on their levels alone.
    ASSERT_EQ(run.Run({"-e", "-o", "e.vel", "chip.gds"}).status, 0);
    EXPECT_TRUE(ReadBack(run, "e.vel").techLayers.empty());
}

TEST(Translation, TheSubstratePolygonIsTheBox)
{
    GdsRun run;
    run.Write("chip.lay", kLayers);
    run.Write("one.gds", Stream({{1, 0, 10, 10, 20, 20}, {9, 0, 5, 5, 85, 45}}));
    RunResult result = run.Run({"-l", "chip.lay", "-s", "test", "one.gds"});
    EXPECT_EQ(result.status, 0) << result.out;
    Written w = ReadBack(run, "one.vel");
    EXPECT_EQ(w.box, SSize(80, 40));
    ASSERT_EQ(w.polygons.size(), 1u);
    EXPECT_EQ(w.polygons[0].box, SRect(5, 25, 15, 35));

    // A substrate mapping without a polygon: the box comes from -s.
    run.Write("none.gds", Stream({{1, 0, 10, 10, 20, 20}}));
    result = run.Run({"-l", "chip.lay", "-s", "test", "none.gds"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "WARNING: There are no substrate polygons, default substrate will be created.\n");
    EXPECT_EQ(ReadBack(run, "none.vel").box, SSize(100, 100));

    run.Write("two.gds", Stream({{9, 0, 0, 0, 10, 10}, {9, 0, 20, 20, 30, 30}}));
    result = run.Run({"-l", "chip.lay", "two.gds"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "ERROR: There are more than one substrate polygons.\nConversion failed\n");
    EXPECT_FALSE(run.Exists("two.vel"));
}

TEST(Translation, PortsOnTheWallsAndInsideTheBox)
{
    GdsRun run;
    run.Write("chip.lay", kLayers);
    // A strip from wall to wall, with port rectangles across both ends; a second port
    // polygon on the left end; a pad inside the box with a port on its left edge; a port
    // polygon that crosses nothing.
    run.Write("chip.gds", Stream({{9, 0, 0, 0, 100, 60},
                                  {1, 0, 0, 20, 100, 30},
                                  {8, 0, -1, 22, 1, 28},
                                  {8, 0, -0.5, 23, 0.5, 27},
                                  {8, 0, 99, 22, 101, 28},
                                  {1, 0, 40, 40, 60, 50},
                                  {8, 0, 39, 42, 41, 48},
                                  {8, 0, 70, 55, 72, 57}}));
    RunResult result = run.Run({"chip.gds"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "WARNING: Did not add port for port polygon at (70.000000,55.000000)\n"
                          "  layer=8, datatype=0 - could not find polygon to attach port to.\n");
    Written w = ReadBack(run, "chip.vel");
    ASSERT_TRUE(w.read) << w.error;
    ASSERT_EQ(w.polygons.size(), 3u);
    EXPECT_EQ(w.polygons[0].ports, 2);
    EXPECT_EQ(w.polygons[1].ports, 0);
    // The pad reaches the left wall through a new polygon, which carries the port.
    EXPECT_EQ(w.polygons[2].box, SRect(0, 10, 40, 20));
    EXPECT_EQ(w.polygons[2].ports, 1);
    EXPECT_DOUBLE_EQ(w.leftPlane, 40.0);
    // Left wall from the top down, then the right wall.
    EXPECT_EQ(w.portNumbers, (std::vector<int>{2, 3, 1}));
}

// The flat list gives its memory back while the project is built; the port and substrate
// polygons it still needs, early and late in a long list, keep their places.
TEST(Translation, PortsAndSubstrateSurviveALongList)
{
    std::vector<Shape> shapes = {{8, 0, 99, 22, 101, 28}, {9, 0, 0, 0, 100, 60}};
    for (int row = 0; row < 100; ++row)
        for (int column = 0; column < 300; ++column)
            shapes.push_back({1, 0, 0.5 + 0.3 * column, 32 + 0.25 * row, 0.6 + 0.3 * column, 32.1 + 0.25 * row});
    shapes.push_back({1, 0, 0, 20, 100, 30});
    shapes.push_back({8, 0, -1, 22, 1, 28});
    GdsRun run;
    run.Write("chip.lay", kLayers);
    run.Write("chip.gds", Stream(shapes));
    RunResult result = run.Run({"chip.gds"});
    EXPECT_EQ(result.status, 0) << result.out;
    EXPECT_EQ(result.out, "");
    Written w = ReadBack(run, "chip.vel");
    ASSERT_TRUE(w.read) << w.error;
    EXPECT_EQ(w.box, SSize(100, 60));
    ASSERT_EQ(w.polygons.size(), 30001u);
    EXPECT_EQ(w.polygons.back().box, SRect(0, 30, 100, 40));
    EXPECT_EQ(w.polygons.back().ports, 2);
}

TEST(Translation, DashYKeepsTheStreamsOrientation)
{
    GdsRun run;
    run.Write("chip.lay", kLayers);
    run.Write("chip.gds", Stream({{1, 0, 0, 0, 100, 100}, {1, 0, 10, 60, 30, 90}}));
    ASSERT_EQ(run.Run({"-o", "flip.vel", "chip.gds"}).status, 0);
    ASSERT_EQ(run.Run({"-y", "-o", "keep.vel", "chip.gds"}).status, 0);
    Written flipped = ReadBack(run, "flip.vel"), kept = ReadBack(run, "keep.vel");
    ASSERT_EQ(flipped.polygons.size(), 2u);
    ASSERT_EQ(kept.polygons.size(), 2u);
    const double h = kept.box.height();
    for (size_t i = 0; i < 2; ++i) {
        ASSERT_EQ(flipped.polygons[i].points.size(), kept.polygons[i].points.size());
        for (size_t k = 0; k < kept.polygons[i].points.size(); ++k)
            EXPECT_EQ(flipped.polygons[i].points[k],
                      SPoint(kept.polygons[i].points[k].x(), h - kept.polygons[i].points[k].y()));
    }
    EXPECT_EQ(kept.polygons[1].box, SRect(35, 85, 55, 115));
}

TEST(Translation, UpdatingAProjectKeepsItsSettings)
{
    GdsRun run;
    run.Write("chip.lay", kLayers);
    run.Write("first.gds", Stream({{1, 0, 0, 0, 100, 100}, {2, 0, 0, 0, 10, 10}}));
    ASSERT_EQ(run.Run({"-o", "chip.vel", "-l", "chip.lay", "-s", "300,200", "-t", "10,10", "first.gds"}).status, 0);
    std::string text = run.Read("chip.vel");
    // Four levels and a material of the user's own stand in the project.
    const std::string box = "BOX 2 300 200";
    ASSERT_NE(text.find(box), std::string::npos) << text;
    text.replace(text.find(box), box.size(), "BOX 3 300 200");
    text.insert(text.find('\n', text.find("BOX 3")) + 1, "      5 4.4 1 0 0 0 0 \"Extra\"\n");
    text.insert(text.find("BOX "), "MET \"Mine\" 7 NOR INF 0 0.5\n");
    run.Write("chip.vel", text);

    run.Write("second.gds", Stream({{1, 0, 0, 0, 50, 50}}));
    // -g replaces the drawing; the box stays where the project had it.
    ASSERT_EQ(run.Run({"-g", "-o", "g.vel", "-l", "chip.lay", "-i", "chip.vel", "second.gds"}).status, 0);
    Written g = ReadBack(run, "g.vel");
    ASSERT_TRUE(g.read) << g.error;
    EXPECT_EQ(g.box, SSize(300, 200));
    EXPECT_EQ(g.levels, 4);
    EXPECT_NE(std::find(g.metals.begin(), g.metals.end(), "Mine"), g.metals.end());
    ASSERT_EQ(g.polygons.size(), 1u);
    EXPECT_DOUBLE_EQ(g.polygons[0].box.width(), 50.0);

    // -q adds to the drawing, marks the new polygons and sizes by them alone.
    ASSERT_EQ(run.Run({"-q", "-o", "q.vel", "-l", "chip.lay", "-i", "chip.vel", "-t", "min", "second.gds"}).status, 0);
    Written q = ReadBack(run, "q.vel");
    ASSERT_EQ(q.polygons.size(), 3u);
    // Level 0 holds the old and the new polygon, level 1 the other old one.
    EXPECT_EQ(q.polygons[1].box, SRect(0, 150, 50, 200));
    EXPECT_EQ(q.polygons[1].id, 3);
    EXPECT_EQ(q.polygons[2].level, 1);
    EXPECT_NE(run.Read("q.vel").find("USER_DAT FromImport"), std::string::npos);
    // -i and -o: the input stays as it was.
    EXPECT_EQ(run.Read("chip.vel"), text);
}

TEST(Translation, AFailedTranslationLeavesTheOldProjectAlone)
{
    GdsRun run;
    run.Write("chip.lay", kLayers);
    run.Write("chip.gds", Stream({{1, 0, 0, 0, 100, 100}}));
    ASSERT_EQ(run.Run({"chip.gds"}).status, 0);
    const std::string before = run.Read("chip.vel");

    run.Write("chip.gds", Stream({{9, 0, 0, 0, 10, 10}, {9, 0, 20, 20, 30, 30}}));
    EXPECT_EQ(run.Run({"chip.gds"}).status, 1);
    run.Write("chip.lay", "broken line\n");
    EXPECT_EQ(run.Run({"chip.gds"}).status, 1);
    run.Write("bad.vel", "FTYP VELPROJ 17\nGEO\nBOX x\nEND GEO\n");
    EXPECT_EQ(run.Run({"-g", "-i", "bad.vel", "chip.gds"}).status, 1);
    EXPECT_EQ(run.Run({"-g", "-i", "stack.matl", "chip.gds"}).status, 1);
    EXPECT_EQ(run.Read("chip.vel"), before);
    EXPECT_EQ(Files(run), (QStringList{"bad.vel", "chip.gds", "chip.lay", "chip.vel"}));

    // An output that can't be written leaves nothing behind and says why.
    run.Write("chip.lay", kLayers);
    run.Write("chip.gds", Stream({{1, 0, 0, 0, 100, 100}}));
    RunResult result = run.Run({"-o", "chip.gds/chip.vel", "chip.gds"});
    EXPECT_TRUE(result.finished);
    EXPECT_NE(result.err.find("chip.gds/chip.vel"), std::string::npos) << result.err;
    EXPECT_EQ(Files(run), (QStringList{"bad.vel", "chip.gds", "chip.lay", "chip.vel"}));
}

// Found when a broken project read for an update was reported as "Line 6: ..." with no
// word of the file.
TEST(Translation, AProjectReadErrorNamesTheFileAsTypedAndItsLine)
{
    GdsRun run;
    run.Write("chip.lay", kLayers);
    run.Write("chip.gds", Stream({{1, 0, 0, 0, 100, 100}}));
    ASSERT_TRUE(QDir(run.Dir()).mkpath("old"));
    run.Write("old/bad.vel", "FTYP VELPROJ 17\nGEO\nBOX 1 10 10 20 20 20 0\n 1 1 1 0 0 0 0\n 1 1 1 0 0 0 0\n"
                             "BOGUS\nNUM 0\nEND GEO\n");
    RunResult result = run.Run({"-g", "-i", "old/bad.vel", "-l", "chip.lay", "chip.gds"});
    EXPECT_TRUE(result.finished);
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.err.find("old/bad.vel:6: Unknown keyword in the geometry block.\n"), std::string::npos)
        << result.err;
}

// Found when -q updated a project cut after two of its three polygons, and the third went
// without a word.
TEST(Translation, KeepingTheDrawingOfACutProjectWarnsWhereItEnds)
{
    GdsRun run;
    run.Write("chip.lay", kLayers);
    run.Write("first.gds", Stream({{1, 0, 0, 0, 10, 10}, {1, 0, 20, 0, 30, 10}, {2, 0, 0, 20, 10, 30}}));
    ASSERT_EQ(run.Run({"-o", "chip.vel", "-l", "chip.lay", "first.gds"}).status, 0);
    const std::string text = run.Read("chip.vel");
    size_t end = text.find("\nNUM 3\n");
    ASSERT_NE(end, std::string::npos) << text;
    for (int polygon = 0; polygon < 2; ++polygon)
        end = text.find("\nEND\n", end + 1);
    ASSERT_NE(end, std::string::npos) << text;
    const std::string cut = text.substr(0, end + 5);
    run.Write("cut.vel", cut);
    const long lastLine = std::count(cut.begin(), cut.end(), '\n');

    run.Write("second.gds", Stream({{1, 0, 50, 50, 60, 60}}));
    RunResult result = run.Run({"-q", "-i", "cut.vel", "-o", "q.vel", "-l", "chip.lay", "second.gds"});
    EXPECT_TRUE(result.finished);
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.err.find("Warning"), std::string::npos) << result.err;
    EXPECT_NE(result.err.find("cut.vel:" + std::to_string(lastLine) +
                              ": The file ends inside the GEO block: 2 of the 3 polygons that NUM announced were "
                              "read. The project file may have been cut short.\n"),
              std::string::npos)
        << result.err;
    EXPECT_EQ(ReadBack(run, "q.vel").polygons.size(), 3u);
}

TEST(Translation, SavingCleansWhatEarlierAnalysesLeft)
{
    GdsRun run;
    run.Write("chip.lay", kLayers);
    run.Write("chip.gds", Stream({{1, 0, 0, 0, 100, 100}}));
    ASSERT_EQ(run.Run({"chip.gds"}).status, 0);
    QDir(run.Dir()).mkpath("veldata/chip");
    run.Write("veldata/chip/log_errors", "old\n");
    ASSERT_EQ(run.Run({"chip.gds"}).status, 0);
    EXPECT_FALSE(run.Exists("veldata/chip/log_errors"));
}

TEST(Translation, MaterialSummaryInsteadOfAProject)
{
    GdsRun run;
    run.Write("chip.lay", kLayers);
    run.Write("chip.gds", Stream({{1, 0, 0, 0, 100, 50}, {2, 0, -10, 5, 10, 15}}));
    RunResult result = run.Run({"-M", "new.txt", "chip.gds"});
    EXPECT_EQ(result.status, 0) << result.out;
    EXPECT_EQ(run.Read("new.txt"), "EXTENTS -10 0 100 50\nUNITNAME uM\n");
    EXPECT_FALSE(run.Exists("chip.vel"));

    ASSERT_EQ(run.Run({"-o", "base.vel", "-s", "200,100", "chip.gds"}).status, 0);
    result = run.Run({"-g", "-i", "base.vel", "-M", "old.txt", "chip.gds"});
    EXPECT_EQ(result.status, 0) << result.out;
    const std::string summary = run.Read("old.txt");
    EXPECT_EQ(summary.rfind("metal Lossless\nmetal Gold\nmetal Copper\nviametal Lossless\nviametal Copper\n"
                            "brick Air\nbrick Oxide\n",
                            0),
              0u)
        << summary;
    EXPECT_NE(summary.find("TECHLAY METAL Stream1:0 <UNSPECIFIED> 1 0 CVT Gold 0\n"), std::string::npos) << summary;
    const size_t tail = summary.find("EXTENTS");
    ASSERT_NE(tail, std::string::npos);
    EXPECT_EQ(summary.substr(tail), "EXTENTS -10 0 100 50\nBOXSIZE 200 100\nCELLSIZE 10 2\nUNITNAME UM\n");
}

// Projects for small streams, whole, with the dates of the header masked.
std::string Masked(const std::string& text)
{
    QString masked = QString::fromStdString(text);
    masked.replace(QRegularExpression("\\d\\d/\\d\\d/\\d\\d\\d\\d \\d\\d:\\d\\d:\\d\\d"), "<date>");
    return masked.toStdString();
}

struct ExpectedCase
{
    const char* name;
    std::vector<std::string> options;
    std::string layers;
};

class WholeProject : public testing::TestWithParam<ExpectedCase>
{
};

TEST_P(WholeProject, MatchesTheExpectedFile)
{
    const ExpectedCase& c = GetParam();
    GdsRun run;
    run.Write("chip.lay", c.layers);
    run.Write("chip.gds", Stream({{9, 0, 0, 0, 120, 80},
                                  {1, 0, 0, 30, 120, 40},
                                  {8, 0, -1, 32, 1, 38},
                                  {2, 0, 30, 50, 70, 70},
                                  {8, 1, 69, 55, 71, 65},
                                  {3, 0, 33, 33, 37, 37},
                                  {5, 0, 80, 5, 110, 25}}));
    QStringList arguments;
    for (const std::string& option : c.options)
        arguments << QString::fromStdString(option);
    arguments << "chip.gds";
    RunResult result = run.Run(arguments);
    ASSERT_EQ(result.status, 0) << result.out;
    const std::string expectedPath = std::string(GDS_SOURCE_DIR "/tests/translate/expected/") + c.name + ".vel";
    QFile expected(QString::fromStdString(expectedPath));
    // After a deliberate change of the output, GDS_UPDATE_EXPECTED=1 writes the new
    // files, to be read through before they are kept.
    if (qEnvironmentVariableIsSet("GDS_UPDATE_EXPECTED") && expected.open(QIODevice::WriteOnly)) {
        const std::string text = Masked(run.Read("chip.vel"));
        expected.write(text.data(), qint64(text.size()));
        expected.close();
    }
    ASSERT_TRUE(expected.open(QIODevice::ReadOnly)) << expectedPath;
    EXPECT_EQ(Masked(run.Read("chip.vel")), expected.readAll().toStdString());
}

INSTANTIATE_TEST_SUITE_P(
    SmallStreams, WholeProject,
    testing::Values(ExpectedCase{"plain", {}, kLayers},
                    ExpectedCase{"simple_vias_full_fill_pads", {"-r", "-J", "Full", "-j", "-U"}, kLayers},
                    // Without the substrate line the box comes from the margins and cells.
                    ExpectedCase{"margin_cells", {"-m", "10,5%,0,2", "-C", "2,2"},
                                 std::string(kLayers).substr(0, std::string(kLayers).find("S substrate"))}),
    [](const testing::TestParamInfo<ExpectedCase>& info) { return std::string(info.param.name); });

} // namespace

// A designer's project with variables, a constraint, a dimension parameter, a dimension,
// frequencies and a parallel subsection, updated from a new stream.
TEST(Translation, AnUpdateKeepsVariablesAndFrequenciesAndDropsDimensions)
{
    GdsRun run;
    run.Write("chip.lay", kLayers);
    run.Write("first.gds", Stream({{1, 0, 0, 0, 100, 100}, {1, 0, 150, 0, 200, 100}}));
    ASSERT_EQ(run.Run({"-o", "chip.vel", "-l", "chip.lay", "-s", "300,200", "-t", "10,10", "first.gds"}).status, 0);
    std::string text = run.Read("chip.vel");
    const std::string variables = "VALVAR W LNG 50 \"gap\"\n"
                                  "VCNSTR TUNE W 40 60 ON 1 LIN\n"
                                  "GEOVAR W STD XDIR 1\nPOS 125 -5\nNOM 50\nREF1 POLY 1 1\n1\nREF2 POLY 2 1\n0\n"
                                  "PS1 0\nPS2 1\nPOLY 2 0\nEND\n"
                                  "VALVAR L LNG \"W*2\" \"twice the gap\"\n";
    const std::string dimension = "DIM STD XDIR 1\nPOS 0 0\nNOM 100\nREF1 POLY 1 1\n0\nREF2 POLY 1 1\n1\nEND\n";
    ASSERT_NE(text.find("LORGN"), std::string::npos) << text;
    text.insert(text.find("LORGN"), variables + dimension);
    text.insert(text.find("TMET"), "PSB1 LEFT 2.5\n");
    text.insert(text.find("CONTROL"), "FREQ\nSWEEP 1 2 0.5\nSTEP 5\nEND FREQ\n");
    run.Write("chip.vel", text);
    run.Write("second.gds", Stream({{1, 0, 0, 0, 50, 50}}));

    RunResult result = run.Run({"-g", "-o", "g.vel", "-l", "chip.lay", "-i", "chip.vel", "second.gds"});
    ASSERT_EQ(result.status, 0) << result.out << result.err;
    const std::string both = result.out + result.err;
    const std::string moved = "Parallel subsection lengths were moved";
    ASSERT_NE(both.find(moved), std::string::npos) << both;
    EXPECT_EQ(both.find(moved, both.find(moved) + 1), std::string::npos) << both;
    const std::string g = run.Read("g.vel");
    // The variables and the constraint stay as they were; the parameter and the dimension go.
    EXPECT_NE(g.find("VALVAR W LNG 50 \"gap\"\nVCNSTR TUNE W 40 60 ON 1 LIN\n"
                     "VALVAR L LNG \"W*2\" \"twice the gap\"\n"),
              std::string::npos)
        << g;
    EXPECT_EQ(g.find("GEOVAR"), std::string::npos) << g;
    EXPECT_EQ(g.find("\nDIM STD"), std::string::npos) << g;
    EXPECT_NE(g.find("Zpsubleft2.5"), std::string::npos) << g;
    EXPECT_EQ(g.find("PSB1"), std::string::npos) << g;
    EXPECT_NE(g.find("SWEEP 1 2 0.5"), std::string::npos) << g;
    EXPECT_NE(g.find("STEP 5"), std::string::npos) << g;
    // The new drawing numbers its polygons from 1.
    Written w = ReadBack(run, "g.vel");
    ASSERT_TRUE(w.read) << w.error;
    ASSERT_EQ(w.polygons.size(), 1u);
    EXPECT_EQ(w.polygons[0].id, 1);

    // -q keeps the drawing, and with it the parameter and the dimension.
    result = run.Run({"-q", "-o", "q.vel", "-l", "chip.lay", "-i", "chip.vel", "second.gds"});
    ASSERT_EQ(result.status, 0) << result.out << result.err;
    const std::string q = run.Read("q.vel");
    EXPECT_NE(q.find("GEOVAR W STD XDIR 1\nPOS 125 -5\nNOM 50\n"), std::string::npos) << q;
    EXPECT_NE(q.find(dimension), std::string::npos) << q;
    Written kept = ReadBack(run, "q.vel");
    ASSERT_EQ(kept.polygons.size(), 3u);
    EXPECT_EQ(kept.polygons[2].id, 3);
    EXPECT_EQ(run.Read("chip.vel"), text);
}
