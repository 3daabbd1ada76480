#ifndef SNUMBERFORMAT_H
#define SNUMBERFORMAT_H

#include "SString.h"

#include <cstdint>
#include <string>

// The number form of every project writer: "%.*g" with 6, 10 or 15 significant digits
// (fixed form unless the exponent is below -4 or reaches the digit count, trailing zeros
// dropped, an exponent of at least two digits). It matches the C library's output digit for
// digit, ties of exactly representable halves included, except that a negative zero is
// written "0": the sign of a zero means nothing in a project.
class SNumberFormat {
public:
  enum Digits { Short = 6, Geometry = 10, Named = 15 };
  // Enough room for any double at any digit count.
  static constexpr int kBufferSize = 32;

  // Writes the text into `buffer` (kBufferSize bytes, not terminated); returns its length.
  // Digit counts outside 1 to 17 are clamped.
  static int Format(double value, int digits, char* buffer);
  static void Append(std::string& out, double value, int digits);
  static SString ToString(double value, int digits = Short);

  // How the exact magnitude (positive, finite) times 10^power lies to whole + 1/2: below
  // (-1), on it (0) or above (1); 2 when 128-bit integers can't tell.
  static int CompareWithTie(double magnitude, int power, uint64_t whole);

  // The same result through the C library alone; the reference the fast path is tested against.
  static int FormatSlow(double value, int digits, char* buffer);
};

#endif
