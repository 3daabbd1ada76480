#include "ProjectTestSupport.h"

#include "SDimensionBlock.h"

#include <cmath>

namespace {

struct UnitCase {
  int family;
  const char* keyword;
  const char* unit;
  double factor;
  const char* display;
};

// Every unit keyword of the length, frequency, resistance, inductance, capacitance,
// conductance and material families, with its factor to the base unit.
const UnitCase kUnits[] = {
    {SDimensionBlock::Length, "LNG", "NM", 1e-9, "nm"},
    {SDimensionBlock::Length, "LNG", "UM", 1e-6, "microns"},
    {SDimensionBlock::Length, "LNG", "MM", 1e-3, "mm"},
    {SDimensionBlock::Length, "LNG", "CM", 1e-2, "cm"},
    {SDimensionBlock::Length, "LNG", "M", 1.0, "meters"},
    {SDimensionBlock::Length, "LNG", "MIL", 2.54e-5, "mils"},
    {SDimensionBlock::Length, "LNG", "IN", 0.0254, "inches"},
    {SDimensionBlock::Length, "LNG", "FT", 0.3048, "feet"},
    {SDimensionBlock::Frequency, "FREQ", "HZ", 1.0, "Hz"},
    {SDimensionBlock::Frequency, "FREQ", "KHZ", 1e3, "KHz"},
    {SDimensionBlock::Frequency, "FREQ", "MHZ", 1e6, "MHz"},
    {SDimensionBlock::Frequency, "FREQ", "GHZ", 1e9, "GHz"},
    {SDimensionBlock::Frequency, "FREQ", "THZ", 1e12, "THz"},
    {SDimensionBlock::Frequency, "FREQ", "PHZ", 1e15, "PHz"},
    {SDimensionBlock::Resistance, "RES", "WOH", 1e-3, "mOhms"},
    {SDimensionBlock::Resistance, "RES", "OH", 1.0, "Ohms"},
    {SDimensionBlock::Resistance, "RES", "KOH", 1e3, "KOhms"},
    {SDimensionBlock::Resistance, "RES", "MOH", 1e6, "MOhms"},
    {SDimensionBlock::Resistance, "RES", "GOH", 1e9, "GOhms"},
    {SDimensionBlock::Resistance, "RES", "TOH", 1e12, "TOhms"},
    {SDimensionBlock::Inductance, "IND", "H", 1.0, "H"},
    {SDimensionBlock::Inductance, "IND", "MH", 1e-3, "mH"},
    {SDimensionBlock::Inductance, "IND", "UH", 1e-6, "uH"},
    {SDimensionBlock::Inductance, "IND", "NH", 1e-9, "nH"},
    {SDimensionBlock::Inductance, "IND", "PH", 1e-12, "pH"},
    {SDimensionBlock::Inductance, "IND", "FH", 1e-15, "fH"},
    {SDimensionBlock::Capacitance, "CAP", "F", 1.0, "F"},
    {SDimensionBlock::Capacitance, "CAP", "MF", 1e-3, "mF"},
    {SDimensionBlock::Capacitance, "CAP", "UF", 1e-6, "uF"},
    {SDimensionBlock::Capacitance, "CAP", "NF", 1e-9, "nF"},
    {SDimensionBlock::Capacitance, "CAP", "PF", 1e-12, "pF"},
    {SDimensionBlock::Capacitance, "CAP", "FF", 1e-15, "fF"},
    {SDimensionBlock::Angle, "ANG", "DEG", M_PI / 180.0, "DEG"},
    {SDimensionBlock::Angle, "ANG", "RAD", 1.0, "RAD"},
    {SDimensionBlock::Conductance, "CON", "/OH", 1.0, "/OH"},
    {SDimensionBlock::Conductance, "CON", "S", 1.0, "S"},
    {SDimensionBlock::Conductance, "CON", "/KOH", 1e-3, "/KOH"},
    {SDimensionBlock::Conductance, "CON", "MS", 1e-3, "MS"},
    {SDimensionBlock::Conductance, "CON", "KS", 1e3, "KS"},
    {SDimensionBlock::Conductance, "CON", "/MOH", 1e-6, "/MOH"},
    {SDimensionBlock::Conductance, "CON", "US", 1e-6, "US"},
    {SDimensionBlock::Conductivity, "CDVY", "SM", 1.0, "S/m"},
    {SDimensionBlock::Conductivity, "CDVY", "SCM", 100.0, "S/cm"},
    {SDimensionBlock::Conductivity, "CDVY", "MSCM", 0.1, "mS/cm"},
    {SDimensionBlock::Conductivity, "CDVY", "USCM", 1e-4, "uS/cm"},
    {SDimensionBlock::Resistivity, "RSVY", "OHCM", 1.0, "Ohm-cm"},
    {SDimensionBlock::Resistivity, "RSVY", "OHMM", 100.0, "Ohm-m"},
    {SDimensionBlock::Resistivity, "RSVY", "OHUM", 1e-4, "Ohm-micron"},
    {SDimensionBlock::SheetResistance, "SRES", "OHSQ", 1.0, "Ohms/sq"},
    {SDimensionBlock::SheetResistance, "SRES", "MOSQ", 1e-3, "mOhms/sq"},
};

}  // namespace

TEST_F(ProjectTest, EveryUnitKeywordReadsConvertsAndWritesBack) {
  for (const UnitCase& unit : kUnits) {
    const std::string line = std::string(unit.keyword) + " " + unit.unit;
    SProject project;
    ASSERT_TRUE(ReadText(project, "FTYP VELPROJ 17\nDIM\n" + line + "\nEND DIM\n")) << line;
    EXPECT_EQ(project.GetErrors().Count(), 0u) << line;
    const SDimensionBlock* dimension = project.GetDimensionBlock();
    EXPECT_EQ(dimension->GetUnitName(unit.family), SString(unit.unit)) << line;
    EXPECT_EQ(dimension->GetUnitDisplay(unit.family), SString(unit.display)) << line;
    EXPECT_EQ(dimension->GetUnitBracket(unit.family), SString("(") + unit.display + ")") << line;
    EXPECT_NEAR(dimension->GetFactor(unit.family), unit.factor, unit.factor * 1e-12) << line;
    // From the file's unit to the base unit and back.
    EXPECT_NEAR(dimension->ToBase(unit.family, 2.5), 2.5 * unit.factor, unit.factor * 1e-12) << line;
    EXPECT_NEAR(dimension->FromBase(unit.family, 2.5 * unit.factor), 2.5, 1e-12) << line;
    // The material families are written only when they differ from their defaults.
    const bool written = SDimensionBlock::DefaultUnit(unit.family) != SString(unit.unit) ||
                         unit.family < SDimensionBlock::Conductivity;
    EXPECT_EQ(Contains(WriteText(project), "\n" + line + "\n"), written) << line;
  }
}

TEST_F(ProjectTest, LengthNamesDerivedFamiliesAndDefaults) {
  SDimensionBlock units;
  EXPECT_EQ(units.GetUnitName(SDimensionBlock::Length), SString("MIL"));
  EXPECT_TRUE(units.SetUnit(SDimensionBlock::Length, "millimeter"));
  EXPECT_EQ(units.GetUnitName(SDimensionBlock::Length), SString("MM"));
  EXPECT_TRUE(units.SetUnit(SDimensionBlock::Length, "feet"));
  EXPECT_EQ(units.GetUnitName(SDimensionBlock::Length), SString("FT"));
  EXPECT_FALSE(units.SetUnit(SDimensionBlock::Length, "um"));  // unit words are case-sensitive
  EXPECT_EQ(units.GetUnitDisplay(SDimensionBlock::PerLength), SString("/feet"));
  EXPECT_EQ(units.GetUnitDisplay(SDimensionBlock::DecibelPerLength), SString("dB/feet"));
  EXPECT_NEAR(units.GetFactor(SDimensionBlock::PerLength), 1.0 / 0.3048, 1e-12);
  EXPECT_DOUBLE_EQ(units.GetFactor(SDimensionBlock::NoUnit), 1.0);
  EXPECT_EQ(units.GetUnitDisplay(SDimensionBlock::Voltage), SString(""));
  EXPECT_TRUE(units.SetUnit(SDimensionBlock::Voltage, "UV"));
  EXPECT_EQ(units.GetUnitDisplay(SDimensionBlock::Voltage), SString("uVolts"));
  EXPECT_EQ(SDimensionBlock::FamilyOfKeyword("lngth"), SDimensionBlock::Length);
  EXPECT_EQ(SDimensionBlock::FamilyOfKeyword("XYZ"), -1);
}

TEST_F(ProjectTest, OlderFormatsWriteFeetAsInchesAndOddOhmsAsOhms) {
  SProject project;
  ASSERT_TRUE(ReadText(project, "FTYP VELPROJ 17\nDIM\nLNG FT\nRES GOH\nCDVY SCM\nEND DIM\n"));
  SDimensionBlock* dimension = project.GetDimensionBlock();
  EXPECT_DOUBLE_EQ(dimension->ToFileLength(2.0), 2.0);
  EXPECT_TRUE(Contains(WriteText(project), "CON /OH\nCDVY SCM\nFREQ GHZ\nIND NH\nLNG FT\nRES GOH\nEND DIM\n"));

  SProjectFormat::SetWriteFormat(14);
  EXPECT_DOUBLE_EQ(dimension->ToFileLength(2.0), 24.0);
  const SPoint point = dimension->ToFilePoint(SPoint(1.0, -3.0));
  EXPECT_DOUBLE_EQ(point.x(), 12.0);
  EXPECT_DOUBLE_EQ(point.y(), -36.0);
  const SSize size = dimension->ToFileSize(SSize(0.5, 2.0));
  EXPECT_DOUBLE_EQ(size.width(), 6.0);
  EXPECT_DOUBLE_EQ(size.height(), 24.0);
  EXPECT_DOUBLE_EQ(dimension->ToFileResistance(3.0), 3e9);
  const std::string older = WriteText(project);
  // The material families don't exist below format 15.
  EXPECT_TRUE(Contains(older, "DIM\nANG DEG\nCAP PF\nCON /OH\nFREQ GHZ\nIND NH\nLNG IN\nRES OHM\nEND DIM\n"));
  // What older formats write reads back as the same scale.
  SProject back;
  ASSERT_TRUE(ReadText(back, older));
  EXPECT_EQ(back.GetDimensionBlock()->GetUnitName(SDimensionBlock::Resistance), SString("OH"));
  EXPECT_EQ(back.GetDimensionBlock()->GetUnitName(SDimensionBlock::Length), SString("IN"));
  SProjectFormat::SetWriteFormat(14);  // making a project resets it

  dimension->SetUnit(SDimensionBlock::Resistance, "WOH");
  EXPECT_DOUBLE_EQ(dimension->ToFileResistance(5.0), 0.005);
  dimension->SetUnit(SDimensionBlock::Resistance, "TOH");
  EXPECT_DOUBLE_EQ(dimension->ToFileResistance(5.0), 5e12);
  dimension->SetUnit(SDimensionBlock::Resistance, "KOH");
  EXPECT_DOUBLE_EQ(dimension->ToFileResistance(5.0), 5.0);
}

TEST_F(ProjectTest, MaterialFamiliesResetWithEachReadAndChangeOfUnits) {
  SProject project;
  ASSERT_TRUE(ReadText(project, "FTYP VELPROJ 17\nDIM\nCDVY MSCM\nEND DIM\nDIM\nLNG UM\nEND DIM\n"));
  EXPECT_EQ(project.GetDimensionBlock()->GetUnitName(SDimensionBlock::Conductivity), SString("SM"));

  // New units for the whole project: the control block's frequencies follow.
  SProject scaled;
  ASSERT_TRUE(ReadText(scaled, "FTYP VELPROJ 17\nDIM\nFREQ GHZ\nEND DIM\nCONTROL\nCFMAX Y 2\nRES_ABS Y 0.5\nEND CONTROL\n"));
  SDimensionBlock megahertz;
  megahertz.SetUnit(SDimensionBlock::Frequency, "MHZ");
  scaled.SetUnits(megahertz, true);
  EXPECT_EQ(scaled.GetDimensionBlock()->GetUnitName(SDimensionBlock::Frequency), SString("MHZ"));
  EXPECT_TRUE(Contains(WriteText(scaled), "CFMAX Y 2000\nCEPSY N\nRES_ABS Y 500\n"));
}
