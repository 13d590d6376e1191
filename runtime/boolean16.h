#pragma once

#include <cstdint>

namespace quorvane {

/// A 16-bit Boolean: True is -1 and False is 0, but any bits are kept as they were given.
/// A reader tests for zero only; see IsTrue().
struct Boolean16 {
  std::int16_t bits = 0;  ///< as they were given

  /// Whether any bit is set.
  [[nodiscard]] constexpr bool IsTrue() const { return bits != 0; }
  friend constexpr bool operator==(Boolean16, Boolean16) = default;
};

inline constexpr Boolean16 kTrue{-1};  ///< all bits set
inline constexpr Boolean16 kFalse{0};  ///< no bit set

/// -1 for true, 0 for false.
[[nodiscard]] constexpr Boolean16 ToBoolean16(bool value) { return value ? kTrue : kFalse; }

}  // namespace quorvane
