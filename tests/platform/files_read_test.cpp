// Reading under a number: how far, into which elements, and what an early end of the file leaves.

#include <gtest/gtest.h>

#include <array>

#include "platform/files.h"
#include "tests/support/raises.h"
#include "tests/support/sample_bytes.h"
#include "tests/support/temporary_folder.h"

namespace quorvane {
namespace {

using testing::ErrorNumberOf;
using testing::SampleBytes;

class ReadFile : public ::testing::Test {
 protected:
  ReadFile() { files().OpenForReading(folder_.WriteFile(u"a.bin", bytes_), 1); }
  ~ReadFile() override { files().Close(1); }

  [[nodiscard]] std::span<const std::uint8_t> Bytes(std::size_t start, std::size_t count) const {
    return std::span(bytes_).subspan(start, count);
  }

  const testing::TemporaryFolder folder_;
  const std::vector<std::uint8_t> bytes_ = SampleBytes(100000);
};

TEST_F(ReadFile, FillsTheBufferAndMovesOnByItsSize) {
  ByteArray buffer(0, 29999);
  for (std::size_t start = 0; start < 90000; start += 30000) {
    files().Read(1, buffer);
    EXPECT_TRUE(std::ranges::equal(buffer.Elements(), Bytes(start, 30000)));
  }
}

TEST_F(ReadFile, LeavesTheElementsBehindTheEndOfTheFile) {
  ByteArray skipped(0, 99996);
  files().Read(1, skipped);
  ByteArray buffer = testing::ArrayOf(std::vector<std::uint8_t>(10, 7));
  files().Read(1, buffer);
  EXPECT_TRUE(std::ranges::equal(buffer.Elements().first(3), Bytes(99997, 3)));
  for (const std::uint8_t byte : buffer.Elements().subspan(3)) EXPECT_EQ(byte, 7);
  // At the end nothing is left, and that is no failure either.
  std::ranges::fill(buffer.Elements(), std::uint8_t{8});
  files().Read(1, buffer);
  for (const std::uint8_t byte : buffer.Elements()) EXPECT_EQ(byte, 8);
}

TEST_F(ReadFile, TakesAWholeFileAtOnce) {
  ByteArray buffer(0, 99999);
  files().Read(1, buffer);
  EXPECT_TRUE(std::ranges::equal(buffer.Elements(), bytes_));
}

TEST_F(ReadFile, TakesAnyBoundsAndDimensions) {
  ByteArray shifted(-5, 4);
  files().Read(1, shifted);
  EXPECT_TRUE(std::ranges::equal(shifted.Elements(), Bytes(0, 10)));
  ByteArray cube(std::vector<Bounds>{{1, 2}, {1, 3}, {0, 1}});
  files().Read(1, cube);
  EXPECT_TRUE(std::ranges::equal(cube.Elements(), Bytes(10, 12)));
}

TEST_F(ReadFile, IntoNothingMovesNothing) {
  ByteArray none;
  files().Read(1, none);
  ByteArray empty(0, -1);
  files().Read(1, empty);
  ByteArray buffer(0, 9);
  files().Read(1, buffer);
  EXPECT_TRUE(std::ranges::equal(buffer.Elements(), Bytes(0, 10)));
}

TEST_F(ReadFile, KeepsAPlaceForEachNumber) {
  files().OpenForReading(folder_.Name(u"a.bin"), 2);
  ByteArray buffer(0, 9);
  files().Read(1, buffer);
  files().Read(1, buffer);
  files().Read(2, buffer);
  EXPECT_TRUE(std::ranges::equal(buffer.Elements(), Bytes(0, 10)));
  files().Close(2);
}

TEST_F(ReadFile, ReadingLeavesTheLength) {
  ByteArray buffer(0, 9);
  files().Read(1, buffer);
  EXPECT_EQ(files().Length(1), 100000);
}

TEST_F(ReadFile, RefusesNumbersWithoutAFile) {
  ByteArray buffer(0, 9);
  files().Close(1);
  for (const std::int16_t number :
       std::to_array<std::int16_t>({-32768, -1, 0, 1, 2, 511, 512, 32767})) {
    EXPECT_EQ(ErrorNumberOf([&] { files().Read(number, buffer); }), 52) << number;
    EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(files().Length(number)); }), 52) << number;
  }
}

}  // namespace
}  // namespace quorvane
