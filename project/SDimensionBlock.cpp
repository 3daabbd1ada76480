#include "SDimensionBlock.h"

#include "SFile.h"
#include "SProject.h"
#include "SProjectClassID.h"
#include "SProjectErrorManager.h"

#include <cmath>

SCOLLECTABLE_DEFINE(SDimensionBlock, SID_DIMENSIONBLOCK, &SFileBlock::staticTypeInfo())

namespace {

struct SUnitRow {
  const char* keyword;
  const char* display;
  double factor;
};

const double kPi = 3.14159265358979323846;

const SUnitRow kLength[] = {{"NM", "nm", 1e-9},   {"UM", "microns", 1e-6}, {"MM", "mm", 1e-3},   {"CM", "cm", 0.01},
                            {"M", "meters", 1.0}, {"MIL", "mils", 2.54e-5}, {"IN", "inches", 0.0254}, {"FT", "feet", 0.3048},
                            {nullptr, nullptr, 0}};
const SUnitRow kFrequency[] = {{"HZ", "Hz", 1.0},   {"KHZ", "KHz", 1e3},  {"MHZ", "MHz", 1e6}, {"GHZ", "GHz", 1e9},
                               {"THZ", "THz", 1e12}, {"PHZ", "PHz", 1e15}, {nullptr, nullptr, 0}};
const SUnitRow kResistance[] = {{"WOH", "mOhms", 1e-3}, {"OH", "Ohms", 1.0},  {"KOH", "KOhms", 1e3},
                                {"MOH", "MOhms", 1e6},  {"GOH", "GOhms", 1e9}, {"TOH", "TOhms", 1e12},
                                {nullptr, nullptr, 0}};
const SUnitRow kInductance[] = {{"H", "H", 1.0},     {"MH", "mH", 1e-3},  {"UH", "uH", 1e-6}, {"NH", "nH", 1e-9},
                                {"PH", "pH", 1e-12}, {"FH", "fH", 1e-15}, {nullptr, nullptr, 0}};
const SUnitRow kCapacitance[] = {{"F", "F", 1.0},     {"MF", "mF", 1e-3},  {"UF", "uF", 1e-6}, {"NF", "nF", 1e-9},
                                 {"PF", "pF", 1e-12}, {"FF", "fF", 1e-15}, {nullptr, nullptr, 0}};
const SUnitRow kAngle[] = {{"DEG", "DEG", kPi / 180.0}, {"RAD", "RAD", 1.0}, {nullptr, nullptr, 0}};
const SUnitRow kConductance[] = {{"/OH", "/OH", 1.0},   {"S", "S", 1.0},       {"/KOH", "/KOH", 1e-3},
                                 {"MS", "MS", 1e-3},    {"KS", "KS", 1e3},     {"/MOH", "/MOH", 1e-6},
                                 {"US", "US", 1e-6},    {nullptr, nullptr, 0}};
const SUnitRow kVoltage[] = {{"V", "Volts", 1.0}, {"UV", "uVolts", 1e-6}, {nullptr, nullptr, 0}};
const SUnitRow kConductivity[] = {{"SM", "S/m", 1.0},      {"SCM", "S/cm", 100.0}, {"MSCM", "mS/cm", 0.1},
                                  {"USCM", "uS/cm", 1e-4}, {nullptr, nullptr, 0}};
const SUnitRow kResistivity[] = {{"OHCM", "Ohm-cm", 1.0}, {"OHMM", "Ohm-m", 100.0}, {"OHUM", "Ohm-micron", 1e-4},
                                 {nullptr, nullptr, 0}};
const SUnitRow kSheet[] = {{"OHSQ", "Ohms/sq", 1.0}, {"MOSQ", "mOhms/sq", 1e-3}, {nullptr, nullptr, 0}};
const SUnitRow kTime[] = {{"S", "S", 1.0},   {"MS", "MS", 1e-3},  {"US", "US", 1e-6},
                          {"NS", "NS", 1e-9}, {"PS", "PS", 1e-12}, {nullptr, nullptr, 0}};

struct SFamilyRow {
  const char* keyword;
  const char* defaultUnit;
  const SUnitRow* units;
};

// Indexed by family code. A family without units of its own (current) takes any word.
const SFamilyRow kFamilies[SDimensionBlock::FamilyCount] = {
    {"LNG", "MIL", kLength},        {"FREQ", "GHZ", kFrequency}, {"RES", "OH", kResistance},
    {"IND", "NH", kInductance},     {"CAP", "PF", kCapacitance}, {"ANG", "DEG", kAngle},
    {"CON", "/OH", kConductance},   {"CUR", "", nullptr},        {"VOL", "", kVoltage},
    {nullptr, "", nullptr},         {nullptr, "", nullptr},      {"CDVY", "SM", kConductivity},
    {"RSVY", "OHCM", kResistivity}, {"SRES", "OHSQ", kSheet},    {nullptr, "", nullptr},
    {"TIM", "", kTime}};

const SUnitRow* FindRow(int family, const SString& keyword) {
  if (family < 0 || family >= SDimensionBlock::FamilyCount || !kFamilies[family].units) return nullptr;
  for (const SUnitRow* row = kFamilies[family].units; row->keyword; ++row)
    if (keyword == row->keyword) return row;
  return nullptr;
}

// The order of the DIM lines in a file.
const int kWriteOrder[] = {SDimensionBlock::Angle,        SDimensionBlock::Capacitance,  SDimensionBlock::Conductance,
                           SDimensionBlock::Conductivity, SDimensionBlock::Frequency,    SDimensionBlock::Inductance,
                           SDimensionBlock::Length,       SDimensionBlock::Resistance,   SDimensionBlock::Resistivity,
                           SDimensionBlock::SheetResistance};

// Families read in DIM, in the order of the keyword tests.
const int kReadOrder[] = {SDimensionBlock::Length,       SDimensionBlock::Frequency,    SDimensionBlock::Resistance,
                          SDimensionBlock::Inductance,   SDimensionBlock::Capacitance,  SDimensionBlock::Angle,
                          SDimensionBlock::Conductivity, SDimensionBlock::Conductance,  SDimensionBlock::Current,
                          SDimensionBlock::Voltage,      SDimensionBlock::Resistivity,  SDimensionBlock::SheetResistance,
                          SDimensionBlock::Time};

}  // namespace

SDimensionBlock::SDimensionBlock(SProject* owner) : SFileBlock(owner, "DIM") {
  for (int family = 0; family < FamilyCount; ++family) SetUnit(family, DefaultUnit(family));
}

const char* SDimensionBlock::FamilyKeyword(int family) {
  if (family < 0 || family >= FamilyCount) return nullptr;
  return kFamilies[family].keyword;
}

SString SDimensionBlock::DefaultUnit(int family) {
  if (family < 0 || family >= FamilyCount) return SString();
  return kFamilies[family].defaultUnit;
}

int SDimensionBlock::FamilyOfKeyword(const SString& token) {
  for (int family : kReadOrder)
    if (Match(token, kFamilies[family].keyword)) return family;
  return -1;
}

SString SDimensionBlock::Canonical(int family, const SString& name) {
  if (family == Current) return name;
  if (FindRow(family, name)) return name;
  if (family == Length) {
    static const char* const longNames[][2] = {{"millimeter", "MM"}, {"nanometer", "NM"}, {"micron", "UM"},
                                               {"centimeter", "CM"}, {"inches", "IN"},    {"meters", "M"},
                                               {"feet", "FT"}};
    for (const auto& pair : longNames)
      if (name == pair[0]) return pair[1];
  }
  // Older files name plain ohms "OHM", as the older formats are still written.
  if (family == Resistance && name == "OHM") return "OH";
  return SString();
}

double SDimensionBlock::UnitFactor(int family, const SString& name) {
  const SUnitRow* row = FindRow(family, Canonical(family, name));
  return row ? row->factor : 0.0;
}

bool SDimensionBlock::SetUnit(int family, const SString& name) {
  if (family < 0 || family >= FamilyCount) return false;
  if (family == PerLength || family == DecibelPerLength || family == NoUnit) return false;
  if (name.isEmpty()) {
    itsUnits[family] = SUnit();
    return kFamilies[family].defaultUnit[0] == '\0';
  }
  const SString keyword = Canonical(family, name);
  if (keyword.isEmpty()) return false;
  const SUnitRow* row = FindRow(family, keyword);
  itsUnits[family] = row ? SUnit(keyword, row->display, row->factor) : SUnit(keyword, keyword, 0.0);
  return true;
}

SString SDimensionBlock::GetUnitName(int family) const {
  if (family == PerLength || family == DecibelPerLength) return GetUnitName(Length);
  if (family < 0 || family >= FamilyCount) return SString();
  return itsUnits[family].GetKeyword();
}

SString SDimensionBlock::GetUnitDisplay(int family) const {
  if (family == PerLength) return "/" + itsUnits[Length].GetDisplay();
  if (family == DecibelPerLength) return "dB/" + itsUnits[Length].GetDisplay();
  if (family < 0 || family >= FamilyCount) return SString();
  return itsUnits[family].GetDisplay();
}

SString SDimensionBlock::GetUnitBracket(int family) const { return "(" + GetUnitDisplay(family) + ")"; }

double SDimensionBlock::GetFactor(int family) const {
  if (family == PerLength || family == DecibelPerLength) {
    const double length = GetFactor(Length);
    return length != 0.0 ? 1.0 / length : 1.0;
  }
  if (family < 0 || family >= FamilyCount) return 1.0;
  const SUnit& unit = itsUnits[family];
  return unit.HasFactor() ? unit.GetFactor() : 1.0;
}

double SDimensionBlock::ToFileLength(double value) const {
  if (Format() >= 15) return value;
  return itsUnits[Length].GetKeyword() == "FT" ? value * 12.0 : value;
}

SPoint SDimensionBlock::ToFilePoint(const SPoint& point) const {
  return SPoint(ToFileLength(point.x()), ToFileLength(point.y()));
}

SSize SDimensionBlock::ToFileSize(const SSize& size) const {
  return SSize(ToFileLength(size.width()), ToFileLength(size.height()));
}

double SDimensionBlock::ToFileResistance(double value) const {
  if (Format() >= 15) return value;
  const SString& unit = itsUnits[Resistance].GetKeyword();
  if (unit == "WOH") return value / 1000.0;
  if (unit == "GOH") return value * 1e9;
  if (unit == "TOH") return value * 1e12;
  return value;
}

SString SDimensionBlock::FileUnitName(int family) const {
  const SString unit = GetUnitName(family);
  if (Format() >= 15) return unit;
  if (family == Length && unit == "FT") return "IN";
  if (family == Resistance && (unit == "WOH" || unit == "GOH" || unit == "TOH")) return "OHM";
  return unit;
}

void SDimensionBlock::SetDefaults() {
  for (int family = 0; family < FamilyCount; ++family) SetUnit(family, DefaultUnit(family));
  SFileBlock::SetDefaults();
}

bool SDimensionBlock::ReadBody(SFile& file, SProjectErrorManager& errors) {
  SetUnit(Conductivity, "SM");
  SetUnit(Resistivity, "OHCM");
  SetUnit(SheetResistance, "OHSQ");
  for (;;) {
    if (!file.HasToken()) return true;
    SString token;
    file.PeekToken(token);
    if (Match(token, "END")) return true;
    int family = FamilyOfKeyword(token);
    // "CONTROL" passes the test of "CON": a block's name there is the next block.
    if (family >= 0 && token.compare(kFamilies[family].keyword, true) != 0 && itsOwner && itsOwner->GetBlock(token))
      family = -1;
    if (family < 0) {
      // The oldest files end DIM without END: the block stops at the next block's name.
      if (itsOwner && itsOwner->GetFileVersion() < 1) return true;
      errors.AddError(SProjectErrorManager::Warning, LineOf(file), 7138, token.data());
      Skip(file);
      return true;
    }
    SString keyword, unit;
    file.GetToken(keyword);
    file.GetToken(unit);
    if (!SetUnit(family, unit))
      errors.AddError(SProjectErrorManager::Warning, LineOf(file), 7139, kFamilies[family].keyword, unit.data());
    if (!file.NextLine()) return true;
  }
}

void SDimensionBlock::WriteBody(SProjectStream& out) {
  for (int family : kWriteOrder) {
    if (family == Conductivity || family == Resistivity || family == SheetResistance) {
      if (Format() < 15 || GetUnitName(family) == DefaultUnit(family)) continue;
    }
    out << kFamilies[family].keyword << ' ' << FileUnitName(family) << '\n';
  }
}
