#include "SNumberTest.h"

#include "SString.h"

bool IsInteger(const SString& text) {
  bool ok = false;
  text.qstring().trimmed().toInt(&ok, 10);
  return ok;
}

bool IsDouble(const SString& text) {
  const QString trimmed = text.qstring().trimmed();
  if (trimmed.compare(QLatin1String("nan"), Qt::CaseInsensitive) == 0) return false;
  bool ok = false;
  trimmed.toDouble(&ok);
  return ok;
}
