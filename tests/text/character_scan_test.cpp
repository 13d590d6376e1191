#include "text/character_scan.h"

#include <gtest/gtest.h>

#include <string>

namespace quorvane {
namespace {

// Both forms, at every length up to several blocks, at every alignment of a character, with one odd
// character at every place or none.

constexpr std::size_t kLongest = 140;

class CharacterScan : public ::testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    ASSERT_TRUE(!GetParam() || HasVectors()) << "no processor that runs these tests is so old";
  }
};

TEST_P(CharacterScan, TellsPlainAsciiAtEveryLengthAndPlace) {
  for (std::size_t front = 0; front < 8; ++front) {
    for (std::size_t length = 0; length <= kLongest; ++length) {
      std::u16string room(front, u'\0');
      for (std::size_t i = 0; i < length; ++i) room += static_cast<char16_t>(0x20 + i % 0x5F);
      const std::u16string_view text = std::u16string_view(room).substr(front);
      ASSERT_TRUE(IsPlainAscii(text, GetParam())) << length;
      for (std::size_t place = 0; place < length; ++place) {
        const char16_t kept = room[front + place];
        for (const char16_t odd : {u'\0', u'\x1F', u'\x7F', u'\u0120', u'\u7FFF', u'\uFFFF'}) {
          room[front + place] = odd;
          ASSERT_FALSE(IsPlainAscii(text, GetParam()))
              << length << " " << place << " " << static_cast<unsigned>(odd);
        }
        room[front + place] = kept;
      }
    }
  }
}

TEST_P(CharacterScan, FindsALetterOfEitherCaseAtEveryLengthAndPlace) {
  for (std::size_t front = 0; front < 8; ++front) {
    for (std::size_t length = 0; length <= kLongest; ++length) {
      // What differs from both in one bit, or is one of them in its low byte, is none of them.
      std::u16string room(front, u'K');
      for (std::size_t i = 0; i < length; ++i) room += u"jJ\x0B\x2B\u014B\u016Bca"[i % 8];
      const std::u16string_view text = std::u16string_view(room).substr(front);
      ASSERT_EQ(FindEitherCase(text, 0, u'k', u'K', GetParam()), length);
      for (std::size_t place = 0; place < length; ++place) {
        const char16_t kept = room[front + place];
        room[front + place] = place % 2 == 0 ? u'k' : u'K';
        for (const std::size_t from : {std::size_t{0}, place / 2, place})
          ASSERT_EQ(FindEitherCase(text, from, u'k', u'K', GetParam()), place) << length;
        ASSERT_EQ(FindEitherCase(text, place + 1, u'k', u'K', GetParam()), length) << place;
        room[front + place] = kept;
      }
    }
  }
}

TEST_P(CharacterScan, FindsASignThatHasNoCases) {
  std::u16string text(100, u'{');  // in that bit all that it differs in from the sign
  EXPECT_EQ(FindEitherCase(text, 0, u'[', u'[', GetParam()), 100U);
  text[77] = u'[';
  EXPECT_EQ(FindEitherCase(text, 0, u'[', u'[', GetParam()), 77U);
}

INSTANTIATE_TEST_SUITE_P(Plain, CharacterScan, ::testing::Values(false));
INSTANTIATE_TEST_SUITE_P(Vectors, CharacterScan, ::testing::Values(true));

}  // namespace
}  // namespace quorvane
