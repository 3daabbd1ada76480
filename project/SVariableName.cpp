#include "SVariableName.h"

#include <QRegExp>

namespace {
// The words of the expression language, in upper case (ATAN2 stands twice, as it always has).
const char* const kReserved[] = {
    "MIXED", "FREQ",  "PI",     "TWO_PI",  "EPSILON_0", "MU_0",    "ETA_0",   "RAD_TO_DEG", "DEG_TO_RAD", "VELC",
    "SIN",   "COS",   "REAL",   "IMAG",    "MAG",       "DEG",     "RAD",     "DB10",       "DB20",       "LOG10",
    "LN",    "EXP",   "CONJ",   "CMPLX",   "SQRT",      "ATAN2",   "ACOS",    "ASIN",       "ATAN",       "ATAN2",
    "ACOSH", "ASINH", "ATANH",  "COSH",    "FMOD",      "HYPOT",   "INT",     "MAX",        "MIN",        "SINH",
    "TAN",   "TANH",  "INF",    "TABLE1",  "TABLE2",    "ABS",     "CELL_X",  "CELL_Y",     "CELLS_X",    "CELLS_Y",
    "BOX_X", "BOX_Y", "REF_L",  "REF_R",   "REF_T",     "REF_B",   "CDVY",    "RSVY",       "SRVY"};
static_assert(sizeof(kReserved) / sizeof(kReserved[0]) == 59, "59 reserved words");

bool IsWordCharacter(QChar c) {
  return (c >= QLatin1Char('a') && c <= QLatin1Char('z')) || (c >= QLatin1Char('A') && c <= QLatin1Char('Z')) ||
         (c >= QLatin1Char('0') && c <= QLatin1Char('9')) || c == QLatin1Char('_');
}
}  // namespace

bool SVariableName::IsReservedOrInvalid(const SString& name, int& code) {
  const SString upper = name.upper();
  for (const char* word : kReserved)
    if (upper == word) {
      code = Reserved;
      return true;
    }
  const QChar first = name.first();
  if (name.isEmpty() || !IsWordCharacter(first) || first.isDigit()) {
    code = BadFirstCharacter;
    return true;
  }
  for (int i = 1; i < name.length(); ++i)
    if (!IsWordCharacter(name[i])) {
      code = i;
      return true;
    }
  code = 0;
  return false;
}

bool SVariableName::Repair(SString& name) {
  bool changed = false;
  int code = 0;
  while (IsReservedOrInvalid(name, code)) {
    if (code < 0) {
      // A bad first character stays behind the "_" and is replaced on the next round.
      name.prepend("_");
    } else {
      name.replace(code, 1, "_");
    }
    changed = true;
  }
  return changed;
}

bool SVariableName::MakeUnique(SString& name, const std::function<bool(const SString&)>& taken) {
  static const QRegExp numbered("_([0-9]+)$");
  bool changed = false;
  while (taken(name)) {
    QRegExp match(numbered);
    const int at = match.indexIn(name.qstring());
    if (at >= 0)
      name = name.left(at + 1) + SString::number(match.cap(1).toLongLong() + 1);
    else
      name += "_1";
    changed = true;
  }
  return changed;
}
