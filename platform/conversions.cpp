#include "platform/conversions.h"

#include <new>
#include <string>
#include <utility>

#include "runtime/integers.h"
#include "runtime/rounding.h"
#include "runtime/runtime_error.h"

namespace quorvane {
namespace {

constexpr std::uint32_t kLocale = Oleaut32::kEnglishUnitedStates;
constexpr std::uint32_t kFlags = Oleaut32::kNoUserOverride;

void RequireSuccess(std::int32_t result) {
  if (result >= 0) return;
  if (result == Oleaut32::kOutOfMemory) throw std::bad_alloc();
  // Whatever else the system calls it, the text has no meaning in that kind.
  Raise(result == Oleaut32::kOverflow ? ErrorNumber::kOverflow : ErrorNumber::kTypeMismatch);
}

Text TextOf(std::int32_t value) {
  const std::string digits = std::to_string(value);
  return Text(std::u16string(digits.begin(), digits.end()));
}

Text TextOf(double value, Oleaut32& oleaut) {
  std::u16string text;
  RequireSuccess(oleaut.VarBstrFromR8(value, kLocale, kFlags, &text));
  return Text(std::move(text));
}

// Any kind but a text; empty is 0. Every integer is exact.
double NumberOf(const TaggedValue& value) {
  if (const auto* boolean = value.As<Boolean16>()) return boolean->bits;
  if (const auto* integer = value.As<std::int16_t>()) return *integer;
  if (const auto* integer = value.As<std::int32_t>()) return *integer;
  if (const auto* number = value.As<double>()) return *number;
  return 0;
}

}  // namespace

Text ToText(const TaggedValue& value, Oleaut32& oleaut) {
  if (const auto* text = value.As<Text>()) return *text;
  if (const auto* boolean = value.As<Boolean16>()) return boolean->IsTrue() ? u"True" : u"False";
  if (const auto* integer = value.As<std::int16_t>()) return TextOf(*integer);
  if (const auto* integer = value.As<std::int32_t>()) return TextOf(*integer);
  if (const auto* number = value.As<double>()) return TextOf(*number, oleaut);
  return u"";
}

std::int16_t ToInteger16(const TaggedValue& value, Oleaut32& oleaut) {
  const auto* text = value.As<Text>();
  if (text == nullptr) return NarrowTo16(RoundTo32(NumberOf(value)));
  std::int16_t integer = 0;
  RequireSuccess(oleaut.VarI2FromStr(text->Characters().c_str(), kLocale, kFlags, &integer));
  return integer;
}

std::int32_t ToInteger32(const TaggedValue& value, Oleaut32& oleaut) {
  const auto* text = value.As<Text>();
  if (text == nullptr) return RoundTo32(NumberOf(value));
  std::int32_t integer = 0;
  RequireSuccess(oleaut.VarI4FromStr(text->Characters().c_str(), kLocale, kFlags, &integer));
  return integer;
}

Boolean16 ToBoolean(const TaggedValue& value, Oleaut32& oleaut) {
  const auto* text = value.As<Text>();
  if (text == nullptr) return ToBoolean16(NumberOf(value) != 0);
  std::int16_t boolean = 0;
  RequireSuccess(oleaut.VarBoolFromStr(text->Characters().c_str(), kLocale, kFlags, &boolean));
  return ToBoolean16(boolean != 0);
}

}  // namespace quorvane
