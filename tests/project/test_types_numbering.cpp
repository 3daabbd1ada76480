// The numbers the GEO block gives material types, and how polygons find their types by them.
#include "ProjectTestSupport.h"

#include "SBrickPolygon.h"
#include "SBrickType.h"
#include "SCircuit.h"
#include "SGeometryBlock.h"
#include "SLevel.h"
#include "SMaterialTypeIO.h"
#include "SMetalPolygon.h"
#include "SMetalType.h"
#include "SProjectStream.h"
#include "SViaMetalType.h"

#include <string>

namespace {

class NumberingTest : public ProjectTest {
protected:
  void SetUp() override {
    ProjectTest::SetUp();
    itsCircuit.InitNew();
  }

  template <class T> T* Add(T* type) {
    itsCircuit.AddObject(type);
    return type;
  }
  SMetalType* Metal(const char* name) {
    return Add(new SMetalType(name, SMetalTypeData::UserMetal, 1, SMetalTypeData::Resistor, 5, 0, 0, 0));
  }
  SViaMetalType* Via(const char* name) {
    return Add(new SViaMetalType(name, 2, true, true, SViaMetalTypeData::Volume, 0, 0));
  }
  SBrickType* Brick(const char* name) { return Add(new SBrickType(name, 1, 3)); }
  SMetalPolygon* PolygonOf(SMaterialTypeData* type) {
    auto* polygon = new SMetalPolygon;
    polygon->SetMaterial(type);
    itsCircuit.GetLevel(0)->AddChild(polygon);
    return polygon;
  }

  std::string Types() {
    SProjectStream out;
    SProjectDigits digits(out, 10);
    SMaterialTypeIO::NumberAndWriteTypes(out, itsCircuit, SProjectFormat::kCurrent);
    return out.Text();
  }

  SCircuit itsCircuit;
};

TEST_F(NumberingTest, MetalsAndViasShareASequenceAndBricksHaveTheirOwn) {
  SBrickType* b0 = Brick("B0");
  SViaMetalType* v = Via("V");
  SMetalType* m0 = Metal("M0");
  SBrickType* b1 = Brick("B1");
  SMetalType* m1 = Metal("M1");
  // Metals are written first, then vias, then bricks, each in the order of the list.
  EXPECT_EQ(Types(), "MET \"M0\" 1 RES 5\n"
                     "MET \"M1\" 1 RES 5\n"
                     "MET \"V\" 2 VOL INF SOLID 0\n"
                     "BRI \"B0\" 3 1 0 0 \n"
                     "BRI \"B1\" 3 1 0 0 \n");
  EXPECT_EQ(m0->GetFileId(), 0);
  EXPECT_EQ(m1->GetFileId(), 1);
  EXPECT_EQ(v->GetFileId(), 2);
  EXPECT_EQ(b0->GetFileId(), 0);
  EXPECT_EQ(b1->GetFileId(), 1);
  EXPECT_EQ(itsCircuit.GetLosslessMetal()->GetFileId(), -1);
  EXPECT_EQ(itsCircuit.GetLosslessVia()->GetFileId(), -1);
  EXPECT_EQ(itsCircuit.FindBrickType("Air")->GetFileId(), -1);
  // The other built-ins are left unnumbered, and so polygons write -1 for them.
  EXPECT_EQ(itsCircuit.FindMetalType("WG Load")->GetFileId(), -2);
}

TEST_F(NumberingTest, UnchangedTypesAreSkippedAndKeepTheirNumbers) {
  SMetalType* kept = Metal("Kept");
  Metal("Written");
  kept->SetFileId(7);
  kept->SetChanged(false);
  EXPECT_EQ(Types(), "MET \"Written\" 1 RES 5\n");
  EXPECT_EQ(kept->GetFileId(), 7);
  EXPECT_EQ(itsCircuit.FindMetalType("Written")->GetFileId(), 0);
}

TEST_F(NumberingTest, ACoverGetsALineOnlyWhenAPolygonUsesIt) {
  SMetalType* gold = Metal("Gold");
  itsCircuit.SetTopMetal(gold);
  EXPECT_EQ(Types(), "");
  EXPECT_EQ(gold->GetFileId(), -2);
  PolygonOf(gold);
  EXPECT_EQ(Types(), "MET \"Gold\" 1 RES 5\n");
  EXPECT_EQ(gold->GetFileId(), 0);
  // Vias are written whether used or not.
  SViaMetalType* via = Via("Unused");
  itsCircuit.SetBottomMetal(gold);
  EXPECT_EQ(Types(), "MET \"Gold\" 1 RES 5\nMET \"Unused\" 2 VOL INF SOLID 0\n");
  EXPECT_EQ(via->GetFileId(), 1);
}

TEST_F(NumberingTest, TechnologyTypesAreNumberedFirst) {
  SMetalType* own = Metal("Own");
  SMetalType* tech = Metal("Tech");
  tech->SetTechFile("stack.stf");
  SBrickType* brick = Brick("TechBrick");
  brick->SetTechFile("stack.stf");
  EXPECT_EQ(Types(), "MET \"Own\" 1 RES 5\nMET \"Tech\" 1 RES 5\nBRI \"TechBrick\" 3 1 0 0 \n");
  EXPECT_EQ(tech->GetFileId(), 0);
  EXPECT_EQ(own->GetFileId(), 1);
  EXPECT_EQ(brick->GetFileId(), 0);
}

TEST_F(NumberingTest, SortingPutsLowerNumbersFirst) {
  SMetalType* a = Metal("A");
  Brick("B")->SetFileId(0);
  SMetalType* c = Metal("C");
  a->SetFileId(5);
  c->SetFileId(1);
  const size_t level = 5;  // built-ins first, then the two levels
  ASSERT_EQ(itsCircuit.GetChild(level), itsCircuit.GetLevel(0));
  itsCircuit.SortTypes();
  EXPECT_EQ(itsCircuit.GetChild(level), itsCircuit.GetLevel(0));
  std::vector<SMetalType*> metals;
  itsCircuit.CollectObjects(metals);
  EXPECT_EQ(metals[metals.size() - 2], c);
  EXPECT_EQ(metals.back(), a);
}

// Through the whole block: polygons name their types by the numbers of the type lines.
class TypesInBlockTest : public GeoTest {
};

const char* const kTypedBody =
    "TMET \"Gold\" 2 NOR 41000000 0 0.5 \n"
    "BMET \"Lossless\" 0 SUP 0 0 0 0\n"
    "MET \"Copper\" 3 NOR 58000000 1.5 0.5 \n"
    "MET \"Sheet\" 1 RES 20\n"
    "MET \"Array\" 3 ARR 58000000  50 CDVY 1 \"Sheet\"\n"
    "BRI \"Oxide\" 2 3.9 0.001 0 \n"
    "BRA \"Sapphire\" 4 9.4 0.0001 0 9.4 0.0001 0 11.6 0.0002 0 \n"
    "BOX 1 160 160 32 32 20 0\n"
    "      0 1 1 0 0 0 0 \"Unnamed\"\n"
    "      0 1 1 0 0 0 0 \"Unnamed\"\n"
    "LORGN 0 160 U\n"
    "NUM 3\n"
    "0 4 1 N 1 1 1 100 100 0 0 0 Y\n"
    "0 0\n"
    "10 0\n"
    "10 10\n"
    "0 0\n"
    "END\n"
    "VIA POLYGON\n"
    "0 4 2 N 2 1 1 100 100 0 0 0 Y\n"
    "TOLEVEL 1 SOLID NOCOVERS\n"
    "40 40\n"
    "44 40\n"
    "44 44\n"
    "40 40\n"
    "END\n"
    "BRI POLY\n"
    "0 4 2 H 3 1 1 100 100 0 0 0 Y\n"
    "20 20\n"
    "30 20\n"
    "30 30\n"
    "20 20\n"
    "END\n";

TEST_F(TypesInBlockTest, PolygonsAreBoundToTheTypesTheirNumbersName) {
  const std::string written = RoundTrip(Project(kTypedBody));
  EXPECT_TRUE(Contains(written, kTypedBody)) << written;

  SProject project;
  ASSERT_TRUE(ReadText(project, Project(kTypedBody)));
  SCircuit* circuit = project.GetGeometryBlock()->GetCircuit();
  ASSERT_NE(circuit, nullptr);
  std::vector<SEnclosure*> shapes;
  circuit->CollectPolygons(shapes);
  ASSERT_EQ(shapes.size(), 3u);
  EXPECT_EQ(static_cast<SMetalPolygon*>(shapes[0])->GetMaterial(), circuit->FindMetalType("Sheet"));
  EXPECT_EQ(static_cast<SMetalPolygon*>(shapes[1])->GetMaterial(), circuit->FindViaMetalType("Array"));
  // Brick numbers count from 1: 0 is "Air".
  EXPECT_EQ(static_cast<SBrickPolygon*>(shapes[2])->GetMaterial(), circuit->FindBrickType("Sapphire"));
  EXPECT_EQ(circuit->GetTopMetal(), circuit->FindMetalType("Gold"));
  EXPECT_EQ(circuit->FindViaMetalType("Array")->itsLinkedMetal, circuit->FindMetalType("Sheet"));
}

}  // namespace
