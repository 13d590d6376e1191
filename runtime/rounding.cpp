#include "runtime/rounding.h"

#include <bit>

#include "runtime/integers.h"

namespace quorvane {

std::int32_t RoundTo32(double value) {
  constexpr int kFractionBits = 52;
  constexpr std::uint64_t kFraction = (std::uint64_t{1} << kFractionBits) - 1;
  constexpr int kBiasOfUnits = 1023 + kFractionBits;

  const auto bits = std::bit_cast<std::uint64_t>(value);
  const int excess = kBiasOfUnits - static_cast<int>(bits >> kFractionBits & 0x7FF);
  if (excess > kFractionBits + 1) return 0;  // below a half
  // 2^33 and more, infinity, and what is no number.
  if (excess < kFractionBits - 32) Raise(ErrorNumber::kOverflow);

  // The value is digits / 2^excess, half of it 2^(excess - 1).
  const std::uint64_t digits = (bits & kFraction) | (kFraction + 1);
  const std::uint64_t odd = digits >> excess & 1;
  const std::uint64_t below_half = (std::uint64_t{1} << (excess - 1)) - 1;
  const auto magnitude = static_cast<std::int64_t>((digits + below_half + odd) >> excess);
  return NarrowTo32(bits >> 63 != 0 ? -magnitude : magnitude);
}

}  // namespace quorvane
