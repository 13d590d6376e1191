// zlib beside ours: instructions for carry-less multiplication, or many tables.

#include <benchmark/benchmark.h>
#include <zlib.h>

#include "benchmarks/crc_samples.h"
#include "benchmarks/sweep.h"

namespace quorvane::benchmarks {
namespace {

void Zlib(benchmark::State& state, int size) {
  const auto bytes = ArrayBytes(size);
  for ([[maybe_unused]] auto round : state)
    benchmark::DoNotOptimize(::crc32(0, bytes.data(), static_cast<uInt>(bytes.size())));
}

[[maybe_unused]] const bool kZlib = Sweep("Array", kArraySizes, "zlib", Zlib);

}  // namespace
}  // namespace quorvane::benchmarks
