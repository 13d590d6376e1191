#pragma once

#include <bit>
#include <cstdint>

// The numbers of a ramp are 32-bit floats that come from sums and quotients of 64-bit ones, rounded
// to the nearest with ties to even. They are worked out here in whole numbers. The processor's own
// floating-point unit would not do: this code runs inside hosts that set it to 24, 53 or 64 binary
// digits as they please, on a processor whose registers keep more digits than a variable, and a
// quotient that was rounded twice is another number now and then. Whole numbers give the same bands
// in every host, on every processor and at every level of optimisation.

namespace quorvane::modDrawGradient {

/// The nearest number of that many significant binary digits, ties to even; from -2^62 to 2^62.
[[nodiscard]] constexpr std::int64_t RoundToDigits(std::int64_t value, int digits) {
  // For a negative power of two this counts a digit too few, and then nothing is to be rounded.
  const auto magnitude = static_cast<std::uint64_t>(value < 0 ? ~value : value);
  const int excess = static_cast<int>(std::bit_width(magnitude)) - digits;
  if (excess <= 0) return value;
  const std::int64_t unit = std::int64_t{1} << excess;
  const std::int64_t odd = (value >> excess) & 1;
  return (value + (unit / 2 - 1) + odd) & -unit;
}

/// A number that a 32-bit float holds, of a magnitude that a ramp meets: a whole multiple of 2^-36
/// below 2^26. (A step is 15 x difference / span with a span of at most 32768, so 2^-12 or more
/// unless it is 0; the last of its 24 digits stands for 2^-35 or more, and so does that of any
/// sum.)
class RampValue {
 public:
  /// 0.
  constexpr RampValue() = default;
  /// A whole number.
  constexpr explicit RampValue(std::int16_t whole)
      : count_(std::int64_t{whole} << kFractionDigits) {}

  /// The change per band: difference / span, a quotient in 64-bit floating point, times 15, a
  /// product in the same, stored as a 32-bit float. The span must not be 0.
  [[nodiscard]] static RampValue Step(std::int16_t difference, std::int16_t span);

  /// The sum, stored as a 32-bit float; below 2^18.
  constexpr void Add(RampValue step) { count_ = RoundedToFloat(count_ + step.count_); }

  /// The nearest integer, ties to even.
  [[nodiscard]] constexpr std::int32_t Rounded() const {
    static_assert(kFractionDigits == 36);  // so the upper half counts sixteenths
    const auto sixteenths = static_cast<std::int32_t>(count_ >> 32);
    const std::int32_t nearest = (sixteenths + 8) >> 4;
    const bool is_tie = (sixteenths & 15) == 8 && static_cast<std::uint32_t>(count_) == 0;
    return is_tie ? nearest & ~1 : nearest;
  }

  /// The number as a count of 2^-36.
  [[nodiscard]] constexpr std::int64_t Count() const { return count_; }

 private:
  static constexpr int kFractionDigits = 36;
  static constexpr int kDigitsOfFloat = 24;

  constexpr explicit RampValue(std::int64_t count) : count_(count) {}

  // RoundToDigits(count, 24) for a count below 2^54. What is rounded off then lies in its low half,
  // and a 32-bit processor has no more to do than that.
  [[nodiscard]] static constexpr std::int64_t RoundedToFloat(std::int64_t count) {
    const auto low = static_cast<std::uint32_t>(count);
    const auto high = static_cast<std::uint32_t>(count >> 32);
    const std::uint32_t sign = count < 0 ? ~std::uint32_t{0} : 0;
    const auto width = high != sign ? 32 + std::bit_width(high ^ sign) : std::bit_width(low ^ sign);
    const int excess = static_cast<int>(width) - kDigitsOfFloat;
    if (excess <= 0) return count;
    const std::uint32_t below_unit = (std::uint32_t{1} << excess) - 1;
    const std::uint32_t odd = (low >> excess) & 1;
    return (count + ((below_unit >> 1) + odd)) & ~std::int64_t{below_unit};
  }

  std::int64_t count_ = 0;
};

}  // namespace quorvane::modDrawGradient
