#include "runtime/numeric_text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <string_view>

#include "runtime/decimal_digits.h"
#include "runtime/integers.h"

namespace quorvane {
namespace {

bool IsBlank(char16_t c) { return c == u' ' || c == u'\t'; }

std::u16string_view TrimBlanks(std::u16string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

int DigitValue(char16_t c) {
  if (c >= u'0' && c <= u'9') return c - u'0';
  if (c >= u'A' && c <= u'F') return c - u'A' + 10;
  if (c >= u'a' && c <= u'f') return c - u'a' + 10;
  return 99;
}

// The bit pattern behind & or &H or &O: 16-bit signed where it fits in 16 bits, else 32-bit signed.
std::optional<double> ParseLiteral(std::u16string_view text) {
  unsigned base = 8;
  text.remove_prefix(1);
  if (!text.empty() && (text.front() == u'H' || text.front() == u'h')) base = 16;
  if (!text.empty() && (base == 16 || text.front() == u'O' || text.front() == u'o')) {
    text.remove_prefix(1);
  }
  if (text.empty()) return std::nullopt;
  std::uint64_t bits = 0;
  for (const char16_t c : text) {
    const int digit = DigitValue(c);
    if (digit >= static_cast<int>(base)) return std::nullopt;
    bits = bits * base + static_cast<unsigned>(digit);
    if (bits > std::numeric_limits<std::uint32_t>::max()) Raise(ErrorNumber::kOverflow);
  }
  if (bits <= std::numeric_limits<std::uint16_t>::max()) return static_cast<std::int16_t>(bits);
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(bits));
}

// A decimal number while it is read: up to 17 significant digits, the power of ten that scales
// them, and the rest of the text. 17 digits and one scaling step keep every half of a 32-bit
// integer exact, which is what rounding needs.
struct Decimal {
  std::uint64_t digits = 0;
  int exponent = 0;
  bool any_digit = false;
  std::u16string_view rest;

  void TakeDigits(int exponent_per_digit) {
    while (!rest.empty() && DigitValue(rest.front()) < 10) {
      any_digit = true;
      if (digits < 10'000'000'000'000'000U) {
        digits = digits * 10 + static_cast<unsigned>(DigitValue(rest.front()));
        exponent += exponent_per_digit;
      } else {
        exponent += exponent_per_digit + 1;
      }
      rest.remove_prefix(1);
    }
  }

  bool TakeSign() {
    const bool negative = !rest.empty() && rest.front() == u'-';
    if (negative || (!rest.empty() && rest.front() == u'+')) rest.remove_prefix(1);
    return negative;
  }

  // False when an exponent letter has no digits behind it.
  bool TakeExponent() {
    constexpr int kBeyondAnyDouble = 100000;
    if (rest.empty() ||
        std::u16string_view(u"EeDd").find(rest.front()) == std::u16string_view::npos) {
      return true;
    }
    rest.remove_prefix(1);
    const bool negative = TakeSign();
    if (rest.empty()) return false;
    int value = 0;
    while (!rest.empty() && DigitValue(rest.front()) < 10) {
      if (value < kBeyondAnyDouble) value = value * 10 + DigitValue(rest.front());
      rest.remove_prefix(1);
    }
    exponent += negative ? -value : value;
    return true;
  }
};

// Rounded once up to 10^27, near enough beyond. Not pow(), which weighs as much as this whole file.
double PowerOfTen(int exponent) {
  long double power = 1;
  long double base = 10;
  for (; exponent != 0; exponent /= 2, base *= base) {
    if (exponent % 2 != 0) power *= base;
  }
  return static_cast<double>(power);
}

double Scale(std::uint64_t digits, int exponent) {
  const auto value = static_cast<double>(digits);
  if (digits == 0) return 0;
  // Past these powers the result is out of a double's range on either side, and the power itself
  // would be, too.
  constexpr int kLargest = 308;
  if (exponent > kLargest) Raise(ErrorNumber::kOverflow);
  if (exponent < -2 * kLargest) return 0;
  if (exponent >= 0) return value * PowerOfTen(exponent);
  if (exponent >= -kLargest) return value / PowerOfTen(-exponent);
  return value / PowerOfTen(kLargest) / PowerOfTen(-exponent - kLargest);
}

double RoundHalfToEven(double value) {
  const double floor = std::floor(value);
  // Compared, not subtracted: a host may have set its floating-point unit to fewer digits than a
  // double has, and the difference would be rounded to them.
  const double half = floor + 0.5;
  const bool up = value > half || (value == half && std::fmod(floor, 2.0) != 0.0);
  return up ? floor + 1.0 : floor;
}

template <class Integer>
Integer RoundTo(double value) {
  const double rounded = RoundHalfToEven(value);
  if (!(rounded >= std::numeric_limits<Integer>::min() &&
        rounded <= std::numeric_limits<Integer>::max())) {
    Raise(ErrorNumber::kOverflow);
  }
  return static_cast<Integer>(rounded);
}

// A text of limited length while it is written.
// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): what is not put is not read
class ShortText {
 public:
  void Put(char character) { characters_[size_++] = static_cast<char16_t>(character); }
  void PutAll(std::string_view text) {
    for (const char character : text) Put(character);
  }
  [[nodiscard]] Text ToText() const { return Text(std::u16string_view(characters_.data(), size_)); }

 private:
  std::array<char16_t, 32>
      characters_;  // the longest is "-0.000" with 15 digits, or with an exponent
  std::size_t size_ = 0;
};

void PutExponent(int exponent, ShortText& text) {
  text.PutAll(exponent < 0 ? "E-" : "E+");
  const int power = std::abs(exponent);
  if (power >= 100) text.Put(static_cast<char>('0' + power / 100));
  text.Put(static_cast<char>('0' + power / 10 % 10));
  text.Put(static_cast<char>('0' + power % 10));
}

// As the format %.15G of the C library has it.
void PutPositive(const DecimalDigits& number, ShortText& text) {
  int count = static_cast<int>(number.digits.size());
  const bool is_plain = number.exponent >= -4 && number.exponent < count;
  while (number.digits[static_cast<std::size_t>(count - 1)] == '0') --count;

  // The places of the digits, counted from the first; the decimal point stands behind place
  // `units`.
  const int units = is_plain ? number.exponent : 0;
  for (int place = std::min(units, 0); place < std::max(count, units + 1); ++place) {
    const bool has_digit = place >= 0 && place < count;
    text.Put(has_digit ? number.digits[static_cast<std::size_t>(place)] : '0');
    if (place == units && place + 1 < count) text.Put('.');
  }
  if (!is_plain) PutExponent(number.exponent, text);
}

double TextToDouble(const Text& text) {
  const std::optional<double> number = ParseNumber(text);
  if (!number) Raise(ErrorNumber::kTypeMismatch);
  return *number;
}

}  // namespace

std::optional<double> ParseNumber(const Text& text) {
  Decimal number;
  number.rest = TrimBlanks(text.Characters());
  if (!number.rest.empty() && number.rest.front() == u'&') return ParseLiteral(number.rest);
  const bool negative = number.TakeSign();
  number.rest = TrimBlanks(number.rest);
  number.TakeDigits(0);
  if (!number.rest.empty() && number.rest.front() == u'.') {
    number.rest.remove_prefix(1);
    number.TakeDigits(-1);
  }
  if (!number.any_digit || !number.TakeExponent() || !number.rest.empty()) return std::nullopt;
  const double magnitude = Scale(number.digits, number.exponent);
  // A comparison, not std::isfinite(): the x87 unit may still hold what a double in memory cannot.
  if (magnitude > std::numeric_limits<double>::max()) Raise(ErrorNumber::kOverflow);
  return negative ? -magnitude : magnitude;
}

std::int16_t RoundTo16(double value) { return RoundTo<std::int16_t>(value); }

std::int32_t RoundTo32(double value) { return RoundTo<std::int32_t>(value); }

std::int16_t TextToInteger16(const Text& text) { return RoundTo16(TextToDouble(text)); }

std::int32_t TextToInteger32(const Text& text) { return RoundTo32(TextToDouble(text)); }

Text NumberToText(double value) {
  ShortText text;
  if (std::signbit(value)) text.Put('-');
  if (!(std::abs(value) <= std::numeric_limits<double>::max())) {
    text.PutAll(value != value ? "NAN" : "INF");
  } else if (value == 0) {
    text.Put('0');
  } else {
    PutPositive(FifteenDigits(std::abs(value)), text);
  }
  return text.ToText();
}

}  // namespace quorvane
