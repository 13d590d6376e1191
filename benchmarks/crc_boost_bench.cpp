// Boost.CRC beside ours: a plain loop.

#include <benchmark/benchmark.h>

#include <boost/crc.hpp>

#include "benchmarks/crc_samples.h"
#include "benchmarks/sweep.h"

namespace quorvane::benchmarks {
namespace {

void Boost(benchmark::State& state, int size) {
  const auto bytes = ArrayBytes(size);
  for ([[maybe_unused]] auto round : state) {
    boost::crc_32_type crc;
    crc.process_bytes(bytes.data(), bytes.size());
    benchmark::DoNotOptimize(crc.checksum());
  }
}

[[maybe_unused]] const bool kBoost = Sweep("Array", kArraySizes, "boost", Boost);

}  // namespace
}  // namespace quorvane::benchmarks
