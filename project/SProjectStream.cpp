#include "SProjectStream.h"

#include <cstring>

SProjectStream& SProjectStream::operator<<(const char* text) {
  if (text) itsText.append(text);
  Spill();
  return *this;
}

SProjectStream& SProjectStream::operator<<(const SString& text) {
  const QByteArray bytes = text.toUtf8();
  itsText.append(bytes.constData(), static_cast<size_t>(bytes.size()));
  Spill();
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

void SProjectStream::SetSink(std::function<bool(const char*, size_t)> sink, size_t threshold) {
  itsSink = std::move(sink);
  itsThreshold = itsSink ? threshold : std::numeric_limits<size_t>::max();
  itsText.reserve(itsSink ? threshold + 4096 : itsText.capacity());
}

SProjectStream& SProjectStream::AppendStream(SProjectStream& other) {
  if (itsSink && !other.itsText.empty()) {
    Flush();
    if (!itsFailed && !itsSink(other.itsText.data(), other.itsText.size())) itsFailed = true;
  } else {
    itsText.append(other.itsText);
  }
  other.itsText.clear();
  return *this;
}

bool SProjectStream::Flush() {
  if (!itsSink) return !itsFailed;
  if (!itsFailed && !itsText.empty() && !itsSink(itsText.data(), itsText.size())) itsFailed = true;
  itsText.clear();
  return !itsFailed;
}
