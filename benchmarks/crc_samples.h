#pragma once

#include <cstdint>
#include <vector>

#include "tests/support/sample_bytes.h"

namespace quorvane::benchmarks {

/// The sizes of arrays that are measured: a short one, a block of a file, the largest from index 0.
inline constexpr int kShort = 16;
inline constexpr int kBlock = 8192;
inline constexpr int kLargest = 32767;

/// The bytes that all variants of one size get.
inline std::vector<std::uint8_t> ArrayBytes(int size) {
  return testing::SampleBytes(static_cast<std::size_t>(size));
}

}  // namespace quorvane::benchmarks
