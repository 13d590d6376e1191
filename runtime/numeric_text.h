#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "runtime/text.h"

namespace quorvane {

/// The value of a numeric text, or nothing when it is none.
///
/// Blanks (space, tab) around and between sign and digits' start are passed over; an optional sign,
/// decimal digits with at most one decimal point ("." whatever the locale), an optional exponent (E
/// or D, any case, optional sign). Or "&H" with 1 to 8 hexadecimal digits (any case), or "&O" or
/// "&" with octal digits: such a literal is a bit pattern, signed 16-bit when it fits in 16 bits
/// (&HFFFF is -1) and signed 32-bit otherwise, and takes no sign in front. Raises overflow (6) when
/// a decimal value exceeds the range of a double or a literal 32 bits.
[[nodiscard]] std::optional<double> ParseNumber(const Text& text);

/// Rounds to the nearest integer, ties to even, and narrows; overflow (6) when out of range.
[[nodiscard]] std::int16_t RoundTo16(double value);
/// The same to 32 bits.
[[nodiscard]] std::int32_t RoundTo32(double value);

/// Numeric text to an integer; type mismatch (13) when it is none, overflow (6) when out of range.
[[nodiscard]] std::int16_t TextToInteger16(const Text& text);
/// The same to 32 bits.
[[nodiscard]] std::int32_t TextToInteger32(const Text& text);

/// The shortest decimal form with up to 15 significant digits, "." as decimal point, exponent form
/// ("1E+20") outside 1E-5 to 1E15.
[[nodiscard]] Text NumberToText(double value);

}  // namespace quorvane
