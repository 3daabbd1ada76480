// Technology layers: their TECHLAY blocks, the polygons that follow them, names and keys.
#include "ProjectTestSupport.h"

#include "SBrickPolygon.h"
#include "SBrickType.h"
#include "SCircuit.h"
#include "SGeoClassID.h"
#include "SGeometryBlock.h"
#include "SLevel.h"
#include "SMetalPolygon.h"
#include "SMetalType.h"
#include "SProjectErrorEntry.h"
#include "STechLayer.h"
#include "SViaPolygon.h"

#include <QBuffer>
#include <QXmlStreamWriter>

#include <string>
#include <vector>

namespace {

const std::string kLayers =
    "TMET \"Lossless\" 0 SUP 0 0 0 0\n"
    "BMET \"Lossless\" 0 SUP 0 0 0 0\n"
    "MET \"Copper\" 3 NOR 58000000 1.5 0.5 \n"
    "BRI \"Oxide\" 2 3.9 0.001 0 \n"
    "BOX 1 160 160 32 32 20 0\n"
    "      0 1 1 0 0 0 0 \"Unnamed\"\n"
    "      0 1 1 0 0 0 0 \"Unnamed\"\n"
    "TECHLAY METAL \"Top metal\" CU_DXF 5 0 GBR top.gbr \n"
    "0 0 0 T 0 2 2 50 50 0 0 0 Y\n"
    "END\n"
    "END\n"
    "TECHLAY VIA V1 <UNSPECIFIED> 6 2 \n"
    "VIA POLYGON\n"
    "0 0 -1 N 0 1 1 100 100 0 0 0 Y\n"
    "TOLEVEL 1 RING COVERS\n"
    "END\n"
    "END\n"
    "TECHLAY BRICK B <UNSPECIFIED> -3 0 \n"
    "BRI POLY\n"
    "1 0 1 N 0 1 1 100 100 0 0 0 Y\n"
    "END\n"
    "END\n"
    "LORGN 0 160 U\n"
    "NUM 2\n"
    "0 5 0 T 1 2 2 50 50 0 0 0 Y\n"
    "TLAYNAM \"Top metal\" INH\n"
    "0 0\n10 0\n10 10\n0 10\n0 0\n"
    "END\n"
    "1 5 0 N 2 1 1 100 100 0 0 0 Y\n"
    "TLAYNAM \"Top metal\" NOH\n"
    "20 0\n30 0\n30 10\n20 10\n20 0\n"
    "END\n";

class TechLayerTest : public GeoTest {
protected:
  SCircuit* Read(SProject& project, const std::string& body) {
    EXPECT_TRUE(ReadText(project, Project(body))) << project.GetErrors().ErrorText().data();
    return project.GetGeometryBlock() != nullptr ? project.GetGeometryBlock()->GetCircuit() : nullptr;
  }

  // A layer of `type` on `level` of the scratch circuit.
  STechLayer* Layer(int type, const char* name, int level = 0) {
    bool created = false;
    STechLayer* layer = STechLayer::GetOrCreate(itsCircuit, type, name, level, 1, &created);
    EXPECT_TRUE(created) << name;
    return layer;
  }

  SMetalPolygon* Metal(int level, SMetalType* type, int fill = SSubsectionControls::Staircase) {
    auto* polygon = new SMetalPolygon;
    polygon->SetMaterial(type);
    polygon->SetFillType(fill);
    itsCircuit.GetLevel(level)->AddChild(polygon);
    return polygon;
  }

  SMetalType* Copper() {
    auto* type = new SMetalType("Copper", SMetalTypeData::UserMetal, 1, SMetalTypeData::Resistor, 5, 0, 0, 0);
    itsCircuit.AddObject(type);
    return type;
  }

  void SetUp() override {
    ProjectTest::SetUp();
    itsCircuit.InitNew();
  }

  SCircuit itsCircuit;
};

TEST_F(TechLayerTest, TechLayBlocksReadAndWriteBackWithTheirPolygons) {
  EXPECT_EQ(GeoBody(RoundTrip(Project(kLayers))), kLayers);

  SProject project;
  SCircuit* circuit = Read(project, kLayers);
  ASSERT_NE(circuit, nullptr);
  STechLayer* top = circuit->FindTechLayer("Top metal");
  ASSERT_NE(top, nullptr);
  EXPECT_EQ(top->GetDXFName(), SString("CU_DXF"));
  EXPECT_EQ(top->GetGerberName(), SString("top.gbr"));
  EXPECT_EQ(top->GetStream(), 5);
  EXPECT_EQ(top->GetMaterialName(), SString("Copper"));
  EXPECT_EQ(top->GetMetalType(), circuit->FindMetalType("Copper"));
  EXPECT_EQ(top->GetFillTypeName(), SString("Diagonal"));
  EXPECT_EQ(top->GetPolygonCount(), 2);
  EXPECT_EQ(top->GetFollowingPolygonCount(), 1);

  std::vector<SEnclosure*> polygons;
  top->GetPolygons(polygons);
  ASSERT_EQ(polygons.size(), 2u);
  auto* follower = static_cast<SMetalPolygon*>(polygons[0]);
  auto* own = static_cast<SMetalPolygon*>(polygons[1]);
  EXPECT_TRUE(follower->FollowsTechLayer());
  EXPECT_FALSE(own->FollowsTechLayer());
  // A follower answers with the template's values, and changes to the template reach it.
  top->GetTemplate()->SetLimits(3, 3, 60, 60);
  EXPECT_EQ(follower->GetXMin(), 3);
  EXPECT_EQ(own->GetXMin(), 1);

  STechLayer* via = circuit->FindTechLayer("V1");
  ASSERT_NE(via, nullptr);
  EXPECT_TRUE(via->GetDXFName().isEmpty());
  EXPECT_EQ(via->GetDXFNameOrName(), SString("V1"));
  EXPECT_EQ(via->GetToLevel(), 1);
  EXPECT_EQ(via->GetViaFillType(), SViaPolygon::Ring);
  EXPECT_TRUE(via->GetHasCovers());
  EXPECT_EQ(via->GetLevelText(), SString("0-1"));

  STechLayer* brick = circuit->FindTechLayer("B");
  ASSERT_NE(brick, nullptr);
  EXPECT_EQ(brick->GetLevel(), 1);
  EXPECT_EQ(brick->GetMaterialName(), SString("Oxide"));
  EXPECT_EQ(brick->GetBrickType(), circuit->FindBrickType("Oxide"));
  EXPECT_FALSE(brick->HasStreamMapping());
  EXPECT_EQ(brick->GetLevelText(), SString("GND"));

  // Older formats know neither the blocks nor the polygons' references to them.
  const std::string old = GeoBody(RoundTrip(Project(kLayers), 14));
  EXPECT_FALSE(Contains(old, "TECHLAY"));
  EXPECT_FALSE(Contains(old, "TLAYNAM"));
}

TEST_F(TechLayerTest, ALayerReadTwiceKeepsOneObject) {
  const std::string again = kLayers.substr(0, kLayers.find("LORGN")) +
                            "TECHLAY METAL \"Top metal\" OTHER 9 1 \n0 0 0 N 0 1 1 100 100 0 0 0 Y\nEND\nEND\n" +
                            kLayers.substr(kLayers.find("LORGN"));
  SProject project;
  SCircuit* circuit = Read(project, again);
  std::vector<STechLayer*> layers;
  circuit->GetTechLayers(layers);
  EXPECT_EQ(layers.size(), 3u);
  STechLayer* top = circuit->FindTechLayer("Top metal");
  EXPECT_EQ(top->GetDXFName(), SString("OTHER"));
  EXPECT_EQ(top->GetStream(), 9);
  EXPECT_EQ(top->GetFillType(), SSubsectionControls::Staircase);
  EXPECT_EQ(top->GetMetalType(), circuit->FindMetalType("Copper"));
}

TEST_F(TechLayerTest, ShortFormCarriesMaterialAndLevelAsText) {
  QString text = QStringLiteral(
      "TECHLAY VIA V2 <UNSPECIFIED> 7 0 JUNK GBR v.gbr CVT \"Tungsten plug\" 1-GND MORE\n"
      "END\n");
  QTextStream stream(&text);
  SCommentedFile file(&stream);
  file.NextLine();
  SString keyword;
  file.GetToken(keyword);
  SProjectErrorManager errors;
  STechLayer layer;
  ASSERT_TRUE(layer.Read(file, errors)) << errors.ErrorText().data();
  EXPECT_EQ(layer.GetLayerType(), STechLayer::Via);
  EXPECT_TRUE(layer.GetDXFName().isEmpty());
  EXPECT_EQ(layer.GetGerberName(), SString("v.gbr"));
  EXPECT_EQ(layer.GetMaterialName(), SString("Tungsten plug"));
  EXPECT_EQ(layer.GetLevelText(), SString("1-GND"));
  SProjectStream out;
  layer.Write(out, SProjectFormat::kCurrent, true);
  EXPECT_EQ(out.Text(), "TECHLAY VIA V2 <UNSPECIFIED> 7 0 GBR v.gbr CVT \"Tungsten plug\" 1-GND\nEND\n");
}

TEST_F(TechLayerTest, BrokenTechLayLinesNameTheirField) {
  const std::string stack = kLayers.substr(0, kLayers.find("TECHLAY"));
  const struct {
    const char* line;
    const char* what;
  } cases[] = {
      {"TECHLAY\n", "The TECHLAY line"},
      {"TECHLAY METAL\n", "The TECHLAY line (name)"},
      {"TECHLAY METAL A\n", "The TECHLAY line (DXF name)"},
      {"TECHLAY METAL A B x\n", "The TECHLAY line (GDS Stream)"},
      {"TECHLAY METAL A B 1 y\n", "The TECHLAY line (GDS Data)"},
      {"TECHLAY METAL A B 1 0 CVT Cu\n", "The TECHLAY line (CVT)"},
      {"TECHLAY METAL A B 1 0 GBR\n", "The TECHLAY line (GBR)"},
  };
  // The GEO line is line 5; the first TECHLAY line comes after the eight lines of the stack.
  const int line = 5 + 8;
  for (const auto& c : cases) {
    SProject project;
    EXPECT_FALSE(ReadText(project, Project(stack + c.line + "END\nNUM 0\n"))) << c.line;
    const SProjectErrorManager& errors = project.GetErrors();
    bool seen = false;
    for (size_t i = 0; i < errors.Count(); ++i) {
      const SProjectErrorEntry* entry = errors.Entry(i);
      if (entry->itsMessageId == 7132 && entry->itsLine == line && entry->itsText.contains(c.what)) seen = true;
    }
    EXPECT_TRUE(seen) << c.line << errors.ErrorText().data();
  }
  // A block cut off after its first line.
  SProject project;
  EXPECT_FALSE(ReadText(project, "FTYP VELPROJ 17\nGEO\n" + stack + "TECHLAY METAL A B 1 0"));
  EXPECT_TRUE(project.GetErrors().Contains(7132));
}

TEST_F(TechLayerTest, ClashingNamesTakeTheFirstFreeNumber) {
  EXPECT_EQ(STechLayer::UniqueName("M", {"M", "M1", "M2"}), SString("M3"));
  EXPECT_EQ(STechLayer::UniqueName("M", {"M", "M2"}), SString("M1"));
  EXPECT_EQ(STechLayer::UniqueName("A1", {"A1", "A3"}), SString("A2"));
  EXPECT_EQ(STechLayer::UniqueName("A1", {"A3"}), SString("A1"));
  EXPECT_EQ(STechLayer::UniqueName("Via7", {"Via7", "Via1", "via2"}), SString("Via2"));

  // Inside a circuit the names of all levels count; outside one any name goes.
  STechLayer* m = Layer(STechLayer::Metal, "M");
  Layer(STechLayer::Metal, "M1", 1);
  STechLayer* third = Layer(STechLayer::Via, "M2");
  third->SetName("M");
  EXPECT_EQ(third->GetName(), SString("M2"));
  m->SetName("M");
  EXPECT_EQ(m->GetName(), SString("M"));
  STechLayer loose;
  loose.SetName("M");
  EXPECT_EQ(loose.GetName(), SString("M"));
}

TEST_F(TechLayerTest, KeysMatchByKind) {
  STechLayer* layer = Layer(STechLayer::Metal, "Poly");
  layer->SetStream(-1);
  layer->SetData(0);
  EXPECT_EQ(layer->GetStreamLabel(), SString("Stream--1-0"));
  EXPECT_TRUE(layer->Matches("Stream--1-0", STechLayer::ByStreamLabel));
  EXPECT_EQ(layer->GetStream(), 1);
  layer->SetDXFName("POLY_DXF");
  EXPECT_TRUE(layer->Matches("POLY_DXF", STechLayer::ByDXFName));
  EXPECT_FALSE(layer->Matches("Poly", STechLayer::ByDXFName));
  EXPECT_TRUE(layer->Matches("Poly", STechLayer::ByGerberName));
  EXPECT_TRUE(layer->Matches("POLY_DXF", STechLayer::AnyKey));
  EXPECT_FALSE(layer->Matches("", STechLayer::ByName));
  EXPECT_FALSE(layer->Matches("Poly", 9));
  layer->SetId(42);
  EXPECT_TRUE(layer->Matches("42", STechLayer::ById));
  EXPECT_EQ(STechLayer::Find(itsCircuit, "POLY_DXF", STechLayer::AnyKey), layer);
  EXPECT_EQ(STechLayer::Find(itsCircuit, "", STechLayer::AnyKey), nullptr);
  layer->SetStream(12345);
  EXPECT_EQ(layer->GetStreamLabel(), SString("Stream-1.234e+04-0"));
}

TEST_F(TechLayerTest, LevelTextsAndMaterialNames) {
  STechLayer* via = Layer(STechLayer::Via, "V", 1);
  via->SetToLevelType(STechLayer::ToTop);
  EXPECT_EQ(via->GetLevelText(), SString("GND-TOP"));
  via->SetToLevel(0);
  EXPECT_EQ(via->GetLevelText(), SString("GND-0"));
  STechLayer* metal = Layer(STechLayer::Metal, "M");
  // Targets belong to vias only.
  metal->SetToLevelType(STechLayer::ToTop);
  EXPECT_EQ(metal->GetToLevelType(), 0);
  EXPECT_EQ(metal->GetViaFillType(), 1);
  EXPECT_EQ(metal->GetLevelText(), SString("0"));

  SMetalType* copper = Copper();
  metal->SetMaterial(copper);
  EXPECT_EQ(metal->GetMaterialName(), SString("Copper"));
  metal->SetMaterialText("Gold");
  EXPECT_EQ(metal->GetMaterialName(), SString("Gold"));
  // A layer moves between levels, never to one that doesn't exist.
  metal->SetLevel(1);
  EXPECT_EQ(metal->GetLevel(), 1);
  metal->SetLevel(5);
  EXPECT_EQ(metal->GetLevel(), 1);
  // The type comes once.
  metal->SetLayerType(STechLayer::Brick);
  EXPECT_EQ(metal->GetLayerType(), STechLayer::Metal);
}

TEST_F(TechLayerTest, TheMostCommonAttributesBecomeTheTemplate) {
  SMetalType* copper = Copper();
  STechLayer* layer = Layer(STechLayer::Metal, "M");
  std::vector<SMetalPolygon*> polygons = {Metal(0, copper, SSubsectionControls::Conformal), Metal(0, copper),
                                          Metal(0, copper), Metal(0, nullptr)};
  for (SMetalPolygon* polygon : polygons) polygon->SetTechLayer(layer, false);
  EXPECT_EQ(layer->AdoptCommonAttributes(true), polygons[1]);
  EXPECT_EQ(layer->GetMaterialTypeData(), copper);
  EXPECT_EQ(layer->GetFillType(), SSubsectionControls::Staircase);
  EXPECT_FALSE(polygons[0]->FollowsTechLayer());
  EXPECT_TRUE(polygons[1]->FollowsTechLayer());
  EXPECT_TRUE(polygons[2]->FollowsTechLayer());
  EXPECT_FALSE(polygons[3]->FollowsTechLayer());

  // On a tie the earlier group wins.
  STechLayer* tie = Layer(STechLayer::Metal, "T", 1);
  SMetalPolygon* a = Metal(1, copper, SSubsectionControls::Diagonal);
  SMetalPolygon* b = Metal(1, copper);
  a->SetTechLayer(tie, false);
  b->SetTechLayer(tie, false);
  EXPECT_EQ(tie->AdoptCommonAttributes(false), a);
  EXPECT_EQ(tie->GetFillType(), SSubsectionControls::Diagonal);
  EXPECT_FALSE(b->FollowsTechLayer());
  EXPECT_EQ(Layer(STechLayer::Metal, "Empty")->AdoptCommonAttributes(true), nullptr);
}

TEST_F(TechLayerTest, LayersMadeFromPolygonsAreNamedByMaterialAndLevel) {
  SMetalType* copper = Copper();
  SMetalPolygon* top = Metal(0, copper, SSubsectionControls::Diagonal);
  SMetalPolygon* bottom = Metal(1, copper);
  SMetalPolygon* lossless = Metal(0, nullptr);
  auto* via = new SViaPolygon;
  via->SetToLevelType(SViaPolygon::ToGround);
  itsCircuit.GetLevel(0)->AddChild(via);
  auto* brick = new SBrickPolygon;
  itsCircuit.GetLevel(1)->AddChild(brick);
  // An old layer goes, and its follower keeps the values it showed.
  STechLayer* old = Layer(STechLayer::Metal, "Old");
  old->GetTemplate()->SetLimits(4, 4, 40, 40);
  lossless->SetTechLayer(old, true);

  ASSERT_TRUE(STechLayer::CreateFromPolygons(itsCircuit));
  EXPECT_EQ(itsCircuit.FindTechLayer("Old"), nullptr);
  EXPECT_EQ(lossless->GetXMin(), 4);
  std::vector<STechLayer*> layers;
  itsCircuit.GetTechLayers(layers);
  std::vector<std::string> names;
  for (const STechLayer* layer : layers) names.push_back(layer->GetName().data());
  // Copper and Lossless are used by two layers each, so they keep their level parts.
  EXPECT_EQ(names, (std::vector<std::string>{"Copper_0", "Lossless_0", "Lossless_0_G", "Copper_G", "Air"}));
  EXPECT_EQ(top->GetTechLayer(), itsCircuit.FindTechLayer("Copper_0"));
  EXPECT_TRUE(top->FollowsTechLayer());
  EXPECT_EQ(itsCircuit.FindTechLayer("Copper_0")->GetFillType(), SSubsectionControls::Diagonal);
  EXPECT_EQ(bottom->GetTechLayer(), itsCircuit.FindTechLayer("Copper_G"));
  EXPECT_EQ(via->GetTechLayer()->GetToLevelType(), STechLayer::ToGround);
  EXPECT_EQ(brick->GetTechLayer(), itsCircuit.FindTechLayer("Air"));
  // Placeholder streams: metals from the end of the list, then vias, then bricks.
  EXPECT_EQ(itsCircuit.FindTechLayer("Copper_G")->GetRawStream(), -1);
  EXPECT_EQ(itsCircuit.FindTechLayer("Lossless_0")->GetRawStream(), -2);
  EXPECT_EQ(itsCircuit.FindTechLayer("Copper_0")->GetRawStream(), -3);
  EXPECT_EQ(itsCircuit.FindTechLayer("Lossless_0_G")->GetRawStream(), -4);
  EXPECT_EQ(itsCircuit.FindTechLayer("Air")->GetRawStream(), -5);
}

TEST_F(TechLayerTest, CreatedLayersCountTheirPlaceholderStreams) {
  int counter = 0;
  STechLayer* first = STechLayer::Create(itsCircuit, STechLayer::Metal, "A", 0, 0, counter, 2, false);
  STechLayer* second = STechLayer::Create(itsCircuit, STechLayer::Via, "A", 0, 1, counter, SViaPolygon::Solid, false);
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(first->GetRawStream(), 0);
  EXPECT_EQ(second->GetRawStream(), -1);
  EXPECT_EQ(counter, 2);
  EXPECT_EQ(second->GetName(), SString("A1"));
  EXPECT_EQ(second->GetViaFillType(), SViaPolygon::Solid);
  EXPECT_FALSE(second->GetHasCovers());
  EXPECT_EQ(STechLayer::Create(itsCircuit, STechLayer::Metal, "X", 7, 0, counter, 0, false), nullptr);
  bool created = true;
  EXPECT_EQ(STechLayer::GetOrCreate(itsCircuit, STechLayer::Metal, "A", 1, 0, &created), first);
  EXPECT_FALSE(created);
}

TEST_F(TechLayerTest, CopiesSummariesAndDescriptions) {
  SMetalType* copper = Copper();
  STechLayer* source = Layer(STechLayer::Metal, "Src");
  source->SetMaterial(copper);
  source->SetDXFName("D");
  source->SetStream(3);
  source->SetData(4);
  source->SetGerberName("g.gbr");
  source->GetTemplate()->SetIsotropy(SSubsectionControls::YOnly);
  Metal(0, copper)->SetTechLayer(source, true);

  STechLayer* copy = Layer(STechLayer::Metal, "Copy", 1);
  copy->CopyFrom(*source);
  EXPECT_EQ(copy->GetName(), SString("Src1"));
  EXPECT_EQ(copy->GetMappingSummary(), SString("DXF: D, GDSII: 3:4, Gerber: g.gbr"));
  EXPECT_EQ(copy->GetMetalType(), copper);
  EXPECT_EQ(copy->GetIsoTypeName(), SString("Y Only"));
  // A copy without polygons keeps the counts of its source.
  EXPECT_EQ(copy->GetPolygonCount(), 1);
  EXPECT_EQ(copy->GetDescription(), SString("Tech Layer = Src1"));

  STechLayer plain;
  EXPECT_EQ(plain.GetMappingSummary(), SString("Default Mappings"));
  EXPECT_EQ(STechLayer::FillTypeFromText(STechLayer::FillTypeText(7)), 7);
  EXPECT_EQ(STechLayer::FillTypeFromText("Staircase"), 0);
  EXPECT_EQ(STechLayer::IsoTypeFromText("X Only"), 1);

  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  QXmlStreamWriter xml(&buffer);
  STechLayer* via = Layer(STechLayer::Via, "V");
  via->SetToLevelType(STechLayer::ToGround);
  source->WriteSummaryXml(xml);
  via->WriteSummaryXml(xml);
  EXPECT_EQ(buffer.data().toStdString(),
            "<techlayer type=\"Metal\" name=\"Src\" material=\"Copper\" level=\"0\" filltype=\"Staircase\" "
            "isotype=\"Y Only\"/>"
            "<techlayer type=\"Via\" name=\"V\" material=\"\" level=\"0\" tolevel=\"GND\" filltype=\"Staircase\" "
            "isotype=\"X and Y\"/>");
}

}  // namespace

TEST_F(TechLayerTest, ALevelTakesItsLayersAlongAndFreesTheirPolygons) {
  ASSERT_GE(itsCircuit.GetNumberOfLevels(), 2);
  STechLayer* upper = Layer(STechLayer::Metal, "Upper", 1);
  STechLayer* lower = Layer(STechLayer::Metal, "Lower", 0);
  SMetalPolygon* follower = Metal(0, nullptr);
  SMetalPolygon* stayer = Metal(0, nullptr);
  follower->SetTechLayer(upper, false);
  stayer->SetTechLayer(lower, false);

  itsCircuit.SetNumberOfLevels(1);
  EXPECT_EQ(follower->GetTechLayer(), nullptr);
  EXPECT_EQ(stayer->GetTechLayer(), lower);
  std::vector<STechLayer*> layers;
  itsCircuit.GetTechLayers(layers);
  ASSERT_EQ(layers.size(), 1u);
  EXPECT_EQ(layers[0], lower);
}

// The list of technology layers stops searching a level once it has found as many as the
// level holds: layers made after many polygons, moved to another level or taken out must
// all be counted right.
TEST_F(TechLayerTest, LayersAreFoundWhereverTheyStandAmongPolygons) {
  SProject project;
  SCircuit* circuit = Read(project, kLayers);
  ASSERT_NE(circuit, nullptr);
  auto names = [circuit]() {
    std::vector<STechLayer*> layers;
    circuit->GetTechLayers(layers);
    std::string text;
    for (const STechLayer* layer : layers) text += std::string(layer->GetName().data()) + ";";
    return text;
  };
  const std::string before = names();
  EXPECT_EQ(before, "Top metal;V1;B;");
  SLevel* level = circuit->GetLevel(0);
  for (int i = 0; i < 1000; ++i) level->AddChild(new SMetalPolygon);
  STechLayer* late = new STechLayer;
  late->SetLayerType(STechLayer::Metal);
  late->SetName("late");
  level->AddChild(late);
  EXPECT_EQ(names(), "Top metal;V1;late;B;");
  late->SetLevel(1);
  EXPECT_EQ(names(), "Top metal;V1;B;late;");
  std::vector<SBaseEnclosure*> taken;
  circuit->GetLevel(1)->TakeChildren([late](const SBaseEnclosure* child) { return child == late; }, taken);
  EXPECT_EQ(taken.size(), 1u);
  for (SBaseEnclosure* child : taken) delete child;
  EXPECT_EQ(names(), before);
  EXPECT_EQ(level->GetTechLayerCount(), 2u);
  taken.clear();
  level->TakeChildren([](const SBaseEnclosure* child) { return child->isA() == SID_METALPOLYGON; }, taken);
  for (SBaseEnclosure* child : taken) delete child;
  EXPECT_EQ(level->GetTechLayerCount(), 2u);
  EXPECT_EQ(names(), before);
}
