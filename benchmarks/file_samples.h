#pragma once

#include <benchmark/benchmark.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <random>
#include <span>
#include <string>

#include "benchmarks/listing_files.h"
#include "checksum/cBinaryFileStream.h"
#include "checksum/crc_register.h"
#include "tests/support/plain_crc.h"
#include "tests/support/sample_bytes.h"

namespace quorvane::benchmarks {

/// The sizes of files that are measured; the second is that of a small module.
inline constexpr std::array kFiles{8192, 57856, 300 << 10, 2 << 20, 16 << 20};

/// A file of that size for the length of one benchmark, read once, so that it lies in the system's
/// cache. Behind the first 16 MB it is a hole, which costs no disk.
class SampleFile {
 public:
  explicit SampleFile(int size)
      : folder_(std::filesystem::temp_directory_path() /
                ("quorvane_bench_" + std::to_string(std::random_device{}()))) {
    std::filesystem::create_directories(folder_);
    const auto path = folder_ / "Module.ocx";
    const auto bytes = testing::SampleBytes(static_cast<std::size_t>(std::min(size, 1 << 24)));
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
    std::filesystem::resize_file(path, static_cast<std::uintmax_t>(size));
    std::array<char, 1 << 16> block;
    for (std::ifstream file(path, std::ios::binary); file.read(block.data(), block.size());) {
    }
  }
  SampleFile(const SampleFile&) = delete;
  SampleFile& operator=(const SampleFile&) = delete;
  ~SampleFile() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  [[nodiscard]] Text Folder() const { return Text(folder_.u16string()); }
  [[nodiscard]] Text Name() const { return Folder() + u"\\Module.ocx"; }

 private:
  std::filesystem::path folder_;
};

/// Hands each block of the file to `block`.
template <class Block>
void ForEachBlock(Files& file_access, const Text& name, Block block) {
  constexpr std::int32_t kBlockSize = 8192;
  cBinaryFileStream stream(file_access);
  stream.PutFile(name);
  ByteArray buffer(0, kBlockSize - 1);
  while (const std::int32_t count = stream.Read(buffer, kBlockSize))
    block(buffer.Elements().first(static_cast<std::size_t>(count)));
}

/// The straightforward way: a directory listing for the name test, the same reads, the plain loop.
inline void MeasureAsWritten(benchmark::State& state, const Text& name) {
  ListingFiles listing_files;
  for ([[maybe_unused]] auto round : state) {
    const CrcTable table = BuildCrcTable();
    std::uint32_t crc = 0xFFFFFFFF;
    ForEachBlock(listing_files, name, [&](std::span<const std::uint8_t> bytes) {
      crc = testing::AdvanceCrcPlainly(table, crc, bytes);
    });
    benchmark::DoNotOptimize(crc);
  }
}

/// The limit: the same file without a CRC.
inline void MeasureReadsAlone(benchmark::State& state, const Text& name) {
  for ([[maybe_unused]] auto round : state) {
    ForEachBlock(files(), name, [](std::span<const std::uint8_t> bytes) {
      benchmark::DoNotOptimize(bytes.data());
    });
  }
}

}  // namespace quorvane::benchmarks
