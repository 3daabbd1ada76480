#ifndef SSTRING_H
#define SSTRING_H

#include <QByteArray>
#include <QMutex>
#include <QString>
#include <cstdarg>

class SRegexp;

// Text over QString. Char pointers read as Latin-1 when constructing and as
// UTF-8 when assigning or appending; the char view is always UTF-8.
class SString {
public:
  SString() {}
  SString(const char* latin1);
  SString(const char* latin1, int count);
  SString(const QString& text) : itsString(text) {}
  SString(const SString& other) : itsString(other.itsString) {}
  virtual ~SString() {}

  SString& operator=(const char* utf8);
  SString& operator=(const QString& text);
  SString& operator=(const SString& other);
  SString& operator+=(const char* utf8);
  SString& operator+=(const SString& other);
  SString& operator+=(const QString& other);
  SString& operator+=(char c);

  friend SString operator+(const SString& a, const SString& b);
  friend SString operator+(const SString& a, const char* utf8);

  // UTF-8 view, cached; valid until the next call or the object's end.
  const char* data() const;
  const QString& qstring() const { return itsString; }
  QByteArray toUtf8() const { return itsString.toUtf8(); }
  QByteArray toLatin1() const { return itsString.toLatin1(); }
  static SString fromUtf8(const char* utf8, int size = -1);
  static SString fromUtf8(const QByteArray& utf8);

  int length() const { return itsString.length(); }
  bool isEmpty() const { return itsString.isEmpty(); }
  bool isNull() const { return itsString.isEmpty(); }
  void clear();
  // Out-of-range positions give a null character.
  QChar operator[](int i) const;
  QChar first() const { return (*this)[0]; }
  QChar last() const { return (*this)[length() - 1]; }

  int compare(const SString& other, bool ignoreCase = false) const;
  bool operator==(const SString& other) const { return itsString == other.itsString; }
  bool operator!=(const SString& other) const { return itsString != other.itsString; }
  bool operator<(const SString& other) const { return itsString < other.itsString; }
  bool operator==(const char* latin1) const;
  bool operator!=(const char* latin1) const { return !(*this == latin1); }

  int index(const SString& what, int from = 0, bool ignoreCase = false) const;
  int rindex(const SString& what, bool ignoreCase = false) const;
  // Position of the first match at or after `from`, or -1; `matchLength` gets its length.
  int index(const SRegexp& pattern, int from = 0, int* matchLength = nullptr) const;
  // The matched text of the first match, empty when there is none.
  SString match(const SRegexp& pattern, int from = 0) const;
  bool contains(const SString& what, bool ignoreCase = false) const { return index(what, 0, ignoreCase) >= 0; }
  bool contains(QChar c) const { return itsString.contains(c); }
  bool startsWith(const SString& what, bool ignoreCase = false) const;
  bool endsWith(const SString& what, bool ignoreCase = false) const;

  SString mid(int start, int len = -1) const;
  SString left(int len) const { return SString(itsString.left(len)); }
  SString right(int len) const { return SString(itsString.right(len)); }
  // Mode 1 leading, 2 trailing, 3 both. Mode 3 with a blank removes all white space.
  SString& strip(int mode = 3, char c = ' ');
  SString stripped(int mode = 3, char c = ' ') const;
  SString upper() const { return SString(itsString.toUpper()); }
  SString lower() const { return SString(itsString.toLower()); }
  SString& toUpper();
  SString& toLower();
  SString& replace(int pos, int len, const SString& with);
  SString& replace(const SString& what, const SString& with, bool ignoreCase = false);
  SString& remove(int pos, int len);
  SString& insert(int pos, const SString& what);
  SString& prepend(const SString& what);
  SString& append(const SString& what) { return *this += what; }

  int toInt(bool* ok = nullptr) const { return itsString.toInt(ok, 10); }
  double toDouble(bool* ok = nullptr) const { return itsString.toDouble(ok); }

  static SString number(long long value);
  // "%g"-like form with the given number of significant digits.
  static SString number(double value, int significantDigits = 6);
  // Bytes from hexadecimal digits; an odd count gives a lone leading nibble, other
  // characters are skipped.
  static QByteArray fromHex(const SString& hex);

  static SString format(const char* fmt, ...) __attribute__((format(printf, 1, 2)));
  static SString vformat(const char* fmt, va_list args);

private:
  void invalidate() { itsUtf8Valid = false; }

  QString itsString;
  mutable QByteArray itsUtf8;
  mutable bool itsUtf8Valid = false;
  mutable QMutex itsMutex;
};

uint qHash(const SString& text, uint seed = 0);

#endif
