#include "MatlTestSupport.h"
#include "SMatlDielectric.h"
#include "SMatlMetalMaterial.h"
#include "SMatlValidation.h"
#include "SMatlViaDrawLayer.h"

namespace {

TEST_F(MatlTest, DielectricFoundWrongAfterReadingIsReportedByName) {
  const SMatlValidation& rules = SMatlValidation::Instance();
  SMatlDielectric diel;
  diel.SetLevelName("");
  EXPECT_TRUE(rules.Validate(diel));
  EXPECT_EQ(diel.GetLevelName(), SString("Unnamed"));
  EXPECT_EQ(Warnings(), std::vector<int>{20105});
  const std::pair<int, int> values[] = {{SLevelData::Thickness, 20027}, {SLevelData::Erel, 20031},
                                        {SLevelData::MuRel, 20032},     {SLevelData::DLossTan, 20033},
                                        {SLevelData::MLossTan, 20034},  {SLevelData::DieElecLoss, 20030}};
  for (const auto& v : values) {
    itsCapture->Clear();
    SMatlDielectric wrong;
    wrong.Value(v.first).SetValue(-1);
    EXPECT_FALSE(rules.Validate(wrong)) << v.first;
    EXPECT_EQ(Errors(), std::vector<int>{v.second}) << v.first;
    EXPECT_NE(FirstText().find("Unnamed"), std::string::npos);
  }
}

TEST_F(MatlTest, UnnamedMetalWarnsAndStays) {
  const SMatlValidation& rules = SMatlValidation::Instance();
  SMatlMetalMaterial metal;
  metal.SetMetalType(SMatlMetalData::General);
  EXPECT_TRUE(rules.ValidateMetal(metal, SString(), 0, false));
  EXPECT_EQ(metal.GetMetalName(), SString("Unnamed"));
  EXPECT_EQ(Warnings(), std::vector<int>{20074});
  itsCapture->Clear();
  metal.SetMetalName("Cu&Ni");
  EXPECT_FALSE(rules.ValidateMetal(metal, SString(), 0, false));
  EXPECT_EQ(Errors(), std::vector<int>{20035});
}

TEST_F(MatlTest, ValueRulesOfTheValidation) {
  const SMatlValidation& rules = SMatlValidation::Instance();
  EXPECT_TRUE(rules.ValidateToLevel("top", "V"));
  EXPECT_TRUE(rules.ValidateToLevel("GND", "V"));
  EXPECT_FALSE(rules.ValidateToLevel("-1", "V"));
  EXPECT_TRUE(rules.IsValidNumSheets(1, SMatlMetalData::RoughMetal));
  EXPECT_FALSE(rules.IsValidNumSheets(1, SMatlMetalData::Normal));
  EXPECT_TRUE(rules.ValidateMetalThickness(0, SMatlMetalData::Normal, true, "M"));
  EXPECT_FALSE(rules.ValidateMetalThickness(0, SMatlMetalData::Normal, false, "M"));
  EXPECT_TRUE(rules.ValidateMetalThickness(0, SMatlMetalData::Resistor, false, "M"));
  EXPECT_FALSE(rules.ValidateViaConductivity(0, false, "V"));
  EXPECT_TRUE(rules.ValidateViaConductivity(0, true, "V"));
  EXPECT_EQ(Errors(), (std::vector<int>{20082, 20094, 20101}));
  itsCapture->Clear();
  EXPECT_FALSE(rules.ValidateMeshLimit("XMax", 0, "M1"));
  EXPECT_FALSE(rules.ValidateEdgeMesh("EdgeMeshMaybe"));
  EXPECT_FALSE(rules.ValidateWallThickness(-1, "V1"));
  EXPECT_FALSE(rules.ValidateOutput(nullptr));
  ASSERT_EQ(itsCapture->Entries().size(), 4u);
  EXPECT_EQ(itsCapture->Entries()[0].text,
            SString("Invalid XMax value for M1.\n\nXMax value must be a number greater or equal to 1.\n\nUnable to continue."));
  EXPECT_NE(std::string(itsCapture->Entries()[1].text.data()).find("found \"EdgeMeshMaybe\""), std::string::npos);
  EXPECT_TRUE(rules.ValidateSubstrateName("Si"));
  EXPECT_FALSE(rules.ValidateSubstrateName(""));
  EXPECT_FALSE(rules.ValidateSubstrateName("S!"));
}

TEST_F(MatlTest, ArrayViaNeedsFillFactorAndDensity) {
  const SMatlValidation& rules = SMatlValidation::Instance();
  SMatlViaDrawLayer via;
  via.SetLayerName("V1");
  via.SetMetalName("W");
  via.SetViaType(SMatlViaDrawLayer::Array);
  via.SetConductivityInfinite(true);
  EXPECT_TRUE(rules.Validate(via));
  via.itsViaDensity.SetValue(0);
  EXPECT_FALSE(rules.Validate(via));
  EXPECT_EQ(Errors(), std::vector<int>{20122});
}

}  // namespace
