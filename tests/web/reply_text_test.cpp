// Proves that a reply's text comes out as it went in, whatever the sizes of its parts.

#include "web/reply_text.h"

#include <gtest/gtest.h>

namespace quorvane {
namespace {

// As many characters as asked for, each telling its place.
std::u16string Counted(std::size_t start, std::size_t count) {
  std::u16string characters(count, u'\0');
  for (std::size_t i = 0; i < count; ++i)
    characters[i] = static_cast<char16_t>((start + i) % 0xFFFF);
  return characters;
}

TEST(ReplyText, IsEmptyUntilSomethingIsAdded) {
  ReplyText text;
  EXPECT_TRUE(text.IsEmpty());
  EXPECT_EQ(text.Take(), u"");
  text.Append(u"a");
  EXPECT_FALSE(text.IsEmpty());
  EXPECT_EQ(text.Take(), u"a");
  EXPECT_TRUE(text.IsEmpty());
}

TEST(ReplyText, JoinsPartsOfAnySize) {
  for (const std::size_t part : {1U, 5U, 2047U, 2048U, 16383U, 16384U, 16385U, 50000U}) {
    ReplyText text;
    std::u16string expected;
    while (expected.size() < 100000) {
      const std::u16string characters = Counted(expected.size(), part);
      text.Append(characters);
      expected += characters;
    }
    EXPECT_TRUE(text.Take() == expected) << part;
    EXPECT_TRUE(text.IsEmpty());
  }
}

TEST(ReplyText, JoinsPartsOfBothKinds) {
  for (const std::size_t part : {1U, 2047U, 2048U, 2049U, 32767U, 32768U, 32769U}) {
    ReplyText text;
    std::u16string expected;
    for (int number = 0; number < 12; ++number) {
      // Two of one kind, then two of the other.
      if (number % 4 < 2) {
        text.AppendAscii(std::string(part, static_cast<char>('a' + number)));
        expected += std::u16string(part, static_cast<char16_t>(u'a' + number));
      } else {
        text.Append(Counted(expected.size(), part));
        expected += Counted(expected.size(), part);
      }
    }
    EXPECT_TRUE(text.Take() == expected) << part;
    EXPECT_TRUE(text.IsEmpty());
  }
}

}  // namespace
}  // namespace quorvane
