// The CRC of a file, the whole operation: name test, open, length, reads, table, CRC, close; with
// the file in the system's cache. The base is the straightforward way: a directory listing for the
// name test, the same reads, and the plain loop.

#include <benchmark/benchmark.h>

#include <array>

#include "benchmarks/file_samples.h"
#include "benchmarks/sweep.h"
#include "checksum/cCRC32.h"
#include "control/SecurityCtrl.h"
#include "tests/support/fake_app.h"

namespace quorvane::benchmarks {
namespace {

// Modules of two sizes.
constexpr std::array kModules{57856, 300 << 10};
// Up to the largest that has a CRC: one byte more, and the end could not be reported.
constexpr std::array kLargest{512 << 20, 1024 << 20, 1536 << 20, 2147475455};
constexpr int kRepetitions = 3;  // of those: a second each

void AsWritten(benchmark::State& state, int size) {
  const SampleFile file(size);
  MeasureAsWritten(state, file.Name());
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

void ReadsAlone(benchmark::State& state, int size) {
  const SampleFile file(size);
  MeasureReadsAlone(state, file.Name());
}

class SilentSite final : public ControlSite {
 public:
  void PropertyChanged(const identities::Property& /*property*/) override {}
  void SetHeight(float /*twips*/) override {}
  void SetWidth(float /*twips*/) override {}
};

void GetCRCValue(benchmark::State& state, int size) {
  const SampleFile file(size);
  testing::FakeApp module;
  module.path = file.Folder();
  SilentSite site;
  SecurityCtrl control(site, module);
  for ([[maybe_unused]] auto round : state) benchmark::DoNotOptimize(control.GetCRCValue());
}

[[maybe_unused]] const bool kRegistered =
    Sweep("File", kFiles, "base_as_written", AsWritten) &&
    Sweep("File", kFiles, "GetFileCrc32_with_listing", WithListing) &&
    Sweep("File", kFiles, "GetFileCrc32", Ours) &&
    Sweep("File", kModules, "GetCRCValue", GetCRCValue) &&
    Sweep("File", kFiles, "reads_alone", ReadsAlone) &&
    Sweep<kRepetitions>("LargeFile", kLargest, "GetFileCrc32", Ours);

}  // namespace
}  // namespace quorvane::benchmarks
