#pragma once

#include <cstdint>
#include <vector>

#include "tests/support/fake_gdi32.h"

namespace quorvane::testing {

/// The bands of a ramp worked out with the processor's own 32-bit and 64-bit floating-point
/// numbers, as the steps read, and by none of the house's arithmetic. Where those numbers are not
/// what they say, as on an x87 unit, its source is compiled for the SSE2 unit.
[[nodiscard]] std::vector<PaintedBand> BandsInFloatingPoint(std::int32_t width, std::int32_t height,
                                                            Colour start, Colour end,
                                                            std::int16_t direction);

}  // namespace quorvane::testing
