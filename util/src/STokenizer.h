#ifndef STOKENIZER_H
#define STOKENIZER_H

#include "SRegexp.h"
#include "SString.h"

#include <QStringList>

// Splits a text once, at the first call of `next`, by the separator given then;
// later calls walk the pieces and give an empty string behind the last.
class STokenizer {
public:
  explicit STokenizer(const SString& text) : itsText(text) {}

  // White space ("\\s+") separates.
  SString next();
  // Any of the characters of `separators` separates.
  SString next(const char* separators);
  SString next(const SRegexp& separator);
  SString operator()() { return next(); }
  SString operator()(const char* separators) { return next(separators); }

  // True while pieces remain; splits with white space if nothing split yet.
  bool hasMore();

private:
  SString take();

  SString itsText;
  QStringList itsPieces;
  int itsPosition = 0;
  bool itsSplit = false;
};

#endif
