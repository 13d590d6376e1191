// The CRC of bytes in memory: the table, and arrays of several sizes in the plain way and in ours.

#include <benchmark/benchmark.h>

#include "benchmarks/crc_samples.h"
#include "benchmarks/sweep.h"
#include "checksum/cCRC32.h"
#include "tests/support/plain_crc.h"

namespace quorvane::benchmarks {
namespace {

void Plain(benchmark::State& state, int size) {
  const auto bytes = ArrayBytes(size);
  const CrcTable table = BuildCrcTable();
  for ([[maybe_unused]] auto round : state)
    benchmark::DoNotOptimize(testing::AdvanceCrcPlainly(table, 0xFFFFFFFF, bytes));
}

void Ours(benchmark::State& state, int size) {
  const ByteArray array = testing::ArrayOf(ArrayBytes(size));
  const cCRC32 crc;
  for ([[maybe_unused]] auto round : state) benchmark::DoNotOptimize(crc.GetByteArrayCrc32(array));
}

// The limit of whatever looks at each byte: copying them.
void CopyAlone(benchmark::State& state, int size) {
  const auto bytes = ArrayBytes(size);
  auto copy = bytes;
  for ([[maybe_unused]] auto round : state) {
    copy.assign(bytes.begin(), bytes.end());
    benchmark::DoNotOptimize(copy.data());
    benchmark::ClobberMemory();
  }
}

// The table beside the plain loop over one block, to which building it is a small addition.
void Table(benchmark::State& state) {
  for ([[maybe_unused]] auto round : state) {
    CrcTable table = BuildCrcTable();
    benchmark::DoNotOptimize(table);
  }
}

[[maybe_unused]] const bool kArrays = Sweep("Array", kArraySizes, "base_plain_loop", Plain) &&
                                      Sweep("Array", kArraySizes, "GetByteArrayCrc32", Ours) &&
                                      Sweep("Array", kArraySizes, "copy_alone", CopyAlone);
BENCHMARK_CAPTURE(Plain, , kBlock)->Name("Table/base_plain_loop_8192");
BENCHMARK(Table)->Name("Table/BuildCrcTable");

}  // namespace
}  // namespace quorvane::benchmarks
