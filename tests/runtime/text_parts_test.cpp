// Proves the cuts and fillings that the wrappers of system calls are made of.

#include "runtime/text_parts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "runtime/ascii.h"
#include "tests/support/raises.h"

namespace quorvane {
namespace {

using testing::ErrorNumberOf;

TEST(FirstCharacters, TakesNoMoreThanThereAre) {
  EXPECT_EQ(FirstCharacters(u"abc", 0), Text(u""));
  EXPECT_EQ(FirstCharacters(u"abc", 2), Text(u"ab"));
  EXPECT_EQ(FirstCharacters(u"abc", 4), Text(u"abc"));
  EXPECT_FALSE(FirstCharacters(Text(), 4).IsAbsent());
  EXPECT_EQ(ErrorNumberOf([] { static_cast<void>(FirstCharacters(u"abc", -1)); }), 5);
}

TEST(RepeatedCharacter, MakesThatMany) {
  EXPECT_EQ(RepeatedCharacter(3, u'\0'), Text(std::u16string(3, u'\0')));
  EXPECT_EQ(RepeatedCharacter(0, u'x'), Text(u""));
  EXPECT_EQ(ErrorNumberOf([] { static_cast<void>(RepeatedCharacter(-1, u'x')); }), 5);
}

TEST(TrimSpaces, RemovesOuterSpacesAndNoOtherBlank) {
  EXPECT_EQ(TrimSpaces(u"  a b \t "), Text(u"a b \t"));
  EXPECT_EQ(TrimSpaces(u"\u00A0 a"), Text(u"\u00A0 a"));
  EXPECT_EQ(TrimSpaces(u"   "), Text(u""));
  EXPECT_EQ(TrimSpaces(Text()), Text(u""));
}

TEST(IsAscii, SeesEveryPlaceOfBothKindsOfText) {
  for (std::size_t size = 0; size < 20; ++size) {
    EXPECT_TRUE(IsAscii(std::u16string_view(std::u16string(size, u'\x7F'))));
    EXPECT_TRUE(IsAscii(std::string_view(std::string(size, '\x7F'))));
    for (std::size_t place = 0; place < size; ++place) {
      std::u16string wide(size, u'a');
      std::string narrow(size, 'a');
      for (const char16_t above : {u'\x80', u'\u0100', u'\u8000'}) {
        wide[place] = above;
        EXPECT_FALSE(IsAscii(std::u16string_view(wide))) << size << ' ' << place;
      }
      narrow[place] = '\x80';
      EXPECT_FALSE(IsAscii(std::string_view(narrow))) << size << ' ' << place;
    }
  }
}

TEST(NarrowAscii, AndWidenAsciiKeepEveryCharacterAtEveryPlace) {
  for (std::size_t size = 0; size < 20; ++size) {
    std::u16string wide(size, u'\0');
    for (char16_t first = 0; first < 128; ++first) {
      for (std::size_t i = 0; i < size; ++i) wide[i] = static_cast<char16_t>((first + 7 * i) % 128);
      std::string narrow(size + 1, '#');
      NarrowAscii(wide, narrow.data());
      std::u16string back(size + 1, u'#');
      WidenAscii(std::string_view(narrow).substr(0, size), back.data());
      ASSERT_TRUE(std::equal(wide.begin(), wide.end(), narrow.begin(),
                             [](char16_t w, char n) { return w == static_cast<char16_t>(n); }));
      ASSERT_EQ(narrow[size], '#') << "nothing is written behind";
      ASSERT_EQ(back, wide + u"#");
    }
  }
}

}  // namespace
}  // namespace quorvane
