#include "platform/posix/numeric_text.h"

#include <strings.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

namespace quorvane {
namespace {

constexpr std::int32_t kSuccess = 0;

// What a numeric text holds: 0.DIGITS times a power of ten, or the bits of a literal.
struct Number {
  bool is_literal = false;
  std::uint64_t bits = 0;
  bool negative = false;
  std::string digits;  // the first is not a zero
  int exponent = 0;

  void AddDigit(char digit, bool in_fraction) {
    const bool is_leading_zero = digits.empty() && digit == '0';
    if (in_fraction == is_leading_zero) exponent += in_fraction ? -1 : 1;
    if (!is_leading_zero) digits += digit;
  }
};

bool Holds(std::string_view text, char c) { return text.find(c) != std::string_view::npos; }

// A byte for each character: a blank for all white space, "?" for what else is not ASCII.
std::string Plain(std::u16string_view text) {
  constexpr std::u16string_view kWhite =
      u"\t\n\v\f\r \u0085\u00A0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009"
      u"\u200A\u2028\u2029\u202F\u205F\u3000";
  std::string plain(text.size(), ' ');
  std::ranges::transform(text, plain.begin(), [&](char16_t c) {
    if (kWhite.find(c) != std::u16string_view::npos) return ' ';
    return c < 0x80 ? static_cast<char>(c) : '?';
  });
  return plain;
}

// Reads one plain text from its front. Each step passes over what it takes.
class Reader {
 public:
  explicit Reader(const std::string& text) : next_(text.data()), end_(next_ + text.size()) {}

  // Nothing when the text is no number.
  std::optional<Number> Read() {
    const std::string front = TakeFront();
    const bool has_money = Holds(front, '$');
    number_.is_literal = !has_money && Take("&");
    if (!(number_.is_literal ? TakeLiteral() : TakeDecimal(!has_money))) return std::nullopt;
    // Behind it the same may stand as often as it comes, but a sign only where it is not in front.
    std::string allowed = " ";
    if (!number_.is_literal) allowed += '$';
    if (!Holds(front, '+')) allowed += '+';
    if (!Holds(front, '-')) allowed += '-';
    if (Holds(front, '(')) allowed += ')';
    const std::string_view back(next_, end_);
    const bool is_open = Holds(front, '(') && !Holds(back, ')');
    if (is_open || back.find_first_not_of(allowed) != std::string_view::npos) return std::nullopt;
    number_.negative = Holds(front, '-') || Holds(front, '(') || Holds(back, '-');
    return number_;
  }

 private:
  // One of these characters.
  bool Take(std::string_view characters) {
    if (next_ == end_ || !Holds(characters, *next_)) return false;
    ++next_;
    return true;
  }

  // White space and, each once and in any order, signs, the currency sign, and a parenthesis.
  std::string TakeFront() {
    std::string front;
    while (next_ != end_ && (*next_ == ' ' || (Holds("+-$(", *next_) && !Holds(front, *next_)))) {
      front += *next_++;
    }
    return front;
  }

  // Digits as an unsigned number, or `beyond` where it is too large; false where there are none.
  template <class Unsigned>
  bool TakeUnsigned(Unsigned& number, int base, Unsigned beyond) {
    const auto [rest, error] = std::from_chars(next_, end_, number, base);
    if (error == std::errc::result_out_of_range) number = beyond;
    return std::exchange(next_, rest) != rest;
  }

  bool TakeLiteral() {
    const bool is_hexadecimal = Take("Hh");
    return (is_hexadecimal || Take("Oo")) &&
           TakeUnsigned(number_.bits, is_hexadecimal ? 16 : 8,
                        std::numeric_limits<std::uint64_t>::max());
  }

  bool TakeDecimal(bool may_have_exponent) {
    bool any_digit = false;
    for (bool in_fraction = false; next_ != end_; ++next_) {
      if (*next_ >= '0' && *next_ <= '9') {
        any_digit = true;
        number_.AddDigit(*next_, in_fraction);
      } else if (*next_ == '.' && !in_fraction) {
        in_fraction = true;
      } else if (*next_ != ',' || !any_digit) {
        break;
      }
    }
    return any_digit && (!may_have_exponent || TakeExponent());
  }

  // False when an exponent letter has no digits behind it.
  bool TakeExponent() {
    constexpr unsigned kBeyondAnyNumber = 100000;
    if (!Take("eE")) return true;
    const bool negative = Take("-");
    if (!negative) Take("+");
    unsigned exponent = 0;
    if (!TakeUnsigned(exponent, 10, kBeyondAnyNumber)) return false;
    const int size = static_cast<int>(std::min(exponent, kBeyondAnyNumber));
    number_.exponent += negative ? -size : size;
    return true;
  }

  const char* next_;
  const char* end_;
  Number number_;
};

// The nearest whole number of what is no literal, ties to even; nothing with more digits than an
// integer has.
std::optional<std::int64_t> Rounded(const Number& number) {
  constexpr int kMostDigits = 10;
  if (number.digits.empty() || number.exponent < 0) return 0;
  if (number.exponent > kMostDigits) return std::nullopt;
  const auto whole_digits = static_cast<std::size_t>(number.exponent);
  std::string digits = number.digits;
  digits.resize(std::max(digits.size(), whole_digits), '0');
  std::int64_t whole = 0;
  std::from_chars(digits.data(), digits.data() + whole_digits, whole);
  std::string_view fraction = std::string_view(digits).substr(whole_digits);
  fraction = fraction.substr(0, fraction.find_last_not_of('0') + 1);
  if (fraction > "5" || (fraction == "5" && whole % 2 != 0)) ++whole;
  return number.negative ? -whole : whole;
}

template <class Integer>
std::int32_t ReadInteger(const char16_t* text, Integer* value) {
  using Limits = std::numeric_limits<Integer>;
  const std::optional<Number> number = Reader(Plain(text)).Read();
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

// Nothing for what no double comes near to.
std::optional<double> ValueOf(std::string_view text) {
  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  return result.ec == std::errc() ? std::optional(value) : std::nullopt;
}

// Whether it is unlike 0, which what is too near to 0 for a double is not; nothing beyond the range
// of a double.
std::optional<bool> IsTrue(const Number& number) {
  if (number.is_literal) {
    if (number.bits > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
    return number.bits != 0;
  }
  if (number.digits.empty()) return false;
  const std::string text = "." + number.digits + "e" + std::to_string(number.exponent);
  const std::optional<double> value = ValueOf(text);
  if (!value && number.exponent > 0) return std::nullopt;
  return value && *value != 0;
}

std::string Written(double value, std::chars_format format) {
  std::array<char, 32> room{};
  auto* const end = std::to_chars(room.data(), room.data() + room.size(), value, format, 15).ptr;
  return {room.data(), end};
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
  const std::string plain = Plain(text);
  const auto is_word = [&](const char* word, const char* marked) {
    return ::strcasecmp(plain.c_str(), word) == 0 || plain == marked;
  };
  const bool is_true = is_word("TRUE", "#TRUE#");
  if (is_true || is_word("FALSE", "#FALSE#")) {
    *value = is_true ? -1 : 0;
    return kSuccess;
  }
  const std::optional<Number> number = Reader(plain).Read();
  if (!number) return kTypeMismatch;
  const std::optional<bool> truth = IsTrue(*number);
  if (!truth) return kOverflow;
  *value = *truth ? -1 : 0;
  return kSuccess;
}

std::int32_t NumericText::VarBstrFromR8(double value, std::uint32_t /*locale*/,
                                        std::uint32_t /*flags*/, std::u16string* text) {
  std::string written = Written(value == 0 ? 0.0 : value, std::chars_format::general);
  // A small number is written out where 15 places behind the point hold all of its digits.
  if (Holds(written, 'e') && std::abs(value) < 1 && !written.ends_with("e-15")) {
    std::string out = Written(value, std::chars_format::fixed);
    out.erase(out.find_last_not_of('0') + 1);
    if (ValueOf(out) == ValueOf(written)) written = out;
  }
  text->clear();
  for (const char c : written) {
    *text += static_cast<char16_t>(c >= 'a' && c <= 'z' ? c - ('a' - 'A') : c);
  }
  return kSuccess;
}

}  // namespace quorvane
