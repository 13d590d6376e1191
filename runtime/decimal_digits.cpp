#include "runtime/decimal_digits.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

namespace quorvane {
namespace {

// The largest number met is the mantissa of the least double times 5^1074: 767 digits.
constexpr std::size_t kLimbs = 90;
constexpr int kDigitsPerLimb = 9;

// A natural number in limbs of nine decimal digits, the lowest first.
class Natural {
 public:
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): limbs above the count are not read
  explicit Natural(std::uint64_t value) { Push(value); }

  // In steps as large as a factor can be.
  void MultiplyByPower(std::uint32_t base, int exponent) {
    std::uint32_t factor = 1;
    for (; exponent > 0; --exponent) {
      if (factor > std::numeric_limits<std::uint32_t>::max() / base) {
        MultiplyBy(factor);
        factor = 1;
      }
      factor *= base;
    }
    MultiplyBy(factor);
  }

  // Writes all digits to the end of `room` and gives them, without leading zeros.
  std::string_view Digits(std::array<char, kLimbs * kDigitsPerLimb>& room) const {
    std::size_t start = room.size();
    for (std::size_t i = 0; i < size_; ++i) {
      std::uint32_t limb = limbs_[i];
      for (int digit = 0; digit < kDigitsPerLimb; ++digit, limb /= 10) {
        room[--start] = static_cast<char>('0' + limb % 10);
      }
    }
    while (start < room.size() && room[start] == '0') ++start;
    return {room.data() + start, room.size() - start};
  }

 private:
  static constexpr std::uint32_t kLimb = 1'000'000'000;

  void MultiplyBy(std::uint32_t factor) {
    std::uint64_t carry = 0;
    for (std::size_t i = 0; i < size_; ++i) {
      carry += std::uint64_t{limbs_[i]} * factor;
      limbs_[i] = static_cast<std::uint32_t>(carry % kLimb);
      carry /= kLimb;
    }
    Push(carry);
  }

  void Push(std::uint64_t value) {
    for (; value != 0; value /= kLimb) limbs_[size_++] = static_cast<std::uint32_t>(value % kLimb);
  }

  std::array<std::uint32_t, kLimbs> limbs_;
  std::size_t size_ = 0;
};

// Whether what stands behind the kept digits rounds the last of them up.
bool RoundsUp(std::string_view digits, std::size_t kept) {
  if (digits.size() <= kept || digits[kept] != '5')
    return digits.size() > kept && digits[kept] > '5';
  const bool is_tie = digits.find_first_not_of('0', kept + 1) == std::string_view::npos;
  return !is_tie || (digits[kept - 1] - '0') % 2 != 0;
}

// Adds one to the last digit; true when that carried out of the first, which leaves all zeros.
bool Increment(std::array<char, 15>& digits) {
  for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit) {
    if (*digit != '9') {
      ++*digit;
      return false;
    }
    *digit = '0';
  }
  return true;
}

}  // namespace

DecimalDigits FifteenDigits(double value) {
  constexpr int kMantissaBits = 52;
  constexpr std::uint64_t kHiddenBit = std::uint64_t{1} << kMantissaBits;
  const auto bits = std::bit_cast<std::uint64_t>(value);
  const int biased = static_cast<int>(bits >> kMantissaBits);
  const std::uint64_t mantissa = (bits & (kHiddenBit - 1)) | (biased != 0 ? kHiddenBit : 0);
  const int exponent = std::max(biased, 1) - 1023 - kMantissaBits;

  // The value is mantissa * 2^exponent. With a negative exponent -k that is mantissa * 5^k / 10^k,
  // so that its digits are those of a natural number in either case.
  Natural number(mantissa);
  const int fraction_digits = std::max(-exponent, 0);
  number.MultiplyByPower(2, exponent);
  number.MultiplyByPower(5, fraction_digits);
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): Digits tells how much it wrote
  std::array<char, kLimbs * kDigitsPerLimb> room;
  const std::string_view digits = number.Digits(room);

  DecimalDigits result{};
  result.digits.fill('0');
  result.exponent = static_cast<int>(digits.size()) - 1 - fraction_digits;
  std::copy_n(digits.begin(), std::min(digits.size(), result.digits.size()), result.digits.begin());
  if (RoundsUp(digits, result.digits.size()) && Increment(result.digits)) {
    result.digits.front() = '1';
    ++result.exponent;
  }
  return result;
}

}  // namespace quorvane
