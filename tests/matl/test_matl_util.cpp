#include "MatlTestSupport.h"
#include "SMatlLevel.h"
#include "SMatlUnit.h"
#include "SMatlUtil.h"

namespace {

struct UnitCase {
  int dimension;
  const char* token;
  int code;
};

const UnitCase kUnits[] = {
    {SMatlUtil::Length, "microns", 0},     {SMatlUtil::Length, "METRE", 1},      {SMatlUtil::Length, "mm", 3},
    {SMatlUtil::Length, "Inches", 6},      {SMatlUtil::Length, "mils", 8},       {SMatlUtil::Length, "uinch", 9},
    {SMatlUtil::Length, "C", -1},          {SMatlUtil::Conductivity, "S/m", 0},  {SMatlUtil::Conductivity, "uscm", 3},
    {SMatlUtil::Conductivity, "MS/CM", 2}, {SMatlUtil::Resistivity, "Ohms.cm", 0}, {SMatlUtil::Resistivity, "OHM-MICRON", 2},
    {SMatlUtil::SheetResistance, "mOhm/sq", 1}, {SMatlUtil::Temperature, "C", 0}, {SMatlUtil::Temperature, "Kelvin", 2},
    {SMatlUtil::Temperature, "F", 1}};

TEST(SMatlUtil, UnitSpellingsMapToCodesAndBack) {
  for (const UnitCase& c : kUnits) EXPECT_EQ(SMatlUtil::UnitCode(c.dimension, c.token), c.code) << c.token;
  EXPECT_STREQ(SMatlUtil::UnitName(SMatlUtil::Length, 6), "inch");
  EXPECT_STREQ(SMatlUtil::UnitName(SMatlUtil::Conductivity, 1, false), "SCM");
  EXPECT_STREQ(SMatlUtil::UnitName(SMatlUtil::Conductivity, 1, true), "S/cm");
  EXPECT_EQ(SMatlUtil::UnitName(SMatlUtil::SheetResistance, 2), nullptr);
  // Every name reads back as its own code.
  for (int dimension = 0; dimension < SMatlUtil::DimensionCount; ++dimension)
    for (int code = 0; code < SMatlUtil::UnitCount(dimension); ++code)
      for (bool longName : {false, true})
        EXPECT_EQ(SMatlUtil::UnitCode(dimension, SMatlUtil::UnitName(dimension, code, longName)), code)
            << dimension << " " << code;
}

TEST(SMatlUtil, ConversionFactorsGoBothWays) {
  EXPECT_DOUBLE_EQ(SMatlUtil::ConversionFactor(SMatlUtil::Length, 0, 3), 1e-3);  // um to mm
  EXPECT_DOUBLE_EQ(SMatlUtil::ConversionFactor(SMatlUtil::Length, 3, 0), 1e3);
  EXPECT_DOUBLE_EQ(SMatlUtil::ConversionFactor(SMatlUtil::Length, 8, 6), 1e-3);  // mil to inch
  EXPECT_DOUBLE_EQ(SMatlUtil::ConversionFactor(SMatlUtil::Length, 5, 4), 1e-3);  // pm to nm
  EXPECT_DOUBLE_EQ(SMatlUtil::ConversionFactor(SMatlUtil::Conductivity, 0, 1), 0.01);  // S/m to S/cm
  EXPECT_DOUBLE_EQ(SMatlUtil::ConversionFactor(SMatlUtil::Conductivity, 1, 0), 100);
  EXPECT_DOUBLE_EQ(SMatlUtil::ConversionFactor(SMatlUtil::Resistivity, 1, 0), 100);  // Ohm-m to Ohm-cm
  EXPECT_DOUBLE_EQ(SMatlUtil::ConversionFactor(SMatlUtil::SheetResistance, 0, 1), 1000);
  EXPECT_EQ(SMatlUtil::ConversionFactor(SMatlUtil::Temperature, 0, 2), 1.0);
  EXPECT_EQ(SMatlUtil::LengthFactor(7), 0.3048);
}

TEST(SMatlUtil, NumbersAreWholeTokensOfFixedOrExponentForm) {
  double value = 0;
  EXPECT_TRUE(SMatlUtil::ParseReal("-1.5e-3", value));
  EXPECT_EQ(value, -1.5e-3);
  for (const char* bad : {"", "inf", "nan", "1.5x", "0x10", "1 2"}) EXPECT_FALSE(SMatlUtil::ParseReal(bad, value)) << bad;
  int integer = 0;
  EXPECT_TRUE(SMatlUtil::ParseInt("-12", integer));
  EXPECT_EQ(integer, -12);
  EXPECT_FALSE(SMatlUtil::ParseInt("1.5", integer));
  EXPECT_FALSE(SMatlUtil::ParseInt("99999999999", integer));
}

TEST(SMatlUtil, TextHelpers) {
  EXPECT_TRUE(SMatlUtil::HasIllegalCharacter("a&b"));
  EXPECT_TRUE(SMatlUtil::HasIllegalCharacter("\"q"));
  EXPECT_FALSE(SMatlUtil::HasIllegalCharacter(""));
  EXPECT_FALSE(SMatlUtil::HasIllegalCharacter("Metal_1-x"));
  EXPECT_EQ(SMatlUtil::BlanksToUnderscores("a b c"), SString("a_b_c"));
  EXPECT_EQ(SMatlUtil::StripCommentLeader("  ;;# hello world \t"), SString("hello world"));
  EXPECT_EQ(SMatlUtil::StripCommentLeader("// slash"), SString("slash"));
  EXPECT_EQ(SMatlUtil::StripCommentLeader("plain"), SString("plain"));
  EXPECT_EQ(SMatlUtil::SplitLayerName("MET12_", SMatlUtil::TrailingDigits), SString("12_"));
  EXPECT_EQ(SMatlUtil::SplitLayerName("via3x", SMatlUtil::FirstDigits), SString("3"));
  EXPECT_EQ(SMatlUtil::SplitLayerName("12ab3", SMatlUtil::FirstLetters), SString("ab"));
  EXPECT_EQ(SMatlUtil::SplitLayerName("12ab3", SMatlUtil::LeadingLetters), SString());
  EXPECT_EQ(SMatlUtil::SplitLayerName("Metal", SMatlUtil::LeadingTwoLetters), SString("Me"));
  EXPECT_EQ(SMatlUtil::SplitLayerName("-_M1.", SMatlUtil::FirstAlphanumeric), SString("M1"));
  EXPECT_EQ(SMatlUtil::TruncateConductivity(58123456.0), 5.812e7);
}

TEST(SMatlLevel, TopOnlyWhereAllowedAndGroundInAnyCase) {
  SMatlLevel metal;
  EXPECT_FALSE(metal.SetFromText("TOP"));
  EXPECT_EQ(metal.GetType(), SMatlLevel::Numbered);
  EXPECT_TRUE(metal.SetFromText("gnd"));
  EXPECT_EQ(metal.GetText(), SString("GND"));
  SMatlLevel via(true);
  EXPECT_TRUE(via.SetFromText("Top"));
  EXPECT_EQ(via.GetText(), SString("TOP"));
  EXPECT_FALSE(via.SetFromText("-4"));
  EXPECT_EQ(via.GetNumber(), 0);
}

struct UnitLine {
  const char* line;
  bool ok;
  int length, conductivity, resistivity, sheet, temperature;
};

const UnitLine kUnitLines[] = {
    {"LUNIT mm", true, 3, 0, 0, 0, 0},
    {"UNIT MM C", true, 3, 0, 0, 0, 0},
    {"UNIT mil S/cm Ohm-m mOhms/sq kelvin", true, 8, 1, 1, 1, 2},
    {"CUNIT \"uS/cm\"", true, 0, 3, 0, 0, 0},
    {"UNIT furlong", false, 0, 0, 0, 0, 0},
    {"UNIT", false, 0, 0, 0, 0, 0},
};

TEST_F(MatlTest, UnitTokensTryEachDimensionInOrder) {
  for (const UnitLine& c : kUnitLines) {
    SMatlUnit unit;
    EXPECT_EQ(Read(unit, c.line), c.ok) << c.line;
    if (!c.ok) continue;
    EXPECT_EQ(unit.GetCurrent(SMatlUtil::Length), c.length) << c.line;
    EXPECT_EQ(unit.GetFile(SMatlUtil::Length), c.length) << c.line;
    EXPECT_EQ(unit.GetCurrent(SMatlUtil::Conductivity), c.conductivity) << c.line;
    EXPECT_EQ(unit.GetCurrent(SMatlUtil::Resistivity), c.resistivity) << c.line;
    EXPECT_EQ(unit.GetCurrent(SMatlUtil::SheetResistance), c.sheet) << c.line;
    EXPECT_EQ(unit.GetCurrent(SMatlUtil::Temperature), c.temperature) << c.line;
  }
}

TEST_F(MatlTest, SeenDimensionsAreNotTriedAgain) {
  SMatlUnit unit;
  ASSERT_TRUE(Read(unit, "LUNIT mm"));
  EXPECT_TRUE(unit.IsSeen(SMatlUtil::Length));
  LineReader second("LUNIT um");
  EXPECT_FALSE(unit.Read(second.File())) << "length is taken, and no other dimension knows um";
}

TEST_F(MatlTest, UnitsWriteFourLinesThatReadBack) {
  SMatlUnit unit;
  ASSERT_TRUE(Read(unit, "UNIT inch mS/cm Ohm-micron mOhms/sq"));
  const std::string text = Written(unit);
  EXPECT_EQ(text, "LUNIT \"inch\"\nCUNIT \"mS/cm\"\nRUNIT \"Ohm-micron\"\nSRUNIT \"mOhms/sq\"\n\n");
  SMatlUnit back;
  SProjectStream lines;
  for (const char* line : {"LUNIT \"inch\"", "CUNIT \"mS/cm\"", "RUNIT \"Ohm-micron\"", "SRUNIT \"mOhms/sq\""})
    ASSERT_TRUE(Read(back, line)) << line;
  EXPECT_TRUE(back.IsEqual(unit));
  back.SetFile(SMatlUtil::Length, 8);
  EXPECT_DOUBLE_EQ(back.GetConversionFactor(SMatlUtil::Length), 1000);
  EXPECT_EQ(back.GetFileName(SMatlUtil::Length), SString("mil"));
}

}  // namespace
