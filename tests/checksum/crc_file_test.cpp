// GetFileCrc32: what it asks of the stream, how it takes the counts, and what is raised on the way.

#include <gtest/gtest.h>

#include <deque>

#include "checksum/cCRC32.h"
#include "tests/support/fake_app.h"
#include "tests/support/fake_files.h"
#include "tests/support/fake_kernel32.h"
#include "tests/support/plain_crc.h"
#include "tests/support/raises.h"
#include "tests/support/sample_bytes.h"

namespace quorvane {
namespace {

using testing::CallLog;
using testing::ErrorNumberOf;
using testing::ErrorOf;
using testing::FakeApp;
using testing::FakeFiles;
using testing::FakeKernel32;
using testing::FaultPlan;
using testing::PlainCrc;
using testing::SampleBytes;

// Answers each Read with the next count of its list and fills the buffer with the count of calls so
// far.
class ScriptedStream final : public cBinaryFileStream {
 public:
  explicit ScriptedStream(std::deque<std::int32_t> counts) : counts_(std::move(counts)) {}

  std::int32_t Read(ByteArray& buffer, std::int32_t size) override {
    ++reads;
    sizes.push_back(size);
    lower = buffer.LowerBound();
    upper = buffer.UpperBound();
    buffers.push_back(&buffer);
    if (counts_.empty()) Raise(57);
    const std::int32_t count = counts_.front();
    counts_.pop_front();
    const auto filled = static_cast<std::size_t>(std::clamp(count, 0, 8192));
    std::ranges::fill(buffer.Elements().first(filled), static_cast<std::uint8_t>(reads));
    return count;
  }

  int reads = 0;
  std::int32_t lower = -1;
  std::int32_t upper = -1;
  std::vector<std::int32_t> sizes;
  std::vector<const ByteArray*> buffers;

 private:
  std::deque<std::int32_t> counts_;
};

TEST(GetFileCrc32, AsksFor8192BytesThroughOneBufferUntilTheCountIsZero) {
  ScriptedStream stream({8192, 8192, 1, 0});
  static_cast<void>(cCRC32().GetFileCrc32(stream));
  EXPECT_EQ(stream.sizes, std::vector<std::int32_t>({8192, 8192, 8192, 8192}));
  EXPECT_EQ(stream.lower, 0);
  EXPECT_EQ(stream.upper, 8191);
  for (const ByteArray* buffer : stream.buffers) EXPECT_EQ(buffer, stream.buffers.front());
}

TEST(GetFileCrc32, TakesOnlyTheFirstBytesOfAShortBlock) {
  ScriptedStream stream({8192, 3, 0});
  std::vector<std::uint8_t> bytes(8192, 1);
  bytes.insert(bytes.end(), 3, 2);
  EXPECT_EQ(cCRC32().GetFileCrc32(stream), PlainCrc(bytes));
}

TEST(GetFileCrc32, GoesOnAfterAShortBlock) {
  ScriptedStream stream({3, 8192, 0});
  std::vector<std::uint8_t> bytes(3, 1);
  bytes.insert(bytes.end(), 8192, 2);
  EXPECT_EQ(cCRC32().GetFileCrc32(stream), PlainCrc(bytes));
}

TEST(GetFileCrc32, EndsAtACountOfZeroOrLess) {
  ScriptedStream at_once({0});
  EXPECT_EQ(cCRC32().GetFileCrc32(at_once), 0);
  EXPECT_EQ(at_once.reads, 1);
  ScriptedStream negative({-32768});
  EXPECT_EQ(cCRC32().GetFileCrc32(negative), 0);
  EXPECT_EQ(negative.reads, 1);
}

TEST(GetFileCrc32, OverflowsOnACountBeyond16Bits) {
  for (const std::int32_t count : {32768, -32769, 2147483647}) {
    ScriptedStream stream({8192, count, 0});
    EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(cCRC32().GetFileCrc32(stream)); }), 6) << count;
    EXPECT_EQ(stream.reads, 2);
  }
}

TEST(GetFileCrc32, RefusesACountBeyondItsBuffer) {
  for (const std::int32_t count : {8193, 32767}) {
    ScriptedStream stream({count, 0});
    EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(cCRC32().GetFileCrc32(stream)); }), 9) << count;
  }
}

TEST(GetFileCrc32, PassesOnAnErrorOfRead) {
  ScriptedStream stream({8192});
  EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(cCRC32().GetFileCrc32(stream)); }), 57);
  EXPECT_EQ(stream.reads, 2);
}

class GetFileCrc32OfFakeFiles : public ::testing::Test {
 protected:
  std::int32_t CrcOf(const Text& name) {
    cBinaryFileStream stream(files_, app_, kernel32_);
    stream.PutFile(name);
    return cCRC32().GetFileCrc32(stream);
  }

  CallLog log_;
  FaultPlan plan_;
  FakeFiles files_{log_, plan_};
  FakeApp app_{log_, plan_};
  FakeKernel32 kernel32_{log_};
};

TEST_F(GetFileCrc32OfFakeFiles, EqualsThatOfAnArrayOfTheSameBytes) {
  for (const std::size_t size : {0U, 1U, 4U, 511U, 8191U, 8192U, 8193U, 16385U, 100000U}) {
    const auto bytes = SampleBytes(size);
    files_.contents[u"a.bin"].bytes = bytes;
    EXPECT_EQ(CrcOf(u"a.bin"), PlainCrc(bytes)) << size;
    EXPECT_EQ(CrcOf(u"a.bin"), PlainCrc(bytes)) << size << ", a second time";
    EXPECT_EQ(files_.OpenCount(), 0U);
  }
}

TEST_F(GetFileCrc32OfFakeFiles, TakesOneReadForABlockAndOneForTheEnd) {
  files_.contents[u"a.bin"].bytes = SampleBytes(8192);
  static_cast<void>(CrcOf(u"a.bin"));
  EXPECT_EQ(log_,
            CallLog({"ListName(\"a.bin\")", "FreeFileNumber()", "OpenForReading(\"a.bin\", 1)",
                     "Length(1)", "Read(1, 8192)", "RtlMoveMemory(8192)", "Close(1)"}));
}

TEST_F(GetFileCrc32OfFakeFiles, OfAStreamWithoutAFileIsZero) {
  cBinaryFileStream stream(files_, app_, kernel32_);
  EXPECT_EQ(cCRC32().GetFileCrc32(stream), 0);
  EXPECT_EQ(log_, CallLog());
}

TEST_F(GetFileCrc32OfFakeFiles, LeavesTheFileToTheStreamWhenAReadFails) {
  files_.contents[u"a.bin"].bytes = SampleBytes(20000);
  cBinaryFileStream stream(files_, app_, kernel32_);
  stream.PutFile(u"a.bin");
  plan_ = FaultPlan(2);
  const auto error = ErrorOf([&] { static_cast<void>(cCRC32().GetFileCrc32(stream)); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number, files_.failure);
  EXPECT_EQ(error->source, Text(u"the platform"));
  EXPECT_EQ(files_.OpenCount(), 1U);
  stream.Dispose();
  EXPECT_EQ(files_.OpenCount(), 0U);
}

// A stream that reports its end and keeps its file.
class EndsWithoutClosing final : public cBinaryFileStream {
 public:
  using cBinaryFileStream::cBinaryFileStream;
  std::int32_t Read(ByteArray& /*buffer*/, std::int32_t /*size*/) override { return 0; }
};

TEST_F(GetFileCrc32OfFakeFiles, LeavesClosingToRead) {
  files_.contents[u"a.bin"].bytes = SampleBytes(100);
  EndsWithoutClosing stream(files_, app_, kernel32_);
  stream.PutFile(u"a.bin");
  EXPECT_EQ(cCRC32().GetFileCrc32(stream), 0);
  EXPECT_EQ(files_.OpenCount(), 1U);
}

TEST_F(GetFileCrc32OfFakeFiles, GoesOnFromWhereTheStreamStands) {
  const auto bytes = SampleBytes(20000);
  files_.contents[u"a.bin"].bytes = bytes;
  cBinaryFileStream stream(files_, app_, kernel32_);
  stream.PutFile(u"a.bin");
  ByteArray first(0, 99);
  ASSERT_EQ(stream.Read(first, 100), 100);
  EXPECT_EQ(cCRC32().GetFileCrc32(stream), PlainCrc(std::span(bytes).subspan(100)));
}

TEST_F(GetFileCrc32OfFakeFiles, OfAFileThatShrankInItsLastBlockTakesZerosForWhatIsGone) {
  const auto bytes = SampleBytes(100);
  files_.contents[u"a.bin"] = {bytes, 200};
  auto seen = bytes;
  seen.resize(200);
  EXPECT_EQ(CrcOf(u"a.bin"), PlainCrc(seen));
  EXPECT_EQ(files_.OpenCount(), 0U);
}

TEST_F(GetFileCrc32OfFakeFiles, OfAFileThatShrankInAFullBlockTakesTheBlockBeforeForWhatIsGone) {
  const auto bytes = SampleBytes(8192 + 1000);
  files_.contents[u"a.bin"] = {bytes, 20000};
  auto seen = bytes;
  seen.insert(seen.end(), bytes.begin() + 1000, bytes.begin() + 8192);
  seen.resize(20000);
  EXPECT_EQ(CrcOf(u"a.bin"), PlainCrc(seen));
  EXPECT_EQ(files_.OpenCount(), 0U);
}

TEST_F(GetFileCrc32OfFakeFiles, OfAFileThatGrewTakesTheMeasuredLengthOnly) {
  const auto bytes = SampleBytes(20000);
  for (const std::int32_t measured : {100, 8192, 9000}) {
    files_.contents[u"a.bin"] = {bytes, measured};
    EXPECT_EQ(CrcOf(u"a.bin"),
              PlainCrc(std::span(bytes).first(static_cast<std::size_t>(measured))));
  }
}

TEST_F(GetFileCrc32OfFakeFiles, OverflowsOnALengthFarBelowZero) {
  files_.contents[u"huge.bin"].shown_length = -2147483647 - 1;
  EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(CrcOf(u"huge.bin")); }), 6);
  EXPECT_EQ(files_.OpenCount(), 0U);
}

}  // namespace
}  // namespace quorvane
