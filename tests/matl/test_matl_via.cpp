#include "MatlTestSupport.h"
#include "SMatlViaDrawLayer.h"
#include "SMatlViaMaterial.h"

namespace {

struct ViaCase {
  const char* line;
  int viaType;
  bool isMetal;
  int toLevelType;
  int volumeModel;
  double wall;
};

const ViaCase kVias[] = {
    {"VIA V1 0 0 0 0 0 2 W 1 0 Volume 1e7 3", SMatlViaDrawLayer::Volume, false, 0, 0, 3},
    {"VIA V1 0 0 0 0 0 2 W 1 top Surface INF 0", SMatlViaDrawLayer::Surface, false, 1, 0, 0},
    {"VIA V1 0 0 0 0 0 2 W 1 GND Array 1e7 0 0 2 Full PadsOn 50 Solid Cond 2", SMatlViaDrawLayer::Array, false, 2,
     1, 0},
    {"VIA V1 0 0 0 0 0 2 W 1 0 Resistor", SMatlViaDrawLayer::Surface, true, 0, 0, 0},
    {"VIA V1 0 0 0 0 0 2 W 1 0 Normal 5e7 2 0 2 Default PadsOff 100 N/A", SMatlViaDrawLayer::Volume, true, 0, 0, 2},
};

TEST_F(MatlTest, ViaLinesReadTypesTargetsAndModels) {
  for (const ViaCase& c : kVias) {
    SMatlViaDrawLayer via;
    ASSERT_TRUE(Read(via, c.line)) << c.line << " " << FirstText();
    EXPECT_EQ(via.GetViaType(), c.viaType) << c.line;
    EXPECT_EQ(via.IsMetal(), c.isMetal) << c.line;
    EXPECT_EQ(via.GetToLevel().GetType(), c.toLevelType) << c.line;
    EXPECT_EQ(via.GetVolumeLossModel(), c.volumeModel) << c.line;
    EXPECT_EQ(via.itsWallThickness.GetValue(), c.wall) << c.line;
    EXPECT_EQ(via.itsThickness.GetValue(), c.wall) << c.line;
    ExpectRoundTrip(via);
  }
}

TEST_F(MatlTest, VolumeViaWithoutLossModelGetsWallWithANote) {
  SMatlViaDrawLayer via;
  ASSERT_TRUE(Read(via, "VIA V1 0 0 0 0 0 2 W 1 0 Normal 5e7 2 0 2 Default PadsOff 100 N/A"));
  ASSERT_EQ(itsCapture->Numbers(SMatlReporting::Note).size(), 1u);
  EXPECT_EQ(via.GetVolumeLossModel(), SMatlViaDrawLayer::Wall);
}

TEST_F(MatlTest, ViaFillFieldTakesMetalFillTypesToo) {
  SMatlViaDrawLayer via;
  ASSERT_TRUE(Read(via, "VIA V1 0 0 0 0 0 2 W 1 0 Surface INF 0 0 2 Conformal PadsOn"));
  EXPECT_EQ(via.GetFillType(), SMatlMetalData::Conformal);
  EXPECT_EQ(via.GetViaFill(), SMatlViaDrawLayer::DefaultViaFill);
  EXPECT_TRUE(via.HasPads());
  ExpectRoundTrip(via);
}

struct BadVia {
  const char* line;
  int message;
};

const BadVia kBadVias[] = {
    {"VIA V1 0 0 0 0 0 2 W 1", 20098},
    {"VIA V1 0 0 0 0 0 2 W 1 up", 20163},
    {"VIA V1 0 0 0 0 0 2 W 1 -2", 20019},
    {"VIA V1 0 0 0 0 0 2 W 1 0", 20096},
    {"VIA V1 0 0 0 0 0 2 W 1 0 Tube", 20164},
    {"VIA V1 0 0 0 0 0 2 W 1 0 Volume 1e7 0", 20167},
    {"VIA V1 0 0 0 0 0 2 W 1 0 Surface INF 0 0 2 Spiral", 20173},
    {"VIA V1 0 0 0 0 0 2 W 1 0 Surface INF 0 0 2 Ring Maybe", 20175},
    {"VIA V1 0 0 0 0 0 2 W 1 0 Array INF 0 0 2 Ring PadsOn 0", 20168},
    {"VIA V1 0 0 0 0 0 2 W 1 0 Array INF 0 0 2 Ring PadsOn x", 20169},
    {"VIA V1 0 0 0 0 0 2 W 1 0 Array INF 0 0 2 Ring PadsOn 1 Hollow", 20176},
    {"VIA V1 0 0 0 0 0 2 W 1 0 Array INF 0 0 2 Ring PadsOn 1 Wall Cond 0", 20179},
};

TEST_F(MatlTest, BadViaLinesFailWithTheirMessage) {
  for (const BadVia& c : kBadVias) {
    itsCapture->Clear();
    SMatlViaDrawLayer via;
    EXPECT_FALSE(Read(via, c.line)) << c.line;
    EXPECT_EQ(Errors(), std::vector<int>{c.message}) << c.line;
  }
}

TEST_F(MatlTest, SurfaceViaAllowsZeroFillFactorOnlyOffArray) {
  SMatlViaDrawLayer via;
  EXPECT_TRUE(Read(via, "VIA V1 0 0 0 0 0 2 W 1 0 Surface INF 0 0 2 Ring PadsOn 0 Wall Cond 0"));
}

TEST_F(MatlTest, ViaMaterialLinesReadAndWriteBack) {
  SMatlViaMaterial tungsten;
  ASSERT_TRUE(Read(tungsten, "VMATERIAL W 0 0 0 5 Volume 1.8e7 0.5 100 Solid Cond 1")) << FirstText();
  EXPECT_EQ(tungsten.GetMetalName(), SString("W"));
  EXPECT_EQ(tungsten.itsWallThickness.GetValue(), 0.5);
  EXPECT_EQ(tungsten.GetVolumeLossModel(), SMatlViaDrawLayer::Solid);
  ExpectRoundTrip(tungsten);
  SMatlViaMaterial linked;
  ASSERT_TRUE(Read(linked, "VMATERIAL R 3 0 0 1 Resistor"));
  EXPECT_EQ(linked.GetViaType(), SMatlViaDrawLayer::Surface);
  ExpectRoundTrip(linked);
  SMatlViaDrawLayer layer;
  EXPECT_FALSE(linked.IsEqual(layer));
}

TEST_F(MatlTest, LosslessViaMaterialIsRestricted) {
  SMatlViaMaterial via;
  EXPECT_FALSE(Read(via, "VMATERIAL LOSSLESS 0 0 0 5 Volume"));
  EXPECT_EQ(Errors(), std::vector<int>{20015});
}

}  // namespace
