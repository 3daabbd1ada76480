#include "SProjectStream.h"

#include <cstring>

SProjectStream& SProjectStream::operator<<(const char* text) {
  if (text) itsText.append(text);
  return *this;
}

SProjectStream& SProjectStream::operator<<(const SString& text) {
  const QByteArray bytes = text.toUtf8();
  itsText.append(bytes.constData(), static_cast<size_t>(bytes.size()));
  return *this;
}

SProjectStream& SProjectStream::operator<<(long long value) {
  char buffer[24];
  char* end = buffer + sizeof buffer;
  char* p = end;
  unsigned long long magnitude = value < 0 ? 0ull - static_cast<unsigned long long>(value) : static_cast<unsigned long long>(value);
  do {
    *--p = static_cast<char>('0' + magnitude % 10);
    magnitude /= 10;
  } while (magnitude);
  if (value < 0) *--p = '-';
  itsText.append(p, static_cast<size_t>(end - p));
  return *this;
}

SProjectStream& SProjectStream::Number(double value, int digits) {
  SNumberFormat::Append(itsText, value, digits);
  return *this;
}

SProjectStream& SProjectStream::Name(const SString& name) {
  const bool quoted = name.length() >= 2 && name.first() == QLatin1Char('"') && name.last() == QLatin1Char('"');
  if (!quoted && (name.contains(QLatin1Char(' ')) || name.contains(QLatin1Char('\t')))) {
    itsText.push_back('"');
    *this << name;
    itsText.push_back('"');
  } else {
    *this << name;
  }
  return *this;
}
