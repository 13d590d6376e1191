// Read: the counts, where the bytes go, buffers and sizes that do not fit each other, the end, and
// a second file in the same object.

#include "tests/checksum/stream_test_base.h"

namespace quorvane {
namespace {

using testing::CallLog;
using testing::ErrorNumberOf;

using Counts = std::vector<std::int32_t>;
using StreamRead = testing::StreamTest;

TEST_F(StreamRead, GivesBlocksThenTheRestThenZero) {
  const struct {
    std::size_t size;
    Counts counts;
  } kCases[] = {
      {0, {0}},
      {1, {1, 0}},
      {8191, {8191, 0}},
      {8192, {8192, 0}},
      {8193, {8192, 1, 0}},
      {16384, {8192, 8192, 0}},
      {16385, {8192, 8192, 1, 0}},
  };
  for (const auto& expected : kCases) {
    Write(u"a.bin", expected.size);
    cBinaryFileStream stream(files_, app_, kernel32_);
    stream.PutFile(u"a.bin");
    Counts counts;
    for (std::size_t i = 0; i < expected.counts.size(); ++i)
      counts.push_back(stream.Read(buffer_, 8192));
    EXPECT_EQ(counts, expected.counts) << expected.size;
    EXPECT_EQ(files_.OpenCount(), 0U);
  }
}

TEST_F(StreamRead, StaysOpenUntilTheEndIsReported) {
  Write(u"a.bin", 8192);
  stream_.PutFile(u"a.bin");
  ASSERT_EQ(Read(), 8192);
  EXPECT_EQ(files_.OpenCount(), 1U);
  ASSERT_EQ(Read(), 0);
  EXPECT_EQ(files_.OpenCount(), 0U);
}

TEST_F(StreamRead, ReturnsZeroForEverAfterTheEnd) {
  Write(u"a.bin", 10);
  stream_.PutFile(u"a.bin");
  ASSERT_EQ(CountsToTheEnd(), Counts({10, 0}));
  log_.clear();
  EXPECT_EQ(Read(), 0);
  EXPECT_EQ(Read(), 0);
  EXPECT_EQ(log_, CallLog());
}

TEST_F(StreamRead, GivesTheBytesInOrder) {
  const auto bytes = Write(u"a.bin", 20000);
  stream_.PutFile(u"a.bin");
  std::vector<std::uint8_t> read;
  for (std::int32_t count = Read(); count > 0; count = Read()) {
    const auto block = buffer_.Elements().first(static_cast<std::size_t>(count));
    read.insert(read.end(), block.begin(), block.end());
  }
  EXPECT_EQ(read, bytes);
}

TEST_F(StreamRead, CopiesOnlyTheLastBlock) {
  Write(u"a.bin", 8192 + 8192 + 5);
  stream_.PutFile(u"a.bin");
  log_.clear();
  ASSERT_EQ(CountsToTheEnd(), Counts({8192, 8192, 5, 0}));
  EXPECT_EQ(log_, CallLog({"Read(1, 8192)", "Read(1, 8192)", "Read(1, 5)", "RtlMoveMemory(5)",
                           "Close(1)"}));
}

TEST_F(StreamRead, LeavesTheBytesBehindTheLastBlock) {
  const auto bytes = Write(u"a.bin", 8195);
  stream_.PutFile(u"a.bin");
  ASSERT_EQ(Read(), 8192);
  ASSERT_EQ(Read(), 3);
  EXPECT_TRUE(BufferStartsWith(std::span(bytes).subspan(8192)));
  EXPECT_TRUE(
      std::ranges::equal(buffer_.Elements().subspan(3), std::span(bytes).subspan(3, 8192 - 3)));
}

TEST_F(StreamRead, DoesNotTouchTheBufferAtTheEnd) {
  Write(u"a.bin", 0);
  std::ranges::fill(buffer_.Elements(), std::uint8_t{7});
  stream_.PutFile(u"a.bin");
  ASSERT_EQ(Read(), 0);
  EXPECT_TRUE(std::ranges::all_of(buffer_.Elements(), [](std::uint8_t byte) { return byte == 7; }));
}

TEST_F(StreamRead, AFullBlockFillsTheBufferWhateverTheSize) {
  const auto bytes = Write(u"a.bin", 100);
  stream_.PutFile(u"a.bin");
  ByteArray wide(0, 19);
  EXPECT_EQ(stream_.Read(wide, 10), 10);
  EXPECT_TRUE(std::ranges::equal(wide.Elements(), std::span(bytes).first(20)));
  ByteArray narrow(0, 3);
  EXPECT_EQ(stream_.Read(narrow, 10), 10);
  EXPECT_TRUE(std::ranges::equal(narrow.Elements(), std::span(bytes).subspan(20, 4)));
  // By the count 80 bytes are left, though the file stands at 24.
  ByteArray rest(0, 199);
  EXPECT_EQ(stream_.Read(rest, 200), 80);
}

TEST_F(StreamRead, ASizeOfZeroFillsTheBufferAndReturnsZero) {
  const auto bytes = Write(u"a.bin", 100);
  stream_.PutFile(u"a.bin");
  ByteArray buffer(0, 9);
  EXPECT_EQ(stream_.Read(buffer, 0), 0);
  EXPECT_TRUE(std::ranges::equal(buffer.Elements(), std::span(bytes).first(10)));
  EXPECT_EQ(stream_.Read(buffer, 0), 0);
  EXPECT_TRUE(std::ranges::equal(buffer.Elements(), std::span(bytes).subspan(10, 10)));
  // Its count did not move.
  ByteArray rest(0, 199);
  EXPECT_EQ(stream_.Read(rest, 200), 100);
}

TEST_F(StreamRead, ANegativeSizeMovesBackwardsAndIsReturned) {
  const auto bytes = Write(u"a.bin", 100);
  stream_.PutFile(u"a.bin");
  ByteArray buffer(0, 9);
  EXPECT_EQ(stream_.Read(buffer, -5), -5);
  EXPECT_TRUE(std::ranges::equal(buffer.Elements(), std::span(bytes).first(10)));
  EXPECT_EQ(stream_.Read(buffer, 100), 100);  // from -5 to 95
  EXPECT_EQ(stream_.Read(buffer, 10), 5);
}

TEST_F(StreamRead, ANegativeSizeOnANewObjectFindsNothingOpen) {
  EXPECT_EQ(ReadFailure(-1), 52);
  EXPECT_EQ(Read(0), 0);
}

TEST_F(StreamRead, ALengthBelowZeroIsReturnedByTheFirstRead) {
  WriteHollow(u"huge.bin", -5);
  stream_.PutFile(u"huge.bin");
  EXPECT_EQ(stream_.Length(), -5);
  EXPECT_EQ(Read(), -5);
  EXPECT_EQ(files_.OpenCount(), 0U);
  EXPECT_EQ(Read(), 0);
}

TEST_F(StreamRead, TheLastBlockWantsAnElementZero) {
  Write(u"a.bin", 10);
  const std::vector<ByteArray> buffers{ByteArray(1, 8192), ByteArray(-5, -1), ByteArray(0, -1),
                                       ByteArray(), ByteArray({{0, 99}, {0, 99}})};
  for (ByteArray buffer : buffers) {
    cBinaryFileStream stream(files_, app_, kernel32_);
    stream.PutFile(u"a.bin");
    EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(stream.Read(buffer, 8192)); }), 9);
    EXPECT_EQ(files_.OpenCount(), 1U);
    // The block was taken from the file, but its count did not move: the same block is promised
    // again, and nothing is left to fill it.
    std::ranges::fill(buffer_.Elements(), std::uint8_t{7});
    EXPECT_EQ(stream.Read(buffer_, 8192), 10);
    EXPECT_TRUE(BufferStartsWith(std::vector<std::uint8_t>(10, 0)));
  }
}

TEST_F(StreamRead, TheLastBlockGoesToElementZeroOfABufferThatStartsBelow) {
  const auto bytes = Write(u"a.bin", 10);
  stream_.PutFile(u"a.bin");
  ByteArray buffer(-3, 20);
  ASSERT_EQ(stream_.Read(buffer, 24), 10);
  EXPECT_TRUE(std::ranges::equal(buffer.Elements().subspan(3, 10), bytes));
}

TEST_F(StreamRead, TheLastBlockNeverRunsOverTheBuffer) {
  Write(u"a.bin", 10);
  stream_.PutFile(u"a.bin");
  ByteArray buffer(0, 8);
  EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(stream_.Read(buffer, 8192)); }), 9);
}

TEST_F(StreamRead, AFullBlockTakesAnyBounds) {
  const auto bytes = Write(u"a.bin", 100);
  stream_.PutFile(u"a.bin");
  ByteArray plane(std::vector<Bounds>{{1, 2}, {1, 4}});
  EXPECT_EQ(stream_.Read(plane, 8), 8);
  EXPECT_TRUE(std::ranges::equal(plane.Elements(), std::span(bytes).first(8)));
  ByteArray none;
  EXPECT_EQ(stream_.Read(none, 8), 8);
}

TEST_F(StreamRead, AfterAnEarlyDisposeFailsWith52AndStaysWhereItWas) {
  Write(u"a.bin", 20000);
  stream_.PutFile(u"a.bin");
  ASSERT_EQ(Read(), 8192);
  stream_.Dispose();
  EXPECT_EQ(ReadFailure(), 52);
  EXPECT_EQ(ReadFailure(), 52);
  // Behind it in the count there are 20000 - 8192 bytes, taken from the start of a file that is
  // opened anew.
  stream_.PutFile(u"a.bin");
  EXPECT_EQ(CountsToTheEnd(), Counts({8192, 20000 - 2 * 8192, 0}));
}

class SecondFile : public StreamRead {
 protected:
  static constexpr std::size_t kOldPosition = 10000;

  void SetUp() override {
    Write(u"first.bin", kOldPosition);
    stream_.PutFile(u"first.bin");
    ASSERT_EQ(CountsToTheEnd(), Counts({8192, kOldPosition - 8192, 0}));
  }
};

TEST_F(SecondFile, ThatIsLongerGivesItsFrontOnly) {
  const auto bytes = Write(u"second.bin", 25000, 2);
  stream_.PutFile(u"second.bin");
  ASSERT_EQ(Read(), 8192);
  EXPECT_TRUE(BufferStartsWith(std::span(bytes).first(8192)));
  ASSERT_EQ(Read(), 15000 - 8192);
  EXPECT_TRUE(BufferStartsWith(std::span(bytes).subspan(8192, 15000 - 8192)));
  EXPECT_EQ(Read(), 0);
  EXPECT_EQ(files_.OpenCount(), 0U);
}

TEST_F(SecondFile, OfTheSameLengthGivesNothing) {
  Write(u"second.bin", kOldPosition);
  stream_.PutFile(u"second.bin");
  EXPECT_EQ(Read(), 0);
  EXPECT_EQ(files_.OpenCount(), 0U);
}

TEST_F(SecondFile, ThatIsShorterGivesANegativeCountOnce) {
  Write(u"second.bin", 9000);
  stream_.PutFile(u"second.bin");
  EXPECT_EQ(Read(), -1000);
  EXPECT_EQ(files_.OpenCount(), 0U);
  EXPECT_EQ(Read(), 0);
  // The count now stands at the end of the second file.
  Write(u"third.bin", 9001);
  stream_.PutFile(u"third.bin");
  EXPECT_EQ(Read(), 1);
}

}  // namespace
}  // namespace quorvane
