// The stand-in's code pages: two bytes a character, malformed bytes, which numbers there are, and
// the choice of the system's page. On Linux only.

#include <gtest/gtest.h>

#include <string>

#include "platform/posix/system_text.h"
#include "platform/system_code_page.h"

namespace quorvane {
namespace {

class JapanesePage : public ::testing::Test {
 protected:
  const std::unique_ptr<CodePage> page_ = MakeCodePage(932);
};

TEST_F(JapanesePage, HoldsCharactersOfOneAndOfTwoBytes) {
  EXPECT_EQ(page_->ToBytes(u"aア日本ｱ"), "a\x83\x41\x93\xFA\x96\x7B\xB1");
  EXPECT_EQ(page_->FromBytes("a\x83\x41\x93\xFA\x96\x7B\xB1"), u"aア日本ｱ");
}

TEST_F(JapanesePage, KeepsBackslashAndTilde) {
  EXPECT_EQ(page_->ToBytes(u"\\~"), "\\~");
  EXPECT_EQ(page_->FromBytes("\\~"), u"\\~");
}

TEST_F(JapanesePage, TakesTheSystemsOwnFormsOfSigns) {
  EXPECT_EQ(page_->FromBytes("\x81\x60\x81\x7C"), u"\uFF5E\uFF0D");  // wave dash, minus
  EXPECT_EQ(page_->FromBytes("\x87\x40"), u"\u2460");                // 1 in a circle
}

TEST_F(JapanesePage, WritesAQuestionMarkForWhatItLacks) { EXPECT_EQ(page_->ToBytes(u"é한"), "??"); }

TEST_F(JapanesePage, GivesItsDefaultCharacterForTwoBytesThatFormNone) {
  EXPECT_EQ(page_->FromBytes("a\x81\x20z"), u"a\u30FBz");
}

TEST_F(JapanesePage, GivesItsDefaultCharacterForALeadByteAtTheEnd) {
  EXPECT_EQ(page_->FromBytes("a\x83"), u"a\u30FB");
}

TEST_F(JapanesePage, TakesNoZeroForTheSecondByteOfAPair) {
  EXPECT_EQ(page_->FromBytes(std::string_view("a\x83\0z", 4)), std::u16string(u"a\u30FB\0z", 4));
}

TEST_F(JapanesePage, NeverGivesMoreCharactersThanBytes) {
  std::string bytes;
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      bytes = {static_cast<char>(first), static_cast<char>(second)};
      const std::size_t count = page_->FromBytes(bytes).size();
      ASSERT_TRUE(count == 1 || count == 2) << first << ' ' << second;
    }
  }
}

TEST(MakeCodePage, KnowsThePagesOfOneAndTwoBytes) {
  for (const int number :
       {437, 850, 874, 932, 936, 949, 950, 1250, 1251, 1253, 1254, 1255, 1256, 1257, 1258}) {
    EXPECT_NE(MakeCodePage(number), nullptr) << number;
  }
  EXPECT_EQ(MakeCodePage(1251)->ToBytes(u"Жé"), "\xC6?");
}

TEST(MakeCodePage, HasNoPageForOtherNumbers) {
  for (const int number : {-1, 0, 1, 1252000, 1200, 1201, 65001, 54936, 50220, 1361})
    EXPECT_EQ(MakeCodePage(number), nullptr) << number;
}

TEST(SetSystemCodePage, ChangesThePageUnlessThereIsNone) {
  ASSERT_TRUE(SetSystemCodePage(1251));
  EXPECT_EQ(systemCodePage().ToBytes(u"Ж"), "\xC6");
  EXPECT_FALSE(SetSystemCodePage(65001));
  EXPECT_EQ(systemCodePage().ToBytes(u"Ж"), "\xC6");
  ASSERT_TRUE(SetSystemCodePage(1252));
  EXPECT_EQ(systemCodePage().ToBytes(u"é"), "\xE9");
}

}  // namespace
}  // namespace quorvane
