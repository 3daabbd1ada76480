// Ports, reference planes, coupled groups, dimensions and edge vias in the GEO block.
#include "ProjectTestSupport.h"

#include "SCircuit.h"
#include "SCoupledGroup.h"
#include "SDimension.h"
#include "SEdgeVia.h"
#include "SGeoObjectIO.h"
#include "SGeometryBlock.h"
#include "SMetalPolygon.h"
#include "SPort.h"
#include "SProjectErrorEntry.h"
#include "SRefPlane.h"
#include "STechLayer.h"

#include <utility>
#include <vector>

namespace {

const char* const kStack = kTwoLevelStack;

const char* const kOrigin = "LORGN 0 160 U\n";

// A 10 by 10 square with id `id` on level `level`.
std::string Square(int id, int level = 0, const std::string& extra = "", double x = 0) {
  const std::string x0 = std::to_string(static_cast<int>(x)), x1 = std::to_string(static_cast<int>(x) + 10);
  return std::to_string(level) + " 5 -1 N " + std::to_string(id) + " 1 1 100 100 0 0 0 Y\n" + extra + x0 + " 0\n" +
         x1 + " 0\n" + x1 + " 10\n" + x0 + " 10\n" + x0 + " 0\nEND\n";
}

class PortsTest : public GeoTest {
protected:
  std::string Again(const std::string& body, int format = SProjectFormat::kCurrent) {
    return GeoBody(RoundTrip(Project(body), format));
  }

  SCircuit* Read(SProject& project, const std::string& body, int ftyp = 17) {
    EXPECT_TRUE(ReadText(project, Project(body, ftyp))) << project.GetErrors().ErrorText().data();
    return project.GetGeometryBlock() != nullptr ? project.GetGeometryBlock()->GetCircuit() : nullptr;
  }
};

const std::string kEverything = std::string(
    "DRP1 LEFT FIX 12.5\n"
    "DRP1 RIGHT LINK\n"
    "POLY 7 1\n"
    "2\n"
    "DRP1 TOP NONE 3\n") + kStack +
    "TECHLAY METAL M1 <UNSPECIFIED> 5 0 \n"
    "0 0 -1 N 0 1 1 100 100 0 0 0 Y\n"
    "END\n"
    "END\n"
    "DIM STD XDIR 1\n"
    "POS 5 -10\n"
    "NOM 10\n"
    "REF1 POLY 7 1\n"
    "0\n"
    "REF2 POLY 7 1\n"
    "1\n"
    "END\n"
    "LORGN 0 160 U\n"
    "EVIA1\n"
    "POLY 7 1\n"
    "1\n"
    "TOLEVEL 1\n"
    "POR1 STD\n"
    "DIAGALLOWED Y\n"
    "POLY 7 1\n"
    "3\n"
    "1 50 0 0 0 0 5 \n"
    "POR1 CUP \"G1\"\n"
    "POLARITY REVERSED\n"
    "GNDREF BOX BELOW\n"
    "TERMW FEED\n"
    "POLY 7 1\n"
    "0\n"
    "2,-3 50 0 1e-09 2e-12 5 0 FIX 4 2\n"
    "CUPGRP \"G1\"\n"
    "ID 1\n"
    "GNDREF BOX BELOW\n"
    "DRP1 LEFT FIX 5 1\n"
    "END\n"
    "NUM 1\n" + Square(7, 0, "TLAYNAM M1 INH\n");

TEST_F(PortsTest, EveryObjectLineReadsAndWritesBackUnchanged) {
  EXPECT_EQ(Again(kEverything), kEverything);

  SProject project;
  SCircuit* circuit = Read(project, kEverything);
  ASSERT_NE(circuit, nullptr);
  std::vector<SPort*> ports;
  SGeoObjectIO::GetAllPorts(*circuit, ports);
  ASSERT_EQ(ports.size(), 2u);
  SMetalPolygon* square = ports[0]->GetPolygon();
  ASSERT_NE(square, nullptr);
  EXPECT_EQ(square->GetId(), 7);
  // Ports stand on the middle of their edges.
  EXPECT_EQ(ports[0]->GetPosition(), SPoint(0, 5));
  EXPECT_EQ(ports[1]->GetPosition(), SPoint(5, 0));
  EXPECT_EQ(SGeoObjectIO::FindPortAtVertex(*square, 3), ports[0]);
  EXPECT_TRUE(ports[0]->IsDiagonalAllowed());

  const SPort& cup = *ports[1];
  EXPECT_EQ(cup.GetType(), SPortData::CoCalibrated);
  EXPECT_EQ(cup.GetNumbers(), (std::vector<int>{2, -3}));
  EXPECT_DOUBLE_EQ(cup.GetInductance(), 1.0);
  EXPECT_DOUBLE_EQ(cup.GetCapacitance(), 2.0);
  EXPECT_TRUE(cup.IsPolarityReversed());
  EXPECT_EQ(cup.GetGroundReference(), SPortData::GroundBoxCover);
  ASSERT_NE(cup.GetGroup(), nullptr);
  EXPECT_EQ(cup.GetGroup()->GetName(), SString("G1"));
  EXPECT_EQ(cup.GetGroup(), SCoupledGroup::Find(*circuit, "G1"));
  ASSERT_NE(cup.GetRefPlane(), nullptr);
  EXPECT_DOUBLE_EQ(cup.GetRefPlane()->GetLength(), 4);
  EXPECT_DOUBLE_EQ(cup.GetRefPlane()->GetCalibrationLength(), 2);

  EXPECT_DOUBLE_EQ(circuit->GetRefPlane(SBoxSide::Left)->GetLength(), 12.5);
  EXPECT_EQ(circuit->GetRefPlane(SBoxSide::Right)->GetLink().FindPolygon(*circuit), square);
  EXPECT_DOUBLE_EQ(circuit->GetRefPlane(SBoxSide::Top)->GetCalibrationLength(), 3);
  EXPECT_TRUE(circuit->GetRefPlane(SBoxSide::Bottom)->IsEmpty());

  std::vector<SEdgeVia*> vias;
  SGeoObjectIO::GetEdgeVias(*square, vias);
  ASSERT_EQ(vias.size(), 1u);
  EXPECT_EQ(vias[0]->GetEdge(), 1);
  EXPECT_EQ(vias[0]->GetToLevel(), 1);

  std::vector<SDimension*> dimensions;
  circuit->CollectObjects(dimensions);
  ASSERT_EQ(dimensions.size(), 1u);
  EXPECT_EQ(dimensions[0]->GetReference(1).GetItems(), std::vector<int>{1});

  // The polygon found its technology layer by name.
  STechLayer* layer = circuit->FindTechLayer("M1");
  ASSERT_NE(layer, nullptr);
  EXPECT_EQ(square->GetTechLayer(), layer);
  EXPECT_TRUE(square->FollowsTechLayer());
}

TEST_F(PortsTest, PortKindsAndTheirOlderForms) {
  const std::string body = std::string(kStack) + kOrigin +
                           "POR1 VIA\nPOLY 1 1\n0\n1 50 0 0 0 5 0 \n"
                           "POR1 GAP\nPOLY 1 1\n1\n2 50 0 0 0 10 5 \n"
                           "POR1 BOX\nPOLY 1 1\n2\n3 50 0 0 0 5 10 \n"
                           "POR1 CUP \"Auto\"\nSIMPLE Y\nGNDREF POLY ABOVE\nTERMW CUST 2.5\nPOLY 1 1\n3\n4 50 0 0 0 0 5 \n"
                           "CUPGRP \"Auto\" LOCAL\nID 3\nGNDREF EDGE\nEND\n"
                           "NUM 1\n" +
                           Square(1);
  EXPECT_EQ(Again(body), body);

  SProject project;
  SCircuit* circuit = Read(project, body);
  std::vector<SPort*> ports;
  SGeoObjectIO::GetAllPorts(*circuit, ports);
  ASSERT_EQ(ports.size(), 4u);
  EXPECT_EQ(ports[0]->GetType(), SPortData::ViaPort);
  EXPECT_EQ(ports[1]->GetType(), SPortData::DeltaGap);
  EXPECT_EQ(ports[2]->GetType(), SPortData::BoxWall);
  // "Auto" is no name of the port's own: it binds the local group behind it.
  EXPECT_TRUE(ports[3]->IsAutomaticGroup());
  EXPECT_TRUE(ports[3]->GetGroupName().isEmpty());
  ASSERT_NE(ports[3]->GetGroup(), nullptr);
  EXPECT_TRUE(ports[3]->GetGroup()->IsAutomatic());
  EXPECT_EQ(ports[3]->GetGroup()->GetGroupId(), 3);
  EXPECT_EQ(SCoupledGroup::NextId(*circuit), 4);
  EXPECT_EQ(ports[3]->GetTerminalWidthType(), SPortData::CustomWidth);
  EXPECT_DOUBLE_EQ(ports[3]->GetTerminalWidth(), 2.5);

  // Before format 21 the newer kinds are standard ports, and a simple co-calibrated port is
  // an autoground one; the group still follows it, in its older form.
  const std::string old = Again(body, 20);
  EXPECT_TRUE(Contains(old, "POR1 STD\nPOLY 1 1\n0\n"));
  EXPECT_FALSE(Contains(old, "GAP"));
  EXPECT_TRUE(Contains(old, "POR1 AGND\nPOLY 1 1\n3\n4 50 0 0 0 0 5 \nCUPGRP \"Auto\" LOCAL\nID 3\nGNDREF P\nTWTYPE FEED\nEND\n"));
}

TEST_F(PortsTest, AgndTurnsOnSimpleWithTheBoxCoverBelow) {
  SProject project;
  SCircuit* circuit =
      Read(project, std::string(kStack) + kOrigin + "POR1 AGND\nPOLY 1 1\n0\n1 50 0 0 0 5 0 FIX 2.5\nNUM 1\n" + Square(1));
  std::vector<SPort*> ports;
  SGeoObjectIO::GetAllPorts(*circuit, ports);
  ASSERT_EQ(ports.size(), 1u);
  EXPECT_TRUE(ports[0]->IsAutoGround());
  EXPECT_TRUE(ports[0]->IsSimple());
  EXPECT_EQ(ports[0]->GetGroundReference(), SPortData::GroundBoxCover);
  EXPECT_EQ(ports[0]->GetGroundDirection(), SPortData::DirectionBelow);
  // An autoground port's plane is its own: even empty it says NONE.
  ASSERT_NE(ports[0]->GetRefPlane(), nullptr);
  EXPECT_EQ(ports[0]->GetRefPlane()->GetType(), SRefPlane::LocalPlane);
  ports[0]->GetRefPlane()->SetLength(0);
  EXPECT_TRUE(Contains(GeoBody(WriteText(project)), "1 50 0 0 0 5 0 NONE 0\n"));
}

TEST_F(PortsTest, PortNumberZeroStaysOnlyInNewerFormats) {
  const std::string body = std::string(kStack) + kOrigin + "POR1 STD\nPOLY 1 1\n0\n0 50 0 0 0 5 0 \n" +
                           "POR1 STD\nPOLY 1 1\n1\n4 50 0 0 0 10 5 \n" + "NUM 1\n" + Square(1);
  EXPECT_EQ(Again(body), body);
  // Below format 19 a port without a number takes the next free one.
  EXPECT_TRUE(Contains(Again(body, 18), "POLY 1 1\n0\n5 50 0 0 0 5 0 \n"));
}

TEST_F(PortsTest, PortsOnAllFourWallsKeepPlanesAndGroups) {
  std::string body = std::string(
                         "DRP1 LEFT FIX 10\n"
                         "DRP1 RIGHT FIX 20\n"
                         "DRP1 TOP LINK\nPOLY 3 1\n2\n"
                         "DRP1 BOTTOM NONE 7.5\n") +
                     kStack + kOrigin;
  // One square touching each wall: left, right, top, bottom.
  body += "POR1 BOX\nPOLY 1 1\n3\n1 50 0 0 0 0 5 \n";
  body += "POR1 CUP \"West\"\nGNDREF AUTO\nTERMW CELL\nPOLY 2 1\n1\n2 50 0 0 0 160 5 \n";
  body += "CUPGRP \"West\"\nID 1\nGNDREF FLOAT\nDRP1 LEFT FIX 3 1\nDRP1 RIGHT NONE 2\nEND\n";
  body += "POR1 CUP \"West\"\nGNDREF AUTO\nTERMW CELL\nPOLY 3 1\n0\n3 50 0 0 0 5 0 \n";
  body += "POR1 AGND\nPOLY 4 1\n2\n4 50 0 0 0 5 160 FIX 6\n";
  body += "CUPGRP \"Spare\"\nID 2\nGNDREF POLY BOTH\nEND\n";
  body += "NUM 4\n";
  body += "0 5 -1 N 1 1 1 100 100 0 0 0 Y\n0 0\n10 0\n10 10\n0 10\n0 0\nEND\n";
  body += "0 5 -1 N 2 1 1 100 100 0 0 0 Y\n150 0\n160 0\n160 10\n150 10\n150 0\nEND\n";
  body += "0 5 -1 N 3 1 1 100 100 0 0 0 Y\n0 0\n10 0\n10 10\n0 10\n0 0\nEND\n";
  body += "0 5 -1 N 4 1 1 100 100 0 0 0 Y\n0 150\n10 150\n10 160\n0 160\n0 150\nEND\n";
  EXPECT_EQ(Again(body), body);

  SProject project;
  SCircuit* circuit = Read(project, body);
  std::vector<SPort*> ports;
  SGeoObjectIO::GetAllPorts(*circuit, ports);
  ASSERT_EQ(ports.size(), 4u);
  EXPECT_EQ(ports[1]->GetGroup(), ports[2]->GetGroup());
  SCoupledGroup* west = ports[1]->GetGroup();
  ASSERT_NE(west, nullptr);
  EXPECT_EQ(west->GetGroundReference(), SPortData::GroundFloating);
  EXPECT_DOUBLE_EQ(west->GetRefPlane(SBoxSide::Right)->GetCalibrationLength(), 2);
  EXPECT_EQ(west->GetRefPlane(SBoxSide::Top), nullptr);
  EXPECT_EQ(ports[3]->GetPosition(), SPoint(5, 160));
  for (int side = 0; side < 4; ++side) EXPECT_FALSE(circuit->GetRefPlane(side)->IsEmpty()) << side;
}

TEST_F(PortsTest, ParallelSubsectionsStayBelowTheCurrentFormat) {
  const std::string body = std::string("PSB1 LEFT 2.5\nPSB1 BOTTOM 4\n") + kStack + kOrigin + "NUM 0\n";
  EXPECT_EQ(Again(body, 20), body);
  SProject project;
  SCircuit* circuit = Read(project, body);
  EXPECT_DOUBLE_EQ(circuit->GetParallelSubs(SBoxSide::Left), 2.5);
  EXPECT_DOUBLE_EQ(circuit->GetParallelSubs(SBoxSide::Bottom), 4);
  EXPECT_FALSE(Contains(GeoBody(WriteText(project)), "PSB1"));
}

TEST_F(PortsTest, OlderLinesReadIntoTheSameObjects) {
  // REF: four planes (a negative value is a calibration length), then four parallel lengths.
  const std::string body = std::string("REF 5 0 -2 0 1 0 0 3\n") + kStack +
                           "PORA 2 1 0\n7 50 0 0 0\n"
                           "EVIA 1 2 1\n"
                           "NUM 2\n" +
                           Square(11) + Square(12, 0, "", 20);
  SProject project;
  SCircuit* circuit = Read(project, body, 1);
  EXPECT_DOUBLE_EQ(circuit->GetRefPlane(SBoxSide::Left)->GetLength(), 5);
  EXPECT_DOUBLE_EQ(circuit->GetRefPlane(SBoxSide::Top)->GetCalibrationLength(), 2);
  EXPECT_DOUBLE_EQ(circuit->GetParallelSubs(SBoxSide::Bottom), 3);
  std::vector<SPort*> ports;
  SGeoObjectIO::GetAllPorts(*circuit, ports);
  ASSERT_EQ(ports.size(), 1u);
  // The oldest lines name polygons by their place in the list.
  EXPECT_EQ(ports[0]->GetPolygon()->GetId(), 12);
  EXPECT_EQ(ports[0]->GetEdge(), 1);
  EXPECT_TRUE(ports[0]->IsAutoGround());
  EXPECT_EQ(ports[0]->GetNumber(), 7);
  const std::string again = Again(body);
  EXPECT_TRUE(Contains(again, "EVIA 1 2 1\n")) << again;
  EXPECT_TRUE(Contains(again, "POR1 AGND\nPOLY 12 1\n1\n7 50 0 0 0 30 5 \n")) << again;
}

TEST_F(PortsTest, EdgeViaTargetsAndOldFormats) {
  const std::string body = std::string(kStack) + kOrigin +
                           "EVIA1\nPOLY 1 1\n0\nTOLEVEL GND\n"
                           "EVIA1\nPOLY 1 1\n2\nTOLEVEL TOP\n"
                           "EVIA1\nPOLY 2 1\n1\nTOLEVEL 1\n"
                           "NUM 2\n" +
                           Square(1) + Square(2, 0, "", 20);
  EXPECT_EQ(Again(body), body);
  // Before format 3 only a via one level down could be written, as the short line.
  const std::string old = Again(body, 2);
  EXPECT_TRUE(Contains(old, "EVIA 2 1 1\n")) << old;
  EXPECT_FALSE(Contains(old, "EVIA1"));
  EXPECT_FALSE(Contains(old, "EVIA 1 "));
}

TEST_F(PortsTest, DimensionsKeepKindDirectionAndScale) {
  const std::string body = std::string(kStack) +
                           "DIM RAD YDIR -1 SCXY\nPOS 1.5 2.5\nNOM -4\nREF1 POLY 1 1\n0\nREF2 POLY 1 1\n2\nEND\n"
                           "DIM SYM XDIR 1 NSCD\nPOS 0 0\nNOM 10\nREF1 POLY 1 1\n1\nREF2 POLY 1 1\n3\nEND\n" + kOrigin +
                           "NUM 1\n" +
                           Square(1);
  EXPECT_EQ(Again(body), body);
  SProject project;
  SCircuit* circuit = Read(project, body);
  std::vector<SDimension*> dimensions;
  circuit->CollectObjects(dimensions);
  ASSERT_EQ(dimensions.size(), 2u);
  EXPECT_EQ(dimensions[0]->GetKind(), SDimension::Radial);
  EXPECT_EQ(dimensions[0]->GetDirection(), SDimension::YDirection);
  EXPECT_EQ(dimensions[0]->GetSignFactor(), -1.0);
  EXPECT_EQ(dimensions[0]->GetScaleMode(), SDimension::ScaleXY);
  // Before format 9 a radial dimension is anchored and no scale mode is written.
  EXPECT_TRUE(Contains(Again(body, 8), "DIM ANC YDIR -1\nPOS"));
}

TEST_F(PortsTest, OlderGroupsHandTheirSettingsToThePort) {
  const std::string body = std::string(kStack) +
                           "POR1 CUP \"G\"\nPOLY 1 1\n0\n1 50 0 0 0 5 0 \n"
                           "CUPGRP \"G\"\nID 4\nGNDREF P\nTWTYPE CUST\nTWVALUE 3.5\nEND\n"
                           "NUM 1\n" +
                           Square(1);
  for (int ftyp : {16, 17}) {
    SProject project;
    SCircuit* circuit = Read(project, body, ftyp);
    std::vector<SPort*> ports;
    SGeoObjectIO::GetAllPorts(*circuit, ports);
    ASSERT_EQ(ports.size(), 1u);
    const bool copied = ftyp < 17;
    EXPECT_EQ(ports[0]->GetGroundReference(), copied ? SPortData::GroundPolygonEdge : SPortData::GroundAuto) << ftyp;
    EXPECT_EQ(ports[0]->GetTerminalWidthType(), copied ? SPortData::CustomWidth : SPortData::FeedlineWidth) << ftyp;
    EXPECT_DOUBLE_EQ(ports[0]->GetTerminalWidth(), copied ? 3.5 : 0.0) << ftyp;
  }
}

TEST_F(PortsTest, ReaderErrorsGiveTheirNumberAndLine) {
  // Line 5 is the GEO line, so the body starts on line 6 and the first stack line is 6.
  const std::string stack = kStack;
  const std::string poly = "POLY 1 1\n0\n";
  const struct {
    std::string body;
    int message;
    int line;
  } cases[] = {
      {stack + "POR1 STD\nDIAGALLOWED maybe\n", 6185, 12},
      {stack + "POR1 STD\nPOLARITY SIDEWAYS\n", 6217, 12},
      {stack + "POR1 CUP \"G\"\nSIMPLE X\n", 6218, 12},
      {stack + "POR1 CUP \"G\"\nGNDREF SKY\n", 6216, 12},
      {stack + "POR1 CUP \"G\"\nGNDREF BOX SIDEWAYS\n", 6216, 12},
      {stack + "POR1 CUP \"G\"\nTERMW WIDE\n", 6216, 12},
      {stack + "POR1 STD\nSMD 1 1\n", 6024, 12},
      {stack + "POR1 STD\n" + poly + "x 50 0 0 0\n", 6050, 14},
      {stack + "POR1 STD\n" + poly + "1 r 0 0 0\n", 6051, 14},
      {stack + "POR1 STD\n" + poly + "1 50 x 0 0\n", 6052, 14},
      {stack + "POR1 STD\n" + poly + "1 50 0 x 0\n", 6053, 14},
      {stack + "POR1 STD\n" + poly + "1 50 0 0\n", 6054, 14},
      {stack + "POR1 STD\n" + poly + "1 50 0 0 0 1 2 FLOAT 3\n", 6056, 14},
      {"DRP1 MIDDLE FIX 1\n" + stack, 6056, 6},
      {"DRP1 LEFT FIX\n" + stack, 6056, 6},
      {"REF 1 2 3\n" + stack, 6056, 6},
      {"PSB1 UP 2\n" + stack, 6112, 6},
      {stack + "DIM ODD XDIR\n", 6032, 11},
      {stack + "DIM STD ZDIR\n", 6033, 11},
      {stack + "DIM STD XDIR\nNOM ten\n", 6133, 12},
      {stack + "DIM STD XDIR\nWHAT 1\n", 6024, 12},
      {stack + "CUPGRP \"G\"\nGNDREF Q\nEND\n", 6216, 12},
      {stack + "POR1 STD\n" + poly + "1 50 0 0 0 5 0 \nNUM 1\n" + Square(2), 6173, 11},
      {stack + "NUM 1\n" + Square(1, 0, "TLAYNAM Nowhere INH\n"), 6121, 12},
      {stack + "DIM STD XDIR\nREF1 POLY 9 1\n0\nEND\nNUM 1\n" + Square(1), 6121, 11},
      {stack + "POR1 CUP \"Nobody\"\n" + poly + "1 50 0 0 0 5 0 \nNUM 1\n" + Square(1), 6121, 11},
  };
  for (const auto& c : cases) {
    const auto found = Failure(c.body);
    bool seen = false;
    for (const auto& entry : found) seen = seen || (entry.first == c.message && entry.second == c.line);
    EXPECT_TRUE(seen) << "expected " << c.message << " at line " << c.line << " for\n" << c.body;
  }
}

}  // namespace
