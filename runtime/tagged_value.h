#pragma once

#include <cstdint>
#include <variant>

#include "runtime/boolean16.h"
#include "runtime/text.h"

namespace quorvane {

/// A value that carries its own kind: nothing (empty), a 16-bit Boolean, a number, or a text.
///
/// The conversions follow the usual rules of automation (VariantChangeType). They raise type
/// mismatch (13) when there is no meaning in the wanted kind, and overflow (6) when it is out of
/// range:
/// - to an integer: empty is 0; True is -1; a fraction is rounded to the nearest, ties to even; a
/// text counts as
///   numeric text, see ParseNumber() in numeric_text.h.
/// - to a text: empty is the empty text; "True" and "False"; a number in its shortest decimal form
/// (up to 15 digits).
/// - to a Boolean: a number by being unlike zero; the texts "True" and "False" in any case, also
/// between # signs, or
///   a numeric text. The result is always -1 or 0.
class TaggedValue {
 public:
  /// The empty kind.
  TaggedValue() = default;
  // NOLINTBEGIN(google-explicit-constructor): values convert
  /// A Boolean, with its bits as they are.
  TaggedValue(Boolean16 value) : value_(value) {}
  /// A 16-bit integer.
  TaggedValue(std::int16_t value) : value_(value) {}
  /// A 32-bit integer.
  TaggedValue(std::int32_t value) : value_(value) {}
  /// A number in floating point.
  TaggedValue(double value) : value_(value) {}
  /// A text; an absent one is the empty text.
  TaggedValue(Text value);
  // NOLINTEND(google-explicit-constructor)

  /// Whether it is of the empty kind.
  [[nodiscard]] bool IsEmpty() const { return Is<std::monostate>(); }
  /// Whether the value is held as exactly this kind.
  template <class Kind>
  [[nodiscard]] bool Is() const {
    return std::holds_alternative<Kind>(value_);
  }
  /// The value as it is held, or null when it is of another kind.
  template <class Kind>
  [[nodiscard]] const Kind* As() const {
    return std::get_if<Kind>(&value_);
  }

  /// The value as a text, see above.
  [[nodiscard]] Text ToText() const;
  /// The value as a 16-bit integer, see above.
  [[nodiscard]] std::int16_t ToInteger16() const;
  /// The value as a 32-bit integer, see above.
  [[nodiscard]] std::int32_t ToInteger32() const;
  /// The value as a Boolean of -1 or 0, see above.
  [[nodiscard]] Boolean16 ToBoolean() const;

  /// Same kind and same value; a text by its exact characters.
  friend bool operator==(const TaggedValue&, const TaggedValue&) = default;

 private:
  [[nodiscard]] double ToDouble() const;

  std::variant<std::monostate, Boolean16, std::int16_t, std::int32_t, double, Text> value_;
};

}  // namespace quorvane
