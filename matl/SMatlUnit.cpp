#include "SMatlUnit.h"

#include "SCommentedFile.h"
#include "SMatlClassID.h"
#include "SProjectStream.h"
#include "SVeloraTrace.h"

SCOLLECTABLE_DEFINE(SMatlUnit, SID_MATLUNIT, &SMatlMaterial::staticTypeInfo())

namespace {
const char* const kFailTraces[SMatlUtil::DimensionCount] = {
    "Unrecognized length unit '%s'.", "Unrecognized conductivity unit '%s'.", "Unrecognized resistivity unit '%s'.",
    "Unrecognized sheet resistance unit '%s'.", "Unrecognized temperature unit '%s'."};
const char* const kKeywords[] = {"LUNIT", "CUNIT", "RUNIT", "SRUNIT"};
}  // namespace

bool SMatlUnit::TakeToken(const SString& token) {
  for (int dimension = 0; dimension < SMatlUtil::DimensionCount; ++dimension) {
    if (itsSeen[dimension]) continue;
    const int code = SMatlUtil::UnitCode(dimension, token);
    if (code < 0) {
      VeloraTrace(5, TRACE_GENERAL, kFailTraces[dimension], token.data());
      continue;
    }
    itsCurrent[dimension] = itsFile[dimension] = code;
    itsSeen[dimension] = true;
    return true;
  }
  return false;
}

bool SMatlUnit::Read(SCommentedFile& file) {
  itsLine = file.LineCount();
  SString token;
  bool any = false;
  while (file.HasToken()) {
    if (!file.GetToken(token)) continue;
    if (!TakeToken(token)) return false;
    any = true;
  }
  return any;
}

bool SMatlUnit::Write(SProjectStream& out) const {
  for (int dimension = SMatlUtil::Length; dimension <= SMatlUtil::SheetResistance; ++dimension)
    out << kKeywords[dimension] << " \"" << GetCurrentName(dimension) << "\"\n";
  out << '\n';
  return true;
}

bool SMatlUnit::IsEqual(const SMatlMaterial& other) const {
  const SMatlUnit* o = dynamic_cast<const SMatlUnit*>(&other);
  if (!o) return false;
  for (int i = 0; i < SMatlUtil::DimensionCount; ++i)
    if (itsCurrent[i] != o->itsCurrent[i] || itsFile[i] != o->itsFile[i]) return false;
  return true;
}

SString SMatlUnit::GetCurrentName(int dimension, bool longName) const {
  if (dimension < 0 || dimension >= SMatlUtil::DimensionCount) return SString();
  const char* name = SMatlUtil::UnitName(dimension, itsCurrent[dimension], longName);
  return name ? SString(name) : SString();
}

SString SMatlUnit::GetFileName(int dimension, bool longName) const {
  if (dimension < 0 || dimension >= SMatlUtil::DimensionCount) return SString();
  const char* name = SMatlUtil::UnitName(dimension, itsFile[dimension], longName);
  return name ? SString(name) : SString();
}

double SMatlUnit::GetConversionFactor(int dimension) const {
  if (dimension < 0 || dimension >= SMatlUtil::DimensionCount) return 1.0;
  return SMatlUtil::ConversionFactor(dimension, itsCurrent[dimension], itsFile[dimension]);
}
