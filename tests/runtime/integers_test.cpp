// Proves that every step and narrowing of the system's integers raises overflow (6) at its limit
// and never wraps.

#include "runtime/integers.h"

#include <gtest/gtest.h>

#include "runtime/boolean16.h"
#include "tests/support/raises.h"
#include "tests/support/thinned.h"

namespace quorvane {
namespace {

using testing::ErrorNumberOf;
using testing::kOneIn;
using Int16Limits = std::numeric_limits<std::int16_t>;
using Int32Limits = std::numeric_limits<std::int32_t>;

TEST(CheckedArithmetic, AgreesWithPlainArithmeticForAllNear16BitLimits) {
  for (int left = -32768; left <= 32767; left += 97 * kOneIn) {
    for (int right = -32768; right <= 32767; right += 101) {
      const auto l = static_cast<std::int16_t>(left);
      const auto r = static_cast<std::int16_t>(right);
      const auto fits = [](int value) { return value >= -32768 && value <= 32767; };
      const auto check = [&](int expected, auto operation) {
        if (fits(expected)) {
          EXPECT_EQ(operation(l, r), expected);
        } else {
          EXPECT_EQ(ErrorNumberOf([&] { (void)operation(l, r); }), 6);
        }
      };
      check(left + right, CheckedAdd<std::int16_t>);
      check(left - right, CheckedSubtract<std::int16_t>);
      check(left * right, CheckedMultiply<std::int16_t>);
    }
  }
}

TEST(CheckedArithmetic, RaisesOverflowOneStepBeyondThe16BitLimit) {
  const std::int16_t one = 1;
  EXPECT_EQ(CheckedAdd<std::int16_t>(32766, one), 32767);
  EXPECT_EQ(ErrorNumberOf([&] { (void)CheckedAdd(Int16Limits::max(), one); }), 6);
  EXPECT_EQ(ErrorNumberOf([&] { (void)CheckedSubtract(Int16Limits::min(), one); }), 6);
}

TEST(CheckedArithmetic, RaisesOverflowOneStepBeyondThe32BitLimit) {
  EXPECT_EQ(CheckedAdd(Int32Limits::max() - 1, 1), Int32Limits::max());
  EXPECT_EQ(ErrorNumberOf([] { (void)CheckedAdd(Int32Limits::max(), 1); }), 6);
  EXPECT_EQ(ErrorNumberOf([] { (void)CheckedSubtract(Int32Limits::min(), 1); }), 6);
  EXPECT_EQ(ErrorNumberOf([] { (void)CheckedMultiply(Int32Limits::min(), -1); }), 6);
}

TEST(Boolean16, IsMinusOneOrZero) {
  EXPECT_EQ(kTrue.bits, -1);
  EXPECT_EQ(kFalse.bits, 0);
  EXPECT_EQ(Boolean16().bits, 0);
  EXPECT_EQ(ToBoolean16(true).bits, -1);
  EXPECT_EQ(ToBoolean16(false).bits, 0);
  for (const std::int16_t bits : {std::int16_t{1}, std::int16_t{-1}, std::int16_t{-32768}})
    EXPECT_TRUE(Boolean16{bits}.IsTrue()) << bits;
}

TEST(Narrowing, KeepsWhatFitsIn16Bits) {
  EXPECT_EQ(NarrowTo16(32767), 32767);
  EXPECT_EQ(NarrowTo16(-32768), -32768);
  EXPECT_EQ(NarrowTo16(std::uint64_t{5}), 5);
}

TEST(Narrowing, RaisesOverflowOutside16Bits) {
  EXPECT_EQ(ErrorNumberOf([] { (void)NarrowTo16(32768); }), 6);
  EXPECT_EQ(ErrorNumberOf([] { (void)NarrowTo16(-32769); }), 6);
  EXPECT_EQ(ErrorNumberOf([] { (void)NarrowTo16(0x10000); }), 6);
}

TEST(Narrowing, RaisesOverflowOutside32Bits) {
  EXPECT_EQ(NarrowTo32(std::int64_t{2147483647}), 2147483647);
  EXPECT_EQ(ErrorNumberOf([] { (void)NarrowTo32(std::int64_t{2147483648}); }), 6);
  EXPECT_EQ(ErrorNumberOf([] { (void)NarrowTo32(std::uint64_t{0xFFFFFFFFFFFFFFFF}); }), 6);
}

}  // namespace
}  // namespace quorvane
