#pragma once

#include <concepts>
#include <cstdint>
#include <limits>

#include "runtime/runtime_error.h"

namespace quorvane {

// The system counts in bytes, signed 16-bit and signed 32-bit integers. Every addition, subtraction
// and multiplication on them, and every narrowing, goes through here: a result out of range raises
// overflow (6) and never wraps. Hosts rely on the limits that follow from it.

/// The sum; raises overflow (6) when the type does not hold it.
template <std::signed_integral Integer>
[[nodiscard]] Integer CheckedAdd(Integer left, Integer right) {
  Integer result{};
  if (__builtin_add_overflow(left, right, &result)) Raise(ErrorNumber::kOverflow);
  return result;
}

/// The difference; likewise.
template <std::signed_integral Integer>
[[nodiscard]] Integer CheckedSubtract(Integer left, Integer right) {
  Integer result{};
  if (__builtin_sub_overflow(left, right, &result)) Raise(ErrorNumber::kOverflow);
  return result;
}

/// The product; likewise.
template <std::signed_integral Integer>
[[nodiscard]] Integer CheckedMultiply(Integer left, Integer right) {
  Integer result{};
  if (__builtin_mul_overflow(left, right, &result)) Raise(ErrorNumber::kOverflow);
  return result;
}

/// Converts any integer to `Target`; raises overflow (6) when the value does not fit.
template <std::signed_integral Target, std::integral Source>
[[nodiscard]] Target Narrow(Source value) {
  Target result{};
  if (__builtin_add_overflow(value, Source{0}, &result)) Raise(ErrorNumber::kOverflow);
  return result;
}

/// Narrows to a signed 16-bit integer; raises overflow (6) outside -32768 to 32767.
template <std::integral Source>
[[nodiscard]] std::int16_t NarrowTo16(Source value) {
  return Narrow<std::int16_t>(value);
}

/// Narrows to a signed 32-bit integer; raises overflow (6) when the value does not fit.
template <std::integral Source>
[[nodiscard]] std::int32_t NarrowTo32(Source value) {
  return Narrow<std::int32_t>(value);
}

}  // namespace quorvane
