// The CRC of a file, the whole operation: name test, open, length, reads, table, CRC, close; with
// the file in the system's cache. The base is the straightforward way: a directory listing for the
// name test, the same reads, and the plain loop.

#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "benchmarks/listing_files.h"
#include "checksum/cCRC32.h"
#include "control/SecurityCtrl.h"
#include "tests/support/fake_app.h"
#include "tests/support/plain_crc.h"
#include "tests/support/sample_bytes.h"

namespace quorvane::benchmarks {
namespace {

constexpr int kSmallModule = 57856;
constexpr int kModule = 300 * 1024;
constexpr int kLarge = 16 * 1024 * 1024;
constexpr std::int32_t kBlockSize = 8192;

// A file of that size for the length of one benchmark.
class SampleFile {
 public:
  explicit SampleFile(int size)
      : folder_(std::filesystem::temp_directory_path() /
                ("quorvane_bench_" + std::to_string(std::random_device{}()))) {
    std::filesystem::create_directories(folder_);
    const auto bytes = testing::SampleBytes(static_cast<std::size_t>(size));
    std::ofstream file(folder_ / "Module.ocx", std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), size);
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

template <class Block>
void ForEachBlock(Files& file_access, const Text& name, Block block) {
  cBinaryFileStream stream(file_access);
  stream.PutFile(name);
  ByteArray buffer(0, kBlockSize - 1);
  while (const std::int32_t count = stream.Read(buffer, kBlockSize))
    block(buffer.Elements().first(static_cast<std::size_t>(count)));
}

void AsWritten(benchmark::State& state, int size) {
  const SampleFile file(size);
  ListingFiles listing_files;
  for ([[maybe_unused]] auto round : state) {
    const CrcTable table = BuildCrcTable();
    std::uint32_t crc = 0xFFFFFFFF;
    ForEachBlock(listing_files, file.Name(), [&](std::span<const std::uint8_t> bytes) {
      crc = testing::AdvanceCrcPlainly(table, crc, bytes);
    });
    benchmark::DoNotOptimize(crc);
  }
}

std::int32_t FileCrc(Files& file_access, const Text& name) {
  cBinaryFileStream stream(file_access);
  stream.PutFile(name);
  const cCRC32 crc;
  return crc.GetFileCrc32(stream);
}

void WithListing(benchmark::State& state, int size) {
  const SampleFile file(size);
  ListingFiles listing_files;
  for ([[maybe_unused]] auto round : state)
    benchmark::DoNotOptimize(FileCrc(listing_files, file.Name()));
}

void Ours(benchmark::State& state, int size) {
  const SampleFile file(size);
  for ([[maybe_unused]] auto round : state) benchmark::DoNotOptimize(FileCrc(files(), file.Name()));
}

// The limit: the same file without a CRC.
void ReadOnly(benchmark::State& state, int size) {
  const SampleFile file(size);
  for ([[maybe_unused]] auto round : state) {
    ForEachBlock(files(), file.Name(), [](std::span<const std::uint8_t> bytes) {
      benchmark::DoNotOptimize(bytes.data());
    });
  }
}

class SilentSite final : public ControlSite {
 public:
  void PropertyChanged(const identities::Property& /*property*/) override {}
  void SetHeight(float /*twips*/) override {}
  void SetWidth(float /*twips*/) override {}
};

void GetCRCValue(benchmark::State& state) {
  const SampleFile file(kModule);
  testing::FakeApp module;
  module.path = file.Folder();
  SilentSite site;
  SecurityCtrl control(site, module);
  for ([[maybe_unused]] auto round : state) benchmark::DoNotOptimize(control.GetCRCValue());
}

BENCHMARK_CAPTURE(AsWritten, , kSmallModule)->Name("File57856/base_as_written");
BENCHMARK_CAPTURE(WithListing, , kSmallModule)->Name("File57856/GetFileCrc32_with_listing");
BENCHMARK_CAPTURE(Ours, , kSmallModule)->Name("File57856/GetFileCrc32");
BENCHMARK_CAPTURE(ReadOnly, , kSmallModule)->Name("File57856/read_only");
BENCHMARK_CAPTURE(AsWritten, , kModule)->Name("File300K/base_as_written");
BENCHMARK_CAPTURE(WithListing, , kModule)->Name("File300K/GetFileCrc32_with_listing");
BENCHMARK_CAPTURE(Ours, , kModule)->Name("File300K/GetFileCrc32");
BENCHMARK(GetCRCValue)->Name("File300K/GetCRCValue");
BENCHMARK_CAPTURE(ReadOnly, , kModule)->Name("File300K/read_only");
BENCHMARK_CAPTURE(AsWritten, , kLarge)->Name("File16M/base_as_written");
BENCHMARK_CAPTURE(WithListing, , kLarge)->Name("File16M/GetFileCrc32_with_listing");
BENCHMARK_CAPTURE(Ours, , kLarge)->Name("File16M/GetFileCrc32");
BENCHMARK_CAPTURE(ReadOnly, , kLarge)->Name("File16M/read_only");

}  // namespace
}  // namespace quorvane::benchmarks
