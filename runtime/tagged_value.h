#pragma once

#include <cstdint>
#include <utility>
#include <variant>

#include "runtime/boolean16.h"
#include "runtime/text.h"

namespace quorvane {

/// A value that carries its own kind: nothing (empty), a 16-bit Boolean, a number, or a text. What
/// it is as another kind: platform/conversions.h.
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
  TaggedValue(Text value) : value_(std::move(value)) {}
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

  /// Same kind and same value; a text by its exact characters.
  friend bool operator==(const TaggedValue&, const TaggedValue&) = default;

 private:
  std::variant<std::monostate, Boolean16, std::int16_t, std::int32_t, double, Text> value_;
};

}  // namespace quorvane
