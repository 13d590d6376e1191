#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "tests/support/sample_bytes.h"

namespace quorvane::benchmarks {

/// A block of a file.
inline constexpr int kBlock = 8192;

/// The sizes of arrays that are measured, up to the largest from index 0.
inline constexpr std::array kArraySizes{16, 64, 256, 1024, 4096, kBlock, 16384, 24576, 32767};

/// The bytes that all variants of one size get.
inline std::vector<std::uint8_t> ArrayBytes(int size) {
  return testing::SampleBytes(static_cast<std::size_t>(size));
}

}  // namespace quorvane::benchmarks
