// The CRC of bytes in memory: the table, and arrays of three sizes in the plain way and in ours.

#include <benchmark/benchmark.h>

#include "benchmarks/crc_samples.h"
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

// The table beside the plain loop over one block, to which building it is a small addition.
void Table(benchmark::State& state) {
  for ([[maybe_unused]] auto round : state) {
    CrcTable table = BuildCrcTable();
    benchmark::DoNotOptimize(table);
  }
}

BENCHMARK_CAPTURE(Plain, , kShort)->Name("Array16/base_plain_loop");
BENCHMARK_CAPTURE(Ours, , kShort)->Name("Array16/GetByteArrayCrc32");
BENCHMARK_CAPTURE(Plain, , kBlock)->Name("Array8192/base_plain_loop");
BENCHMARK_CAPTURE(Ours, , kBlock)->Name("Array8192/GetByteArrayCrc32");
BENCHMARK_CAPTURE(Plain, , kLargest)->Name("Array32767/base_plain_loop");
BENCHMARK_CAPTURE(Ours, , kLargest)->Name("Array32767/GetByteArrayCrc32");
BENCHMARK_CAPTURE(Plain, , kBlock)->Name("Table/base_plain_loop_8192");
BENCHMARK(Table)->Name("Table/BuildCrcTable");

}  // namespace
}  // namespace quorvane::benchmarks
