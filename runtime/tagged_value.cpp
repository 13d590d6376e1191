#include "runtime/tagged_value.h"

#include <algorithm>
#include <string>
#include <utility>

#include "runtime/numeric_text.h"
#include "runtime/runtime_error.h"

namespace quorvane {
namespace {

Text IntegerToText(std::int32_t value) {
  const std::string digits = std::to_string(value);
  return Text(std::u16string(digits.begin(), digits.end()));
}

bool EqualsIgnoringCase(const Text& text, std::u16string_view lower_case_word) {
  return std::ranges::equal(text.Characters(), lower_case_word, [](char16_t c, char16_t lower) {
    return c == lower || (c >= u'A' && c <= u'Z' && c + (u'a' - u'A') == lower);
  });
}

bool TextToBool(const Text& text) {
  if (EqualsIgnoringCase(text, u"true") || EqualsIgnoringCase(text, u"#true#")) return true;
  if (EqualsIgnoringCase(text, u"false") || EqualsIgnoringCase(text, u"#false#")) return false;
  const std::optional<double> number = ParseNumber(text);
  if (!number) Raise(ErrorNumber::kTypeMismatch);
  return *number != 0.0;
}

}  // namespace

TaggedValue::TaggedValue(Text value) : value_(std::move(value)) {}

double TaggedValue::ToDouble() const {
  if (const auto* boolean = As<Boolean16>()) return boolean->bits;
  if (const auto* integer = As<std::int16_t>()) return *integer;
  if (const auto* integer = As<std::int32_t>()) return *integer;
  if (const auto* number = As<double>()) return *number;
  return 0.0;
}

Text TaggedValue::ToText() const {
  if (const auto* text = As<Text>()) return *text;
  if (const auto* boolean = As<Boolean16>()) return boolean->IsTrue() ? u"True" : u"False";
  if (const auto* integer = As<std::int16_t>()) return IntegerToText(*integer);
  if (const auto* integer = As<std::int32_t>()) return IntegerToText(*integer);
  if (const auto* number = As<double>()) return NumberToText(*number);
  return u"";
}

std::int16_t TaggedValue::ToInteger16() const {
  if (const auto* text = As<Text>()) return TextToInteger16(*text);
  return RoundTo16(ToDouble());
}

std::int32_t TaggedValue::ToInteger32() const {
  if (const auto* text = As<Text>()) return TextToInteger32(*text);
  return RoundTo32(ToDouble());
}

Boolean16 TaggedValue::ToBoolean() const {
  if (const auto* text = As<Text>()) return ToBoolean16(TextToBool(*text));
  return ToBoolean16(ToDouble() != 0.0);
}

}  // namespace quorvane
