// A whole technology file: every element read into its entry, the written document, and a
// written file read back as the same process.

#include "test_xmatl_support.h"

#include "SMatlViaDrawLayer.h"

namespace {

const char* const kEveryElement = GDS_SOURCE_DIR "/tests/matl/data/every_element.stf";
const char* const kExpected = GDS_SOURCE_DIR "/tests/matl/expected/every_element.stf";

class XmatlFile : public XmatlTest {};

TEST_F(XmatlFile, EveryElementIsRead) {
  SXmatl xmatl;
  ASSERT_TRUE(xmatl.Read(kEveryElement)) << Reports();
  const SXmatlData& data = xmatl.GetData();
  EXPECT_EQ(data.version, SString("1.2"));
  EXPECT_TRUE(xmatl.HasPrivate());
  ASSERT_EQ(data.sources.size(), 2u);
  EXPECT_EQ(data.sources[0].second, SString("Example Fab"));
  // Units as the names of the material file; comments lose their leaders.
  EXPECT_EQ(xmatl.GetUnits().GetCurrentName(SMatlUtil::Length), SString("mm"));
  EXPECT_EQ(xmatl.GetUnits().GetCurrentName(SMatlUtil::Conductivity), SString("S/cm"));
  EXPECT_EQ(xmatl.GetUnits().GetCurrentName(SMatlUtil::SheetResistance), SString("mOhms/sq"));
  EXPECT_EQ(xmatl.GetUnits().GetCurrentName(SMatlUtil::Temperature), SString("K"));
  ASSERT_EQ(xmatl.GetComments().GetCount(), 2);
  EXPECT_EQ(xmatl.GetComments().GetLines()[0], SString("A process with every kind of entry"));
  EXPECT_EQ(xmatl.GetComments().GetLines()[1], SString("second line & more"));

  // Private variables aren't read: "private" holds no "variables".
  ASSERT_EQ(data.variables.size(), 5u);
  EXPECT_EQ(data.variables[0].units, SString("LENG"));
  EXPECT_EQ(data.variables[1].value, SString("w*2"));
  EXPECT_TRUE(data.variables[4].units.isEmpty());

  // Each condspec kind with its values; the private one flagged.
  ASSERT_EQ(data.conductors.size(), 11u);
  const struct {
    const char* name;
    int kind;
    int lossType;
  } kinds[] = {{"Cu", SXmatlCond::Cond, 0},        {"Res", SXmatlCond::Rsvy, 1},  {"Sheet", SXmatlCond::ShRes, 3},
               {"PerVia", SXmatlCond::Rpv, 2},     {"R50", SXmatlCond::Res, 0},   {"Rf", SXmatlCond::RdcRrf, 0},
               {"Gen", SXmatlCond::General, 0},    {"Sense", SXmatlCond::Sense, 0}, {"Skin", SXmatlCond::Surface, 0},
               {"Secret", SXmatlCond::Cond, 0}};
  for (const auto& row : kinds) {
    const SXmatlCond* conductor = data.FindConductor(row.name);
    ASSERT_NE(conductor, nullptr) << row.name;
    EXPECT_EQ(conductor->GetKind(), row.kind) << row.name;
    EXPECT_EQ(conductor->GetLossType().GetCode(), row.lossType) << row.name;
    EXPECT_EQ(conductor->IsPrivate(), SString(row.name) == "Secret") << row.name;
  }
  EXPECT_TRUE(data.FindConductor("Pec")->itsCondIsInf);
  EXPECT_DOUBLE_EQ(data.FindConductor("Res")->itsConductivity.GetValue(), 1.7e-8);
  EXPECT_DOUBLE_EQ(data.FindConductor("Gen")->itsLs.GetValue(), 4.0);

  // "xy" sets the plane, "z" its axis; unnamed values keep their defaults.
  const SXmatlDielMatl* sapphire = data.FindDielectric("Sapphire");
  ASSERT_NE(sapphire, nullptr);
  EXPECT_TRUE(sapphire->anisotropic && sapphire->resistivity);
  EXPECT_TRUE(sapphire->has[SXmatlDielMatl::ParamsXY] && sapphire->has[SXmatlDielMatl::ParamsZ]);
  EXPECT_DOUBLE_EQ(sapphire->axis[SXmatlDielMatl::Y].erel, 9.4);
  EXPECT_DOUBLE_EQ(sapphire->axis[SXmatlDielMatl::Z].cond, 2e14);
  const SXmatlDielMatl* crystal = data.FindDielectric("Crystal");
  ASSERT_NE(crystal, nullptr);
  EXPECT_TRUE(crystal->axis[SXmatlDielMatl::X].condInf);
  EXPECT_DOUBLE_EQ(crystal->axis[SXmatlDielMatl::Y].mrel, 1.0);
  EXPECT_DOUBLE_EQ(crystal->axis[SXmatlDielMatl::Z].cond, 0.5);
  EXPECT_FALSE(crystal->resistivity);
  EXPECT_EQ(data.dielectrics.size(), 4u);

  ASSERT_EQ(data.meshes.size(), 3u);
  EXPECT_EQ(data.meshes[0].isoType, SString("X Only"));
  EXPECT_TRUE(data.meshes[0].useMaxLength);
  EXPECT_FALSE(data.meshes[0].edgeMesh);
  EXPECT_EQ(data.meshes[2].fillType, int(SMatlViaDrawLayer::Ring));
  EXPECT_TRUE(data.meshes[2].pads);
  ASSERT_EQ(data.metalModels.size(), 7u);
  EXPECT_EQ(data.metalModels[1].numSheets, 3);
  EXPECT_TRUE(data.metalModels[2].thick);
  ASSERT_EQ(data.viaModels.size(), 4u);
  EXPECT_TRUE(data.viaModels[1].solid);
  EXPECT_DOUBLE_EQ(data.viaModels[3].viaDensity, 2.0);
  ASSERT_EQ(data.biases.size(), 2u);
  EXPECT_EQ(data.biases[0].lookup, SString("lookup_table"));
  EXPECT_EQ(data.biases[0].attributes.size(), 2u);

  // The stackup, top first; the private layer last; ignored layers leave nothing.
  EXPECT_EQ(data.top.material, SString("Cu"));
  EXPECT_EQ(data.bottom.model, SString("Default"));
  ASSERT_EQ(data.diels.size(), 4u);
  ASSERT_EQ(data.diels[0].layers.size(), 2u);
  const SXmatlLayer& top = data.diels[0].layers[0];
  EXPECT_TRUE(top.down);
  EXPECT_EQ(top.map.gdsStream, 10);
  EXPECT_EQ(top.map.gdsDatatype, 2);
  EXPECT_EQ(top.map.mask, SString("m1"));
  EXPECT_EQ(data.diels[0].layers[1].kind, int(SXmatlLayer::Brick));
  EXPECT_TRUE(data.diels[1].conformal);
  EXPECT_DOUBLE_EQ(data.diels[1].bottomwallThickness, 0.03);
  EXPECT_TRUE(data.diels[3].isPrivate);
  ASSERT_EQ(data.vias.size(), 2u);
  EXPECT_EQ(data.vias[0].to, SString("gnd"));
  EXPECT_EQ(data.vias[0].map.gdsStream, -1);
  // A "diel_map" in "public" isn't read.
  ASSERT_EQ(data.dielMaps.size(), 1u);
  EXPECT_EQ(data.dielMaps[0].privateDiels, QStringList({"SecretDiel", "Other", "Third"}));
}

TEST_F(XmatlFile, WrittenFileIsTheExpectedDocumentAndReadsBackTheSame) {
  SXmatl xmatl;
  ASSERT_TRUE(xmatl.Read(kEveryElement)) << Reports();
  const SString written = Path("every_element.stf");
  ASSERT_TRUE(xmatl.Write(written)) << Reports();
  EXPECT_EQ(ReadText(written), ReadText(kExpected));

  SXmatl again;
  ASSERT_TRUE(again.Read(written)) << Reports();
  QStringList differences;
  EXPECT_TRUE(again.IsSameXmatl(xmatl, &differences)) << differences.join("\n").toStdString();
  EXPECT_TRUE(xmatl.IsEqual(again));
  const SString twice = Path("twice.stf");
  ASSERT_TRUE(again.Write(twice));
  EXPECT_EQ(ReadText(twice), ReadText(written));
  EXPECT_TRUE(itsCapture->Numbers(SMatlReporting::Error).empty()) << Reports();
}

TEST_F(XmatlFile, PrivateContentWrittenPlainReadsBackEqual) {
  SXmatl xmatl;
  ASSERT_TRUE(xmatl.Read(kEveryElement)) << Reports();
  const std::string text = WrittenText(xmatl);
  const size_t open = text.find("<private>");
  ASSERT_NE(open, std::string::npos);
  // Everything private is inside the block, and nothing of it before.
  for (const char* name : {"Secret", "SecretDiel", "bias_defs", "Deep", "map1"}) {
    EXPECT_GT(text.find(name), open) << name;
  }
  SXmatl again;
  ASSERT_TRUE(again.Read(WriteFile("plain.stf", text))) << Reports();
  EXPECT_TRUE(again.HasPrivate());
  QStringList differences;
  EXPECT_TRUE(again.IsSameXmatl(xmatl, &differences)) << differences.join("\n").toStdString();

  // Without private content on one side the private blocks aren't compared.
  SXmatl publicOnly;
  publicOnly.Clone(xmatl);
  publicOnly.SetHasPrivate(false);
  publicOnly.Data().biases.clear();
  EXPECT_TRUE(publicOnly.IsSameXmatl(xmatl));
}

TEST_F(XmatlFile, DifferencesAreReportedInTheirWords) {
  SXmatl xmatl;
  ASSERT_TRUE(xmatl.Read(kEveryElement)) << Reports();
  const struct {
    void (*change)(SXmatlData&);
    const char* line;
  } cases[] = {
      {[](SXmatlData& d) { d.conductors[0].SetKind(SXmatlCond::Rsvy); },
       "# Public Stored Conductor Materials: Conductor material types do not match"},
      {[](SXmatlData& d) { d.conductors[0].SetName("Other"); },
       "# Public Stored Conductor Materials: Could not find matching conductor material"},
      {[](SXmatlData& d) { d.conductors.pop_back(); },
       "# Private Stored Conductor Materials: Number of Private conductor materials does not match."},
      {[](SXmatlData& d) { d.dielectrics[0].has[SXmatlDielMatl::ParamsX] = true; },
       "# Public Store Dielectric Materials: Dielectric materials Has X boolean does not match"},
      {[](SXmatlData& d) { d.dielectrics[1].anisotropic = false; },
       "# Public Store Dielectric Materials: Dielectric materials Is Anisotropic boolean does not match"},
      {[](SXmatlData& d) { d.dielectrics.erase(d.dielectrics.begin()); },
       "# Public Store Dielectric Materials: Number of Public dielectric materials does not match."},
      {[](SXmatlData& d) { d.dielectrics[0].name = "Elsewhere"; },
       "# Public Store Dielectric Materials: Could not find matching dielectric material"},
      {[](SXmatlData& d) { d.dielectrics.back().axis[0].erel = 8; },
       "# Private Store Dielectric Materials: Dielectric material values do not match."},
      {[](SXmatlData& d) { d.variables.pop_back(); }, "# public variables: Number of public variables do not match."},
      {[](SXmatlData& d) { d.diels.pop_back(); }, "MAXLEVELS: Max Dielectric level values do not match."},
  };
  for (const auto& test : cases) {
    SXmatl changed;
    changed.Clone(xmatl);
    test.change(changed.Data());
    QStringList report;
    EXPECT_FALSE(changed.IsSameXmatl(xmatl, &report)) << test.line;
    EXPECT_TRUE(report.contains(test.line)) << test.line << "\n" << report.join("\n").toStdString();
  }
}

TEST_F(XmatlFile, UnitsConvertOnWritingWithTheValuesOnlyATechnologyFileHolds) {
  SXmatl xmatl;
  ASSERT_TRUE(xmatl.Read(GDS_SOURCE_DIR "/tests/matl/data/two_metal.stf")) << Reports();
  // The values are wanted in millimetres and S/cm: the current units.
  xmatl.Units().SetCurrent(SMatlUtil::Length, 3);
  xmatl.Units().SetCurrent(SMatlUtil::Conductivity, 1);
  const std::string text = WrittenText(xmatl);
  EXPECT_NE(text.find("lunit=\"mm\""), std::string::npos) << text;
  EXPECT_NE(text.find("cunit=\"S/cm\""), std::string::npos);
  const SXmatlData& data = xmatl.GetData();
  const double length = SMatlUtil::ConversionFactor(SMatlUtil::Length, 0, 3);
  const double conductivity = SMatlUtil::ConversionFactor(SMatlUtil::Conductivity, 0, 1);
  EXPECT_DOUBLE_EQ(length, 1e-3);
  EXPECT_DOUBLE_EQ(data.diels[0].thickness, 50 * length);
  EXPECT_DOUBLE_EQ(data.diels[0].layers[0].thickness, 2 * length);
  EXPECT_DOUBLE_EQ(data.viaModels[0].wallThickness, 0.5 * length);
  EXPECT_DOUBLE_EQ(data.conductors[0].itsConductivity.GetValue(), 5.8e7 * conductivity);
  EXPECT_DOUBLE_EQ(data.FindDielectric("Silicon")->axis[0].cond, 10 * conductivity);
}

}  // namespace
