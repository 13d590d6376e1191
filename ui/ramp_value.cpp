#include "ui/ramp_value.h"

namespace quorvane::modDrawGradient {
namespace {

constexpr int kDigitsOfDouble = 53;

std::uint32_t Magnitude(std::int16_t value) {
  return static_cast<std::uint32_t>(value < 0 ? -std::int32_t{value} : std::int32_t{value});
}

// digits x 2^exponent
struct Scaled {
  std::int64_t digits;
  int exponent;
};

// By long division, three binary digits more than a double holds; the last one is also set where a
// remainder is left, so that rounding sees on which side of a tie the true quotient lies.
Scaled Quotient(std::uint32_t dividend, std::uint32_t divisor) {
  constexpr std::int64_t kEnough = std::int64_t{1} << (kDigitsOfDouble + 2);
  Scaled quotient{dividend / divisor, 0};
  std::uint32_t rest = dividend % divisor;
  for (; quotient.digits < kEnough; --quotient.exponent) {
    rest *= 2;
    const bool goes_in = rest >= divisor;
    if (goes_in) rest -= divisor;
    quotient.digits = quotient.digits * 2 + (goes_in ? 1 : 0);
  }
  quotient.digits |= rest != 0 ? 1 : 0;
  return quotient;
}

}  // namespace

RampValue RampValue::Step(std::int16_t difference, std::int16_t span) {
  if (difference == 0) return {};
  const Scaled quotient = Quotient(Magnitude(difference), Magnitude(span));
  const std::int64_t product =
      RoundToDigits(RoundToDigits(quotient.digits, kDigitsOfDouble) * 15, kDigitsOfDouble);
  // Division by a power of two: of a float's 24 digits none is lost, see above.
  const std::int64_t count =
      RoundToDigits(product, kDigitsOfFloat) >> -(quotient.exponent + kFractionDigits);
  return RampValue((difference < 0) == (span < 0) ? count : -count);
}

}  // namespace quorvane::modDrawGradient
