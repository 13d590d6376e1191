#pragma once

#include <cstdint>

namespace quorvane {

/// The nearest integer, ties to even; raises overflow (6) when that is out of range, or the value
/// is no number.
///
/// Worked out on the bits of the value: a host may have set its floating-point unit to fewer digits
/// than a double has, or to another way of rounding.
[[nodiscard]] std::int32_t RoundTo32(double value);

}  // namespace quorvane
