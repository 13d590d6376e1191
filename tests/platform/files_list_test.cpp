// The listing of names: what counts as a file, wild cards, and names that lead nowhere.

#include <gtest/gtest.h>

#include "platform/files.h"
#include "tests/support/raises.h"
#include "tests/support/sample_bytes.h"
#include "tests/support/temporary_folder.h"

namespace quorvane {
namespace {

class ListName : public ::testing::Test {
 protected:
  void Write(std::u16string_view name) const { folder_.WriteFile(name, testing::SampleBytes(1)); }
  [[nodiscard]] Text List(std::u16string_view name) const {
    return files().ListName(folder_.Name(name));
  }

  const testing::TemporaryFolder folder_;
};

TEST_F(ListName, FindsAFileByItsName) {
  Write(u"a.bin");
  EXPECT_EQ(List(u"a.bin"), Text(u"a.bin"));
}

TEST_F(ListName, FindsNamesOfAnyCharacters) {
  Write(u"Grüße 中文 [a-z] ;,&.bin");
  EXPECT_EQ(List(u"Grüße 中文 [a-z] ;,&.bin"), Text(u"Grüße 中文 [a-z] ;,&.bin"));
}

TEST_F(ListName, IsEmptyWhereThereIsNoSuchFile) {
  EXPECT_TRUE(List(u"missing.bin").IsEmpty());
  EXPECT_TRUE(List(u"*.bin").IsEmpty());
  EXPECT_TRUE(List(u"").IsEmpty());
}

TEST_F(ListName, IsEmptyWhereThereIsNoSuchFolder) {
  EXPECT_TRUE(List(u"no folder\\a.bin").IsEmpty());
  EXPECT_TRUE(List(u"no folder\\*.bin").IsEmpty());
}

TEST_F(ListName, FindsNothingWhereAFileStandsForAFolder) {
  Write(u"a.bin");
  for (const auto* const name : {u"a.bin\\b.bin", u"a.bin\\*"}) {
    Text found = u"";
    // Some systems call that a bad name (52), others just find nothing.
    const std::int32_t error = testing::ErrorNumberOf([&] { found = List(name); });
    EXPECT_TRUE(error == 0 || error == 52) << error;
    EXPECT_TRUE(found.IsEmpty());
  }
}

TEST_F(ListName, IsEmptyForAnEmptyName) {
  EXPECT_TRUE(files().ListName(u"").IsEmpty());
  EXPECT_TRUE(files().ListName(Text()).IsEmpty());
}

TEST_F(ListName, DoesNotCountFolders) {
  std::filesystem::create_directory(folder_.Path(u"a.bin"));
  EXPECT_TRUE(List(u"a.bin").IsEmpty());
  EXPECT_TRUE(List(u"a.bin\\").IsEmpty());
  EXPECT_TRUE(List(u"a*").IsEmpty());
  EXPECT_TRUE(List(u".").IsEmpty());
  EXPECT_TRUE(List(u"..").IsEmpty());
}

TEST_F(ListName, GivesTheNameThatAWildCardMatches) {
  Write(u"a.bin");
  EXPECT_EQ(List(u"*"), Text(u"a.bin"));
  EXPECT_EQ(List(u"*.*"), Text(u"a.bin"));
  EXPECT_EQ(List(u"*.bin"), Text(u"a.bin"));
  EXPECT_EQ(List(u"?.bin"), Text(u"a.bin"));
  EXPECT_EQ(List(u"a*n"), Text(u"a.bin"));
  EXPECT_EQ(List(u"a*b*n"), Text(u"a.bin"));
  EXPECT_TRUE(List(u"b*").IsEmpty());
  EXPECT_TRUE(List(u"*.txt").IsEmpty());
  // What stands before and behind a star may touch in the name, but not overlap.
  EXPECT_EQ(List(u"a.b*in"), Text(u"a.bin"));
  EXPECT_TRUE(List(u"a.bi*in").IsEmpty());
}

TEST_F(ListName, PassesOverFoldersThatAWildCardMatches) {
  std::filesystem::create_directory(folder_.Path(u"a.bin"));
  std::filesystem::create_directory(folder_.Path(u"c.bin"));
  Write(u"b.bin");
  EXPECT_EQ(List(u"*.bin"), Text(u"b.bin"));
}

TEST_F(ListName, AWildCardWithoutADotTakesANameWithoutOne) {
  Write(u"noextension");
  EXPECT_EQ(List(u"*.*"), Text(u"noextension"));
  EXPECT_EQ(List(u"no*"), Text(u"noextension"));
}

TEST_F(ListName, ANameEndsAtItsFirstZero) {
  using namespace std::string_literals;
  Write(u"a.bin");
  EXPECT_EQ(List(u"a.bin\0*"s), Text(u"a.bin"));
  EXPECT_EQ(List(u"*\0b"s), Text(u"a.bin"));
  EXPECT_TRUE(List(u"a.bi\0n"s).IsEmpty());
}

TEST_F(ListName, OpensNothing) {
  Write(u"a.bin");
  EXPECT_FALSE(List(u"a.bin").IsEmpty());
  EXPECT_FALSE(List(u"*.bin").IsEmpty());
  EXPECT_TRUE(std::filesystem::remove(folder_.Path(u"a.bin")));
}

}  // namespace
}  // namespace quorvane
