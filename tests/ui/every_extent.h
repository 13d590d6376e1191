#pragma once

#include <cstdint>

#include "platform/gdi32.h"

namespace quorvane::testing {

/// Sizes that reach every count of bands, and some that paint nothing.
inline constexpr std::int32_t kFirstExtent = -100;
inline constexpr std::int32_t kLastExtent = 32767;

struct Ramp {
  std::int32_t width;
  std::int32_t height;
  Colour start;
  Colour end;
};

/// One ramp for each size along it: colours that differ from size to size, any channel to any
/// other; every fourth has the panel's own.
[[nodiscard]] inline Ramp RampOfExtent(std::int32_t extent, std::int16_t direction) {
  const auto mixed = [](std::uint32_t x) {
    x *= 0x9E3779B1U;
    x ^= x >> 15;
    x *= 0x85EBCA77U;
    return static_cast<Colour>((x ^ (x >> 13)) & 0xFFFFFF);
  };
  const auto seed =
      static_cast<std::uint32_t>(extent + 1000) * 4 + static_cast<std::uint32_t>(direction);
  const std::int32_t across = static_cast<std::int32_t>(seed % 7919) - 50;
  const bool panel = extent % 4 == 0;
  return {direction == 1 ? across : extent, direction == 1 ? extent : across,
          panel ? 0xF9DBC4 : mixed(seed), panel ? 0xFFFFFF : mixed(seed + 0x1000000)};
}

}  // namespace quorvane::testing
