// The arithmetic under the ramp: rounding of whole numbers to so many digits, and steps against
// exact rational arithmetic.
#include "ui/ramp_value.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdlib>

namespace quorvane::testing {
namespace {

using modDrawGradient::RampValue;
using modDrawGradient::RoundToDigits;

TEST(RoundToDigits, GoesToTheNearestAndToEvenFromTheMiddle) {
  EXPECT_EQ(RoundToDigits(0b1011, 4), 0b1011);
  EXPECT_EQ(RoundToDigits(0b10110, 4), 0b10110);
  EXPECT_EQ(RoundToDigits(0b10101, 4), 0b10100);
  EXPECT_EQ(RoundToDigits(0b10111, 4), 0b11000);
  EXPECT_EQ(RoundToDigits(0b101101, 4), 0b101100);
  EXPECT_EQ(RoundToDigits(0b101111, 4), 0b110000);
  EXPECT_EQ(RoundToDigits(0b111111, 4), 0b1000000);
  EXPECT_EQ(RoundToDigits(0, 4), 0);
}

TEST(RoundToDigits, TreatsBothSignsAlike) {
  for (std::int64_t value = 0; value < 5000; ++value) {
    for (int digits = 1; digits < 14; ++digits) {
      ASSERT_EQ(RoundToDigits(-value, digits), -RoundToDigits(value, digits)) << value;
    }
  }
}

TEST(RampValue, RoundsToWholeNumbersTiesToEven) {
  for (std::int16_t whole = -300; whole < 300; ++whole) {
    for (const int halves : {1, -1}) {
      RampValue value(whole);
      value.Add(RampValue::Step(static_cast<std::int16_t>(halves), 30));
      const std::int32_t even = whole % 2 == 0 ? whole : whole + halves;
      ASSERT_EQ(value.Rounded(), even) << whole << " and " << halves << " halves";
      ASSERT_EQ(RampValue(whole).Rounded(), whole);
    }
  }
}

// A step is within half a unit of its last digit of the exact quotient, and a unit that is wrong
// only by the two roundings before it.
TEST(RampValue, StepsLieNextToTheExactQuotient) {
  for (std::int32_t span = 1; span <= 32707; ++span) {
    for (const std::int32_t difference : {1, 2, 6, 36, 59, 127, 254, 255}) {
      const std::int64_t count =
          RampValue::Step(static_cast<std::int16_t>(difference), static_cast<std::int16_t>(span))
              .Count();
      const int width = static_cast<int>(std::bit_width(static_cast<std::uint64_t>(count)));
      const std::int64_t unit = std::int64_t{1} << (width - 24);
      ASSERT_EQ(count % unit, 0);
      // count / 2^36 against 15 x difference / span, both times span x 2^36.
      const std::int64_t exact = (std::int64_t{15} * difference) << 36;
      ASSERT_LE(std::abs(count * span - exact), unit / 2 * span) << difference << " / " << span;
    }
  }
}

}  // namespace
}  // namespace quorvane::testing
