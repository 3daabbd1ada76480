// The GEO block: box, levels, dielectrics, local origin and polygons, read and written.
#include "ProjectTestSupport.h"

#include "SBrickPolygon.h"
#include "SCircuit.h"
#include "SDimensionBlock.h"
#include "SGeometryBlock.h"
#include "SLevel.h"
#include "SMarker.h"
#include "SProjectErrorEntry.h"
#include "SVeloraError.h"
#include "SViaPolygon.h"

#include <vector>

namespace {

const char* const kCovers = "TMET \"Lossless\" 0 SUP 0 0 0 0\nBMET \"Lossless\" 0 SUP 0 0 0 0\n";

class GeoBlockTest : public GeoTest {
protected:
  // Reads a body, expects success, and gives the written body.
  std::string Again(const std::string& body) { return GeoBody(RoundTrip(Project(body))); }

  static bool Has(const std::vector<std::pair<int, int>>& found, int message, int line) {
    for (const auto& entry : found)
      if (entry.first == message && entry.second == line) return true;
    return false;
  }
};

TEST_F(GeoBlockTest, NewProjectHoldsCoversBoxTwoLevelsAndTheOrigin) {
  SProject project;
  project.GetDimensionBlock()->SetDefaults();
  project.GetGeometryBlock()->SetDefaults();
  const std::string body = GeoBody(WriteText(project));
  EXPECT_EQ(body, std::string(kCovers) +
                      "BOX 1 160 160 32 32 20 0\n"
                      "      0 1 1 0 0 0 0 \"Unnamed\"\n"
                      "      0 1 1 0 0 0 0 \"Unnamed\"\n"
                      "LORGN 0 160 U\n"
                      "NUM 0\n");
  SCircuit* circuit = project.GetGeometryBlock()->GetCircuit();
  ASSERT_NE(circuit, nullptr);
  EXPECT_EQ(circuit->GetNumberOfLevels(), 2);
  EXPECT_EQ(circuit->GetNumCellsX(), 16);
  EXPECT_DOUBLE_EQ(circuit->GetCellSize().width(), 10.0);
  EXPECT_EQ(GeoBody(RoundTrip(WriteText(project))), body);
}

// Every line of the box, the stack, the origin and the polygons in its current form.
const char* const kEveryLine =
    "SYM\n"
    "VGMODE STOP\n"
    "SNPANG 22.5\n"
    "TMET \"Lossless\" 0 SUP 0 0 0 0\n"
    "BMET \"Lossless\" 0 SUP 0 0 0 0\n"
    "BOX 2 200.5 100 80 40 25 1.5\n"
    "      100 1 1 0 0 0 0 \"Air above\"\n"
    "      25.4 9.8 1.01 0.0001 0.002 0.5 3 \"Alumina\" A 9.9 1.02 0.0002 0.003 0.25 RSVY\n"
    "      \"h*2\" 4.4 1 0.02 0 58000000 0 \"FR4\"\n"
    "VNCELLS \"nx\" 20\n"
    "LORGN 10.5 20.25 L\n"
    "NUM 5\n"
    "0 5 -1 N 7 1 1 100 100 0 0 0 Y\n"
    "0 0\n"
    "10 0\n"
    "10 10\n"
    "0 10\n"
    "0 0\n"
    "END\n"
    "1 4 -1 X 9 2 3 50 60 1.5 0.25 10005 N keep this\n"
    "USER_DAT from gds layer 5\n"
    "GLG GROUP 4\n"
    "20 20\n"
    "30 20\n"
    "25 30\n"
    "20 20\n"
    "END\n"
    "VIA POLYGON\n"
    "1 5 -1 N 11 1 1 100 100 0 0 0 Y\n"
    "TOLEVEL 2 SOLID NOCOVERS\n"
    "40 40\n"
    "44 40\n"
    "44 44\n"
    "40 44\n"
    "40 40\n"
    "END\n"
    "VIA POLYGON\n"
    "2 5 -1 T 12 1 1 100 100 0 0 0 Y\n"
    "TOLEVEL GND RING COVERS\n"
    "50 50\n"
    "54 50\n"
    "54 54\n"
    "50 54\n"
    "50 50\n"
    "END\n"
    "BRI POLY\n"
    "2 0 0 H 13 1 1 100 100 0 0 0 Y\n"
    "END\n";

TEST_F(GeoBlockTest, EveryLineReadsAndWritesBackUnchanged) {
  EXPECT_EQ(Again(kEveryLine), kEveryLine);

  SProject project;
  ASSERT_TRUE(ReadText(project, Project(kEveryLine)));
  SCircuit* circuit = project.GetGeometryBlock()->GetCircuit();
  ASSERT_NE(circuit, nullptr);
  EXPECT_TRUE(circuit->IsSymmetric());
  EXPECT_TRUE(circuit->IsAutoHeightVias());
  EXPECT_EQ(circuit->GetSnapAngle(), SCircuitData::Snap22_5);
  EXPECT_EQ(circuit->GetNumberOfLevels(), 3);
  EXPECT_EQ(circuit->GetNumCellsY(), 20);
  EXPECT_EQ(circuit->GetSubsPerLambda(), 25);
  EXPECT_DOUBLE_EQ(circuit->GetEeff(), 1.5);
  SLevel* alumina = circuit->GetLevel(1);
  EXPECT_EQ(alumina->GetName(), SString("Alumina"));
  EXPECT_TRUE(alumina->IsAnisotropic());
  EXPECT_EQ(alumina->GetLossType().GetCode(), SElectricalLossType::Resistivity);
  EXPECT_DOUBLE_EQ(alumina->GetValueZ(SLevelData::Erel).GetValue(), 9.9);
  EXPECT_EQ(alumina->GetValue(SLevelData::Erel).GetName(), SString("Layer 1 Erel"));
  EXPECT_TRUE(circuit->GetLevel(2)->GetValue(SLevelData::Thickness).HasEquation());
  EXPECT_FALSE(circuit->GetLocalOrigin()->IsUpper());
  EXPECT_EQ(circuit->GetNextPolygonId(), 14);

  std::vector<SEnclosure*> shapes;
  circuit->CollectPolygons(shapes);
  ASSERT_EQ(shapes.size(), 5u);
  const SMetalPolygon* square = static_cast<SMetalPolygon*>(shapes[0]);
  EXPECT_EQ(square->GetNumberOfVertices(), 4);  // kept open
  EXPECT_EQ(square->GetLevelIndex(), 0);
  const SMetalPolygon* triangle = static_cast<SMetalPolygon*>(shapes[1]);
  EXPECT_EQ(triangle->GetIsotropy(), SSubsectionControls::XOnly);
  EXPECT_TRUE(triangle->GetCurrentSym());
  EXPECT_DOUBLE_EQ(triangle->GetFlatness(), 5.0);
  EXPECT_FALSE(triangle->GetEdgeMesh());
  EXPECT_EQ(triangle->GetUserText(), SString("from gds layer 5"));
  EXPECT_EQ(triangle->GetGroup(), 4);
  EXPECT_EQ(triangle->GetRemainder(), QString("keep this"));
  const SViaPolygon* down = static_cast<SViaPolygon*>(shapes[3]);
  EXPECT_EQ(down->GetToLevelType(), SViaData::ToGround);
  EXPECT_EQ(down->GetViaFill(), SViaPolygon::Ring);
  EXPECT_TRUE(down->HasCovers());
  EXPECT_EQ(shapes[4]->isA(), SBrickPolygon::staticTypeInfo().id());
  EXPECT_EQ(static_cast<SBrickPolygon*>(shapes[4])->GetNumberOfVertices(), 0);
}

TEST_F(GeoBlockTest, OlderFormsAreWrittenInTheCurrentForm) {
  const std::string older =
      "TMET \"Lossless\" 0 SUP 0 0 0 0\n"
      "BMET \"Lossless\" 0 SUP 0 0 0 0\n"
      "SNPANG 45\n"
      "BOX 1 160 160 64 4 20 0\n"
      "      10 1 1 0 0 0 0\n"
      "      10 2 1 0 0 0 0 Sub a\n"
      "NUM 4\n"
      "0 5 -1 C 1 1 1 100 100 0 0 20000\n"
      "0 0\n10 0\n10 10\n0 10\n0 0\n"
      "END\n"
      "0 5 -1 B 2 2 1 100 100 0 0 0\n"
      "0 0\n10 0\n10 10\n0 10\n0 0\n"
      "END\n"
      "VIA POLYGON\n"
      "0 5 -1 N 3 1 1 100 100 0 0 0 Y\n"
      "TOLEVEL TOP\n"
      "0 0\n10 0\n10 10\n0 10\n0 0\n"
      "END\n"
      "VIA POLYGON\n"
      "0 5 -1 N 0 1 1 100 100 0 0 0 Y\n"
      "TOLEVEL 1 CENTER 1.5 AUTO AUTO COVERS\n"
      "0 0\n10 0\n10 10\n0 10\n0 0\n"
      "END\n";
  // The origin comes at the box's top left corner; the cells are halved, at least 3.
  EXPECT_EQ(Again(older), std::string(kCovers) +
                              "BOX 1 160 160 64 6 20 0\n"
                              "      10 1 1 0 0 0 0 \"Unknown\"\n"
                              "      10 2 1 0 0 0 0 \"Sub\"\n"
                              "LORGN 0 160 U\n"
                              "NUM 4\n"
                              "0 5 -1 N 1 1 1 100 100 0 0 20000 Y\n"
                              "0 0\n10 0\n10 10\n0 10\n0 0\n"
                              "END\n"
                              "0 5 -1 T 2 2 1 100 100 0 0 0 N\n"
                              "0 0\n10 0\n10 10\n0 10\n0 0\n"
                              "END\n"
                              "VIA POLYGON\n"
                              "0 5 -1 N 3 1 1 100 100 0 0 0 Y\n"
                              "TOLEVEL TOP LEGACY NOCOVERS\n"
                              "0 0\n10 0\n10 10\n0 10\n0 0\n"
                              "END\n"
                              "VIA POLYGON\n"
                              "0 5 -1 N 37 1 1 100 100 0 0 0 Y\n"
                              "TOLEVEL 1 CENTER COVERS\n"
                              "0 0\n10 0\n10 10\n0 10\n0 0\n"
                              "END\n");
}

TEST_F(GeoBlockTest, TheFillLetterKeepsOnlyTheIsotropy) {
  SProject project;
  project.GetDimensionBlock()->SetDefaults();
  project.GetGeometryBlock()->SetDefaults();
  SCircuit* circuit = project.GetGeometryBlock()->GetCircuit();
  SMetalPolygon* polygon = new SMetalPolygon;
  polygon->SetFillType(SSubsectionControls::Conformal);
  polygon->SetIsotropy(SSubsectionControls::YOnly);
  polygon->SetId(1);
  for (const SPoint& p : {SPoint(0, 0), SPoint(1, 0), SPoint(1, 1)}) polygon->AddVertex(p);
  circuit->GetLevel(0)->AddChild(polygon);
  const std::string once = RoundTrip(WriteText(project));
  EXPECT_TRUE(Contains(once, "\n0 4 -1 Y 1 1 1 100 100 0 0 0 Y\n"));
  SProject again;
  ASSERT_TRUE(ReadText(again, once));
  std::vector<SEnclosure*> shapes;
  again.GetGeometryBlock()->GetCircuit()->CollectPolygons(shapes);
  ASSERT_EQ(shapes.size(), 1u);
  EXPECT_EQ(static_cast<SMetalPolygon*>(shapes[0])->GetFillType(), SSubsectionControls::Staircase);
  EXPECT_EQ(static_cast<SMetalPolygon*>(shapes[0])->GetIsotropy(), SSubsectionControls::YOnly);
}

TEST_F(GeoBlockTest, FaultsNameTheirMessageAndLine) {
  // The body starts on line 6 of the project text.
  const std::string box = std::string(kCovers) + "BOX 1 160 160 32 32 20 0\n      0 1 1 0 0 0 0\n      0 1 1 0 0 0 0\n";
  const std::string square = "0 0\n10 0\n10 10\n0 10\n0 0\nEND\n";
  struct Case {
    std::string body;
    int message;
    int line;
  };
  // A fault with a detail is filed under the detail's number.
  const Case cases[] = {
      {"FOO 1\n", 6024, 6},
      {std::string(kCovers) + "BOX x\n", 6059, 8},
      {std::string(kCovers) + "BOX 1 160 wide 32 32 20 0\n", 6077, 8},
      {std::string(kCovers) + "BOX 1 160 160 32 32 20 -1\n", 6080, 8},
      {std::string(kCovers) + "BOX 2 160 160 32 32 20 0\n      0 1 1 0 0 0 0\n      0 1 1 0 0 0 0\nNUM 0\n", 6016, 11},
      {std::string(kCovers) + "BOX 1 160 160 32 32 20 0\n      0 1 1\n", 6086, 9},
      {std::string(kCovers) + "BOX 1 160 160 32 32 20 0\n      0 1 1 0 0 0 -2\n", 6089, 9},
      {std::string(kCovers) + "BOX 0 160 160 32 32 20 0\n      0 1 1 0 0 0 0\nNUM 0\n", 6114, 11},
      {"ANN\n", 6111, 6},
      {box + "NUM many\n", 6064, 11},
      {box + "NUM 1\n0 5 -1 N 1 1 1 100 100 0 0 0 Y\n0 0\n10 0\n10 x\n", 6076, 15},
      {box + "NUM 1\n0 1 -1 N 1 1 1 100 100 0 0 0 Y\n0 0\nEND\n", 6065, 12},
      {box + "NUM 1\n0 5 -1 Q 1 1 1 100 100 0 0 0 Y\n" + square, 6067, 12},
      {box + "NUM 1\n0 5 -1 N 1 1 1 100 100 0 0 0 M\n" + square, 6135, 12},
      {box + "NUM 1\n0 5 -1 N 1 1 1 100 100 0 zero 0 Y\n" + square, 6074, 12},
      {box + "NUM 1\n0 5 -1 N 1 1 1 100 100 0 0 0 Y\n0 0\n10 0\nEND\n", 6018, 15},
      {box + "NUM 1\n0 5 -1 N 1 1 1 100 100 0 0 0 Y\n0 0\n10 0\n10 10\n0 10\n1 1\nEND\n", 6021, 17},
      {box + "NUM 1\n0 5 -1 N 1 1 1 100 100 0 0 0 Y\n0 0\n10 0\n10 10\n0 10\n0 0\n0 0\n", 6022, 18},
      {box + "NUM 1\n7 5 -1 N 1 1 1 100 100 0 0 0 Y\n" + square, 6059, 12},
      {box + "NUM 1\n0 5 4 N 1 1 1 100 100 0 0 0 Y\n" + square, 6121, 12},
      {box + "NUM 2\n0 5 -1 N 1 1 1 100 100 0 0 0 Y\n" + square + "END\n", 6180, 19},
  };
  for (const Case& c : cases) {
    const auto found = Failure(c.body);
    EXPECT_TRUE(Has(found, c.message, c.line)) << "expected " << c.message << " at line " << c.line << " for:\n"
                                               << c.body << "got " << (found.empty() ? 0 : found[0].first) << " at "
                                               << (found.empty() ? 0 : found[0].second);
    // The block's own failure closes every fault.
    EXPECT_TRUE(!found.empty() && found.back().first == 5602) << c.body;
  }
}

TEST_F(GeoBlockTest, PromisedPolygonsMayRunShortAndNumZeroIsFine) {
  const std::string box = std::string(kCovers) + "BOX 1 160 160 32 32 20 0\n      0 1 1 0 0 0 0 \"a\"\n      0 1 1 0 0 0 0 \"b\"\n";
  const std::string body = GeoBody(RoundTrip(Project(box + "NUM 3\n0 5 -1 N 1 1 1 100 100 0 0 0 Y\n"
                                                           "0 0\n10 0\n10 10\n0 10\n0 0\nEND\n")));
  EXPECT_TRUE(Contains(body, "NUM 1\n0 5 -1 N 1 1 1 100 100 0 0 0 Y\n"));
  EXPECT_TRUE(Contains(GeoBody(RoundTrip(Project(box + "NUM 0\n"))), "LORGN 0 160 U\nNUM 0\n"));
}

TEST_F(GeoBlockTest, AnAbbreviatedReadStopsAtNum) {
  SProject project;
  const std::string text = Project(std::string(kCovers) + "BOX 1 160 160 32 32 20 0\n      0 1 1 0 0 0 0\n"
                                                          "      0 1 1 0 0 0 0\nNUM 1\nthis is not read\nEND\n");
  ASSERT_TRUE(ReadText(project, text, "test.vel", SProject::GeometryProject)) << project.GetErrors().ErrorText().data();
  SCircuit* circuit = project.GetGeometryBlock()->GetCircuit();
  ASSERT_NE(circuit, nullptr);
  EXPECT_TRUE(circuit->IsEndReached());
  EXPECT_EQ(circuit->CountPolygons(), 0);
  EXPECT_EQ(circuit->GetNumberOfLevels(), 2);
}

// A circuit made through the interfaces writes what a hand count predicts.
TEST_F(GeoBlockTest, BuiltCircuitWritesThePinnedText) {
  SProject project;
  project.GetDimensionBlock()->SetDefaults();
  project.GetGeometryBlock()->SetDefaults();
  SCircuit* circuit = project.GetGeometryBlock()->GetCircuit();
  circuit->SetBoxSize(300, 150.5);
  circuit->SetNumCells(60, 30);
  circuit->SetNumberOfLevels(3);
  circuit->GetLevel(0)->SetThickness(100);
  circuit->GetLevel(0)->SetName("Air");
  circuit->GetLevel(1)->SetThickness(1.0 / 3.0);
  circuit->GetLevel(1)->SetErel(9.8);
  circuit->GetLevel(1)->SetName("Thin film");
  circuit->GetLevel(2)->SetThickness(25);
  circuit->GetLevel(2)->SetErel(12.9);
  circuit->GetLevel(2)->SetDLossTan(0.0005);
  circuit->GetLevel(2)->SetName("GaAs");
  circuit->GetLocalOrigin()->SetPosition(SPoint(0, 150.5));

  SMetalPolygon* strip = new SMetalPolygon;
  strip->SetId(circuit->TakePolygonId() + 1);
  strip->SetVertices({SPoint(10, 70), SPoint(290, 70), SPoint(290, 80.25), SPoint(10, 80.25)});
  circuit->GetLevel(0)->AddChild(strip);
  SViaPolygon* via = new SViaPolygon;
  via->SetId(circuit->TakePolygonId() + 1);
  via->SetToLevel(2);
  via->SetViaFill(SViaPolygon::Solid);
  via->SetVertices({SPoint(20, 72), SPoint(24, 72), SPoint(24, 76), SPoint(20, 76)});
  circuit->GetLevel(0)->AddChild(via);
  SBrickPolygon* brick = new SBrickPolygon;
  brick->SetId(circuit->TakePolygonId() + 1);
  brick->SetVertices({SPoint(100, 0), SPoint(200, 0), SPoint(200, 150.5)});
  circuit->GetLevel(1)->AddChild(brick);

  const std::string expected = FileText(SString(GDS_SOURCE_DIR "/tests/project/expected/geo_built.txt"));
  EXPECT_EQ(GeoBody(WriteText(project)), expected);
  EXPECT_EQ(GeoBody(RoundTrip(WriteText(project))), expected);
}

}  // namespace

namespace {

TEST(GeoPatterns, NamesComeFromTheInstalledFilesByNumber) {
  const QStringList metal = SCircuit::LoadPatternNames(SString(GDS_SOURCE_DIR "/resource/patterns/metal.dat"));
  ASSERT_GE(metal.size(), 2);
  EXPECT_EQ(metal[0], QString("solid"));
  const QStringList brick = SCircuit::LoadPatternNames(SString(GDS_SOURCE_DIR "/resource/patterns/brick.dat"));
  ASSERT_GE(brick.size(), 2);
  EXPECT_NE(brick, metal);
  EXPECT_TRUE(SCircuit::LoadPatternNames(SString(GDS_SOURCE_DIR "/resource/patterns/none.dat")).isEmpty());
}

}  // namespace

namespace {

TEST_F(GeoBlockTest, ANewLengthUnitRescalesTheLayout) {
  SProject project;
  ASSERT_TRUE(ReadText(project, Project(kEveryLine)));
  SDimensionBlock millimetres;
  millimetres.SetDefaults();
  millimetres.SetUnit(SDimensionBlock::Length, "MM");
  project.SetUnits(millimetres, true);
  SCircuit* circuit = project.GetGeometryBlock()->GetCircuit();
  EXPECT_DOUBLE_EQ(circuit->GetBoxSize().width(), 0.2005);
  EXPECT_DOUBLE_EQ(circuit->GetLevel(1)->GetThickness(), 0.0254);
  // An equation keeps its text: it is in the units of its variables.
  EXPECT_TRUE(circuit->GetLevel(2)->GetValue(SLevelData::Thickness).HasEquation());
  std::vector<SEnclosure*> shapes;
  circuit->CollectPolygons(shapes);
  EXPECT_DOUBLE_EQ(static_cast<SMetalPolygon*>(shapes[0])->GetVertex(2).x(), 0.01);
  EXPECT_DOUBLE_EQ(static_cast<SMetalPolygon*>(shapes[1])->GetMaxSubLen(), 0.0015);
  EXPECT_DOUBLE_EQ(circuit->GetLocalOrigin()->GetPosition().y(), 0.02025);
}

TEST_F(GeoBlockTest, OldFormatsCannotHoldVias) {
  SProject project;
  ASSERT_TRUE(ReadText(project, Project(kEveryLine)));
  QStringList problems;
  EXPECT_TRUE(project.GetGeometryBlock()->CheckFormat(7, problems));
  EXPECT_FALSE(project.GetGeometryBlock()->CheckFormat(6, problems));
  ASSERT_EQ(problems.size(), 1);
  EXPECT_TRUE(problems[0].contains(VeloraMessageText(6198).qstring())) << problems[0].toStdString();
}

}  // namespace

namespace {

TEST(Enclosure, TakenChildrenKeepTheirOrderAndLeaveTheRestInTheirs) {
  SLevel level(nullptr, 0);
  std::vector<SMetalPolygon*> polygons;
  for (int i = 0; i < 6; ++i) {
    polygons.push_back(new SMetalPolygon);
    polygons.back()->SetId(i);
    level.AddChild(polygons.back());
  }
  std::vector<SBaseEnclosure*> taken;
  level.TakeChildren([](const SBaseEnclosure* child) { return static_cast<const SEnclosure*>(child)->GetId() % 2 == 1; },
                     taken);
  ASSERT_EQ(taken.size(), 3u);
  ASSERT_EQ(level.GetNumberOfChildren(), 3u);
  for (size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(taken[i], polygons[2 * i + 1]);
    EXPECT_EQ(taken[i]->GetOwner(), nullptr);
    EXPECT_EQ(level.GetChild(i), polygons[2 * i]);
    EXPECT_EQ(level.GetChild(i)->GetOwner(), &level);
  }
  for (SBaseEnclosure* child : taken) delete child;
}

}  // namespace
