#include "MatlTestSupport.h"
#include "SMatlMetalDrawLayer.h"
#include "SMatlViaDrawLayer.h"
#include "SMatlMetalMaterial.h"
#include "SMatlUtil.h"

namespace {

const char kFullMetal[] =
    "METAL M1 0.1 0 0 0 0 3 \"Copper\" 1 Normal 5.8e7 2 0.5 2 Diagonal 2 50 3 60 EdgeMeshOff Thick 0 0 Cond";

TEST_F(MatlTest, FullMetalLineReadsEveryField) {
  SMatlMetalDrawLayer metal;
  ASSERT_TRUE(Read(metal, kFullMetal)) << FirstText();
  EXPECT_EQ(metal.GetLayerName(), SString("M1"));
  EXPECT_EQ(metal.itsGrowth.GetValue(), 0.1);
  EXPECT_EQ(metal.GetPattern(), 3);
  EXPECT_EQ(metal.GetMetalName(), SString("Copper"));
  EXPECT_EQ(metal.GetLevelNumber(), 1);
  EXPECT_EQ(metal.GetMetalType(), SMatlMetalData::Normal);
  EXPECT_EQ(metal.itsConductivity.GetValue(), 5.8e7);
  EXPECT_FALSE(metal.IsConductivityInfinite());
  EXPECT_EQ(metal.itsThickness.GetValue(), 2);
  EXPECT_EQ(metal.itsCurrentRatio.GetValue(), 0.5);
  EXPECT_EQ(metal.GetFillType(), SMatlMetalData::Diagonal);
  EXPECT_EQ(metal.GetXMin(), 2);
  EXPECT_EQ(metal.GetXMax(), 50);
  EXPECT_EQ(metal.GetYMin(), 3);
  EXPECT_EQ(metal.GetYMax(), 60);
  EXPECT_FALSE(metal.GetEdgeMesh());
  EXPECT_EQ(metal.GetCrossSection(), SMatlMetalData::Thin) << "a normal metal's cross section is reset";
  ExpectRoundTrip(metal);
}

struct MetalCase {
  const char* line;
  int type;
  int levelType;
  int level;
  bool infinite;
  double thickness;
};

// Lines that end after the metal type keep the defaults of the rest.
const MetalCase kMetals[] = {
    {"METAL M1 0 0 0 0 0 0 Cu 0 normal INF", SMatlMetalData::Normal, 0, 0, true, 0},
    {"METAL M1 0 0 0 0 0 0 Cu gnd Resistor", SMatlMetalData::Resistor, 2, 1, true, 0},
    {"METAL M1 0 0 0 0 0 0 Cu TOP General", SMatlMetalData::General, 0, 0, true, 0},
    {"METAL M1 0 0 0 0 0 0 Cu 1 ThickMetalModel 3e7 4 0 3", SMatlMetalData::ThickMetalModel, 0, 1, false, 4},
    {"METAL M1 0 0 0 0 0 0 Cu 1 RoughMetal inf 1 0 1", SMatlMetalData::RoughMetal, 0, 1, true, 1},
    {"METAL M1 0 0 0 0 0 0 Cu 1 Normal Inf -3", SMatlMetalData::Normal, 0, 1, true, 0},
};

TEST_F(MatlTest, MetalLinesReadTypesLevelsAndInfinity) {
  for (const MetalCase& c : kMetals) {
    SMatlMetalDrawLayer metal;
    ASSERT_TRUE(Read(metal, c.line)) << c.line << " " << FirstText();
    EXPECT_EQ(metal.GetMetalType(), c.type) << c.line;
    EXPECT_EQ(metal.GetLevel().GetType(), c.levelType) << c.line;
    EXPECT_EQ(metal.GetLevelNumber(), c.level) << c.line;
    EXPECT_EQ(metal.IsConductivityInfinite(), c.infinite) << c.line;
    if (c.infinite) {
      EXPECT_EQ(metal.itsConductivity.GetValue(), 1e50) << c.line;
    }
    EXPECT_EQ(metal.itsThickness.GetValue(), c.thickness) << c.line;
    ExpectRoundTrip(metal);
  }
}

TEST_F(MatlTest, GroundLevelIsStoredAsGnd) {
  SMatlMetalDrawLayer metal;
  ASSERT_TRUE(Read(metal, "METAL M1 0 0 0 0 0 0 Cu gNd Normal INF"));
  EXPECT_EQ(metal.GetLevel().GetText(), SString("GND"));
  EXPECT_NE(Written(metal).find("\"GND\""), std::string::npos);
}

TEST_F(MatlTest, NegativeThicknessOfAnInfiniteNormalMetalWarnsAndBecomesZero) {
  SMatlMetalDrawLayer metal;
  ASSERT_TRUE(Read(metal, "METAL M1 0 0 0 0 0 0 Cu 1 Normal INF -3"));
  EXPECT_EQ(Warnings(), std::vector<int>{20107});
}

TEST_F(MatlTest, RoughMetalWithoutConductivityTakesCopperButStillNeedsAThickness) {
  SMatlMetalDrawLayer metal;
  // The line ends before the conductivity: copper's, with a warning, and then the thickness
  // a rough metal can't do without is missing.
  EXPECT_FALSE(Read(metal, "METAL M1 0 0 0 0 0 0 Cu 1 RoughMetal"));
  EXPECT_EQ(metal.itsConductivity.GetValue(), 5.8e7);
  EXPECT_EQ(Warnings(), std::vector<int>{20103});
  EXPECT_EQ(Errors(), std::vector<int>{20145});
  // A lossy volume via alike; an infinite normal metal, or a surface via, may end there.
  SMatlViaDrawLayer via;
  EXPECT_FALSE(Read(via, "VIA V1 0 0 0 0 0 5 W 0 1 Volume 5e7"));
  SMatlMetalDrawLayer infinite;
  EXPECT_TRUE(Read(infinite, "METAL M1 0 0 0 0 0 0 Cu 1 Normal INF"));
  SMatlViaDrawLayer surface;
  EXPECT_TRUE(Read(surface, "VIA V1 0 0 0 0 0 5 W 0 1 Surface 5e7"));
}

TEST_F(MatlTest, NumberOfSheetsOneOnlyOnRoughMetal) {
  SMatlMetalDrawLayer rough;
  EXPECT_TRUE(Read(rough, "METAL M1 0 0 0 0 0 0 Cu 1 RoughMetal 5e7 1 0 1"));
  EXPECT_EQ(rough.GetNumSheets(), 2) << "a rough metal's sheets are reset after the line";
  SMatlMetalDrawLayer thick;
  EXPECT_FALSE(Read(thick, "METAL M1 0 0 0 0 0 0 Cu 1 ThickMetalModel 5e7 1 0 1"));
  EXPECT_EQ(Errors(), std::vector<int>{20172});
}

struct BadMetal {
  const char* line;
  int message;
};

const BadMetal kBadMetals[] = {
    {"METAL", 20048},
    {"METAL \"M 1\" 0 0 0 0 0 0 Cu 1 Normal", 20047},
    {"METAL M1 x", 20010},
    {"METAL M1 0 0 0 0 0 -1 Cu 1 Normal", 20140},
    {"METAL M1 0 0 0 0 0 0 C=u 1 Normal", 20015},
    {"METAL M1 0 0 0 0 0 0 Cu -1 Normal", 20142},
    {"METAL M1 0 0 0 0 0 0 Cu 1", 20143},
    {"METAL M1 0 0 0 0 0 0 Cu 1 Copper", 20144},
    {"METAL M1 0 0 0 0 0 0 Cu 1 Normal abc", 20042},
    {"METAL M1 0 0 0 0 0 0 Cu 1 Normal -1", 20040},
    {"METAL M1 0 0 0 0 0 0 Cu 1 RoughMetal 0", 20043},
    {"METAL M1 0 0 0 0 0 0 Cu 1 Normal 5e7 0", 20041},
    {"METAL M1 0 0 0 0 0 0 Cu 1 ThickMetalModel INF 0", 20041},
    {"METAL M1 0 0 0 0 0 0 Cu 1 Normal 5e7 1 -1", 20170},
    {"METAL M1 0 0 0 0 0 0 Cu 1 Normal 5e7 1 0 2 Wavy", 20184},
    {"METAL M1 0 0 0 0 0 0 Cu 1 Normal 5e7 1 0 2 Default 0", 20186},
    {"METAL M1 0 0 0 0 0 0 Cu 1 Normal 5e7 1 0 2 Default 1 100 1 100 Maybe", 20193},
    {"METAL M1 0 0 0 0 0 0 Cu 1 Normal 5e7 1 0 2 Default 1 100 1 100 EdgeMeshOn Fat", 20180},
    {"METAL M1 0 0 0 0 0 0 Cu 1 Normal 5e7 1 0 2 Default 1 100 1 100 EdgeMeshOn Thin 0 -1", 20183},
    {"METAL M1 0 0 0 0 0 0 Cu 1 Normal 5e7 1 0 2 Default 1 100 1 100 EdgeMeshOn Thin 0 0 Loss", 20177},
};

TEST_F(MatlTest, BadMetalLinesFailWithTheirMessage) {
  for (const BadMetal& c : kBadMetals) {
    itsCapture->Clear();
    SMatlMetalDrawLayer metal;
    EXPECT_FALSE(Read(metal, c.line)) << c.line;
    EXPECT_EQ(Errors(), std::vector<int>{c.message}) << c.line;
  }
}

TEST_F(MatlTest, MetalBeforeAnyDielectricFails) {
  itsOwner.itsDielectrics = 0;
  SMatlMetalDrawLayer metal;
  EXPECT_FALSE(Read(metal, "METAL M1 0 0 0 0 0 0 Cu 1 Normal INF"));
  EXPECT_EQ(Errors(), std::vector<int>{20026});
}

TEST_F(MatlTest, UnusedPropertiesGoBackByMetalType) {
  SMatlMetalDrawLayer resistor;
  ASSERT_TRUE(Read(resistor, "METAL M1 0 5 6 7 8 0 R 1 Resistor 3e7 2 0.5 3 Default 1 100 1 100 EdgeMeshOn Thick 1 1 Res"));
  EXPECT_EQ(resistor.itsRdc.GetValue(), 5);
  EXPECT_EQ(resistor.itsRrf.GetValue(), 0);
  EXPECT_EQ(resistor.itsLs.GetValue(), 0);
  EXPECT_TRUE(resistor.IsConductivityInfinite());
  EXPECT_EQ(resistor.itsThickness.GetValue(), 0);
  EXPECT_EQ(resistor.GetCrossSection(), SMatlMetalData::Thin);
  EXPECT_EQ(resistor.GetLossType(), SMatlMetalData::Cond);
  SMatlMetalDrawLayer sense;
  ASSERT_TRUE(Read(sense, "METAL M1 0 5 6 7 8 0 R 1 SenseMetal"));
  EXPECT_EQ(sense.itsXdc.GetValue(), 7);
  EXPECT_EQ(sense.itsRdc.GetValue(), 0);
  sense.SetMetalType(99);
  EXPECT_FALSE(sense.SetUnusedToDefault());
}

TEST_F(MatlTest, SwappedRangesAreOrdered) {
  SMatlMetalDrawLayer metal;
  metal.SetXRange(80, 5);
  metal.SetYRange(2, 3);
  metal.OrderRanges();
  EXPECT_EQ(metal.GetXMin(), 5);
  EXPECT_EQ(metal.GetXMax(), 80);
  EXPECT_EQ(metal.GetYMin(), 2);
}

TEST_F(MatlTest, MetalScalesLengthsAndItsConductivity) {
  SMatlMetalDrawLayer metal;
  ASSERT_TRUE(Read(metal, kFullMetal));
  metal.Scale(SMatlUtil::Length, 1000);
  metal.Scale(SMatlUtil::Conductivity, 0.01);
  EXPECT_EQ(metal.itsThickness.GetValue(), 2000);
  EXPECT_DOUBLE_EQ(metal.itsConductivity.GetValue(), 5.8e5);
}

TEST_F(MatlTest, MaterialLinesReadAndWriteBack) {
  SMatlMetalMaterial gold;
  ASSERT_TRUE(Read(gold, "MATERIAL \"Gold plate\" 0 0 0 0 4 RoughMetal 4.1e7 3 0 2 Thick 0.5 0.2 Cond")) << FirstText();
  EXPECT_EQ(gold.GetMetalName(), SString("Gold plate"));
  EXPECT_EQ(gold.GetPattern(), 4);
  EXPECT_EQ(gold.GetCrossSection(), SMatlMetalData::Thick);
  EXPECT_EQ(gold.itsTopRoughness.GetValue(), 0.5);
  EXPECT_EQ(gold.GetName(), SString("Gold plate"));
  ExpectRoundTrip(gold);
  SMatlMetalMaterial general;
  ASSERT_TRUE(Read(general, "MATERIAL G 1 2 3 4 0 General"));
  ExpectRoundTrip(general);
}

TEST_F(MatlTest, MaterialLinesFailOnMissingLossValuesAndRestrictedNames) {
  const BadMetal cases[] = {{"MATERIAL A", 20051},         {"MATERIAL A 1", 20052},
                            {"MATERIAL A 1 2", 20054},     {"MATERIAL A 1 2 3", 20139},
                            {"MATERIAL Lossless 0 0 0 0 0 Normal", 20015},
                            {"MATERIAL \"wg load\" 0 0 0 0 0 Normal", 20015}};
  for (const BadMetal& c : cases) {
    itsCapture->Clear();
    SMatlMetalMaterial material;
    EXPECT_FALSE(Read(material, c.line)) << c.line;
    EXPECT_EQ(Errors(), std::vector<int>{c.message}) << c.line;
  }
  itsOwner.itsFileName = "stack.txt";
  SMatlMetalMaterial free;
  EXPECT_TRUE(Read(free, "MATERIAL \"Free Space\" 0 0 0 0 0 Normal INF")) << "restricted only in .matl files";
}

TEST_F(MatlTest, DrawLayerBecomesMaterialWithItsLayerName) {
  SMatlMetalDrawLayer metal;
  ASSERT_TRUE(Read(metal, kFullMetal));
  SMatlMetalMaterial material(metal);
  EXPECT_EQ(material.GetLayerName(), SString("M1"));
  EXPECT_TRUE(material.IsSameMetal(metal));
  EXPECT_FALSE(material.IsEqual(metal));
}

}  // namespace
