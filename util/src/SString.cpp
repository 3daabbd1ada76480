#include "SString.h"

#include "SRegexp.h"

#include <QHash>
#include <QMutexLocker>
#include <cstdio>
#include <vector>

SString::SString(const char* latin1) : itsString(latin1 ? QString::fromLatin1(latin1) : QString()) {}

SString::SString(const char* latin1, int count)
    : itsString(latin1 && count > 0 ? QString::fromLatin1(latin1, count) : QString()) {}

SString& SString::operator=(const char* utf8) {
  itsString = utf8 ? QString::fromUtf8(utf8) : QString();
  invalidate();
  return *this;
}

SString& SString::operator=(const QString& text) {
  itsString = text;
  invalidate();
  return *this;
}

SString& SString::operator=(const SString& other) {
  if (this != &other) {
    itsString = other.itsString;
    invalidate();
  }
  return *this;
}

SString& SString::operator+=(const char* utf8) {
  if (utf8) {
    itsString += QString::fromUtf8(utf8);
    invalidate();
  }
  return *this;
}

SString& SString::operator+=(const SString& other) {
  itsString += other.itsString;
  invalidate();
  return *this;
}

SString& SString::operator+=(const QString& other) {
  itsString += other;
  invalidate();
  return *this;
}

SString& SString::operator+=(char c) {
  // A lone byte can't be UTF-8 beyond ASCII; take it as Latin-1.
  itsString += QChar(static_cast<uchar>(c));
  invalidate();
  return *this;
}

SString operator+(const SString& a, const SString& b) { return SString(a.itsString + b.itsString); }

SString operator+(const SString& a, const char* utf8) {
  SString result(a);
  result += utf8;
  return result;
}

const char* SString::data() const {
  QMutexLocker lock(&itsMutex);
  if (!itsUtf8Valid) {
    itsUtf8 = itsString.toUtf8();
    itsUtf8Valid = true;
  }
  return itsUtf8.constData();
}

SString SString::fromUtf8(const char* utf8, int size) {
  return SString(utf8 ? QString::fromUtf8(utf8, size) : QString());
}

SString SString::fromUtf8(const QByteArray& utf8) { return SString(QString::fromUtf8(utf8)); }

void SString::clear() {
  itsString.clear();
  invalidate();
}

QChar SString::operator[](int i) const {
  if (i < 0 || i >= itsString.length()) return QChar();
  return itsString.at(i);
}

int SString::compare(const SString& other, bool ignoreCase) const {
  return itsString.compare(other.itsString, ignoreCase ? Qt::CaseInsensitive : Qt::CaseSensitive);
}

bool SString::operator==(const char* latin1) const {
  if (!latin1) return itsString.isEmpty();
  return itsString == QLatin1String(latin1);
}

int SString::index(const SString& what, int from, bool ignoreCase) const {
  if (from < 0 || from > itsString.length()) return -1;
  return itsString.indexOf(what.itsString, from, ignoreCase ? Qt::CaseInsensitive : Qt::CaseSensitive);
}

int SString::rindex(const SString& what, bool ignoreCase) const {
  return itsString.lastIndexOf(what.itsString, -1, ignoreCase ? Qt::CaseInsensitive : Qt::CaseSensitive);
}

int SString::index(const SRegexp& pattern, int from, int* matchLength) const {
  int length = 0;
  int pos = pattern.index(*this, from, &length);
  if (matchLength) *matchLength = pos >= 0 ? length : 0;
  return pos;
}

SString SString::match(const SRegexp& pattern, int from) const {
  int length = 0;
  int pos = pattern.index(*this, from, &length);
  if (pos < 0) return SString();
  return mid(pos, length);
}

bool SString::startsWith(const SString& what, bool ignoreCase) const {
  return itsString.startsWith(what.itsString, ignoreCase ? Qt::CaseInsensitive : Qt::CaseSensitive);
}

bool SString::endsWith(const SString& what, bool ignoreCase) const {
  return itsString.endsWith(what.itsString, ignoreCase ? Qt::CaseInsensitive : Qt::CaseSensitive);
}

SString SString::mid(int start, int len) const {
  if (start < 0) {
    if (len >= 0) len += start;
    start = 0;
    if (len == 0) return SString();
  }
  if (start >= itsString.length()) return SString();
  return SString(itsString.mid(start, len < 0 ? -1 : len));
}

SString& SString::strip(int mode, char c) {
  if (mode == 3 && c == ' ') {
    itsString = itsString.trimmed();
  } else {
    const QChar ch(static_cast<uchar>(c));
    int begin = 0;
    int end = itsString.length();
    if (mode & 1)
      while (begin < end && itsString.at(begin) == ch) ++begin;
    if (mode & 2)
      while (end > begin && itsString.at(end - 1) == ch) --end;
    if (begin > 0 || end < itsString.length()) itsString = itsString.mid(begin, end - begin);
  }
  invalidate();
  return *this;
}

SString SString::stripped(int mode, char c) const {
  SString copy(*this);
  copy.strip(mode, c);
  return copy;
}

SString& SString::toUpper() {
  itsString = itsString.toUpper();
  invalidate();
  return *this;
}

SString& SString::toLower() {
  itsString = itsString.toLower();
  invalidate();
  return *this;
}

SString& SString::replace(int pos, int len, const SString& with) {
  const int size = itsString.length();
  if (pos < 0) pos = 0;
  if (pos > size) pos = size;
  if (len < 0 || len > size - pos) len = size - pos;
  itsString.replace(pos, len, with.itsString);
  invalidate();
  return *this;
}

SString& SString::replace(const SString& what, const SString& with, bool ignoreCase) {
  if (!what.isEmpty()) {
    itsString.replace(what.itsString, with.itsString, ignoreCase ? Qt::CaseInsensitive : Qt::CaseSensitive);
    invalidate();
  }
  return *this;
}

SString& SString::remove(int pos, int len) {
  const int size = itsString.length();
  if (pos < 0 || pos >= size || len <= 0) return *this;
  if (len > size - pos) len = size - pos;
  itsString.remove(pos, len);
  invalidate();
  return *this;
}

SString& SString::insert(int pos, const SString& what) {
  if (pos < 0) pos = 0;
  if (pos > itsString.length()) pos = itsString.length();
  itsString.insert(pos, what.itsString);
  invalidate();
  return *this;
}

SString& SString::prepend(const SString& what) {
  itsString.prepend(what.itsString);
  invalidate();
  return *this;
}

SString SString::number(long long value) { return SString(QString::number(value)); }

SString SString::number(double value, int significantDigits) {
  if (significantDigits < 1) significantDigits = 1;
  if (significantDigits > 17) significantDigits = 17;
  return SString(QString::number(value, 'g', significantDigits));
}

QByteArray SString::fromHex(const SString& hex) { return QByteArray::fromHex(hex.itsString.toLatin1()); }

SString SString::vformat(const char* fmt, va_list args) {
  if (!fmt) return SString();
  char small[512];
  va_list copy;
  va_copy(copy, args);
  const int needed = vsnprintf(small, sizeof small, fmt, copy);
  va_end(copy);
  if (needed < 0) return SString();
  if (static_cast<size_t>(needed) < sizeof small) return fromUtf8(small, needed);
  std::vector<char> big(static_cast<size_t>(needed) + 1);
  vsnprintf(big.data(), big.size(), fmt, args);
  return fromUtf8(big.data(), needed);
}

SString SString::format(const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  SString result = vformat(fmt, args);
  va_end(args);
  return result;
}

uint qHash(const SString& text, uint seed) { return qHash(text.qstring(), seed); }
