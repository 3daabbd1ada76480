#include "SRegexp.h"

int SRegexp::index(const SString& text, int from, int* matchLength) const {
  int pos = -1;
  if (from >= 0 && from <= text.length()) pos = itsRegExp.indexIn(text.qstring(), from);
  if (matchLength) *matchLength = pos >= 0 ? itsRegExp.matchedLength() : 0;
  return pos;
}
