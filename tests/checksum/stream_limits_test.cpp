// The 32-bit limits of the position: the largest file, the first that is too large, and remainders
// that leave the range.

#include "tests/checksum/stream_test_base.h"

namespace quorvane {
namespace {

using testing::CallLog;

// Files without bytes over fakes without a log: a quarter of a million reads each.
class StreamLimits : public testing::StreamTest {
 protected:
  static constexpr std::int32_t kLargest = 2147475455;  // 2147483647 - 8192

  void Open(std::int32_t length) {
    files_.contents[u"large.bin"] = {{}, length};
    stream_.PutFile(u"large.bin");
  }

  // Reads `count` blocks that must be full ones.
  void SkipFullBlocks(std::int32_t count) {
    for (std::int32_t i = 0; i < count; ++i) {
      ASSERT_EQ(stream_.Read(buffer_, 8192), 8192) << "block " << i;
    }
  }

  testing::FakeFiles files_;
  testing::FakeApp app_;
  testing::FakeKernel32 kernel32_;
  cBinaryFileStream stream_{files_, app_, kernel32_};

  std::int32_t Failure(std::int32_t size = 8192) {
    return testing::ErrorNumberOf([&] { static_cast<void>(stream_.Read(buffer_, size)); });
  }
};

TEST_F(StreamLimits, AFileOf2147475455BytesIsReadToTheEnd) {
  Open(kLargest);
  SkipFullBlocks(kLargest / 8192);
  EXPECT_EQ(stream_.Read(buffer_, 8192), 8191);
  EXPECT_EQ(stream_.Read(buffer_, 8192), 0);
  EXPECT_EQ(files_.OpenCount(), 0U);
}

TEST_F(StreamLimits, AFileOf2147475456BytesFailsOnlyWhereTheEndWouldBeReported) {
  Open(kLargest + 1);
  SkipFullBlocks((kLargest + 1) / 8192);
  EXPECT_EQ(Failure(), 6);
  EXPECT_EQ(Failure(), 6);
  EXPECT_EQ(files_.OpenCount(), 1U);
}

TEST_F(StreamLimits, ALongerFileFailsAtPosition2147475456) {
  Open(2147483647);
  SkipFullBlocks((kLargest + 1) / 8192);
  EXPECT_EQ(Failure(), 6);
  EXPECT_EQ(files_.OpenCount(), 1U);
  // Nothing moved: a smaller block still fits.
  EXPECT_EQ(stream_.Read(buffer_, 8190), 8190);
  EXPECT_EQ(stream_.Read(buffer_, 1), 1);
  EXPECT_EQ(stream_.Read(buffer_, 0), 0);
  EXPECT_EQ(files_.OpenCount(), 0U);
}

TEST_F(StreamLimits, ASizeBelowTheRangeOverflows) {
  Open(100);
  ASSERT_EQ(stream_.Read(buffer_, -10), -10);
  EXPECT_EQ(Failure(-2147483647 - 1), 6);
  EXPECT_EQ(files_.OpenCount(), 1U);
}

TEST_F(StreamLimits, ARemainderBelowTheRangeOverflowsAndLeavesTheFileOpen) {
  Open(10);
  ASSERT_EQ(stream_.Read(buffer_, 8192), 10);
  ASSERT_EQ(stream_.Read(buffer_, 8192), 0);
  Open(-2147483647 - 1);
  EXPECT_EQ(Failure(), 6);
  EXPECT_EQ(Failure(), 6);
  EXPECT_EQ(files_.OpenCount(), 1U);
}

}  // namespace
}  // namespace quorvane
