#ifndef SREGEXP_H
#define SREGEXP_H

#include "SString.h"

#include <QRegExp>

// A regular expression, case-sensitive, in QRegExp's default syntax.
class SRegexp {
public:
  SRegexp() {}
  explicit SRegexp(const SString& pattern) : itsRegExp(pattern.qstring(), Qt::CaseSensitive, QRegExp::RegExp) {}
  SRegexp(const char* pattern) : SRegexp(SString(pattern)) {}

  bool isValid() const { return itsRegExp.isValid(); }
  SString pattern() const { return SString(itsRegExp.pattern()); }

  // Position of the first match at or after `from`, or -1.
  int index(const SString& text, int from = 0, int* matchLength = nullptr) const;
  // True when the whole text matches.
  bool exactMatch(const SString& text) const { return itsRegExp.exactMatch(text.qstring()); }
  // After a search: the length of the match and the captured texts (0 is the whole match).
  int matchedLength() const { return itsRegExp.matchedLength(); }
  SString cap(int n = 0) const { return SString(itsRegExp.cap(n)); }
  int pos(int n = 0) const { return itsRegExp.pos(n); }
  int captureCount() const { return itsRegExp.captureCount(); }
  const QRegExp& regExp() const { return itsRegExp; }

private:
  // QRegExp keeps the state of the last search.
  mutable QRegExp itsRegExp;
};

#endif
