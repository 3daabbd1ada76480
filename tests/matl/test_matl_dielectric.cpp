#include "MatlTestSupport.h"
#include "SMatlDielectric.h"
#include "SMatlUtil.h"

namespace {

struct DielCase {
  const char* line;
  double thickness, erel, mrel, tane, tanm, cond;
  const char* name;
  int loss;
  int zParts;
  bool anisotropic;
};

const DielCase kGood[] = {
    {"DIEL 10 4.5 1 0.002 0 0 \"Oxide\"", 10, 4.5, 1, 0.002, 0, 0, "Oxide", 0, 0, false},
    {"DIEL 0 1 1 0 0 0 Air Res 3", 0, 1, 1, 0, 0, 0, "Air", 1, 3, false},
    {"diel 2.5e1 11.9 1 0 0 10 \"Si sub\" ShRes 0 Isotropic", 25, 11.9, 1, 0, 0, 10, "Si sub", 3, 0, false},
    {"DIEL 1 3 1 0 0 0 X rpv 2 whatever", 1, 3, 1, 0, 0, 0, "X", 2, 2, false},
    {"DIEL 1 3 1 0 0 0 X Cond 0 Anisotropic 6 2 0.1 0.2 5", 1, 3, 1, 0, 0, 0, "X", 0, 0, true},
};

TEST_F(MatlTest, DielectricLinesReadToTheirFields) {
  for (const DielCase& c : kGood) {
    SMatlDielectric diel;
    ASSERT_TRUE(Read(diel, c.line)) << c.line << " " << FirstText();
    EXPECT_EQ(diel.GetThickness(), c.thickness) << c.line;
    EXPECT_EQ(diel.GetErel(), c.erel) << c.line;
    EXPECT_EQ(diel.GetMuRel(), c.mrel) << c.line;
    EXPECT_EQ(diel.GetDLossTan(), c.tane) << c.line;
    EXPECT_EQ(diel.GetMLossTan(), c.tanm) << c.line;
    EXPECT_EQ(diel.GetDieElecLoss(), c.cond) << c.line;
    EXPECT_EQ(diel.GetLevelName(), SString(c.name)) << c.line;
    EXPECT_EQ(diel.GetLossTypeCode(), c.loss) << c.line;
    EXPECT_EQ(diel.GetNZParts(), c.zParts) << c.line;
    EXPECT_EQ(diel.IsAnisotropic(), c.anisotropic) << c.line;
    EXPECT_FALSE(diel.HasLevel());
    ExpectRoundTrip(diel);
  }
  EXPECT_TRUE(Errors().empty());
}

TEST_F(MatlTest, AnisotropicDielectricKeepsItsZValues) {
  SMatlDielectric diel;
  ASSERT_TRUE(Read(diel, "DIEL 1 3 1 0 0 0 X Cond 0 Anisotropic 6 2 0.1 0.2 5"));
  EXPECT_EQ(diel.GetValueZ(SLevelData::Erel).GetValue(), 6);
  EXPECT_EQ(diel.GetValueZ(SLevelData::MuRel).GetValue(), 2);
  EXPECT_EQ(diel.GetValueZ(SLevelData::DLossTan).GetValue(), 0.1);
  EXPECT_EQ(diel.GetValueZ(SLevelData::MLossTan).GetValue(), 0.2);
  EXPECT_EQ(diel.GetValueZ(SLevelData::DieElecLoss).GetValue(), 5);
}

TEST_F(MatlTest, DielectricEndingAfterItsNameIsIsotropicCond) {
  SMatlDielectric diel;
  diel.SetLossType(3);
  ASSERT_TRUE(Read(diel, "DIEL 5 2 1 0 0 0 Top ; a comment"));
  EXPECT_EQ(diel.GetLossTypeCode(), 3) << "an optional field that is absent keeps its value";
  SMatlDielectric fresh;
  ASSERT_TRUE(Read(fresh, "DIEL 5 2 1 0 0 0 Top"));
  EXPECT_EQ(fresh.GetLossTypeCode(), 0);
  EXPECT_FALSE(fresh.IsAnisotropic());
  EXPECT_EQ(fresh.GetNZParts(), 0);
}

struct BadCase {
  const char* line;
  int message;
};

const BadCase kBad[] = {
    {"DIEL", 20053},
    {"DIEL x 1 1 0 0 0 A", 20009},
    {"DIEL -1 1 1 0 0 0 A", 20148},
    {"DIEL 1 0 1 0 0 0 A", 20149},
    {"DIEL 1 1 nan 0 0 0 A", 20003},
    {"DIEL 1 1 0 0 0 0 A", 20150},
    {"DIEL 1 1 1 -0.1 0 0 A", 20151},
    {"DIEL 1 1 1 0 -1 0 A", 20152},
    {"DIEL 1 1 1 0 0 -5 A", 20153},
    {"DIEL 1 1 1 0 0 inf A", 20002},
    {"DIEL 1 1 1 0 0 0", 20147},
    {"DIEL 1 1 1 0 0 0 a=b", 20154},
    {"DIEL 1 1 1 0 0 0 A Lossy", 20156},
    {"DIEL 1 1 1 0 0 0 A Cond 1.5", 20114},
    {"DIEL 1 1 1 0 0 0 A Cond -1", 20157},
    {"DIEL 1 1 1 0 0 0 A Cond 0 Anisotropic 0", 20158},
    {"DIEL 1 1 1 0 0 0 A Cond 0 Anisotropic 1 x", 20110},
    {"DIEL 1 1 1 0 0 0 A Cond 0 Anisotropic 1 1 0 0 -2", 20162},
};

TEST_F(MatlTest, BadDielectricLinesFailWithTheirMessage) {
  for (const BadCase& c : kBad) {
    itsCapture->Clear();
    SMatlDielectric diel;
    EXPECT_FALSE(Read(diel, c.line)) << c.line;
    EXPECT_EQ(Errors(), std::vector<int>{c.message}) << c.line;
  }
}

TEST_F(MatlTest, LineMessagesNameFileLineAndText) {
  SMatlDielectric diel;
  EXPECT_FALSE(Read(diel, "DIEL 1 0 1 0 0 0 A"));
  const std::string text = FirstText();
  EXPECT_NE(text.find("stack.matl, line 1"), std::string::npos) << text;
  EXPECT_NE(text.find("DIEL 1 0 1 0 0 0 A"), std::string::npos) << text;
}

TEST_F(MatlTest, DielectricScalesByDimensionAndLossType) {
  SMatlDielectric diel;
  ASSERT_TRUE(Read(diel, "DIEL 10 4 1 0 0 2 A Res"));
  diel.Scale(SMatlUtil::Length, 0.001);
  diel.Scale(SMatlUtil::Conductivity, 100);
  EXPECT_DOUBLE_EQ(diel.GetThickness(), 0.01);
  EXPECT_EQ(diel.GetDieElecLoss(), 2) << "a resistive loss isn't a conductivity";
  diel.Scale(SMatlUtil::Resistivity, 100);
  EXPECT_EQ(diel.GetDieElecLoss(), 200);
}

TEST_F(MatlTest, TruncatedConductivityIsWrittenWithFourDigits) {
  SMatlDielectric diel;
  ASSERT_TRUE(Read(diel, "DIEL 1 4 1 0 0 58123400 A"));
  diel.SetTruncateConductivity(true);
  EXPECT_NE(Written(diel).find(" 5.812e+07 "), std::string::npos) << Written(diel);
}

}  // namespace
