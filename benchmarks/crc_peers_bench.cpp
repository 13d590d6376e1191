// Two well-known implementations beside ours, natively: zlib (instructions for carry-less
// multiplication or many tables) and Boost.CRC (a plain loop).

#include <benchmark/benchmark.h>
#include <zlib.h>

#include <boost/crc.hpp>

#include "benchmarks/crc_samples.h"

namespace quorvane::benchmarks {
namespace {

void Zlib(benchmark::State& state, int size) {
  const auto bytes = ArrayBytes(size);
  for ([[maybe_unused]] auto round : state)
    benchmark::DoNotOptimize(::crc32(0, bytes.data(), static_cast<uInt>(bytes.size())));
}

void Boost(benchmark::State& state, int size) {
  const auto bytes = ArrayBytes(size);
  for ([[maybe_unused]] auto round : state) {
    boost::crc_32_type crc;
    crc.process_bytes(bytes.data(), bytes.size());
    benchmark::DoNotOptimize(crc.checksum());
  }
}

BENCHMARK_CAPTURE(Zlib, , kShort)->Name("Array16/zlib");
BENCHMARK_CAPTURE(Boost, , kShort)->Name("Array16/boost");
BENCHMARK_CAPTURE(Zlib, , kBlock)->Name("Array8192/zlib");
BENCHMARK_CAPTURE(Boost, , kBlock)->Name("Array8192/boost");
BENCHMARK_CAPTURE(Zlib, , kLargest)->Name("Array32767/zlib");
BENCHMARK_CAPTURE(Boost, , kLargest)->Name("Array32767/boost");

}  // namespace
}  // namespace quorvane::benchmarks
