#include "SValueVar.h"

#include "SDimensionBlock.h"
#include "SFile.h"
#include "SGeoClassID.h"
#include "SInitializationFile.h"
#include "SNumberFormat.h"
#include "SProject.h"
#include "SProjectStream.h"
#include "SVeloraError.h"

#include <cmath>
#include <cstdio>

SCOLLECTABLE_DEFINE(SValueVar, SID_VALUEVAR, &SEnclosure::staticTypeInfo())
SCOLLECTABLE_DEFINE(SValueVarDouble, SID_VALUEVARDOUBLE, &SValueVar::staticTypeInfo())

namespace {
const char* const kUnitKeywords[SValueVar::UnitKindCount] = {"LNG",  "FREQ", "RES", "IND", "CAP", "CDVY", "RSVY",
                                                             "SRES", "OPS",  "SPM", "PHPM", "RRF", "NONE"};
// Families of the DIM block's unit table, by unit kind; -1 where the table has none.
const int kUnitFamilies[SValueVar::UnitKindCount] = {0, 1, 2, 3, 4, 11, 12, 13, -1, -1, -1, -1, -1};
const double kDefaultEpsilon = 1e-6;

// The pieces of an equation between double quotes: the file names of TABLE1 and TABLE2.
QStringList QuotedPieces(const SString& text) {
  QStringList pieces;
  const QString& t = text.qstring();
  int open = t.indexOf(QLatin1Char('"'));
  while (open >= 0) {
    const int close = t.indexOf(QLatin1Char('"'), open + 1);
    if (close < 0) break;
    const QString piece = t.mid(open + 1, close - open - 1);
    if (!piece.isEmpty() && !pieces.contains(piece)) pieces << piece;
    open = t.indexOf(QLatin1Char('"'), close + 1);
  }
  return pieces;
}
}  // namespace

const char* SValueVar::UnitKeyword(int kind) {
  return kind >= 0 && kind < UnitKindCount ? kUnitKeywords[kind] : kUnitKeywords[NoUnit];
}

int SValueVar::UnitKindOf(const SString& keyword) {
  for (int kind = 0; kind < UnitKindCount; ++kind)
    if (keyword.compare(kUnitKeywords[kind], true) == 0) return kind;
  return keyword.compare("UNLS", true) == 0 ? NoUnit : -1;
}

int SValueVar::UnitFamily(int kind) { return kind >= 0 && kind < UnitKindCount ? kUnitFamilies[kind] : -1; }

void SValueVar::CopyFields(const SValueVar& other) {
  itsName = other.itsName;
  itsProject = other.itsProject;
  itsUnitKind = other.itsUnitKind;
  itsEquation = other.itsEquation;
  itsHeldText = other.itsHeldText;
  itsDescription = other.itsDescription;
  itsStored = other.itsStored;
  itsUsage = other.itsUsage;
  itsHiddenValue = other.itsHiddenValue;
  itsEMConstraints = other.itsEMConstraints;
  itsTuningConstraints = other.itsTuningConstraints;
  itsOptConstraints = other.itsOptConstraints;
  itsFileNames = other.itsFileNames;
}

bool SValueVar::CompileHeldText(SString* errorText, bool report) {
  if (itsHeldText.isEmpty()) return true;
  return SetEquation(itsHeldText, errorText, report) && itsHeldText.isEmpty();
}

SString SValueVar::GetUnitListName() const {
  if (itsUnitKind == NoUnit) return SString("Other");
  const int family = UnitFamily(itsUnitKind);
  if (family < 0 || !itsProject) return SString();
  return itsProject->GetDimensionBlock()->GetUnitDisplay(family);
}

void SValueVar::ClearEquation() {
  itsEquation.clear();
  itsHeldText.clear();
  itsFileNames.clear();
}

void SValueVar::HoldEquation(const SString& text) {
  ClearEquation();
  itsHeldText = text;
  itsFileNames = QuotedPieces(text);
}

bool SValueVar::CompileEquation(const SString& text, SString& errorText) {
  // Equations are carried as text until the expression library compiles them.
  if (text.stripped().isEmpty()) {
    errorText = "The equation is empty";
    return false;
  }
  itsEquation = text;
  return true;
}

bool SValueVar::EvaluateEquation(double, double&, SString& errorText) const {
  errorText = "The equation can't be worked out: " + GetEquation();
  return false;
}

bool SValueVar::SetEquation(const SString& text, SString* errorText, bool report) {
  if (!itsProject) {
    HoldEquation(text);
    return true;
  }
  const SString oldEquation = itsEquation;
  SString reason;
  if (!CompileEquation(text, reason)) {
    itsEquation = oldEquation;
    if (report) VeloraErrorReport(5602, 5760, reason.data());
    if (errorText) *errorText = reason;
    return false;
  }
  itsHeldText.clear();
  itsFileNames = QuotedPieces(itsEquation);
  return true;
}

bool SValueVar::IsDependent() const {
  // Until equations are compiled every equation counts as dependent.
  return HasEquation();
}

SVariableConstraints* SValueVar::Constraints(const SString& kind) {
  if (kind.compare("EM", true) == 0) return &itsEMConstraints;
  if (kind.compare("TUNE", true) == 0) return &itsTuningConstraints;
  if (kind.compare("OPT", true) == 0) return &itsOptConstraints;
  return nullptr;
}

bool SValueVar::IsNumeric(const SString& text, double& value) {
  // "%lf" as a whole: the text is a number exactly when it converts with nothing left over.
  const QByteArray bytes = text.toLatin1();
  char tail = 0;
  return std::sscanf(bytes.constData(), "%lf %c", &value, &tail) == 1;
}

bool SValueVar::ReadValueToken(SFile& file) {
  SString token;
  if (!file.GetToken(token)) return false;
  itsStored = 1;
  if (token == "<HIDDEN>") {
    itsHiddenValue = 1;
    return true;
  }
  token.replace("\\\"", "\"");
  SetFromText(token);
  return true;
}

void SValueVar::SetWithScale(int, double) {}

void SValueVar::WriteValue(SProjectStream& out) const {
  if (itsHiddenValue) {
    out << "<HIDDEN>";
    return;
  }
  out << '"' << GetText() << '"';
}

void SValueVar::SetNumber(double) { ClearEquation(); }

void SValueVar::SetFromText(const SString& text, bool defer) {
  ClearEquation();
  SString body = text.stripped();
  if (body.startsWith("=")) body.remove(0, 1);
  if (body.isEmpty()) return;
  if (defer)
    HoldEquation(body);
  else
    SetEquation(body);
}

namespace {
SString CutToWidth(const SString& text, bool truncate, int width) {
  if (!truncate || width < 0 || text.length() <= width) return text;
  if (width <= 3) return SString("...").left(width);
  return text.left(width - 3) + "...";
}
}  // namespace

SString SValueVar::GetListText(bool truncate, int width, int, bool) const {
  if (itsHiddenValue) return SString(truncate ? "-" : "<Hidden>");
  return CutToWidth(GetText(), truncate, width);
}

SString SValueVar::GetText() const { return HasEquation() ? GetEquation() : SString("0.0"); }

double SValueVar::NominalEpsilon() {
  SInitializationFile* settings = SInitializationFile::GetGlobal();
  return settings ? settings->GetDouble("Velora", "NominalEpsilon", kDefaultEpsilon) : kDefaultEpsilon;
}

double SValueVar::ParameterCompareEpsilon() {
  static const double epsilon = [] {
    SInitializationFile* settings = SInitializationFile::GetGlobal();
    return settings ? settings->GetDouble("Velora", "ParameterCompareEpsilon", kDefaultEpsilon) : kDefaultEpsilon;
  }();
  return epsilon;
}

bool SValueVar::WithinTolerance(double value, double number, double epsilon) {
  if (value > 0) return number >= (1 - epsilon) * value && number <= (1 + epsilon) * value;
  if (value < 0) return number >= (1 + epsilon) * value && number <= (1 - epsilon) * value;
  return std::fabs((1 + epsilon) * number) <= epsilon;
}

int SValueVar::ComparePair(double value, double number) {
  const double epsilon = ParameterCompareEpsilon();
  if (value == 0) {
    if (std::fabs((1 + epsilon) * number) <= epsilon) return 0;
    return number > 0 ? -1 : 1;
  }
  const double low = value > 0 ? (1 - epsilon) * value : (1 + epsilon) * value;
  const double high = value > 0 ? (1 + epsilon) * value : (1 - epsilon) * value;
  if (number < low) return 1;
  if (number > high) return -1;
  return 0;
}

void SValueVarDouble::CopyValue(const SValueVarDouble& other) {
  itsValue = other.itsValue;
  itsEquation = other.itsEquation;
  itsHeldText = other.itsHeldText;
  itsFileNames = other.itsFileNames;
}

bool SValueVarDouble::Evaluate(SString& errorText, double frequency) {
  if (!HasEquation()) return true;
  double result = 0.0;
  if (!EvaluateEquation(frequency, result, errorText)) return false;
  itsValue = result;
  return true;
}

void SValueVarDouble::SetWithScale(int kind, double factor) {
  if (kind != itsUnitKind) return;
  if (HasEquation()) {
    SString reason;
    double result = 0.0;
    // An equation that can't be worked out keeps its text rather than becoming a number.
    if (!EvaluateEquation(0.0, result, reason)) return;
    SetNumber(result);
  }
  itsValue *= factor;
}

void SValueVarDouble::WriteValue(SProjectStream& out) const {
  if (itsHiddenValue)
    out << "<HIDDEN>";
  else if (HasEquation())
    out << '"' << GetEquation() << '"';
  else
    out.Number(itsValue, SNumberFormat::Named);
}

void SValueVarDouble::SetNumber(double value) {
  ClearEquation();
  itsValue = value;
}

void SValueVarDouble::SetFromText(const SString& text, bool defer) {
  ClearEquation();
  SString body = text.stripped();
  if (body.startsWith("=")) body.remove(0, 1);
  double value = 0.0;
  if (body.isEmpty())
    itsValue = 0.0;
  else if (IsNumeric(body, value))
    itsValue = value;
  else if (defer)
    HoldEquation(body);
  else
    SetEquation(body);
}

SString SValueVarDouble::GetListText(bool truncate, int width, int precision, bool asInteger) const {
  if (itsHiddenValue || HasEquation()) return SValueVar::GetListText(truncate, width, precision, asInteger);
  if (asInteger) return SString::number(static_cast<long long>(itsValue + 0.5));
  return CutToWidth(SNumberFormat::ToString(itsValue, precision), truncate, width);
}

SString SValueVarDouble::GetText() const {
  return HasEquation() ? GetEquation() : SNumberFormat::ToString(itsValue, SNumberFormat::Named);
}
