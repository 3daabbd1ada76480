#ifndef SPROJECTSTREAM_H
#define SPROJECTSTREAM_H

#include "SNumberFormat.h"
#include "SString.h"

#include <functional>
#include <limits>
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
    if (c == '\n') Spill();
    return *this;
  }
  SProjectStream& operator<<(int value) { return *this << static_cast<long long>(value); }
  SProjectStream& operator<<(unsigned value) { return *this << static_cast<long long>(value); }
  SProjectStream& operator<<(long value) { return *this << static_cast<long long>(value); }
  SProjectStream& operator<<(long long value);
  SProjectStream& operator<<(double value) { return Number(value, itsDigits); }
  SProjectStream& operator<<(bool) = delete;

  // Text as it stands.
  SProjectStream& Append(const char* text, size_t length) {
    itsText.append(text, length);
    return *this;
  }
  // Whole lines as they stand, each ending in a line end.
  SProjectStream& AppendLines(const char* text, size_t length) {
    itsText.append(text, length);
    Spill();
    return *this;
  }
  // The text of another stream after this one's; with a sink, handed on as it stands rather
  // than copied in. The other stream is left empty.
  SProjectStream& AppendStream(SProjectStream& other);
  // One number with its own digit count.
  SProjectStream& Number(double value, int digits);
  // A name, in double quotes when it holds a blank and isn't quoted already.
  SProjectStream& Name(const SString& name);
  // Name(make()) for `key`; a key met just before (the technology layer of polygon after
  // polygon) takes the text made then. Keys must stand for one name while the stream lives.
  template <class Make> SProjectStream& KeyedName(const void* key, Make make) {
    if (key != nullptr && key == itsNameKey) {
      itsText.append(itsNameText);
      return *this;
    }
    SProjectStream made;
    made.Name(make());
    itsNameKey = key;
    itsNameText = made.Text();
    itsText.append(itsNameText);
    return *this;
  }
  // "Y" or "N".
  SProjectStream& YesNo(bool on) { return *this << (on ? 'Y' : 'N'); }

  void SetDigits(int digits) { itsDigits = digits; }
  int Digits() const { return itsDigits; }

  // Text beyond `threshold` bytes goes to `sink` as it comes (at line ends), so that a
  // large project needn't be held whole. A sink that answers false fails the stream, and
  // nothing more is passed on.
  void SetSink(std::function<bool(const char*, size_t)> sink, size_t threshold = size_t(1) << 20);
  // Hands the rest to the sink; false when the stream has failed.
  bool Flush();
  bool Failed() const { return itsFailed; }

  // Without a sink, all of the text; with one, what is still held.
  const std::string& Text() const { return itsText; }
  SString ToString() const { return SString::fromUtf8(itsText.data(), static_cast<int>(itsText.size())); }
  void Clear() { itsText.clear(); }

private:
  void Spill() {
    if (itsText.size() >= itsThreshold) Flush();
  }

  std::string itsText;
  int itsDigits = SNumberFormat::Short;
  std::function<bool(const char*, size_t)> itsSink;
  size_t itsThreshold = std::numeric_limits<size_t>::max();
  bool itsFailed = false;
  const void* itsNameKey = nullptr;
  std::string itsNameText;
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
