#include "MatlTestSupport.h"
#include "SMatlBrick.h"
#include "SMatlColor.h"
#include "SMatlComment.h"
#include "SMatlDielectric.h"
#include "SMatlTechLayer.h"
#include "SMatlTechLayerFastOpt.h"
#include "SMatlValidation.h"
#include "SMatlVariable.h"

namespace {

TEST_F(MatlTest, TechLayerLinesTakeTheirSubkindFromTheKeyword) {
  SMatlTechLayer gds;
  ASSERT_TRUE(Read(gds, "GDSLAYER M1 31 2"));
  EXPECT_EQ(gds.GetSubKind(), SMatlTechLayer::Gds);
  EXPECT_EQ(gds.GetLayer().GetStream(), 31);
  EXPECT_EQ(gds.GetLayer().GetData(), 2);
  ExpectRoundTrip(gds);
  SMatlTechLayer dxf;
  ASSERT_TRUE(Read(dxf, "dxflayer M1 \"METAL 1\""));
  EXPECT_EQ(dxf.GetSubKind(), SMatlTechLayer::Dxf);
  EXPECT_EQ(dxf.GetLayer().GetDXFName(), SString("METAL 1"));
  ExpectRoundTrip(dxf);
  SMatlTechLayer gerber;
  ASSERT_TRUE(Read(gerber, "GBRLAYER M1 top.gbr"));
  EXPECT_EQ(gerber.GetLayer().GetGerberName(), SString("top.gbr"));
  ExpectRoundTrip(gerber);
  EXPECT_FALSE(gds.IsEqual(dxf));
}

TEST_F(MatlTest, TechLayerWritesOnlyWhatItHas) {
  SMatlTechLayer layer;
  SProjectStream out;
  EXPECT_FALSE(layer.Write(out)) << "subkind not set";
  layer.SetSubKind(SMatlTechLayer::All);
  layer.Layer().SetName("M2");
  layer.Layer().SetGerberName("m2.gbr");
  EXPECT_EQ(Written(layer), "GBRLAYER \"M2\" \"m2.gbr\"\n") << "no stream and no DXF name";
  layer.Layer().SetStream(4);
  EXPECT_EQ(Written(layer), "GDSLAYER \"M2\" 4 0\nGBRLAYER \"M2\" \"m2.gbr\"\n");
}

TEST_F(MatlTest, BadTechLayerLinesFail) {
  const std::pair<const char*, int> cases[] = {{"GDSLAYER \"M 1\" 1 0", 20134}, {"GDSLAYER M1 -1 0", 20132},
                                               {"GDSLAYER M1 1 x", 20133},      {"GDSLAYER M=1 1 0", 20134},
                                               {"DXFLAYER M1", 20134},          {"LAYER M1 1 0", 20134}};
  for (const auto& c : cases) {
    itsCapture->Clear();
    SMatlTechLayer layer;
    EXPECT_FALSE(Read(layer, c.first)) << c.first;
    EXPECT_EQ(Errors(), std::vector<int>{c.second}) << c.first;
  }
}

TEST_F(MatlTest, FastOptionsNameShieldAndCapMetal) {
  SMatlTechLayerFastOpt shield;
  ASSERT_TRUE(Read(shield, "SHIELD M1 GND_PLANE"));
  EXPECT_EQ(shield.GetSubKind(), SMatlTechLayerFastOpt::Shield);
  EXPECT_EQ(shield.GetLayer().GetShieldName(), SString("GND_PLANE"));
  ExpectRoundTrip(shield);
  SMatlTechLayerFastOpt cap;
  ASSERT_TRUE(Read(cap, "CAPMETAL M1 MIM"));
  EXPECT_EQ(cap.GetLayer().GetCapMetalName(), SString("MIM"));
  ExpectRoundTrip(cap);
  SMatlTechLayerFastOpt unset;
  SProjectStream out;
  EXPECT_FALSE(unset.Write(out));
  SMatlTechLayerFastOpt blank;
  EXPECT_FALSE(Read(blank, "SHIELD M1 \"a b\""));
}

struct VarCase {
  const char* line;
  const char* name;
  const char* value;
  bool number;
};

const VarCase kVars[] = {
    {"VAR w = 2.5", "w", "2.5", true},
    {"VAR \"width\" = 3 true", "width", "3", true},
    {"VAR h=w * 2 false", "h", "w*2", false},
    {"VAR  gap  =  1e-3", "gap", "0.001", true},
};

TEST_F(MatlTest, VariableLinesGiveNameAndValue) {
  for (const VarCase& c : kVars) {
    SMatlVariable var;
    ASSERT_TRUE(Read(var, c.line)) << c.line;
    EXPECT_EQ(var.GetName(), SString(c.name)) << c.line;
    EXPECT_EQ(var.GetValueText(), SString(c.value)) << c.line;
    EXPECT_EQ(var.GetPair().Value().HasEquation(), !c.number) << c.line;
    ExpectRoundTrip(var);
  }
  for (const char* bad : {"VAR w 2", "VAR = 2", "VAR w ="}) {
    SMatlVariable var;
    EXPECT_FALSE(Read(var, bad)) << bad;
  }
}

TEST_F(MatlTest, CommentsLoseLeadersAndHeaderLines) {
  SMatlComment comments;
  for (const char* line : {"; first note", "#! second", "  ", "; Translated from chip.matl",
                           "; Layer file for Cadence ADE and/or Keysight ADS to Velora em translation", "plain text"}) {
    comments.AddLine(line);
  }
  ASSERT_EQ(comments.GetCount(), 3);
  EXPECT_EQ(comments.GetLines()[1], SString("second"));
  EXPECT_EQ(Written(comments), "; first note\n; second\n; plain text\n\n");
  SMatlComment none;
  EXPECT_EQ(Written(none), "");
}

TEST_F(MatlTest, SecondColorOfANameIsDisregarded) {
  SMatlColor red;
  ASSERT_TRUE(Read(red, "COLOR M1 5"));
  EXPECT_EQ(red.GetPattern(), 5);
  EXPECT_EQ(Written(red), "") << "colors are never written";
  itsOwner.itsColors.insert("M1");
  SMatlColor again;
  EXPECT_TRUE(Read(again, "COLOR M1 6"));
  EXPECT_TRUE(again.IsDisregarded());
  EXPECT_TRUE(again.GetLayerName().isEmpty());
  SMatlColor bad;
  EXPECT_FALSE(Read(bad, "COLOR M2 -1"));
  EXPECT_EQ(Errors(), std::vector<int>{20140});
}

TEST_F(MatlTest, BrickReadsNothingAndClonesEqual) {
  SMatlBrick brick;
  EXPECT_TRUE(Read(brick, "BRICK anything at all"));
  EXPECT_EQ(Written(brick), "");
  brick.SetBrickType(SMatlBrick::Anisotropic);
  std::unique_ptr<SMatlMaterial> copy(brick.Clone());
  ASSERT_TRUE(copy);
  EXPECT_TRUE(copy->IsEqual(brick));
  EXPECT_EQ(copy->GetKind(), SMatlMaterial::BrickKind);
  EXPECT_EQ(copy->GetMatl(), &itsOwner);
  EXPECT_TRUE(SMatlValidation::Instance().Validate(brick));
  brick.SetBrickType(2);
  EXPECT_FALSE(SMatlValidation::Instance().Validate(brick));
}

TEST(SMatlReporting, ModesPrintStayQuietOrHandOver) {
  SMatlReporting& reporting = SMatlReporting::Instance();
  SMatlReportCapture capture;
  reporting.ReportError("bad");
  reporting.ReportWarning("odd", 20074);
  reporting.ReportNote("fyi");
  ASSERT_EQ(capture.Entries().size(), 3u);
  EXPECT_EQ(capture.Entries()[1].number, 20074);
  EXPECT_EQ(capture.Entries()[2].kind, SMatlReporting::Note);
  reporting.SetMode(0);
  reporting.ReportError("silent");
  EXPECT_EQ(capture.Entries().size(), 3u);
  reporting.SetMode(1);
  testing::internal::CaptureStderr();
  testing::internal::CaptureStdout();
  reporting.ReportError("to stderr");
  reporting.ReportWarning("to stdout");
  reporting.ReportNote("plain");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "*ERROR* Velora: to stderr\n");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "*WARNING* Velora: to stdout\nplain\n");
  EXPECT_EQ(capture.Entries().size(), 3u);
}

}  // namespace
