#include "SNumberFormat.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace {

constexpr uint64_t kPow10[] = {1ull,
                               10ull,
                               100ull,
                               1000ull,
                               10000ull,
                               100000ull,
                               1000000ull,
                               10000000ull,
                               100000000ull,
                               1000000000ull,
                               10000000000ull,
                               100000000000ull,
                               1000000000000ull,
                               10000000000000ull,
                               100000000000000ull,
                               1000000000000000ull,
                               10000000000000000ull,
                               100000000000000000ull,
                               1000000000000000000ull};

// Powers of ten that an 80-bit long double holds exactly (5^27 < 2^64).
constexpr long double kPow10L[] = {1e0L,  1e1L,  1e2L,  1e3L,  1e4L,  1e5L,  1e6L,  1e7L,  1e8L,  1e9L,
                                   1e10L, 1e11L, 1e12L, 1e13L, 1e14L, 1e15L, 1e16L, 1e17L, 1e18L, 1e19L,
                                   1e20L, 1e21L, 1e22L, 1e23L, 1e24L, 1e25L, 1e26L, 1e27L};
constexpr int kMaxExactPower = 27;

// 10^0 to 10^22 as 128-bit integers.
constexpr unsigned __int128 Pow10Wide(int n) { return n == 0 ? 1 : Pow10Wide(n - 1) * 10; }
constexpr unsigned __int128 kPow10Wide[] = {
    Pow10Wide(0),  Pow10Wide(1),  Pow10Wide(2),  Pow10Wide(3),  Pow10Wide(4),  Pow10Wide(5),
    Pow10Wide(6),  Pow10Wide(7),  Pow10Wide(8),  Pow10Wide(9),  Pow10Wide(10), Pow10Wide(11),
    Pow10Wide(12), Pow10Wide(13), Pow10Wide(14), Pow10Wide(15), Pow10Wide(16), Pow10Wide(17),
    Pow10Wide(18), Pow10Wide(19), Pow10Wide(20), Pow10Wide(21), Pow10Wide(22)};

int Clamp(int digits) { return digits < 1 ? 1 : (digits > 17 ? 17 : digits); }

// Decimal digits of `value` into `out`, most significant first; returns the count.
int WriteDigits(uint64_t value, char* out) {
  char reversed[20];
  int n = 0;
  do {
    reversed[n++] = static_cast<char>('0' + value % 10);
    value /= 10;
  } while (value);
  for (int i = 0; i < n; ++i) out[i] = reversed[n - 1 - i];
  return n;
}

// Lays out d.ddd x 10^exponent, where `mantissa` holds `digits` significant digits.
int Compose(bool negative, uint64_t mantissa, int exponent, int digits, char* out) {
  while (mantissa % 10 == 0 && mantissa != 0) mantissa /= 10;
  char d[20];
  const int count = WriteDigits(mantissa, d);
  char* p = out;
  if (negative) *p++ = '-';
  if (exponent < -4 || exponent >= digits) {
    *p++ = d[0];
    if (count > 1) {
      *p++ = '.';
      for (int i = 1; i < count; ++i) *p++ = d[i];
    }
    *p++ = 'e';
    *p++ = exponent < 0 ? '-' : '+';
    const int magnitude = std::abs(exponent);
    if (magnitude >= 100) *p++ = static_cast<char>('0' + magnitude / 100);
    *p++ = static_cast<char>('0' + magnitude / 10 % 10);
    *p++ = static_cast<char>('0' + magnitude % 10);
  } else if (exponent >= 0) {
    const int whole = exponent + 1;
    for (int i = 0; i < whole; ++i) *p++ = i < count ? d[i] : '0';
    if (count > whole) {
      *p++ = '.';
      for (int i = whole; i < count; ++i) *p++ = d[i];
    }
  } else {
    *p++ = '0';
    *p++ = '.';
    for (int i = -1; i > exponent; --i) *p++ = '0';
    for (int i = 0; i < count; ++i) *p++ = d[i];
  }
  return static_cast<int>(p - out);
}

constexpr double kPow10D[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

// Layout values are mostly short decimals (database units of a nanometre or so in
// microns), or lie within a few units in the last place of one. When the double is the
// nearest one to r / 10^k with r of at most `digits` digits, that decimal is exactly what
// rounding to `digits` places gives. The smallest
// such k has no trailing zero. 0 when this doesn't apply.
//
// One scaling by the largest k that keeps r within `digits` digits tells it for every
// smaller k too: if r / 10^k gives the double, so does r 10^j / 10^(k+j), and the scaled
// value misses r 10^j by far less than a half, so rounding finds it.
int ShortDecimal(bool negative, double magnitude, int digits, char* buffer) {
  if (magnitude < 1e-4 || digits > 15) return 0;
  int wholeDigits = 0;
  while (wholeDigits < 16 && magnitude >= kPow10D[wholeDigits]) ++wholeDigits;
  const int k = digits - wholeDigits;
  if (k < 1) return 0;
  const double scaled = magnitude * kPow10D[k];
  const double rounded = std::nearbyint(scaled);
  if (rounded >= static_cast<double>(kPow10[digits])) return 0;
  // Sums of such decimals (a coordinate moved by the box's corner) often miss them by a
  // unit in the last place. With whole digits, `scaled` holds exactly the digits printing
  // keeps, and misses the true product by far less than 0.01 (at most 12 digits), so away
  // from a half its nearest integer is what printing gives.
  if (rounded / kPow10D[k] != magnitude &&
      (wholeDigits == 0 || digits > 12 || std::fabs(scaled - rounded) > 0.49))
    return 0;
  const uint64_t r = static_cast<uint64_t>(rounded);
  const uint64_t whole = r / kPow10[k];
  uint64_t fraction = r % kPow10[k];
  if (fraction == 0) return 0;
  int places = k;
  while (fraction % 10 == 0) {
    fraction /= 10;
    --places;
  }
  char* p = buffer;
  if (negative) *p++ = '-';
  p += WriteDigits(whole, p);
  *p++ = '.';
  char* end = p + places;
  for (char* q = end; q-- > p;) {
    *q = static_cast<char>('0' + fraction % 10);
    fraction /= 10;
  }
  return static_cast<int>(end - buffer);
}

int Exact(double value, int digits, char* buffer) {
  const std::to_chars_result r =
      std::to_chars(buffer, buffer + SNumberFormat::kBufferSize, value, std::chars_format::general, digits);
  return static_cast<int>(r.ptr - buffer);
}

}  // namespace

int SNumberFormat::Format(double value, int digits, char* buffer) {
  digits = Clamp(digits);
  if (value == 0.0) {
    buffer[0] = '0';
    return 1;
  }
  if (!std::isfinite(value)) return Exact(value, digits, buffer);
  const bool negative = value < 0.0;
  const double magnitude = std::fabs(value);

  // Counts, indices and grid coordinates: whole numbers that fit the digit count.
  if (magnitude < 1e17 && magnitude == std::floor(magnitude)) {
    const uint64_t whole = static_cast<uint64_t>(magnitude);
    if (whole < kPow10[digits]) {
      char* p = buffer;
      if (negative) *p++ = '-';
      return static_cast<int>(p - buffer) + WriteDigits(whole, p);
    }
  }

  if (const int n = ShortDecimal(negative, magnitude, digits, buffer)) return n;

  // Scale into [10^(digits-1), 10^digits) with one correctly rounded extended-precision
  // operation; its error stays far below 0.01 of a unit, so only values within that of a
  // rounding tie need the exact method.
  if constexpr (std::numeric_limits<long double>::digits >= 64) {
    int binaryExponent = 0;
    std::frexp(magnitude, &binaryExponent);
    int exponent = static_cast<int>(std::floor((binaryExponent - 1) * 0.30102999566398120));
    for (int attempt = 0; attempt < 3; ++attempt) {
      const int k = digits - 1 - exponent;
      if (k > kMaxExactPower || k < -kMaxExactPower) break;
      const long double scaled = k >= 0 ? static_cast<long double>(magnitude) * kPow10L[k]
                                        : static_cast<long double>(magnitude) / kPow10L[-k];
      if (scaled < static_cast<long double>(kPow10[digits - 1])) {
        --exponent;
        continue;
      }
      if (scaled >= static_cast<long double>(kPow10[digits])) {
        ++exponent;
        continue;
      }
      const long double whole = std::floor(scaled);
      const long double fraction = scaled - whole;
      uint64_t mantissa = static_cast<uint64_t>(whole);
      if (std::fabs(fraction - 0.5L) < 0.01L) {
        // Sums of short decimals often end in a 5 just past the digits kept: the exact
        // value decides, a tie itself going to the even digit.
        const int side = CompareWithTie(magnitude, k, mantissa);
        if (side == 2) break;
        mantissa += (side > 0 || (side == 0 && mantissa % 2 == 1)) ? 1 : 0;
      } else {
        mantissa += fraction > 0.5L ? 1 : 0;
      }
      if (mantissa == kPow10[digits]) {
        mantissa = kPow10[digits - 1];
        ++exponent;
      }
      return Compose(negative, mantissa, exponent, digits, buffer);
    }
  }
  return Exact(value, digits, buffer);
}

int SNumberFormat::CompareWithTie(double magnitude, int power, uint64_t whole) {
  uint64_t bits;
  std::memcpy(&bits, &magnitude, sizeof bits);
  const int biased = static_cast<int>((bits >> 52) & 0x7ff);
  // Both sides stay below 2^127: 2^53 10^22 on the left, 2^63 10^19 on the right.
  if (biased == 0 || biased == 0x7ff || whole >= (uint64_t(1) << 62) || power > 22 || power < -19) return 2;
  using U128 = unsigned __int128;
  // magnitude = mantissa 2^(twos - 1): both sides doubled, so that the tie is an integer.
  U128 left = (bits & ((uint64_t(1) << 52) - 1)) | (uint64_t(1) << 52);
  U128 right = U128(whole) * 2 + 1;
  const int twos = biased - 1075 + 1;
  if (power >= 0)
    left *= kPow10Wide[power];
  else
    right *= kPow10Wide[-power];
  // The power of two goes to whichever side it enlarges, when that still fits.
  U128& doubled = twos >= 0 ? left : right;
  const int by = std::abs(twos);
  if (by >= 128 || (doubled >> (127 - by)) != 0) return 2;
  doubled <<= by;
  return left < right ? -1 : (left > right ? 1 : 0);
}

int SNumberFormat::FormatSlow(double value, int digits, char* buffer) {
  if (value == 0.0) {
    buffer[0] = '0';
    return 1;
  }
  char text[64];
  const int n = std::snprintf(text, sizeof text, "%.*g", Clamp(digits), value);
  const int length = n < 0 ? 0 : (n < kBufferSize ? n : kBufferSize);
  for (int i = 0; i < length; ++i) buffer[i] = text[i];
  return length;
}

void SNumberFormat::Append(std::string& out, double value, int digits) {
  char buffer[kBufferSize];
  out.append(buffer, static_cast<size_t>(Format(value, digits, buffer)));
}

SString SNumberFormat::ToString(double value, int digits) {
  char buffer[kBufferSize];
  return SString(buffer, Format(value, digits, buffer));
}
