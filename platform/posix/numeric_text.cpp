#include "platform/posix/numeric_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <limits>
#include <optional>
#include <string_view>
#include <system_error>

namespace quorvane {
namespace {

constexpr std::int32_t kSuccess = 0;

// What a numeric text holds: 0.DIGITS times a power of ten, or the bits of a literal.
// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): digits count up to their number
struct Number {
  static constexpr std::size_t kMostDigits = 1024;  // those behind are taken for zeros

  bool is_literal = false;
  std::uint64_t bits = 0;
  bool negative = false;
  std::array<char, kMostDigits> digits;  // the first is not a zero
  std::size_t count = 0;
  int exponent = 0;

  [[nodiscard]] std::string_view Digits() const { return {digits.data(), count}; }

  void AddDigit(char16_t digit, bool in_fraction) {
    const bool is_leading_zero = count == 0 && digit == u'0';
    if (in_fraction == is_leading_zero) exponent += in_fraction ? -1 : 1;
    if (!is_leading_zero && count < digits.size()) digits[count++] = static_cast<char>(digit);
  }
};

bool IsWhite(char16_t c) {
  constexpr std::u16string_view kSingles = u" \u0085\u00A0\u1680\u2028\u2029\u202F\u205F\u3000";
  return (c >= u'\t' && c <= u'\r') || (c >= u'\u2000' && c <= u'\u200A') ||
         kSingles.find(c) != std::u16string_view::npos;
}

bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

// The value of a hexadecimal digit; 16 for any other character.
unsigned DigitValue(char16_t c) {
  if (IsDigit(c)) return c - u'0';
  const char16_t lower = c | 0x20;
  return lower >= u'a' && lower <= u'f' ? lower - u'a' + 10U : 16U;
}

// Reads one text from its front. Each step passes over what it takes.
class Reader {
 public:
  explicit Reader(const char16_t* text) : next_(text) {}

  // Nothing when the text is no number.
  std::optional<Number> Read() {
    TakeFront();
    const bool taken = !has_money_ && *next_ == u'&' ? TakeLiteral() : TakeDecimal();
    if (!taken) return std::nullopt;
    TakeBack();
    if (*next_ != u'\0' || is_open_) return std::nullopt;
    return number_;
  }

 private:
  bool Take(char16_t c) {
    if (*next_ != c) return false;
    ++next_;
    return true;
  }

  bool TakeOnce(char16_t c, bool& taken) { return !taken && (taken = Take(c)); }

  // White space and, each once and in any order, signs, the currency sign, and a parenthesis.
  void TakeFront() {
    bool is_enclosed = false;
    while (TakeWhite() || TakeOnce(u'+', has_plus_) || TakeOnce(u'-', has_minus_) ||
           TakeOnce(u'$', has_money_) || TakeOnce(u'(', is_enclosed)) {
    }
    number_.negative = has_minus_ || is_enclosed;
    is_open_ = is_enclosed;
  }

  // The same behind, as often as it comes; a sign only where it does not stand in front.
  void TakeBack() {
    const bool was_open = is_open_;
    for (;; ++next_) {
      if (was_open && *next_ == u')') {
        is_open_ = false;
      } else if (!has_minus_ && *next_ == u'-') {
        number_.negative = true;
      } else if (!IsWhite(*next_) && (has_plus_ || *next_ != u'+') &&
                 (number_.is_literal || *next_ != u'$')) {
        return;
      }
    }
  }

  bool TakeWhite() {
    if (!IsWhite(*next_)) return false;
    ++next_;
    return true;
  }

  bool TakeLiteral() {
    Take(u'&');
    number_.is_literal = true;
    const bool is_hexadecimal = Take(u'H') || Take(u'h');
    if (!is_hexadecimal && !Take(u'O') && !Take(u'o')) return false;
    const int width = is_hexadecimal ? 4 : 3;
    const char16_t* const first = next_;
    for (; DigitValue(*next_) < 1U << width; ++next_) {
      if (number_.bits >> (63 - width) != 0) continue;  // already beyond any integer
      number_.bits = number_.bits << width | DigitValue(*next_);
    }
    return next_ != first;
  }

  bool TakeDecimal() {
    bool any_digit = false;
    for (bool in_fraction = false;; ++next_) {
      if (IsDigit(*next_)) {
        any_digit = true;
        number_.AddDigit(*next_, in_fraction);
      } else if (*next_ == u'.' && !in_fraction) {
        in_fraction = true;
      } else if (*next_ != u',' || !any_digit) {
        break;
      }
    }
    return any_digit && TakeExponent();
  }

  // False when an exponent letter has no digits behind it.
  bool TakeExponent() {
    constexpr int kBeyondAnyNumber = 100000;
    if (has_money_ || (!Take(u'e') && !Take(u'E'))) return true;
    const bool negative = Take(u'-');
    if (!negative) Take(u'+');
    if (!IsDigit(*next_)) return false;
    int exponent = 0;
    for (; IsDigit(*next_); ++next_)
      exponent = std::min(exponent * 10 + (*next_ - u'0'), kBeyondAnyNumber);
    number_.exponent += negative ? -exponent : exponent;
    return true;
  }

  const char16_t* next_;
  Number number_;
  bool has_plus_ = false;
  bool has_minus_ = false;
  bool has_money_ = false;
  bool is_open_ = false;
};

// Whether 0.DIGITS, cut behind an integer that is odd or even, rounds up to the next one.
bool RoundsUp(std::string_view fraction, bool is_odd) {
  if (fraction.empty() || fraction.front() != '5')
    return !fraction.empty() && fraction.front() > '5';
  return is_odd || fraction.find_first_not_of('0', 1) != std::string_view::npos;
}

// The nearest whole number of what is no literal; nothing with more digits than an integer has.
std::optional<std::int64_t> Rounded(const Number& number) {
  constexpr int kMostDigits = 10;
  if (number.count == 0 || number.exponent < 0) return 0;
  if (number.exponent > kMostDigits) return std::nullopt;
  const auto whole_digits = static_cast<std::size_t>(number.exponent);
  std::int64_t whole = 0;
  for (std::size_t i = 0; i < whole_digits; ++i)
    whole = whole * 10 + (i < number.count ? number.digits[i] - '0' : 0);
  const std::string_view fraction = number.Digits().substr(std::min(whole_digits, number.count));
  if (RoundsUp(fraction, whole % 2 != 0)) ++whole;
  return number.negative ? -whole : whole;
}

template <class Integer>
std::int32_t ReadInteger(const char16_t* text, Integer* value) {
  using Limits = std::numeric_limits<Integer>;
  const std::optional<Number> number = Reader(text).Read();
  if (!number) return Oleaut32::kTypeMismatch;
  if (number->is_literal) {
    if (number->bits > std::numeric_limits<std::make_unsigned_t<Integer>>::max())
      return Oleaut32::kOverflow;
    *value = static_cast<Integer>(number->bits);
    return kSuccess;
  }
  const std::optional<std::int64_t> rounded = Rounded(*number);
  if (!rounded || *rounded < Limits::min() || *rounded > Limits::max()) return Oleaut32::kOverflow;
  *value = static_cast<Integer>(*rounded);
  return kSuccess;
}

bool EqualsIgnoringCase(std::u16string_view text, std::u16string_view word) {
  return std::ranges::equal(text, word, [](char16_t c, char16_t letter) {
    return c == letter || (c >= u'a' && c <= u'z' && c - (u'a' - u'A') == letter);
  });
}

// Nothing beyond the range of a double; too near to 0 for one counts as 0.
std::optional<double> Magnitude(const Number& number) {
  if (number.count == 0) return 0;
  std::array<char, Number::kMostDigits + 16> text{'.'};
  char* end = std::ranges::copy(number.Digits(), text.data() + 1).out;
  *end++ = 'e';
  end = std::to_chars(end, text.data() + text.size(), number.exponent).ptr;
  double value = 0;
  const auto result = std::from_chars(text.data(), end, value);
  if (result.ec != std::errc::result_out_of_range) return value;
  if (number.exponent > 0) return std::nullopt;
  return 0;
}

}  // namespace

std::int32_t NumericText::VarI2FromStr(const char16_t* text, std::uint32_t /*locale*/,
                                       std::uint32_t /*flags*/, std::int16_t* value) {
  return ReadInteger(text, value);
}

std::int32_t NumericText::VarI4FromStr(const char16_t* text, std::uint32_t /*locale*/,
                                       std::uint32_t /*flags*/, std::int32_t* value) {
  return ReadInteger(text, value);
}

std::int32_t NumericText::VarBoolFromStr(const char16_t* text, std::uint32_t /*locale*/,
                                         std::uint32_t /*flags*/, std::int16_t* value) {
  const std::u16string_view word(text);
  const bool is_true = EqualsIgnoringCase(word, u"TRUE") || word == u"#TRUE#";
  if (is_true || EqualsIgnoringCase(word, u"FALSE") || word == u"#FALSE#") {
    *value = is_true ? -1 : 0;
    return kSuccess;
  }
  const std::optional<Number> number = Reader(text).Read();
  if (!number) return kTypeMismatch;
  if (number->is_literal) {
    if (number->bits > std::numeric_limits<std::uint32_t>::max()) return kOverflow;
    *value = number->bits != 0 ? -1 : 0;
    return kSuccess;
  }
  const std::optional<double> magnitude = Magnitude(*number);
  if (!magnitude) return kOverflow;
  *value = *magnitude != 0 ? -1 : 0;
  return kSuccess;
}

std::int32_t NumericText::VarBstrFromR8(double value, std::uint32_t /*locale*/,
                                        std::uint32_t /*flags*/, std::u16string* text) {
  constexpr int kSignificantDigits = 15;
  std::array<char, 32> room{};
  const char* const end =
      std::to_chars(room.data(), room.data() + room.size(), value == 0 ? 0.0 : value,
                    std::chars_format::general, kSignificantDigits)
          .ptr;
  text->clear();
  for (const char* c = room.data(); c != end; ++c)
    *text += static_cast<char16_t>(*c >= 'a' && *c <= 'z' ? *c - ('a' - 'A') : *c);
  return kSuccess;
}

}  // namespace quorvane
