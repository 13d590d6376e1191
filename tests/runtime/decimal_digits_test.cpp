// Proves that the decimal digits of a number are those of the C library's formatted output, which
// is another implementation: at the ends of the range, at ties and for numbers drawn from all bit
// patterns.

#include "runtime/decimal_digits.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

#include "runtime/numeric_text.h"

namespace quorvane {
namespace {

std::string Formatted(const char* format, double value) {
  std::array<char, 40> buffer{};
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
  std::snprintf(buffer.data(), buffer.size(), format, value);
#pragma GCC diagnostic pop
  return buffer.data();
}

std::string Scientific(double value) {
  const DecimalDigits number = FifteenDigits(value);
  std::string text(number.digits.begin(), number.digits.end());
  text.insert(1, ".");
  const std::string power = std::to_string(std::abs(number.exponent));
  return text + (number.exponent < 0 ? "E-" : "E+") + (power.size() < 2 ? "0" : "") + power;
}

void ExpectAsTheLibrary(double value) {
  EXPECT_EQ(Scientific(value), Formatted("%.14E", value));
  const std::string general = Formatted("%.15G", value);
  EXPECT_EQ(NumberToText(value), Text(std::u16string(general.begin(), general.end()))) << general;
}

TEST(FifteenDigits, HoldsAtTheEndsOfTheRange) {
  using Limits = std::numeric_limits<double>;
  for (double value :
       {Limits::denorm_min(), Limits::min(), Limits::max(), Limits::epsilon(), 1.0}) {
    ExpectAsTheLibrary(value);
  }
}

TEST(FifteenDigits, RoundsATieToTheEvenDigit) {
  EXPECT_EQ(Scientific(100000000000000.5), "1.00000000000000E+14");
  EXPECT_EQ(Scientific(100000000000001.5), "1.00000000000002E+14");
  EXPECT_EQ(Scientific(100000000000000.515625), "1.00000000000001E+14");  // just above
}

TEST(FifteenDigits, CarriesThroughNines) {
  EXPECT_EQ(Scientific(999999999999999.5), "1.00000000000000E+15");
  EXPECT_EQ(Scientific(199999999999999.75), "2.00000000000000E+14");
}

TEST(FifteenDigits, HoldsForAllPowersOfTwoAndTen) {
  for (int exponent = -1074; exponent <= 1023; ++exponent)
    ExpectAsTheLibrary(std::ldexp(1.0, exponent));
  for (int exponent = -307; exponent <= 308; ++exponent)
    ExpectAsTheLibrary(std::pow(10.0, exponent));
}

TEST(FifteenDigits, HoldsForNumbersOfAllKinds) {
  std::mt19937_64 random(20260101);
  for (int i = 0; i < 10000; ++i) {
    const double value = std::abs(std::bit_cast<double>(random()));
    if (std::isfinite(value) && value != 0) ExpectAsTheLibrary(value);
  }
}

TEST(NumberToText, FormatsWhatHasNoDigits) {
  for (double value : {0.0, -0.0, HUGE_VAL, -HUGE_VAL}) {
    const std::string general = Formatted("%.15G", value);
    EXPECT_EQ(NumberToText(value), Text(std::u16string(general.begin(), general.end()))) << general;
  }
  EXPECT_EQ(NumberToText(std::nan("")), Text(u"NAN"));
}

TEST(NumberToText, ChangesToTheExponentFormOutsideItsRange) {
  EXPECT_EQ(NumberToText(0.0001), Text(u"0.0001"));
  EXPECT_EQ(NumberToText(0.00001), Text(u"1E-05"));
  EXPECT_EQ(NumberToText(999999999999999), Text(u"999999999999999"));
  EXPECT_EQ(NumberToText(1e15), Text(u"1E+15"));
  EXPECT_EQ(NumberToText(1200), Text(u"1200"));
  EXPECT_EQ(NumberToText(-1234.5), Text(u"-1234.5"));
}

}  // namespace
}  // namespace quorvane
