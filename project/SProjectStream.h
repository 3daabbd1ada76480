#ifndef SPROJECTSTREAM_H
#define SPROJECTSTREAM_H

#include "SNumberFormat.h"
#include "SString.h"

#include <string>

// The text that project writers produce, gathered in memory so that a save can put it on
// disk in one piece. Doubles go out in the number form of SNumberFormat with the stream's
// current digit count (6 unless a writer says otherwise); lines end in a line feed.
class SProjectStream {
public:
  SProjectStream() { itsText.reserve(4096); }

  SProjectStream& operator<<(const char* text);
  SProjectStream& operator<<(const SString& text);
  SProjectStream& operator<<(char c) {
    itsText.push_back(c);
    return *this;
  }
  SProjectStream& operator<<(int value) { return *this << static_cast<long long>(value); }
  SProjectStream& operator<<(unsigned value) { return *this << static_cast<long long>(value); }
  SProjectStream& operator<<(long value) { return *this << static_cast<long long>(value); }
  SProjectStream& operator<<(long long value);
  SProjectStream& operator<<(double value) { return Number(value, itsDigits); }
  SProjectStream& operator<<(bool) = delete;

  // One number with its own digit count.
  SProjectStream& Number(double value, int digits);
  // A name, in double quotes when it holds a blank and isn't quoted already.
  SProjectStream& Name(const SString& name);
  // "Y" or "N".
  SProjectStream& YesNo(bool on) { return *this << (on ? 'Y' : 'N'); }

  void SetDigits(int digits) { itsDigits = digits; }
  int Digits() const { return itsDigits; }

  const std::string& Text() const { return itsText; }
  SString ToString() const { return SString::fromUtf8(itsText.data(), static_cast<int>(itsText.size())); }
  void Clear() { itsText.clear(); }

private:
  std::string itsText;
  int itsDigits = SNumberFormat::Short;
};

// Sets the digit count of a stream for one scope (10 inside GEO, 15 for named values).
class SProjectDigits {
public:
  SProjectDigits(SProjectStream& stream, int digits) : itsStream(stream), itsSaved(stream.Digits()) {
    stream.SetDigits(digits);
  }
  ~SProjectDigits() { itsStream.SetDigits(itsSaved); }
  SProjectDigits(const SProjectDigits&) = delete;
  SProjectDigits& operator=(const SProjectDigits&) = delete;

private:
  SProjectStream& itsStream;
  int itsSaved;
};

#endif
