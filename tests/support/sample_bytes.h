#pragma once

#include <algorithm>
#include <cstdint>
#include <random>
#include <span>
#include <vector>

#include "runtime/byte_array.h"

namespace quorvane::testing {

/// Bytes without a pattern, the same for a seed in every run.
[[nodiscard]] inline std::vector<std::uint8_t> SampleBytes(std::size_t count,
                                                           std::uint32_t seed = 1) {
  std::mt19937 random(seed);
  std::vector<std::uint8_t> bytes(count);
  for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random() >> 24);
  return bytes;
}

/// An array with a lower bound of its own that holds the bytes.
[[nodiscard]] inline ByteArray ArrayOf(std::span<const std::uint8_t> bytes,
                                       std::int32_t lower = 0) {
  ByteArray array(lower, lower + static_cast<std::int32_t>(bytes.size()) - 1);
  std::ranges::copy(bytes, array.Elements().begin());
  return array;
}

}  // namespace quorvane::testing
