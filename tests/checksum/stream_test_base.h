#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "checksum/cBinaryFileStream.h"
#include "tests/support/fake_app.h"
#include "tests/support/fake_files.h"
#include "tests/support/fake_kernel32.h"
#include "tests/support/raises.h"
#include "tests/support/sample_bytes.h"

namespace quorvane::testing {

/// A stream over fakes that share one log and one fault plan.
class StreamTest : public ::testing::Test {
 protected:
  /// Puts a file of that many sample bytes where `name` finds it.
  const std::vector<std::uint8_t>& Write(std::u16string_view name, std::size_t size,
                                         std::uint32_t seed = 1) {
    auto& bytes = files_.contents[std::u16string(name)].bytes;
    bytes = SampleBytes(size, seed);
    return bytes;
  }

  /// A file without bytes that says it has that length.
  void WriteHollow(std::u16string_view name, std::int32_t length) {
    files_.contents[std::u16string(name)] = {{}, length};
  }

  std::int32_t Read(std::int32_t size = 8192) { return stream_.Read(buffer_, size); }

  std::int32_t ReadFailure(std::int32_t size = 8192) {
    return ErrorNumberOf([&] { static_cast<void>(Read(size)); });
  }

  /// The counts of all reads up to and including the first that is 0 or less.
  std::vector<std::int32_t> CountsToTheEnd(std::int32_t size = 8192) {
    std::vector<std::int32_t> counts;
    do {
      counts.push_back(Read(size));
    } while (counts.back() > 0);
    return counts;
  }

  [[nodiscard]] bool BufferStartsWith(std::span<const std::uint8_t> bytes) const {
    return std::ranges::equal(buffer_.Elements().first(bytes.size()), bytes);
  }

  CallLog log_;
  FaultPlan plan_;
  FakeFiles files_{log_, plan_};
  FakeApp app_{log_, plan_};
  FakeKernel32 kernel32_{log_};
  cBinaryFileStream stream_{files_, app_, kernel32_};
  ByteArray buffer_{0, 8191};
};

}  // namespace quorvane::testing
