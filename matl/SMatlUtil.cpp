#include "SMatlUtil.h"

#include "SDimensionBlock.h"
#include "SFile.h"
#include "SNumberFormat.h"
#include "SProjectStream.h"
#include "SRegexp.h"
#include "SValueVar.h"
#include "SVeloraTrace.h"

#include <cctype>
#include <cmath>
#include <cstdio>

namespace {

struct SUnitRow {
  int code;
  const char* shortName;
  const char* longName;
  // Accepted spellings in upper case, ended by a null.
  const char* accepted[6];
  // The project's dimension keyword, or null.
  const char* keyword;
};

const SUnitRow kLengthUnits[] = {
    {0, "um", "um", {"UM", "MICRON", "MICRONS", "MICROMETER", "MICROMETERS", nullptr}, "UM"},
    {1, "m", "m", {"M", "METER", "METERS", "METRE", nullptr}, "M"},
    {2, "cm", "cm", {"CM", "CENTIMETER", "CENTIMETERS", nullptr}, "CM"},
    {3, "mm", "mm", {"MM", "MILLIMETER", "MILLIMETERS", nullptr}, "MM"},
    {4, "nm", "nm", {"NM", "NANOMETER", "NANOMETERS", nullptr}, "NM"},
    {5, "pm", "pm", {"PM", "PICOMETER", "PICOMETERS", nullptr}, nullptr},
    {6, "inch", "inch", {"IN", "INCH", "INCHES", nullptr}, "IN"},
    {7, "ft", "ft", {"FT", "FOOT", "FEET", nullptr}, "FT"},
    {8, "mil", "mil", {"MIL", "MILS", "MILLINCH", "MILLINCHES", nullptr}, "MIL"},
    {9, "uinch", "uinch", {"UINCH", nullptr}, nullptr}};
const double kMetres[] = {1e-6, 1.0, 0.01, 0.001, 1e-9, 1e-12, 0.0254, 0.3048, 2.54e-5, 2.54e-8};

const SUnitRow kConductivityUnits[] = {
    {0, "SM", "S/m", {"S/M", "SM", "SIEMENS/METER", nullptr}, "SM"},
    {1, "SCM", "S/cm", {"S/CM", "SCM", "SIEMENS/CENTIMETER", nullptr}, "SCM"},
    {2, "MSCM", "mS/cm", {"MS/CM", "MSCM", "MILLISIEMENS/CENTIMETER", nullptr}, "MSCM"},
    {3, "USCM", "uS/cm", {"US/CM", "USCM", "MICROSIEMENS/CENTIMETER", nullptr}, "USCM"}};

const SUnitRow kResistivityUnits[] = {
    {0, "OHCM", "Ohm-cm", {"OHM-CM", "OHCM", "OHM.CM", "OHMS-CM", "OHMS.CM", nullptr}, "OHCM"},
    {1, "OHMM", "Ohm-m", {"OHM-M", "OHMM", "OHMS-M", nullptr}, "OHMM"},
    {2, "OHUM", "Ohm-micron", {"OHM-UM", "OHUM", "OHM-MICRON", "OHMS-MICRON", nullptr}, "OHUM"}};

const SUnitRow kSheetUnits[] = {{0, "OHSQ", "Ohms/sq", {"OHMS/SQ", "OHSQ", "OHM/SQ", nullptr}, "OHSQ"},
                                {1, "MOSQ", "mOhms/sq", {"MOHMS/SQ", "MOHSQ", "MOHM/SQ", "MOSQ", nullptr}, "MOSQ"}};

// Temperature spellings are compared in upper case as well, so every case of a word reads.
// Each unit's own name reads too ("MOSQ", "F", "K"), so that what is written reads back.
const SUnitRow kTemperatureUnits[] = {{0, "C", "C", {"C", "CELSIUS", nullptr}, nullptr},
                                      {1, "F", "F", {"F", "FAHRENHEIT", nullptr}, nullptr},
                                      {2, "K", "K", {"K", "KELVIN", nullptr}, nullptr}};

struct STable {
  const SUnitRow* rows;
  int count;
  int family;
};

const STable kTables[SMatlUtil::DimensionCount] = {
    {kLengthUnits, 10, SDimensionBlock::Length},
    {kConductivityUnits, 4, SDimensionBlock::Conductivity},
    {kResistivityUnits, 3, SDimensionBlock::Resistivity},
    {kSheetUnits, 2, SDimensionBlock::SheetResistance},
    {kTemperatureUnits, 3, -1}};

const SUnitRow* Row(int dimension, int code) {
  if (dimension < 0 || dimension >= SMatlUtil::DimensionCount) return nullptr;
  if (code < 0 || code >= kTables[dimension].count) return nullptr;
  return &kTables[dimension].rows[code];
}

// A token of digits, sign, point and exponent only: "%lf" alone would take "inf" and "0x1p3".
bool LooksNumeric(const QByteArray& bytes) {
  if (bytes.isEmpty()) return false;
  for (char c : bytes)
    if (!std::isdigit(static_cast<unsigned char>(c)) && c != '+' && c != '-' && c != '.' && c != 'e' && c != 'E')
      return false;
  return true;
}

}  // namespace

SMatlUtil& SMatlUtil::Instance() {
  static SMatlUtil instance;
  return instance;
}

SString SMatlUtil::FormatNumber(double value) const { return SNumberFormat::ToString(value, itsDigits); }

void SMatlUtil::WriteValue(SProjectStream& out, const SValueVarDouble& value) const {
  if (value.HasEquation())
    out << '"' << value.GetEquation() << '"';
  else
    out.Number(value.GetValue(), itsDigits);
}

bool SMatlUtil::SameValue(const SValueVarDouble& a, const SValueVarDouble& b) {
  if (a.HasEquation() || b.HasEquation()) return a.GetEquation() == b.GetEquation();
  return a.GetValue() == b.GetValue();
}

void SMatlUtil::ScaleValue(SValueVarDouble& value, double factor) {
  if (!value.HasEquation()) value.SetValue(value.GetValue() * factor);
}

bool SMatlUtil::ParseReal(const SString& text, double& value) {
  const QByteArray bytes = text.toLatin1();
  if (!LooksNumeric(bytes)) return false;
  double parsed = 0.0;
  char tail = 0;
  if (std::sscanf(bytes.constData(), "%lf %c", &parsed, &tail) != 1 || !std::isfinite(parsed)) return false;
  value = parsed;
  return true;
}

bool SMatlUtil::ParseInt(const SString& text, int& value) {
  const QByteArray bytes = text.toLatin1();
  if (bytes.isEmpty()) return false;
  for (int i = 0; i < bytes.size(); ++i) {
    const char c = bytes[i];
    if (!std::isdigit(static_cast<unsigned char>(c)) && !(i == 0 && (c == '-' || c == '+'))) return false;
  }
  bool ok = false;
  const int parsed = text.toInt(&ok);
  if (!ok) return false;
  value = parsed;
  return true;
}

SMatlUtil::Take SMatlUtil::TakeReal(SFile& file, double& value, SString& token) {
  token.clear();
  if (!file.HasToken()) return Missing;
  const bool got = file.GetToken(token);
  if (!got) return Missing;
  return ParseReal(token, value) ? Taken : NotANumber;
}

SMatlUtil::Take SMatlUtil::TakeInt(SFile& file, int& value, SString& token) {
  token.clear();
  if (!file.HasToken()) return Missing;
  const bool got = file.GetToken(token);
  if (!got) return Missing;
  return ParseInt(token, value) ? Taken : NotANumber;
}

const char* SMatlUtil::UnitName(int dimension, int code, bool longName) {
  const SUnitRow* row = Row(dimension, code);
  if (!row) return nullptr;
  return longName ? row->longName : row->shortName;
}

int SMatlUtil::UnitCode(int dimension, const SString& token) {
  if (dimension < 0 || dimension >= DimensionCount) return -1;
  const SString upper = token.upper();
  for (int i = 0; i < kTables[dimension].count; ++i)
    for (const char* const* word = kTables[dimension].rows[i].accepted; *word; ++word)
      if (upper == *word) return kTables[dimension].rows[i].code;
  return -1;
}

int SMatlUtil::UnitCount(int dimension) {
  if (dimension < 0 || dimension >= DimensionCount) return 0;
  return kTables[dimension].count;
}

SString SMatlUtil::DimensionUnitKeyword(int dimension, int code) {
  const SUnitRow* row = Row(dimension, code);
  return row && row->keyword ? SString(row->keyword) : SString();
}

double SMatlUtil::LengthFactor(int code) {
  if (code < 0 || code >= kTables[Length].count) return 1.0;
  return kMetres[code];
}

double SMatlUtil::ConversionFactor(int dimension, int from, int to) {
  if (dimension < 0 || dimension >= Temperature || from == to) return 1.0;
  const int family = kTables[dimension].family;
  // Units the project's table lacks (pm, uinch) take their own factor in metres, so a
  // conversion never silently leaves values unscaled.
  auto factor = [&](int code) {
    const double project = SDimensionBlock::UnitFactor(family, DimensionUnitKeyword(dimension, code));
    if (project != 0.0) return project;
    return dimension == Length ? LengthFactor(code) : 1.0;
  };
  return factor(from) / factor(to);
}

bool SMatlUtil::HasIllegalCharacter(const SString& text) {
  for (int i = 0; i < text.length(); ++i) {
    const QChar c = text[i];
    if (c == '!' || c == '&' || c == '=' || c == '"') return true;
  }
  return false;
}

SString SMatlUtil::BlanksToUnderscores(const SString& text) {
  SString result = text;
  result.replace(" ", "_");
  return result;
}

SString SMatlUtil::StripCommentLeader(const SString& text) {
  QString line = text.qstring();
  auto isBlank = [](QChar c) { return c == ' ' || c == '\t'; };
  int start = 0;
  int end = line.size();
  while (start < end && isBlank(line[start])) ++start;
  while (end > start && isBlank(line[end - 1])) --end;
  line = line.mid(start, end - start);
  int cut = 0;
  if (line.startsWith(QLatin1String("//"))) {
    cut = 2;
  } else {
    static const QString kLeaders = QStringLiteral(";#!*$%");
    while (cut < line.size() && kLeaders.contains(line[cut])) ++cut;
  }
  if (cut == 0) return SString(line);
  while (cut < line.size() && line[cut].isSpace()) ++cut;
  return SString(line.mid(cut));
}

SString SMatlUtil::SplitLayerName(const SString& name, int part) {
  static const char* const kPatterns[] = {"[0-9_]*$", "[0-9]+", "[a-zA-Z]+", "^[a-zA-Z]+", "^[a-zA-Z]{2}",
                                          "[a-zA-Z0-9]+"};
  if (part < 0 || part > FirstAlphanumeric) return SString();
  SRegexp pattern(kPatterns[part]);
  return name.match(pattern);
}

double SMatlUtil::TruncateConductivity(double value) {
  const SString text = SNumberFormat::ToString(value, 4);
  VeloraTrace(4, TRACE_GENERAL, "Checking conductivity truncation '%s'.", text.data());
  double truncated = value;
  ParseReal(text, truncated);
  return truncated;
}
