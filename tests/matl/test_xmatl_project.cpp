// A technology file set into a project: the same process as a material file gives the same
// project, and a material file converted to a technology file keeps its process.

#include "test_xmatl_support.h"

#include "SCircuit.h"
#include "SDimensionBlock.h"
#include "SGeometryBlock.h"
#include "SHeaderBlock.h"
#include "SLevel.h"
#include "SMatlDielectric.h"
#include "SMetalType.h"
#include "SPolygonData.h"
#include "SProject.h"
#include "STechLayer.h"
#include "SViaMetalType.h"

#include <regex>

namespace {

const char* const kTwoMetalMatl = GDS_SOURCE_DIR "/tests/translate/data/two_metal.matl";
const char* const kTwoMetalStf = GDS_SOURCE_DIR "/tests/matl/data/two_metal.stf";
const char* const kEveryElement = GDS_SOURCE_DIR "/tests/matl/data/every_element.stf";

// A new project as the translator starts one.
class XmatlProject : public XmatlTest {
protected:
  std::unique_ptr<SProject> NewProject() {
    std::unique_ptr<SProject> project(new SProject);
    project->CreateBlocks();
    project->GetGeometryBlock()->SetDefaults();
    project->GetDimensionBlock()->SetDefaults();
    project->GetHeaderBlock()->SetDefaults();
    return project;
  }
  // The project file's text without the lines that hold the time of writing.
  static std::string Text(SProject& project) {
    SProjectStream out;
    EXPECT_TRUE(project.Write(out));
    return std::regex_replace(out.Text(), std::regex("(^|\n)DAT [^\n]*"), "$1DAT");
  }
};

TEST_F(XmatlProject, TheTwoMetalProcessGivesTheProjectOfItsMaterialFile) {
  SMatl matl;
  ASSERT_TRUE(matl.Read(kTwoMetalMatl)) << Reports();
  auto fromMatl = NewProject();
  ASSERT_TRUE(matl.SetIntoProject(*fromMatl)) << Reports();
  SXmatl xmatl;
  ASSERT_TRUE(xmatl.Read(kTwoMetalStf)) << Reports();
  auto fromStf = NewProject();
  ASSERT_TRUE(xmatl.SetIntoProject(*fromStf)) << Reports();
  EXPECT_FALSE(xmatl.IsSimplifiedView());
  EXPECT_TRUE(xmatl.IsSimplifiedReady());
  EXPECT_EQ(Text(*fromStf), Text(*fromMatl));

  // What the lead's command line test relies on, spelled out.
  SCircuit& circuit = *fromStf->GetCircuit();
  ASSERT_EQ(circuit.GetNumberOfLevels(), 3);
  EXPECT_EQ(circuit.GetLevel(1)->GetLevelName(), SString("Oxide"));
  EXPECT_DOUBLE_EQ(circuit.GetLevel(1)->GetErel(), 4.1);
  EXPECT_DOUBLE_EQ(circuit.GetLevel(2)->GetDieElecLoss(), 10.0);
  std::vector<STechLayer*> layers;
  circuit.GetTechLayers(layers);
  ASSERT_EQ(layers.size(), 3u);
  const struct {
    const char* name;
    int type;
    int level;
    int stream;
    const char* material;
  } expected[] = {{"M2", STechLayer::Metal, 0, 2, "TopCopper"},
                  {"M1", STechLayer::Metal, 1, 1, "BottomCopper"},
                  {"V1", STechLayer::Via, 0, 3, "ViaCopper"}};
  for (const auto& row : expected) {
    STechLayer* layer = STechLayer::Find(circuit, row.name);
    ASSERT_NE(layer, nullptr) << row.name;
    EXPECT_EQ(layer->GetLayerType(), row.type) << row.name;
    EXPECT_EQ(layer->GetLevel(), row.level) << row.name;
    EXPECT_TRUE(layer->HasStreamMapping()) << row.name;
    EXPECT_EQ(layer->GetStream(), row.stream) << row.name;
    EXPECT_EQ(layer->GetData(), 0) << row.name;
    EXPECT_EQ(layer->GetMaterialName(), SString(row.material)) << row.name;
  }
  EXPECT_EQ(STechLayer::Find(circuit, "V1")->GetToLevel(), 1);
  SMetalType* top = circuit.FindMetalType("TopCopper");
  ASSERT_NE(top, nullptr);
  EXPECT_DOUBLE_EQ(top->itsConductivity.GetValue(), 5.8e7);
  EXPECT_DOUBLE_EQ(top->itsThickness.GetValue(), 2.0);
}

TEST_F(XmatlProject, AMaterialFileConvertedKeepsItsProcess) {
  SMatl matl;
  ASSERT_TRUE(matl.Read(kTwoMetalMatl)) << Reports();
  SXmatl xmatl;
  ASSERT_TRUE(xmatl.ProcessSMatlToSXmatl(matl)) << Reports();
  const SXmatlData& data = xmatl.GetData();
  ASSERT_EQ(data.diels.size(), 3u);
  // One conductor per metal name; a layer of default values shares the default definition.
  EXPECT_NE(data.FindConductor("TopCopper_COND"), nullptr);
  EXPECT_NE(data.FindConductor("ViaCopper_COND"), nullptr);
  EXPECT_NE(data.FindMesh("Staircase_def"), nullptr);
  EXPECT_EQ(data.diels[0].layers[0].mesh, SString("Staircase_def"));
  EXPECT_EQ(data.vias[0].from, SString("Air"));
  EXPECT_EQ(data.vias[0].to, SString("Oxide"));

  auto fromMatl = NewProject();
  ASSERT_TRUE(matl.SetIntoProject(*fromMatl));
  auto converted = NewProject();
  ASSERT_TRUE(xmatl.SetIntoProject(*converted)) << Reports();
  EXPECT_EQ(Text(*converted), Text(*fromMatl));

  // Written and read again, the converted file is the same process.
  ASSERT_TRUE(xmatl.Write(Path("converted.stf"))) << Reports();
  SXmatl again;
  ASSERT_TRUE(again.Read(Path("converted.stf"))) << Reports();
  QStringList differences;
  EXPECT_TRUE(again.IsSameXmatl(xmatl, &differences)) << differences.join("\n").toStdString();
}

TEST_F(XmatlProject, BlankAndRepeatedDielectricNamesBecomeUnique) {
  const std::string text =
      "DIEL 10 1 1 0 0 0 Unnamed\nDIEL 5 2 1 0 0 0 Oxide\nDIEL 5 3 1 0 0 0 Oxide\nDIEL 5 4 1 0 0 0 Unnamed\n";
  SMatl matl;
  ASSERT_TRUE(matl.Read(WriteFile("names.matl", text))) << Reports();
  SXmatl xmatl;
  ASSERT_TRUE(xmatl.ProcessSMatlToSXmatl(matl)) << Reports();
  std::vector<std::string> names;
  for (const SXmatlDiel& diel : xmatl.GetData().diels) names.push_back(diel.name.data());
  EXPECT_EQ(names, std::vector<std::string>({"Air", "Oxide", "Oxide_1", "Unnamed_3"}));
}

TEST_F(XmatlProject, EveryKindOfLayerReachesTheProject) {
  SXmatl xmatl;
  ASSERT_TRUE(xmatl.Read(kEveryElement)) << Reports();
  auto project = NewProject();
  ASSERT_TRUE(xmatl.SetIntoProject(*project)) << Reports();
  SCircuit& circuit = *project->GetCircuit();
  // Three public dielectric layers and the private one.
  ASSERT_EQ(circuit.GetNumberOfLevels(), 4);
  EXPECT_TRUE(circuit.GetLevel(1)->IsAnisotropic());
  EXPECT_DOUBLE_EQ(circuit.GetLevel(1)->GetValueZ(SLevelData::Erel).GetValue(), 11.6);
  for (const char* name : {"TOPM", "MID", "BR", "VIA1", "VIA2", "HID"})
    EXPECT_NE(STechLayer::Find(circuit, name), nullptr) << name;
  STechLayer* top = STechLayer::Find(circuit, "TOPM");
  EXPECT_EQ(top->GetDXFName(), SString("TOPM_DXF"));
  EXPECT_EQ(top->GetGerberName(), SString("top.gbr"));
  EXPECT_EQ(top->GetStream(), 10);
  EXPECT_EQ(top->GetData(), 2);
  EXPECT_EQ(top->GetFillType(), int(SSubsectionControls::Conformal));
  SMetalType* thick = circuit.FindMetalType("Top");
  ASSERT_NE(thick, nullptr);
  EXPECT_EQ(thick->GetModel(), int(SMetalTypeData::ThickMetal));
  EXPECT_EQ(thick->itsThickDirection, 1);
  // The via to "gnd" ends on the last level; the one of a general conductor is a surface.
  STechLayer* via = STechLayer::Find(circuit, "VIA1");
  EXPECT_EQ(via->GetToLevelType(), int(STechLayer::ToGround));
  SViaMetalType* surface = via == nullptr ? nullptr : STechLayer::Find(circuit, "VIA2")->GetViaMetalType();
  ASSERT_NE(surface, nullptr);
  EXPECT_EQ(surface->itsModel, int(SViaMetalTypeData::Surface));
  EXPECT_EQ(STechLayer::Find(circuit, "VIA2")->GetToLevelType(), int(STechLayer::ToTop));
  // The top cover takes its conductor under the cover's name.
  ASSERT_NE(circuit.GetTopMetal(), nullptr);
  EXPECT_EQ(circuit.GetTopMetal()->GetTypeName(), SString("Top Cover"));
  EXPECT_EQ(circuit.GetBottomMetal()->GetTypeName(), SString("Lossless"));
}

TEST_F(XmatlProject, ALayerThatNamesWhatIsNotDefinedStopsWithItsLine) {
  const struct {
    const char* layer;
    int number;
  } cases[] = {
      {"<metal_techlayer name=\"m\" material=\"Gold\"/>", 20559},
      {"<metal_techlayer name=\"m\" model=\"Thicker\"/>", 20560},
      {"<metal_techlayer name=\"m\" mesh=\"Coarse\"/>", 20562},
      {"<brick_techlayer name=\"b\" material=\"Glass\"/>", 20558},
  };
  for (const auto& test : cases) {
    itsCapture->Clear();
    SXmatl xmatl;
    const std::string text = Document(std::string("<public><materials><dielectric name=\"D\"/></materials><stackup>\n"
                                                  "<diel name=\"A\" dielectric=\"D\">\n") +
                                      test.layer + "</diel></stackup></public>");
    ASSERT_TRUE(xmatl.Read(WriteFile("names.stf", text))) << Reports();
    auto project = NewProject();
    EXPECT_FALSE(xmatl.SetIntoProject(*project)) << test.layer;
    EXPECT_EQ(Errors(), std::vector<int>({test.number})) << test.layer << "\n" << Reports();
    EXPECT_NE(FirstText().find("names.stf, line 5"), std::string::npos) << FirstText();
  }
  SXmatl empty;
  ASSERT_TRUE(empty.Read(WriteFile("empty.stf", Document("<public/>"))));
  auto project = NewProject();
  EXPECT_FALSE(empty.SetIntoProject(*project));
}

}  // namespace
