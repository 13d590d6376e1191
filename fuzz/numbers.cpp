// Texts that stand for numbers, and numbers as texts: the stand-in of the automation library, and
// the rounding of the conversions.
//
// Oracle: a second reader, which takes the text apart by sets of signs, writes the number out as
// digits in front of and behind its point, and rounds those by hand; the C library's strtod() says
// what is too large or nothing, its printf() how a number is written, its nearbyint() how one is
// rounded.

#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "fuzz/target.h"
#include "platform/conversions.h"
#include "platform/posix/numeric_text.h"
#include "runtime/runtime_error.h"
#include "runtime/utf8.h"

namespace quorvane::fuzz::numbers {

constexpr std::u16string_view kWhite =
    u"\t\n\v\f\r \u0085\u00A0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009"
    u"\u200A\u2028\u2029\u202F\u205F\u3000";

struct Written {
  bool is_literal = false;
  bool is_negative = false;
  std::string whole;     // of a literal its digits; no leading zeros
  std::string fraction;  // digits
  int base = 10;
};

std::size_t CountOf(std::u16string_view text, char16_t sign) {
  return static_cast<std::size_t>(std::ranges::count(text, sign));
}

std::string Narrow(std::u16string_view ascii) { return {ascii.begin(), ascii.end()}; }

std::string WithoutZeros(std::string digits) {
  digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
  return digits;
}

// Takes the longest front of these signs off.
std::u16string_view TakeFront(std::u16string_view& rest, const std::u16string& signs) {
  const std::u16string_view front = rest.substr(0, rest.find_first_not_of(signs));
  rest.remove_prefix(front.size());
  return front;
}

bool TakeLiteral(std::u16string_view& rest, Written& number) {
  if (rest.size() < 3) return false;
  const char16_t kind = rest[1];
  number.is_literal = true;
  number.base = kind == u'H' || kind == u'h' ? 16 : 8;
  if (number.base == 8 && kind != u'O' && kind != u'o') return false;
  rest.remove_prefix(2);
  const auto digits = TakeFront(rest, number.base == 16 ? u"0123456789ABCDEFabcdef" : u"01234567");
  number.whole = WithoutZeros(Narrow(digits));
  return !digits.empty();
}

bool TakeDecimal(std::u16string_view& rest, bool has_money, Written& number) {
  constexpr int kFar = 2200;
  const std::string run = Narrow(TakeFront(rest, u"0123456789.,"));
  const std::size_t first_digit = run.find_first_of("0123456789");
  if (first_digit == std::string::npos || run.find(',') < first_digit) return false;
  const std::size_t point = std::min(run.find('.'), run.size());
  if (run.find('.', point + 1) < run.size()) return false;
  std::string before = run.substr(0, point);
  std::string behind = run.substr(std::min(point + 1, run.size()));
  std::erase(before, ',');
  std::erase(behind, ',');
  if (!has_money && !rest.empty() && (rest[0] == u'e' || rest[0] == u'E')) {
    rest.remove_prefix(1);
    const bool is_down = rest.starts_with(u'-');
    if (is_down || rest.starts_with(u'+')) rest.remove_prefix(1);
    const std::string digits = Narrow(TakeFront(rest, u"0123456789"));
    if (digits.empty()) return false;
    const std::string plain = WithoutZeros(digits);
    int places = plain.size() > 4 ? kFar : std::min(std::atoi(plain.c_str()), kFar);
    for (; places > 0 && is_down; --places) {
      behind.insert(0, 1, before.empty() ? '0' : before.back());
      if (!before.empty()) before.pop_back();
    }
    for (; places > 0; --places) {
      before += behind.empty() ? '0' : behind.front();
      if (!behind.empty()) behind.erase(0, 1);
    }
  }
  number.whole = WithoutZeros(before);
  number.fraction = behind;
  return true;
}

std::optional<Written> Read(std::u16string_view text) {
  Written number;
  std::u16string_view rest = text;
  const auto front = TakeFront(rest, std::u16string(kWhite) + u"+-$(");
  for (const char16_t sign : {u'+', u'-', u'$', u'('})
    if (CountOf(front, sign) > 1) return std::nullopt;
  const bool has_plus = CountOf(front, u'+') != 0;
  const bool has_minus = CountOf(front, u'-') != 0;
  const bool has_money = CountOf(front, u'$') != 0;
  const bool is_open = CountOf(front, u'(') != 0;
  const bool is_literal = !has_money && rest.starts_with(u'&');
  if (!(is_literal ? TakeLiteral(rest, number) : TakeDecimal(rest, has_money, number))) return {};
  std::u16string allowed(kWhite);
  if (!has_plus) allowed += u'+';
  if (!has_minus) allowed += u'-';
  if (!is_literal) allowed += u'$';
  if (is_open) allowed += u')';
  const auto back = TakeFront(rest, allowed);
  if (!rest.empty() || (is_open && CountOf(back, u')') == 0)) return std::nullopt;
  number.is_negative = has_minus || is_open || (!has_minus && CountOf(back, u'-') != 0);
  return number;
}

struct Answer {
  std::int32_t result = 0;
  std::int64_t value = 0;
  friend bool operator==(const Answer&, const Answer&) = default;
};

// The bits of a literal; nothing with more than 64.
std::optional<std::uint64_t> BitsOf(const Written& number) {
  if (number.whole.size() > (number.base == 16 ? 16U : 21U)) return std::nullopt;
  return std::strtoull(number.whole.c_str(), nullptr, number.base);
}

Answer Integer(const std::optional<Written>& number, int width) {
  if (!number) return {Oleaut32::kTypeMismatch, 0};
  const std::int64_t range = std::int64_t{1} << width;
  if (number->is_literal) {
    const auto bits = BitsOf(*number);
    if (!bits || *bits >= static_cast<std::uint64_t>(range)) return {Oleaut32::kOverflow, 0};
    const auto value = static_cast<std::int64_t>(*bits);
    return {0, value >= range / 2 ? value - range : value};
  }
  if (number->whole.size() > 12) return {Oleaut32::kOverflow, 0};
  std::int64_t value = number->whole.empty() ? 0 : std::atoll(number->whole.c_str());
  const std::string half = "5" + std::string(number->fraction.size(), '0');
  const int side = (number->fraction + "0").compare(half.substr(0, number->fraction.size() + 1));
  if (side > 0 || (side == 0 && value % 2 == 1)) ++value;
  if (number->is_negative) value = -value;
  if (value < -range / 2 || value >= range / 2) return {Oleaut32::kOverflow, 0};
  return {0, value};
}

Answer Boolean(const std::u16string& text, const std::optional<Written>& number) {
  std::string word;
  for (const char16_t c : text) word += c < 0x80 ? static_cast<char>(std::toupper(c)) : '?';
  if (word == "TRUE" || text == u"#TRUE#") return {0, -1};
  if (word == "FALSE" || text == u"#FALSE#") return {0, 0};
  if (!number) return {Oleaut32::kTypeMismatch, 0};
  if (number->is_literal) {
    const auto bits = BitsOf(*number);
    if (!bits || *bits > 0xFFFFFFFFU) return {Oleaut32::kOverflow, 0};
    return {0, *bits != 0 ? -1 : 0};
  }
  const double value =
      std::strtod((number->whole + "." + number->fraction + "e0").c_str(), nullptr);
  const bool is_nothing = number->whole.empty() && number->fraction.empty();
  if (is_nothing) return {0, 0};
  if (std::isinf(value)) return {Oleaut32::kOverflow, 0};
  return {0, value != 0 ? -1 : 0};
}

template <class Value, class Call>
Answer Ask(Call call) {
  Value value = 0;
  const std::int32_t result = call(&value);
  return {result, value};
}

void CheckText(const std::u16string& characters) {
  const std::u16string text = characters.substr(0, characters.find(u'\0'));
  if (text.size() > 1000) return;  // the digits behind the 1024th count as zeros
  NumericText numeric;
  const auto number = Read(text);
  const char16_t* const start = characters.c_str();
  Require(Ask<std::int16_t>([&](auto* value) {
            return numeric.VarI2FromStr(start, 0, 0, value);
          }) == Integer(number, 16),
          "VarI2FromStr()");
  Require(Ask<std::int32_t>([&](auto* value) {
            return numeric.VarI4FromStr(start, 0, 0, value);
          }) == Integer(number, 32),
          "VarI4FromStr()");
  Require(Ask<std::int16_t>([&](auto* value) {
            return numeric.VarBoolFromStr(start, 0, 0, value);
          }) == Boolean(text, number),
          "VarBoolFromStr()");
}

// In up to 15 digits; a small one without its exponent, where that takes no more than 15 places and
// the first digit stands before the 15th.
std::string WrittenOut(double number) {
  char room[64];
  std::snprintf(room, sizeof room, "%.15G", number == 0 ? 0 : number);
  const std::string text = room;
  const std::size_t sign = text.find("E-");
  if (sign == std::string::npos) return text;
  const int zeros = std::atoi(text.c_str() + sign + 2) - 1;
  std::string digits = text.substr(0, sign);
  std::erase(digits, '.');
  const bool is_negative = digits.starts_with('-');
  if (is_negative) digits.erase(0, 1);
  if (zeros > 13 || static_cast<std::size_t>(zeros) + digits.size() > 15) return text;
  return (is_negative ? "-0." : "0.") + std::string(static_cast<std::size_t>(zeros), '0') + digits;
}

void CheckNumber(double number) {
  std::u16string text;
  Require(NumericText().VarBstrFromR8(number, 0, 0, &text) == 0, "VarBstrFromR8() fails");
  Require(Narrow(text) == WrittenOut(number), "VarBstrFromR8()");
  const double rounded = std::nearbyint(number);
  const bool is_in_range = rounded >= -2147483648.0 && rounded <= 2147483647.0;
  try {
    Require(ToInteger32(number) == rounded && is_in_range, "ToInteger32()");
  } catch (const RuntimeError& error) {
    Require(error.number == 6 && !is_in_range, "ToInteger32() raises");
  }
}

void Run(Input input) {
  if (input.Byte(15) != 15) return CheckText(input.Characters(SIZE_MAX));
  const auto low = static_cast<std::uint32_t>(input.Number32());
  const auto high = static_cast<std::uint32_t>(input.Number32());
  CheckNumber(std::bit_cast<double>(std::uint64_t{high} << 32 | low));
}

const Registered kTarget("numbers", Run);

}  // namespace quorvane::fuzz::numbers
