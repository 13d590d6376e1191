// zlib beside ours, on arrays and behind the same reads of a file: a table for each byte of a word.

#include <benchmark/benchmark.h>
#include <zlib.h>

#include "benchmarks/crc_samples.h"
#include "benchmarks/file_samples.h"
#include "benchmarks/sweep.h"

namespace quorvane::benchmarks {
namespace {

void Zlib(benchmark::State& state, int size) {
  const auto bytes = ArrayBytes(size);
  for ([[maybe_unused]] auto round : state)
    benchmark::DoNotOptimize(::crc32(0, bytes.data(), static_cast<uInt>(bytes.size())));
}

void ZlibBehindReads(benchmark::State& state, int size) {
  const SampleFile file(size);
  for ([[maybe_unused]] auto round : state) {
    uLong crc = 0;
    ForEachBlock(files(), file.Name(), [&](std::span<const std::uint8_t> bytes) {
      crc = ::crc32(crc, bytes.data(), static_cast<uInt>(bytes.size()));
    });
    benchmark::DoNotOptimize(crc);
  }
}

[[maybe_unused]] const bool kZlib =
    Sweep("Array", kArraySizes, "zlib", Zlib) && Sweep("File", kFiles, "zlib", ZlibBehindReads);

}  // namespace
}  // namespace quorvane::benchmarks
