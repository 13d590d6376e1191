// Opening under numbers: which are free, which are refused, what each failing open raises, and that
// numbers and files belong to their thread.

#include <gtest/gtest.h>

#include <array>

#include "platform/files.h"
#include "tests/support/fresh_thread.h"
#include "tests/support/hollow_file.h"
#include "tests/support/raises.h"
#include "tests/support/sample_bytes.h"
#include "tests/support/temporary_folder.h"

namespace quorvane {
namespace {

using testing::ErrorNumberOf;
using testing::ErrorOf;
using testing::OnFreshThread;

constexpr std::int16_t kMostFiles = 511;

class OpenForReading : public ::testing::Test {
 protected:
  ~OpenForReading() override {
    for (std::int16_t number = 1; number <= kMostFiles; ++number) files().Close(number);
  }

  [[nodiscard]] std::int32_t FailureOf(const Text& name, std::int16_t number = 1) const {
    return ErrorNumberOf([&] { files().OpenForReading(name, number); });
  }
  [[nodiscard]] static bool IsOpen(std::int16_t number) {
    return ErrorNumberOf([&] { static_cast<void>(files().Length(number)); }) == 0;
  }

  const testing::TemporaryFolder folder_;
  const Text name_ = folder_.WriteFile(u"a.bin", testing::SampleBytes(100));
};

TEST_F(OpenForReading, TheLowestNumberIsFreeUntilAFileIsOpenedUnderIt) {
  EXPECT_EQ(files().FreeFileNumber(), 1);
  EXPECT_EQ(files().FreeFileNumber(), 1);
  files().OpenForReading(name_, 1);
  EXPECT_EQ(files().FreeFileNumber(), 2);
  files().OpenForReading(name_, 2);
  EXPECT_EQ(files().FreeFileNumber(), 3);
  files().Close(1);
  EXPECT_EQ(files().FreeFileNumber(), 1);
}

TEST_F(OpenForReading, MeasuresTheLength) {
  files().OpenForReading(name_, 1);
  EXPECT_EQ(files().Length(1), 100);
  files().OpenForReading(folder_.WriteFile(u"empty.bin", {}), 2);
  EXPECT_EQ(files().Length(2), 0);
}

TEST_F(OpenForReading, ShowsTheLow32BitsOfALargeLength) {
  const auto path = folder_.Path(u"large.bin");
  const struct {
    std::uintmax_t size;
    std::int32_t shown;
  } kCases[] = {{2147483647, 2147483647},
                {2147483648, -2147483647 - 1},
                {4294967295, -1},
                {4294967296, 0},
                {4294967299, 3}};
  for (const auto& large : kCases) {
    testing::MakeHollowFile(path, large.size);
    files().OpenForReading(folder_.Name(u"large.bin"), 1);
    EXPECT_EQ(files().Length(1), large.shown) << large.size;
    files().Close(1);
  }
}

TEST_F(OpenForReading, RefusesANumberInUseAndLeavesItsFileOpen) {
  files().OpenForReading(name_, 1);
  EXPECT_EQ(FailureOf(name_, 1), 55);
  EXPECT_EQ(FailureOf(folder_.Name(u"missing.bin"), 1), 55);
  EXPECT_TRUE(IsOpen(1));
}

TEST_F(OpenForReading, RefusesNumbersOutside1To511) {
  for (const std::int16_t number : std::to_array<std::int16_t>({-32768, -1, 0, 512, 32767})) {
    EXPECT_EQ(FailureOf(name_, number), 52) << number;
    EXPECT_FALSE(IsOpen(number));
  }
  files().OpenForReading(name_, kMostFiles);
  EXPECT_TRUE(IsOpen(kMostFiles));
}

TEST_F(OpenForReading, TakesANumberThatWasNotAskedFor) {
  files().OpenForReading(name_, 17);
  EXPECT_TRUE(IsOpen(17));
  EXPECT_EQ(files().FreeFileNumber(), 1);
}

TEST_F(OpenForReading, HasNoFreeNumberAfter511) {
  for (std::int16_t number = 1; number <= kMostFiles; ++number) {
    ASSERT_EQ(files().FreeFileNumber(), number);
    files().OpenForReading(name_, number);
  }
  const auto error = ErrorOf([] { static_cast<void>(files().FreeFileNumber()); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number, 67);
  EXPECT_EQ(error->description, Text(u"Too many files"));
  files().Close(300);
  EXPECT_EQ(files().FreeFileNumber(), 300);
}

TEST_F(OpenForReading, RaisesTheStandardTextWithoutASource) {
  const auto error = ErrorOf([&] { files().OpenForReading(folder_.Name(u"missing.bin"), 1); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number, 53);
  EXPECT_EQ(error->description, Text(u"File not found"));
  EXPECT_TRUE(error->source.IsAbsent());
  EXPECT_FALSE(IsOpen(1));
}

TEST_F(OpenForReading, RaisesPathNotFoundWhereTheFolderIsMissing) {
  EXPECT_EQ(FailureOf(folder_.Name(u"no folder\\a.bin")), 76);
  EXPECT_EQ(FailureOf(u""), 76);
}

TEST_F(OpenForReading, RaisesAccessErrorForAFolder) {
  std::filesystem::create_directory(folder_.Path(u"folder"));
  EXPECT_EQ(FailureOf(folder_.Name(u"folder")), 75);
  EXPECT_FALSE(IsOpen(1));
}

TEST_F(OpenForReading, RaisesPermissionDeniedWhileAWriterHasTheFile) {
  {
    const std::ofstream writer(folder_.Path(u"a.bin"), std::ios::binary | std::ios::app);
    EXPECT_EQ(FailureOf(name_), 70);
    EXPECT_FALSE(IsOpen(1));
  }
  EXPECT_EQ(FailureOf(name_), 0);
}

TEST_F(OpenForReading, LetsOtherReadersIn) {
  const std::ifstream reader(folder_.Path(u"a.bin"), std::ios::binary);
  files().OpenForReading(name_, 1);
  files().OpenForReading(name_, 2);
  EXPECT_TRUE(std::ifstream(folder_.Path(u"a.bin"), std::ios::binary).good());
}

TEST_F(OpenForReading, DoesNotTakeAWildCard) {
  EXPECT_NE(FailureOf(folder_.Name(u"*.bin")), 0);
  EXPECT_FALSE(IsOpen(1));
}

TEST_F(OpenForReading, ANameEndsAtItsFirstZero) {
  using namespace std::string_literals;
  EXPECT_EQ(FailureOf(name_ + Text(u"\0b"s)), 0);
  EXPECT_TRUE(IsOpen(1));
}

TEST_F(OpenForReading, CloseLetsUnusedNumbersPass) {
  for (const std::int16_t number : std::to_array<std::int16_t>({-32768, -1, 0, 1, 511, 512, 32767}))
    files().Close(number);
  files().OpenForReading(name_, 1);
  files().Close(1);
  files().Close(1);
  EXPECT_FALSE(IsOpen(1));
}

TEST_F(OpenForReading, NumbersBelongToTheirThread) {
  files().OpenForReading(name_, 1);
  OnFreshThread([this] {
    EXPECT_EQ(files().FreeFileNumber(), 1);
    EXPECT_FALSE(IsOpen(1));
    files().Close(1);
    files().OpenForReading(name_, 1);
    EXPECT_TRUE(IsOpen(1));
  });
  EXPECT_TRUE(IsOpen(1));
}

TEST_F(OpenForReading, FilesAreClosedWhenTheirThreadEnds) {
  OnFreshThread([this] { files().OpenForReading(name_, 1); });
  // One that is still open lets nobody write, or is not seen as open for writing here.
  EXPECT_TRUE(std::ofstream(folder_.Path(u"a.bin"), std::ios::binary | std::ios::app).good());
  EXPECT_TRUE(std::filesystem::remove(folder_.Path(u"a.bin")));
}

}  // namespace
}  // namespace quorvane
