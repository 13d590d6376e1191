#pragma once

#include <array>

namespace quorvane {

/// A positive number as d.ddddddddddddddd times a power of ten.
struct DecimalDigits {
  std::array<char, 15> digits;  ///< '0' to '9', the first of them not '0'
  int exponent;                 ///< of ten
};

/// The 15 significant digits of a finite value above 0: exactly rounded, a tie to the even digit.
///
/// The C library would do, but in a static 32-bit Windows module its formatted output weighs 28 KB,
/// an eighth of the file whose checksum the control takes at each call.
[[nodiscard]] DecimalDigits FifteenDigits(double value);

}  // namespace quorvane
