// What the stand-in's files promise on Linux alone: names, hidden files, pipes and devices, locks,
// and files that change while they are open.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/files.h"
#include "platform/posix/descriptor.h"
#include "platform/posix/system_text.h"
#include "tests/platform/wild_cards.h"
#include "tests/support/fresh_thread.h"
#include "tests/support/raises.h"
#include "tests/support/sample_bytes.h"
#include "tests/support/temporary_folder.h"

namespace quorvane {
namespace {

using testing::ErrorNumberOf;
using testing::SampleBytes;

std::ptrdiff_t OpenDescriptors() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

class PosixFiles : public ::testing::Test {
 protected:
  ~PosixFiles() override {
    for (std::int16_t number = 1; number <= 10; ++number) files().Close(number);
  }

  [[nodiscard]] std::string SystemName(std::u16string_view name) const {
    return folder_.Path(name).string();
  }
  [[nodiscard]] static std::int32_t OpenFailure(const Text& name) {
    return ErrorNumberOf([&] { files().OpenForReading(name, 1); });
  }

  const testing::TemporaryFolder folder_;
  const std::vector<std::uint8_t> bytes_ = SampleBytes(10000);
  const Text name_ = folder_.WriteFile(u"a.bin", bytes_);
};

TEST_F(PosixFiles, TakesSlashesAndBackslashes) {
  std::filesystem::create_directory(folder_.Path(u"sub"));
  folder_.WriteFile(u"sub/b.bin", bytes_);
  EXPECT_EQ(files().ListName(folder_.Name(u"sub\\b.bin")), Text(u"b.bin"));
  EXPECT_EQ(files().ListName(folder_.Name(u"sub/b.bin")), Text(u"b.bin"));
  EXPECT_EQ(files().ListName(folder_.Name(u"sub\\*.bin")), Text(u"b.bin"));
  EXPECT_EQ(OpenFailure(folder_.Name(u"sub\\b.bin")), 0);
}

// A name of the system that is no UTF-8 has a text of its own, which leads back to it.
TEST_F(PosixFiles, ANameThatIsNoUtf8HasAText) {
  const std::string bytes = "caf\xE9 \xC3\xA9\x7F.\x80\xF0";
  const Text name = FileNameFrom(bytes);
  EXPECT_EQ(name.Characters()[9], u'\xDC80');
  EXPECT_EQ(SystemFileName(name.Characters()), bytes);
  EXPECT_EQ(SystemFileName(u"a\\b\0c"), "a/b");
  EXPECT_EQ(SystemFileName(u"\xD83D\xDC80"), "\xF0\x9F\x92\x80") << "a pair is a character";
  std::ofstream(folder_.Path(u"").native() + bytes) << "x";
  EXPECT_EQ(files().ListName(folder_.Name(name.Characters())), name);
  EXPECT_EQ(files().ListName(folder_.Name(u"caf*")), name);
  EXPECT_EQ(OpenFailure(folder_.Name(name.Characters())), 0);
}

TEST_F(PosixFiles, TellsUpperFromLowerCase) {
  EXPECT_TRUE(files().ListName(folder_.Name(u"A.BIN")).IsEmpty());
  EXPECT_TRUE(files().ListName(folder_.Name(u"*.BIN")).IsEmpty());
}

TEST_F(PosixFiles, AFileWithALeadingDotIsHidden) {
  folder_.WriteFile(u".hidden", bytes_);
  EXPECT_TRUE(files().ListName(folder_.Name(u".hidden")).IsEmpty());
  EXPECT_TRUE(files().ListName(folder_.Name(u".h*")).IsEmpty());
}

TEST_F(PosixFiles, AWildCardGivesTheLowestName) {
  for (const auto* name : {u"d.txt", u"b.txt", u"c.txt"}) folder_.WriteFile(name, bytes_);
  EXPECT_EQ(files().ListName(folder_.Name(u"*.txt")), Text(u"b.txt"));
}

TEST(PosixWildCards, FollowTheRuleOfWindows) {
  for (const auto& row : testing::kWildCards)
    EXPECT_EQ(testing::FoundByWildCard(row.pattern), Text(row.finds)) << ToUtf8(row.pattern);
}

TEST_F(PosixFiles, BracketsAreNoWildCards) {
  EXPECT_TRUE(files().ListName(folder_.Name(u"[a].b*")).IsEmpty());
  folder_.WriteFile(u"[a].bin", bytes_);
  EXPECT_EQ(files().ListName(folder_.Name(u"[a].b*")), Text(u"[a].bin"));
}

TEST_F(PosixFiles, AWildCardTakesItsTimeInProportion) {
  const std::u16string many_as(200, u'a');
  folder_.WriteFile(many_as, bytes_);
  EXPECT_TRUE(files().ListName(folder_.Name(u"a*a*a*a*a*a*a*a*a*a*a*a*a*b")).IsEmpty());
}

TEST_F(PosixFiles, ALinkToNowhereIsNotListedAndSpoilsNoWildCard) {
  std::filesystem::create_symlink("nowhere", folder_.Path(u"0.bin"));
  std::filesystem::create_symlink("1.bin", folder_.Path(u"1.bin"));
  EXPECT_EQ(files().ListName(folder_.Name(u"*.bin")), Text(u"a.bin"));
  EXPECT_TRUE(files().ListName(folder_.Name(u"0.bin")).IsEmpty());
}

TEST_F(PosixFiles, AFailingLookUpIsAFailure) {
  std::filesystem::create_symlink("1.bin", folder_.Path(u"1.bin"));
  EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(files().ListName(folder_.Name(u"1.bin"))); }),
            75);
  const Text long_name(300, u'x');
  EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(files().ListName(long_name)); }), 52);
  EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(files().ListName(long_name + u"/*")); }), 52);
}

TEST_F(PosixFiles, PipesAndDevicesAreNoFiles) {
  ASSERT_EQ(::mkfifo(SystemName(u"pipe").c_str(), 0600), 0);
  EXPECT_TRUE(files().ListName(folder_.Name(u"pipe")).IsEmpty());
  EXPECT_EQ(OpenFailure(folder_.Name(u"pipe")), 75);  // and does not wait for a writer
  EXPECT_TRUE(files().ListName(u"/dev/zero").IsEmpty());
  EXPECT_EQ(OpenFailure(u"/dev/zero"), 75);
}

TEST_F(PosixFiles, AFailedOpenLeavesNoDescriptor) {
  const auto before = OpenDescriptors();
  EXPECT_EQ(OpenFailure(folder_.Name(u"missing.bin")), 53);
  EXPECT_EQ(OpenFailure(u"/dev/zero"), 75);
  const std::ofstream writer(folder_.Path(u"a.bin"), std::ios::binary | std::ios::app);
  EXPECT_EQ(OpenFailure(name_), 70);
  EXPECT_EQ(OpenDescriptors(), before + 1);  // the writer's
}

TEST_F(PosixFiles, DescriptorsGoWithTheirThread) {
  const auto before = OpenDescriptors();
  testing::OnFreshThread([&] {
    for (std::int16_t number = 1; number <= 10; ++number) files().OpenForReading(name_, number);
    EXPECT_EQ(OpenDescriptors(), before + 10);
  });
  EXPECT_EQ(OpenDescriptors(), before);
}

TEST_F(PosixFiles, AFileUnderAWritersLockIsRefused) {
  const int holder = ::open(SystemName(u"a.bin").c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(::flock(holder, LOCK_EX), 0);
  EXPECT_EQ(OpenFailure(name_), 70);
  ::close(holder);
  EXPECT_EQ(OpenFailure(name_), 0);
}

TEST_F(PosixFiles, AWriterThatAsksForALockIsKeptAwayWhileItIsOpen) {
  const int holder = ::open(SystemName(u"a.bin").c_str(), O_RDONLY | O_CLOEXEC);
  files().OpenForReading(name_, 1);
  EXPECT_NE(::flock(holder, LOCK_EX | LOCK_NB), 0);
  files().Close(1);
  EXPECT_EQ(::flock(holder, LOCK_EX | LOCK_NB), 0);
  ::close(holder);
}

TEST_F(PosixFiles, OpeningAFileForWritingDoesNotWaitForAReader) {
  files().OpenForReading(name_, 1);
  const int writer = ::open(SystemName(u"a.bin").c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
  EXPECT_GE(writer, 0);
  ::close(writer);
}

TEST_F(PosixFiles, AFileThatShrinksGivesWhatIsLeft) {
  files().OpenForReading(name_, 1);
  std::filesystem::resize_file(folder_.Path(u"a.bin"), 4);
  EXPECT_EQ(files().Length(1), 4);
  ByteArray buffer = testing::ArrayOf(std::vector<std::uint8_t>(8, 7));
  files().Read(1, buffer);
  EXPECT_TRUE(std::ranges::equal(buffer.Elements().first(4), std::span(bytes_).first(4)));
  for (const std::uint8_t byte : buffer.Elements().subspan(4)) EXPECT_EQ(byte, 7);
}

TEST_F(PosixFiles, AFileThatGrowsGivesMore) {
  files().OpenForReading(name_, 1);
  std::filesystem::resize_file(folder_.Path(u"a.bin"), 20000);
  ByteArray buffer(0, 19999);
  std::ranges::fill(buffer.Elements(), std::uint8_t{7});
  files().Read(1, buffer);
  EXPECT_EQ(buffer.At(19999), 0);
}

TEST_F(PosixFiles, AFileThatVanishesCanBeReadOn) {
  files().OpenForReading(name_, 1);
  std::filesystem::remove(folder_.Path(u"a.bin"));
  ByteArray buffer(0, 9999);
  files().Read(1, buffer);
  EXPECT_TRUE(std::ranges::equal(buffer.Elements(), bytes_));
  EXPECT_EQ(OpenFailure(name_), 55);
  files().Close(1);
  EXPECT_EQ(OpenFailure(name_), 53);
}

TEST(PosixFileErrors, HaveTheRunTimeNumbers) {
  const struct {
    int system_code;
    std::int32_t number;
  } kCases[] = {{ENOENT, 53}, {ENOTDIR, 76}, {EMFILE, 67}, {ENFILE, 67},       {EAGAIN, 70},
                {EBUSY, 70},  {ETXTBSY, 70}, {EROFS, 70},  {ENOMEM, 7},        {EBADF, 52},
                {EINVAL, 52}, {EIO, 57},     {EEXIST, 58}, {ENAMETOOLONG, 52}, {ENOSPC, 61},
                {EDQUOT, 61}, {ENODEV, 68},  {ENXIO, 68},  {ENOMEDIUM, 71},    {EACCES, 75},
                {EPERM, 75},  {EISDIR, 75},  {ELOOP, 75},  {EPROTO, 75}};
  for (const auto& error : kCases) {
    EXPECT_EQ(FileErrorNumber(error.system_code), error.number) << error.system_code;
    EXPECT_EQ(FileErrorNumber(error.system_code), error.number);
  }
}

}  // namespace
}  // namespace quorvane
