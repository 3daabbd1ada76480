#include "SValueVar.h"

#include "SFile.h"
#include "SGeoClassID.h"
#include "SNumberFormat.h"
#include "SProjectStream.h"

#include <cstdio>

SCOLLECTABLE_DEFINE(SValueVar, SID_VALUEVAR, &SEnclosure::staticTypeInfo())
SCOLLECTABLE_DEFINE(SValueVarDouble, SID_VALUEVARDOUBLE, &SValueVar::staticTypeInfo())

namespace {
// "%lf" as a whole: the text is a number exactly when it converts with nothing left over.
bool IsNumeric(const SString& text, double& value) {
  const QByteArray bytes = text.toLatin1();
  const char* begin = bytes.constData();
  char tail = 0;
  return std::sscanf(begin, "%lf %c", &value, &tail) == 1;
}
}  // namespace

void SValueVar::SetFromText(const SString& text, bool) {
  itsEquation = text;
  if (itsEquation.startsWith("=")) itsEquation.remove(0, 1);
}

SString SValueVar::GetText() const { return itsEquation.isEmpty() ? SString("0.0") : itsEquation; }

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

void SValueVar::WriteValue(SProjectStream& out) const {
  if (itsHiddenValue) {
    out << "<HIDDEN>";
    return;
  }
  out << '"' << GetText() << '"';
}

void SValueVarDouble::SetFromText(const SString& text, bool) {
  itsEquation.clear();
  SString body = text.stripped();
  if (body.startsWith("=")) body.remove(0, 1);
  if (body.isEmpty()) {
    itsValue = 0.0;
    return;
  }
  double value = 0.0;
  if (IsNumeric(body, value))
    itsValue = value;
  else
    itsEquation = body;
}

SString SValueVarDouble::GetText() const {
  return itsEquation.isEmpty() ? SNumberFormat::ToString(itsValue, SNumberFormat::Named) : itsEquation;
}

void SValueVarDouble::WriteValue(SProjectStream& out) const {
  if (itsHiddenValue)
    out << "<HIDDEN>";
  else if (!itsEquation.isEmpty())
    out << '"' << itsEquation << '"';
  else
    out.Number(itsValue, SNumberFormat::Named);
}
