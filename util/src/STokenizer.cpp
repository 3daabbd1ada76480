#include "STokenizer.h"

SString STokenizer::take() {
  if (itsPosition >= itsPieces.size()) return SString();
  return SString(itsPieces.at(itsPosition++));
}

SString STokenizer::next() {
  if (!itsSplit) return next(SRegexp("\\s+"));
  return take();
}

SString STokenizer::next(const char* separators) {
  if (!itsSplit) {
    itsSplit = true;
    const QString set = QString::fromUtf8(separators ? separators : "");
    QString piece;
    for (const QChar c : itsText.qstring()) {
      if (set.contains(c)) {
        if (!piece.isEmpty()) itsPieces.append(piece);
        piece.clear();
      } else {
        piece += c;
      }
    }
    if (!piece.isEmpty()) itsPieces.append(piece);
  }
  return take();
}

SString STokenizer::next(const SRegexp& separator) {
  if (!itsSplit) {
    itsSplit = true;
    itsPieces = itsText.qstring().split(separator.regExp(), Qt::SkipEmptyParts);
  }
  return take();
}

bool STokenizer::hasMore() {
  if (!itsSplit) {
    next();
    if (itsPosition > 0) --itsPosition;
  }
  return itsPosition < itsPieces.size();
}
