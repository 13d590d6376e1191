// The whole road over the platform's own files, on Linux and on Windows alike: files of all sizes,
// names of all kinds, and files that are missing, held by a writer or too large.

#include <gtest/gtest.h>

#include "checksum/cCRC32.h"
#include "tests/support/hollow_file.h"
#include "tests/support/plain_crc.h"
#include "tests/support/raises.h"
#include "tests/support/sample_bytes.h"
#include "tests/support/temporary_folder.h"

namespace quorvane {
namespace {

using testing::ErrorNumberOf;
using testing::ErrorOf;
using testing::MakeHollowFile;
using testing::PlainCrc;
using testing::SampleBytes;
using testing::TemporaryFolder;

std::int32_t CrcOf(const Text& name) {
  cBinaryFileStream stream;
  stream.PutFile(name);
  return cCRC32().GetFileCrc32(stream);
}

TEST(CrcOfADiskFile, EqualsThatOfItsBytes) {
  const TemporaryFolder folder;
  for (const std::size_t size : {0U, 1U, 8191U, 8192U, 8193U, 300U * 1024U}) {
    const auto bytes = SampleBytes(size);
    const Text name = folder.WriteFile(u"a.bin", bytes);
    EXPECT_EQ(CrcOf(name), PlainCrc(bytes)) << size;
    EXPECT_EQ(CrcOf(name), PlainCrc(bytes)) << size << ", a second time";
  }
}

TEST(CrcOfADiskFile, FollowsTheFile) {
  const TemporaryFolder folder;
  const std::int32_t before = CrcOf(folder.WriteFile(u"a.bin", SampleBytes(1000, 1)));
  const std::int32_t after = CrcOf(folder.WriteFile(u"a.bin", SampleBytes(1000, 2)));
  EXPECT_NE(before, after);
}

TEST(CrcOfADiskFile, TakesAnyCharacterInTheName) {
  const TemporaryFolder folder;
  const auto bytes = SampleBytes(10);
  EXPECT_EQ(CrcOf(folder.WriteFile(u"Grüße 中文 [1].bin", bytes)), PlainCrc(bytes));
}

TEST(CrcOfADiskFile, IsNotGivenForAMissingOneOrADirectory) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder.Path(u"folder"));
  for (const auto* name : {u"missing.bin", u"folder", u"no folder\\a.bin", u"*.bin"}) {
    const auto error = ErrorOf([&] { static_cast<void>(CrcOf(folder.Name(name))); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->number, 53);
    EXPECT_EQ(error->source, app().EXEName() + u".File");
    EXPECT_EQ(error->description, Text(u"File not found"));
  }
}

TEST(CrcOfADiskFile, OfAWildCardFailsInTheOpen) {
  const TemporaryFolder folder;
  folder.WriteFile(u"a.bin", SampleBytes(10));
  const auto error = ErrorOf([&] { static_cast<void>(CrcOf(folder.Name(u"*.bin"))); });
  ASSERT_TRUE(error);
  EXPECT_TRUE(error->source.IsAbsent());
}

TEST(CrcOfADiskFile, IsRefusedWhileAWriterHasItOpen) {
  const TemporaryFolder folder;
  const Text name = folder.WriteFile(u"a.bin", SampleBytes(10));
  {
    const std::ofstream writer(folder.Path(u"a.bin"), std::ios::binary | std::ios::app);
    const auto error = ErrorOf([&] { static_cast<void>(CrcOf(name)); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->number, 70);
    EXPECT_TRUE(error->source.IsAbsent());
  }
  EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(CrcOf(name)); }), 0);
}

TEST(CrcOfADiskFile, Of2GiBOverflowsAndLeavesNothingOpen) {
  const TemporaryFolder folder;
  MakeHollowFile(folder.Path(u"large.bin"), 2147483648U);
  cBinaryFileStream stream;
  stream.PutFile(folder.Name(u"large.bin"));
  EXPECT_EQ(stream.Length(), -2147483647 - 1);
  EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(cCRC32().GetFileCrc32(stream)); }), 6);
  EXPECT_TRUE(std::filesystem::remove(folder.Path(u"large.bin")));
}

TEST(CrcOfADiskFile, OfMoreThan4GiBSeesTheLow32BitsOfTheLength) {
  const TemporaryFolder folder;
  MakeHollowFile(folder.Path(u"large.bin"), 4294967296U + 3U);
  const std::vector<std::uint8_t> front{'x', 0, 0};
  EXPECT_EQ(CrcOf(folder.Name(u"large.bin")), PlainCrc(front));
}

}  // namespace
}  // namespace quorvane
