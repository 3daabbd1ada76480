#include "SMatlLevel.h"

#include "SMatlUtil.h"

void SMatlLevel::SetType(int type) {
  if (type == Top && !itsTopAllowed) type = Numbered;
  if (type < Numbered || type > Ground) type = Numbered;
  itsType = type;
}

SString SMatlLevel::GetText() const {
  if (itsType == Ground) return "GND";
  if (itsType == Top) return "TOP";
  return SString::number(static_cast<long long>(itsNumber));
}

bool SMatlLevel::SetFromText(const SString& text, bool* numeric) {
  if (numeric) *numeric = false;
  const SString upper = text.upper();
  if (upper == "GND") {
    itsType = Ground;
    return true;
  }
  if (upper == "TOP") {
    SetType(Top);
    return itsType == Top;
  }
  int value = 0;
  if (!SMatlUtil::ParseInt(text, value)) return false;
  if (numeric) *numeric = true;
  itsType = Numbered;
  SetNumber(value);
  return value >= 0;
}
