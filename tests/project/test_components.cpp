// Components: SMD entries of GEO with their ports, and the files of SMDFILES bound to them.
#include "ProjectTestSupport.h"

#include "SCircuit.h"
#include "SGeometryBlock.h"
#include "SLevel.h"
#include "SMetalPolygon.h"
#include "SRefPlane.h"
#include "SSMDBlock.h"
#include "SSMDPort.h"
#include "SSMDev.h"
#include "SVeloraTrace.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

namespace {

// A strip (id 1) on level 0 for planes to link to.
const char* const kStrip =
    "NUM 1\n"
    "0 5 -1 N 1 1 1 100 100 0 0 0 Y\n"
    "0 0\n10 0\n10 5\n0 5\n0 0\nEND\n";

// Every line form of a component, written as this program writes it.
const char* const kComponents =
    "SMD 0 \"R 1\"\n"
    "ID 3\n"
    "GNDREF BOX ABOVE\n"
    "DRP1 LEFT FIX 5 1\n"
    "SBOX 10 20 30 40\n"
    "PBSHW Y\n"
    "PBOX 11 21 29 39\n"
    "PKG 20 10 5\n"
    "LPOS 15 25\n"
    "TYPE IDEAL RES \"W*2\"\n"
    "SMDP 0 10 30 L 1 1 FIX 2 0.5\n"
    "EXSMDP\n"
    "GNDREF POLY BELOW\n"
    "TERMW CUST 3\n"
    "END EXSMDP\n"
    "SMDP 0 30 30 D 2 2 LINK 0\n"
    "POLY 1 1\n"
    "2\n"
    "EXSMDP\n"
    "GNDREF AUTO\n"
    "TERMW FEED\n"
    "END EXSMDP\n"
    "END\n"
    "SMD 1 \"C2\"\n"
    "ID 4\n"
    "GNDREF AUTO\n"
    "SBOX 0 0 4 2\n"
    "PBSHW N\n"
    "LPOS 0 0\n"
    "TYPE IDEAL CAP 1.5\n"
    "SMDP 1 0 1 T 3 1 \n"
    "EXSMDP\n"
    "GNDREF AUTO\n"
    "TERMW FEED\n"
    "END EXSMDP\n"
    "END\n";

// The forms that a save drops or rewrites: an older MODEL line, a PPLACE line, a long side
// word, a data file named in the line, a data file without a key and a component without
// a port; and the models beyond the ideal ones, with their parameters.
const char* const kOtherComponents =
    "SMD 1 \"S\"\n"
    "ID 5\n"
    "SBOX 0 0 1 1\n"
    "PBSHW N\n"
    "LPOS 0 0\n"
    "MODEL Y SPARAM 5\n"
    "PPLACE A\n"
    "SMDP 1 0 0 LEFT 4 1\n"
    "END\n"
    "SMD 1 \"F\"\n"
    "ID 6\n"
    "TYPE SPFILE \"old file.s2p\"\n"
    "SMDP 1 0 0 R 5 1\n"
    "END\n"
    "SMD 1 \"Z\"\n"
    "ID 7\n"
    "TYPE SPARAM 0\n"
    "SMDP 1 0 0 R 6 1\n"
    "END\n"
    "SMD 1 \"N\"\n"
    "ID 8\n"
    "TYPE IDEAL IND 2\n"
    "END\n"
    "SMD 0 \"P\"\n"
    "ID 9\n"
    "TYPE SPROJ \"sub dir/amp.vel\" \"a b\"=1 c=W*2 d= e=\"x y\"\n"
    "INHSWP Y\n"
    "SMDP 0 1 2 B 7 1\n"
    "SMDP 0 3 2 B 8 2\n"
    "END\n"
    "SMD 0 \"U\"\n"
    "ID 10\n"
    "TYPE UMOD diode DLL models.so make x=3\n"
    "SMDP 0 1 2 T 9 1\n"
    "END\n"
    "SMD 0 \"E\"\n"
    "ID 11\n"
    "TYPE NONE\n"
    "SMDP 0 1 2 T 10 1\n"
    "END\n";

class ComponentsTest : public GeoTest {
protected:
  static std::string Body(const std::string& components) {
    return std::string(kTwoLevelStack) + "VALVAR W LNG 10 \"\"\nLORGN 0 160 U\n" + components + kStrip;
  }

  static std::string Expected(const char* name) {
    return FileText(SString(GDS_SOURCE_DIR "/tests/project/expected/") + name);
  }

  static std::vector<SSMDev*> Components(SProject& project) {
    std::vector<SSMDev*> list;
    SSMDev::Collect(*project.GetGeometryBlock()->GetCircuit(), list);
    return list;
  }

  // The whole project of the expected file, with the data file of the S component.
  static std::string FullProject() {
    return "FTYP VELPROJ 17\nDIM\nLNG UM\nEND DIM\nGEO\n" + Body(std::string(kComponents) + kOtherComponents) +
           "END GEO\nSMDFILES\n5 \"data/s.s2p\"\nEND SMDFILES\n";
  }
};

TEST_F(ComponentsTest, EveryWrittenLineFormReadsAndWritesBackAsItStands) {
  const std::string body = Body(kComponents);
  EXPECT_EQ(GeoBody(RoundTrip(Project(body))), body);
}

TEST_F(ComponentsTest, AProjectWritesBackWhatItKeepsInTheCurrentForm) {
  EXPECT_EQ(RoundTrip(FullProject()), Expected("components.vel"));
}

TEST_F(ComponentsTest, ReadingFillsTheComponentAndItsPorts) {
  SProject project;
  ASSERT_TRUE(ReadText(project, FullProject())) << project.GetErrors().ErrorText().data();
  const std::vector<SSMDev*> list = Components(project);
  ASSERT_EQ(list.size(), 9u);
  // Components hang on their levels, level by level.
  const SSMDev* r1 = list[0];
  EXPECT_EQ(r1->GetName(), SString("R 1"));
  EXPECT_EQ(r1->GetOwner(), project.GetGeometryBlock()->GetCircuit()->GetLevel(0));
  EXPECT_EQ(r1->GetGroupId(), 3);
  EXPECT_EQ(r1->GetModelType(), SSMDev::IdealModel);
  EXPECT_EQ(r1->GetIdealKind(), SSMDev::Resistor);
  EXPECT_EQ(r1->GetValue().GetName(), SString("Component R 1"));
  EXPECT_EQ(r1->GetValue().GetText(), SString("W*2"));
  EXPECT_DOUBLE_EQ(list[4]->GetValue().GetValue(), 1.5);
  EXPECT_TRUE(r1->HasUserBox());
  EXPECT_TRUE(r1->IsBoxShown());
  EXPECT_TRUE(r1->IsLabelPositionSet());
  EXPECT_DOUBLE_EQ(r1->GetPackageBox().right(), 30.0);
  std::vector<SSMDPort*> ports;
  r1->GetPorts(ports);
  ASSERT_EQ(ports.size(), 2u);
  EXPECT_EQ(ports[0]->GetType(), SPortData::Component);
  EXPECT_EQ(ports[0]->GetGroundReference(), SPortData::GroundPolygonPlane);
  EXPECT_DOUBLE_EQ(ports[0]->GetTerminalWidth(), 3.0);
  ASSERT_NE(ports[0]->GetRefPlane(), nullptr);
  EXPECT_DOUBLE_EQ(ports[0]->GetRefPlane()->GetCalibrationLength(), 0.5);
  EXPECT_EQ(ports[1]->GetSide(), SSMDPort::Down);
  EXPECT_EQ(ports[1]->GetPinNumber(), 2);
  ASSERT_NE(ports[1]->GetRefPlane(), nullptr);
  EXPECT_TRUE(ports[1]->GetRefPlane()->IsLinked());

  // Level 0: R 1, P, U, E; level 1: C2, S, F, Z, N.
  const SSMDev* s = list[5];
  EXPECT_EQ(s->GetModelState(), 3);
  EXPECT_EQ(s->GetModelType(), SSMDev::DataFileModel);
  EXPECT_TRUE(s->IsPortPlacementAutomatic());
  // The block's name, bound by key, absolute in memory.
  EXPECT_EQ(s->GetFileName(), Path("data/s.s2p"));
  EXPECT_EQ(list[6]->GetFileName(), SString("old file.s2p"));
  EXPECT_EQ(list[6]->GetFileKey(), 0);

  const SSMDev* sub = list[1];
  EXPECT_EQ(sub->GetModelType(), SSMDev::ProjectModel);
  EXPECT_EQ(sub->GetFileName(), Path("sub dir/amp.vel"));
  EXPECT_TRUE(sub->InheritsSweep());
  ASSERT_EQ(sub->GetParameters().size(), 4u);
  EXPECT_EQ(sub->GetParameters()[0], SSMDev::Parameter(SString("a b"), SString("1")));
  EXPECT_EQ(sub->GetParameters()[1], SSMDev::Parameter(SString("c"), SString("W*2")));
  EXPECT_EQ(sub->GetParameters()[2], SSMDev::Parameter(SString("d"), SString()));
  EXPECT_EQ(sub->GetParameters()[3], SSMDev::Parameter(SString("e"), SString("x y")));
  const SSMDev* user = list[2];
  EXPECT_EQ(user->GetUserModelName(), SString("diode"));
  EXPECT_EQ(user->GetLibraryName(), SString("models.so"));
  EXPECT_EQ(user->GetEntryName(), SString("make"));
}

TEST_F(ComponentsTest, WhatASaveLeavesOutOfTheFile) {
  const std::string port = "SMDP 0 1 1 L 1 1\n";
  const struct {
    const char* what;
    std::string entry;
    int format;
  } cases[] = {
      {"no port, nor its value", "SMD 0 \"A\"\nTYPE IDEAL RES 12345\nEND\n", SProjectFormat::kCurrent},
      {"a data file of key 0", "SMD 0 \"A\"\nTYPE SPARAM 0\n" + port + "END\n", SProjectFormat::kCurrent},
      {"a data file named on its line", "SMD 0 \"A\"\nTYPE SPFILE a.s2p\n" + port + "END\n", SProjectFormat::kCurrent},
      {"a project below format 19", "SMD 0 \"A\"\nTYPE SPROJ b.vel\n" + port + "END\n", 18},
      {"a user model below format 19", "SMD 0 \"A\"\nTYPE UMOD m DLL l e\n" + port + "END\n", 18},
  };
  for (const auto& c : cases) {
    SProject project;
    ASSERT_TRUE(ReadText(project, Project(Body(c.entry)))) << c.what;
    SProjectFormat::SetWriteFormat(c.format);
    const std::string written = WriteText(project);
    EXPECT_FALSE(Contains(written, "SMD")) << c.what << ":\n" << GeoBody(written);
    EXPECT_FALSE(Contains(written, "12345")) << c.what;
  }
  // At format 19 the project component is there.
  SProject project;
  ASSERT_TRUE(ReadText(project, Project(Body("SMD 0 \"A\"\nTYPE SPROJ b.vel\n" + port + "END\n"))));
  SProjectFormat::SetWriteFormat(19);
  EXPECT_TRUE(Contains(WriteText(project), "TYPE SPROJ b.vel\nINHSWP N\nSMDP"));
}

TEST_F(ComponentsTest, APortPlacementLineIsReadButNeverWritten) {
  SProject project;
  ASSERT_TRUE(ReadText(project, Project(Body("SMD 0 \"A\"\nPPLACE A\nSMDP 0 1 1 L 1 1\nEND\n"))));
  EXPECT_TRUE(Components(project)[0]->IsPortPlacementAutomatic());
  EXPECT_FALSE(Contains(WriteText(project), "PPLACE"));
}

TEST_F(ComponentsTest, OlderFormatsWriteTheFormsTheyKnow) {
  const std::string entry =
      "SMD 0 \"A\"\nID 2\nGNDREF POLY BELOW\nTWTYPE CUST\nTWVALUE 2.5\nTYPE NONE\n"
      "SMDP 0 1 1 D 1 1 FIX 2\nEXSMDP\nGNDREF BOX\nTERMW CELL\nEND EXSMDP\nEND\n";
  SProject project;
  ASSERT_TRUE(ReadText(project, Project(Body(entry)))) << project.GetErrors().ErrorText().data();
  const auto componentOf = [](const std::string& text) {
    const std::string body = GeoBody(text);
    const size_t begin = body.find("SMD ");
    return begin == std::string::npos ? body : body.substr(begin, body.find("NUM ") - begin);
  };
  SProjectFormat::SetWriteFormat(20);
  EXPECT_EQ(componentOf(WriteText(project)),
            "SMD 0 \"A\"\nID 2\nGNDREF F\nTWTYPE CUST\nTWVALUE 2.5\nSBOX 0 0 0 0\nPBSHW N\nLPOS 0 0\nTYPE NONE\n"
            "SMDP 0 1 1 D 1 1 FIX 2\nEND\n");
  // Below 11 the side D is written as L, and the port has no plane.
  SProjectFormat::SetWriteFormat(9);
  EXPECT_TRUE(Contains(componentOf(WriteText(project)), "SMDP 0 1 1 L 1 1 \nEND\n"));
  SProjectFormat::SetWriteFormat(5);
  EXPECT_FALSE(Contains(WriteText(project), "SMD "));
}

TEST_F(ComponentsTest, BrokenEntriesNameTheirMessageAndLine) {
  // The component starts on line 13 of the project. A message with a detail shows as the detail.
  const struct {
    std::string entry;
    int message;
    int line;
  } cases[] = {
      {"SMD x \"A\"\nEND\n", 6059, 13},
      {"SMD 5 \"A\"\nEND\n", 6059, 13},
      {"SMD 0 \"A\"\nEXSMDP\nEND EXSMDP\nEND\n", 6168, 14},
      {"SMD 0 \"A\"\nSBOX 1 2 3\nEND\n", 6169, 14},
      {"SMD 0 \"A\"\nPBOX 1 2 x 4\nEND\n", 6169, 14},
      {"SMD 0 \"A\"\nPKG 1\nEND\n", 6169, 14},
      {"SMD 0 \"A\"\nPKG 1 2\nEND\n", 6168, 14},
      {"SMD 0 \"A\"\nPBSHW\nEND\n", 6168, 14},
      {"SMD 0 \"A\"\nPPLACE\nEND\n", 6168, 14},
      {"SMD 0 \"A\"\nINHSWP\nEND\n", 6168, 14},
      {"SMD 0 \"A\"\nLPOS 1\nEND\n", 6076, 14},
      {"SMD 0 \"A\"\nTYPE\nEND\n", 6170, 14},
      {"SMD 0 \"A\"\nMODEL Y\nEND\n", 6170, 14},
      {"SMD 0 \"A\"\nTYPE IDEAL OHM 5\nEND\n", 6024, 14},
      {"SMD 0 \"A\"\nTYPE IDEAL RES\nEND\n", 6168, 14},
      {"SMD 0 \"A\"\nTYPE SPARAM five\nEND\n", 6171, 14},
      {"SMD 0 \"A\"\nTYPE SPROJ\nEND\n", 6202, 14},
      {"SMD 0 \"A\"\nTYPE UMOD m LIB l e\nEND\n", 6201, 14},
      {"SMD 0 \"A\"\nTYPE UMOD m DLL l\nEND\n", 6201, 14},
      {"SMD 0 \"A\"\nTYPE SPICE\nEND\n", 6024, 14},
      {"SMD 0 \"A\"\nCOLOR red\nEND\n", 6024, 14},
      {"SMD 0 \"A\"\nID x\nEND\n", 6017, 14},
      {"SMD 0 \"A\"\nSMDP x 1 1 L 1 1\nEND\n", 6059, 14},
      {"SMD 0 \"A\"\nSMDP 0 1 L 1 1\nEND\n", 6076, 14},
      {"SMD 0 \"A\"\nSMDP 0 1 1 X 1 1\nEND\n", 6033, 14},
      {"SMD 0 \"A\"\nSMDP 0 1 1 L one 1\nEND\n", 6050, 14},
      {"SMD 0 \"A\"\nSMDP 0 1 1 L 1 1\nEXSMDP\nGNDREF SKY\nEND EXSMDP\nEND\n", 6216, 16},
      {"SMD 0 \"A\"\nSMDP 0 1 1 L 1 1 LINK 0\nPOLY 9 1\n0\nEND\n", 6121, 13},
      {"SMD 0 \"A\"\nSMDP 0 1 1 L 1 1\n", 6024, 0},
  };
  for (const auto& c : cases) {
    const std::vector<std::pair<int, int>> found = Failure(Body(c.entry));
    ASSERT_FALSE(found.empty()) << c.entry;
    bool seen = false;
    for (const auto& entry : found) seen = seen || (entry.first == c.message && (c.line == 0 || entry.second == c.line));
    EXPECT_TRUE(seen) << "expected " << c.message << " at line " << c.line << " for\n"
                      << c.entry << "got " << found[0].first << " at " << found[0].second;
  }
}

TEST_F(ComponentsTest, APlaneWordThatCannotBeReadDropsThePlaneOnly) {
  SProject project;
  ASSERT_TRUE(ReadText(project, Project(Body("SMD 0 \"A\"\nSMDP 0 1 1 L 1 1 FIX\nEND\n"))))
      << project.GetErrors().ErrorText().data();
  std::vector<SSMDPort*> ports;
  Components(project)[0]->GetPorts(ports);
  ASSERT_EQ(ports.size(), 1u);
  EXPECT_EQ(ports[0]->GetRefPlane(), nullptr);
}

TEST_F(ComponentsTest, DataFilesMoveBetweenTheComponentsAndTheBlock) {
  // Read: the block's names reach the components by key.
  SProject project;
  ASSERT_TRUE(ReadText(project, FullProject()));
  SSMDev* s = Components(project)[5];
  ASSERT_EQ(s->GetFileKey(), 5);
  // Write: names set on components go to the block, which keeps the files no component uses.
  s->SetFileKey(12);
  s->SetFileName(Path("other.s2p"));
  const std::string written = WriteText(project);
  EXPECT_TRUE(Contains(written, "SMDFILES\n5 \"data/s.s2p\"\n12 \"other.s2p\"\nEND SMDFILES\n")) << written;
  EXPECT_TRUE(Contains(GeoBody(written), "TYPE SPARAM 12\n"));

  // A project whose block was absent gets one when a component has a file.
  SProject plain;
  ASSERT_TRUE(ReadText(plain, Project(Body("SMD 0 \"A\"\nTYPE SPARAM 3\nSMDP 0 1 1 L 1 1\nEND\n"))));
  EXPECT_FALSE(Contains(WriteText(plain), "SMDFILES"));
  Components(plain)[0]->SetFileName(Path("s3.s2p"));
  EXPECT_TRUE(Contains(WriteText(plain), "SMDFILES\n3 \"s3.s2p\"\nEND SMDFILES\n"));
}

TEST_F(ComponentsTest, ChangingUnitsMovesTheComponents) {
  SProject project;
  ASSERT_TRUE(ReadText(project, Project(Body(kComponents))));
  project.GetGeometryBlock()->GetCircuit()->ScaleLengths(2.0);
  const SSMDev* r1 = Components(project)[0];
  EXPECT_DOUBLE_EQ(r1->GetPackageBox().bottom(), 80.0);
  EXPECT_DOUBLE_EQ(r1->GetLabelPosition().x(), 30.0);
  std::vector<SSMDPort*> ports;
  r1->GetPorts(ports);
  EXPECT_DOUBLE_EQ(ports[1]->GetPortPosition().x(), 60.0);
}

TEST_F(ComponentsTest, AParameterHandleNamesAComponentByItsId) {
  const std::string parameter =
      "GEOVAR L STD XDIR 1\nPOS 0 0\nNOM 10\nREF1 POLY 1 1\n0\nREF2 POLY 1 1\n1\nPS1 0\nPS2 1\nSMD %d 0\nEND\n";
  char text[256];
  std::snprintf(text, sizeof text, parameter.c_str(), 4);
  SProject project;
  // The value works out 4 more than the nominal: the component C2 (id 4) moves 4 along X, whole.
  const std::string body = std::string(kTwoLevelStack) + "VALVAR L LNG \"G+4\" \"\"\nVALVAR G LNG 10 \"\"\n" + text + "LORGN 0 160 U\n" +
                           kComponents + kStrip;
  ASSERT_TRUE(ReadText(project, Project(body))) << project.GetErrors().ErrorText().data();
  EXPECT_TRUE(Contains(GeoBody(WriteText(project)), "PS2 1\nSMD 4 0\nEND\n"));
  ASSERT_EQ(Components(project).size(), 2u);
  const SSMDev* c2 = Components(project)[1];
  EXPECT_DOUBLE_EQ(c2->GetPackageBox().left(), 4.0);
  EXPECT_DOUBLE_EQ(c2->GetPackageBox().right(), 8.0);
  EXPECT_DOUBLE_EQ(c2->GetLabelPosition().x(), 4.0);
  std::vector<SSMDPort*> ports;
  c2->GetPorts(ports);
  EXPECT_EQ(ports[0]->GetPortPosition(), SPoint(4, 1));
  // R 1, not named, stays.
  EXPECT_DOUBLE_EQ(Components(project)[0]->GetPackageBox().left(), 10.0);
  std::snprintf(text, sizeof text, parameter.c_str(), 40);
  const std::string missing = std::string(kTwoLevelStack) + "VALVAR L LNG 10 \"\"\n" + text + "LORGN 0 160 U\n" +
                              kComponents + kStrip;
  const std::vector<std::pair<int, int>> found = Failure(missing);
  ASSERT_GE(found.size(), 2u);
  EXPECT_EQ(found[0], std::make_pair(6028, 12));
  EXPECT_EQ(found[1], std::make_pair(6130, 12));
}

TEST_F(ComponentsTest, ReleasingLinksFixesPlanesAtTheDistanceToTheirVertex) {
  SProject project;
  ASSERT_TRUE(ReadText(project, Project(Body(kComponents))));
  SCircuit* circuit = project.GetGeometryBlock()->GetCircuit();
  SSMDev* r1 = Components(project)[0];
  r1->ReleaseLinks(*circuit);
  std::vector<SSMDPort*> ports;
  r1->GetPorts(ports);
  // Side D has no direction across it: the plane keeps its length.
  EXPECT_FALSE(ports[1]->GetRefPlane()->IsLinked());
  EXPECT_DOUBLE_EQ(ports[1]->GetRefPlane()->GetLength(), 0.0);
  // A pin at (20, 30) linked to vertex 2 of the strip: across a left side the X distance,
  // across a top side the Y distance.
  ports[1]->SetSide(SSMDPort::Left);
  ports[1]->SetPosition(SPoint(20, 30));
  ports[1]->GetRefPlane()->Link().SetPolygonId(1);
  ports[1]->GetRefPlane()->Link().SetItems({2});
  const SMetalPolygon* strip = ports[1]->GetRefPlane()->GetLink().FindPolygon(*circuit);
  ASSERT_NE(strip, nullptr);
  const SPoint vertex = strip->GetVertex(2);
  r1->ReleaseLinks(*circuit);
  EXPECT_DOUBLE_EQ(ports[1]->GetRefPlane()->GetLength(), std::fabs(vertex.x() - 20));
  ports[1]->SetSide(SSMDPort::Top);
  ports[1]->GetRefPlane()->Link().SetPolygonId(1);
  ports[1]->GetRefPlane()->Link().SetItems({2});
  r1->ReleaseLinks(*circuit);
  EXPECT_DOUBLE_EQ(ports[1]->GetRefPlane()->GetLength(), std::fabs(vertex.y() - 30));
  EXPECT_TRUE(Contains(GeoBody(WriteText(project)), "SMDP 0 20 30 T 2 2 FIX " + std::to_string(int(std::fabs(vertex.y() - 30))) + " 0\n"));
}

TEST_F(ComponentsTest, AnOlderModelLineKeepsItsStateAndGroupsNumberPastComponents) {
  const struct {
    const char* state;
    int expected;
  } cases[] = {{"Y", 3}, {"AY", 3}, {"N", 2}, {"yes", 2}};
  for (const auto& c : cases) {
    SProject project;
    const std::string entry = std::string("SMD 0 \"A\"\nID 7\nMODEL ") + c.state + " NONE\nSMDP 0 1 1 L 1 1\nEND\n";
    ASSERT_TRUE(ReadText(project, Project(Body(entry)))) << c.state;
    EXPECT_EQ(Components(project)[0]->GetModelState(), c.expected) << c.state;
    EXPECT_EQ(Components(project)[0]->GetModelType(), SSMDev::NoModel) << c.state;
    // A new coupled group doesn't take a component's id.
    EXPECT_EQ(SCoupledGroup::NextId(*project.GetGeometryBlock()->GetCircuit()), 8);
  }
}

std::vector<std::string> gTraced;

TEST_F(ComponentsTest, ADataFileWithoutKeyIsNotedInTheTrace) {
  VeloraSetTraceFunctions([](int, int, const char* text) { gTraced.emplace_back(text); },
                          [](int, int) { return true; });
  SProject project;
  ASSERT_TRUE(ReadText(project, Project(Body("SMD 0 \"A\"\nTYPE SPARAM 0\nSMDP 0 1 1 L 1 1\nEND\n"))));
  gTraced.clear();
  WriteText(project);
  VeloraSetTraceFunctions(nullptr, nullptr);
  EXPECT_NE(std::find(gTraced.begin(), gTraced.end(), "Component note: SMD not written, FileKey = 0"), gTraced.end());
}

}  // namespace
