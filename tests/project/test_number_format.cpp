#include "SNumberFormat.h"
#include "SProjectStream.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <string>

namespace {

std::string Fast(double value, int digits) {
  char buffer[SNumberFormat::kBufferSize];
  return std::string(buffer, static_cast<size_t>(SNumberFormat::Format(value, digits, buffer)));
}

std::string Reference(double value, int digits) {
  char buffer[SNumberFormat::kBufferSize];
  return std::string(buffer, static_cast<size_t>(SNumberFormat::FormatSlow(value, digits, buffer)));
}

struct Row {
  double value;
  const char* six;
  const char* ten;
  const char* fifteen;
};

}  // namespace

TEST(NumberFormat, TableAtSixTenAndFifteenDigits) {
  const Row rows[] = {
      {0.0, "0", "0", "0"},
      {-0.0, "0", "0", "0"},
      {1.0, "1", "1", "1"},
      {-2.5, "-2.5", "-2.5", "-2.5"},
      {1e-20, "1e-20", "1e-20", "1e-20"},
      {1e20, "1e+20", "1e+20", "1e+20"},
      {-1e20, "-1e+20", "-1e+20", "-1e+20"},
      {1e100, "1e+100", "1e+100", "1e+100"},
      {1.5e-300, "1.5e-300", "1.5e-300", "1.5e-300"},
      // An exact half rounds to even, as the C library does.
      {123456.5, "123456", "123456.5", "123456.5"},
      {0.1 + 0.2, "0.3", "0.3", "0.3"},
      {9.9999996, "10", "9.9999996", "9.9999996"},
      {99999.95, "99999.9", "99999.95", "99999.95"},
      {999999.5, "1e+06", "999999.5", "999999.5"},
      {100000.0, "100000", "100000", "100000"},
      {1000000.0, "1e+06", "1000000", "1000000"},
      {1234567.0, "1.23457e+06", "1234567", "1234567"},
      {0.0001, "0.0001", "0.0001", "0.0001"},
      {0.00001, "1e-05", "1e-05", "1e-05"},
      {0.000123456789, "0.000123457", "0.000123456789", "0.000123456789"},
      {123456789012.0, "1.23457e+11", "1.23456789e+11", "123456789012"},
      {1e15, "1e+15", "1e+15", "1e+15"},
      {2.54e-5, "2.54e-05", "2.54e-05", "2.54e-05"},
      {3.14159265358979, "3.14159", "3.141592654", "3.14159265358979"},
      {-0.000999999999, "-0.001", "-0.000999999999", "-0.000999999999"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Fast(row.value, 6), row.six) << row.value;
    EXPECT_EQ(Fast(row.value, 10), row.ten) << row.value;
    EXPECT_EQ(Fast(row.value, 15), row.fifteen) << row.value;
  }
}

TEST(NumberFormat, NonFiniteValuesAndClampedDigitCounts) {
  EXPECT_EQ(Fast(std::numeric_limits<double>::infinity(), 6), "inf");
  EXPECT_EQ(Fast(-std::numeric_limits<double>::infinity(), 6), "-inf");
  EXPECT_EQ(Fast(std::numeric_limits<double>::quiet_NaN(), 6), "nan");
  EXPECT_EQ(Fast(0.1 + 0.2, 17), "0.30000000000000004");
  EXPECT_EQ(Fast(0.1 + 0.2, 40), "0.30000000000000004");
  EXPECT_EQ(Fast(123.0, 0), "1e+02");
  EXPECT_EQ(Fast(std::numeric_limits<double>::max(), 17), "1.7976931348623157e+308");
  EXPECT_EQ(Fast(std::numeric_limits<double>::denorm_min(), 6), "4.94066e-324");
}

// Every digit count against the C library on values of every scale: random mantissas at
// random decades, numbers that sit near rounding ties, whole numbers, and raw bit patterns.
TEST(NumberFormat, MatchesCLibraryOnRandomValues) {
  std::mt19937_64 random(20240611);
  std::uniform_real_distribution<double> mantissa(1.0, 10.0);
  std::uniform_int_distribution<int> decade(-40, 40);
  std::uniform_int_distribution<int> digitCount(1, 17);
  std::uniform_int_distribution<int64_t> whole(-100000000000LL, 100000000000LL);
  int mismatches = 0;
  for (int i = 0; i < 300000 && mismatches < 10; ++i) {
    double value = 0.0;
    switch (i % 7) {
      case 0:
        value = mantissa(random) * std::pow(10.0, decade(random));
        break;
      case 1: {
        // d.ddddd5 at the next digit: a tie in decimal that binary rarely holds exactly
        const int digits = digitCount(random);
        const double scale = std::pow(10.0, digits - 1);
        value = (std::floor(mantissa(random) * scale) + 0.5) / scale * std::pow(10.0, decade(random) / 4);
        break;
      }
      case 2:
        value = static_cast<double>(whole(random)) / (i % 3 == 0 ? 1.0 : 8.0);
        break;
      case 3: {
        uint64_t bits = random();
        std::memcpy(&value, &bits, sizeof value);
        if (!std::isfinite(value)) value = 1.0;
        break;
      }
      case 4: {
        // Layout coordinates: a whole number of database units of 10^-k
        const int k = 1 + static_cast<int>(random() % 9);
        value = static_cast<double>(whole(random) % 100000000000LL) / std::pow(10.0, k);
        break;
      }
      case 5: {
        // A coordinate moved by the box's corner: six-digit decimals of other scales
        // added, which ends in a 5 just past ten digits more often than not.
        const double a = std::floor(mantissa(random) * 1e5) / std::pow(10.0, 2 + static_cast<int>(random() % 5));
        const double b = std::floor(mantissa(random) * 1e5) / std::pow(10.0, 4 + static_cast<int>(random() % 5));
        value = random() % 2 ? a - b : b - a;
        break;
      }
      default:
        value = -mantissa(random) * std::pow(10.0, decade(random) / 3);
        break;
    }
    for (int digits : {6, 10, 15, digitCount(random)}) {
      const std::string fast = Fast(value, digits);
      const std::string reference = Reference(value, digits);
      if (fast != reference) {
        ++mismatches;
        ADD_FAILURE() << "value " << value << " at " << digits << " digits: " << fast << " != " << reference;
      }
    }
  }
}

TEST(NumberFormat, ExactBinaryHalvesRoundToEven) {
  // Every value k + 0.5 with enough integer digits is an exact tie at that digit count.
  for (int k = 100000; k < 100400; ++k) {
    const double value = k + 0.5;
    EXPECT_EQ(Fast(value, 6), Reference(value, 6)) << value;
    EXPECT_EQ(Fast(-value, 6), Reference(-value, 6)) << value;
  }
  // At ten digits, where coordinates are written.
  for (int64_t k = 1234567800; k < 1234568200; ++k) {
    const double value = static_cast<double>(k) + 0.5;
    EXPECT_EQ(Fast(value, 10), Reference(value, 10)) << value;
    EXPECT_EQ(Fast(value / 1024, 10), Reference(value / 1024, 10)) << value;
  }
  EXPECT_EQ(Fast(0.125, 2), "0.12");
  EXPECT_EQ(Fast(0.375, 2), "0.38");
}

TEST(NumberFormat, StreamUsesItsDigitCountAndQuotesNames) {
  SProjectStream out;
  out << 1.0 / 3.0 << ' ';
  {
    SProjectDigits geometry(out, SNumberFormat::Geometry);
    out << 1.0 / 3.0 << ' ';
  }
  out << 1.0 / 3.0 << ' ' << -42 << ' ' << 7LL << ' ';
  out.Number(1.0 / 3.0, SNumberFormat::Named) << ' ';
  out.Name("two words") << ' ';
  out.Name("\"already quoted\"") << ' ';
  out.Name("plain");
  EXPECT_EQ(out.Text(), "0.333333 0.3333333333 0.333333 -42 7 0.333333333333333 \"two words\" \"already quoted\" plain");
}

// Names written again for the same key come from the text made the first time, whatever
// the stream handed to its sink in between.
TEST(NumberFormat, KeyedNamesRepeatTheirTextAcrossSpills) {
  SProjectStream out;
  std::string sunk;
  out.SetSink(
      [&sunk](const char* text, size_t length) {
        sunk.append(text, length);
        return true;
      },
      4);
  int made = 0;
  const int first = 1, second = 2;
  auto name = [&made](const char* text) {
    return [&made, text] {
      ++made;
      return SString(text);
    };
  };
  for (int i = 0; i < 3; ++i) out.KeyedName(&first, name("metal one")) << '\n';
  out.KeyedName(&second, name("via")) << '\n';
  out.KeyedName(&first, name("metal one")) << '\n';
  out.KeyedName(nullptr, name("none")) << '\n';
  out.KeyedName(nullptr, name("none")) << '\n';
  ASSERT_TRUE(out.Flush());
  EXPECT_EQ(sunk, "\"metal one\"\n\"metal one\"\n\"metal one\"\nvia\n\"metal one\"\nnone\nnone\n");
  EXPECT_EQ(made, 5);
}

// Another stream's text follows in order, handed to the sink as it stands when there is one.
TEST(NumberFormat, AppendedStreamsKeepTheOrderWithAndWithoutASink) {
  std::string sunk;
  SProjectStream withSink;
  withSink.SetSink(
      [&sunk](const char* text, size_t length) {
        sunk.append(text, length);
        return true;
      },
      1000);
  SProjectStream plain;
  for (SProjectStream* out : {&withSink, &plain}) {
    SProjectStream side;
    *out << "first " << 1.5 << '\n';
    side << "second " << 2.5 << '\n';
    out->AppendStream(side);
    EXPECT_TRUE(side.Text().empty());
    *out << "third\n";
    out->AppendStream(side);
  }
  ASSERT_TRUE(withSink.Flush());
  EXPECT_EQ(sunk, "first 1.5\nsecond 2.5\nthird\n");
  EXPECT_EQ(plain.Text(), sunk);
}
