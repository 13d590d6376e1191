// Proves what each character becomes in a form body, that no failure leaves the operation, and
// where its sharp limit lies.

#include <gtest/gtest.h>

#include <cstdio>
#include <new>
#include <string>

#include "tests/support/raises.h"
#include "tests/support/table_1252.h"
#include "text/form_encoding.h"

namespace quorvane {
namespace {

using testing::Table1252;

const Table1252 kPage1252;

// A page with one character of two bytes below 8000 hex, one above, one whose code is the blank's,
// one of three bytes and one of none.
class PageOfOddCodes final : public CodePage {
 public:
  [[nodiscard]] std::string ToBytes(std::u16string_view characters) const override {
    switch (characters.at(0)) {
      case u'\u3042':
        return "\x82\xA0";
      case u'\u4E00':
        return "\x12\x0F";
      case u'\u2003':
        return " ";
      case u'\u20AC':
        return "\xE2\x82\xAC";
      case u'\u25D9':
        return "\n";
      case u'\u200B':
        return "";
      default:
        return "?";
    }
  }
  [[nodiscard]] std::u16string FromBytes(std::string_view) const override { return {}; }
};

class FailingPage final : public CodePage {
 public:
  [[nodiscard]] std::string ToBytes(std::u16string_view) const override { throw std::bad_alloc(); }
  [[nodiscard]] std::u16string FromBytes(std::string_view) const override { return {}; }
};

// The rule in its plainest form: search the list, print the code.
std::u16string ExpectedPiece(char16_t character) {
  const std::u16string list =
      u"1234567890ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz:/.?=_-$(){}~&";
  if (list.find(character) != std::u16string::npos) return {character};
  const int code = Table1252::ByteOf(character).value_or(63);
  if (code == 32) return u"+";
  char piece[8];
  std::snprintf(piece, sizeof piece, "%%%02X", static_cast<unsigned>(code));
  const std::string bytes = piece;
  return {bytes.begin(), bytes.end()};
}

TEST(FormEncode, GivesEveryCharacterItsPiece) {
  for (std::uint32_t c = 0; c <= 0xFFFF; ++c) {
    const auto character = static_cast<char16_t>(c);
    ASSERT_EQ(FormEncode(Text(1, character), kPage1252), Text(ExpectedPiece(character))) << c;
  }
}

TEST(FormEncode, UsesTheSystemsPage) {
  // Some systems give a character that the page lacks the most similar one that it holds, so only
  // what the page does hold is the same everywhere.
  for (std::uint32_t c = 0; c <= 0xFFFF; ++c) {
    const auto character = static_cast<char16_t>(c);
    if (!Table1252::ByteOf(character)) continue;
    ASSERT_EQ(FormEncode(Text(1, character)), Text(ExpectedPiece(character))) << c;
  }
  EXPECT_EQ(FormEncode(u"\u3042"), u"%3F");
}

TEST(FormEncode, GivesAllCharactersTogetherWhatEachGetsAlone) {
  constexpr std::uint32_t kHalf = 0x4000;
  for (std::uint32_t start = 0; start <= 0xFFFF; start += kHalf) {
    std::u16string text;
    std::u16string expected;
    for (std::uint32_t c = start; c < start + kHalf; ++c) {
      text += static_cast<char16_t>(c);
      expected += ExpectedPiece(static_cast<char16_t>(c));
    }
    EXPECT_TRUE(FormEncode(Text(text), kPage1252) == Text(expected)) << start;
  }
}

TEST(FormEncode, TellsCharactersApartThatComeInTurns) {
  // Codes that differ by multiples of 64, twice over.
  EXPECT_EQ(FormEncode(u"\u00E9\u00A9\u0129\u00E9\u00A9\u0129", kPage1252), u"%E9%A9%3F%E9%A9%3F");
}

TEST(FormEncode, GivesTheEmptyTextForTheEmptyInput) {
  EXPECT_EQ(FormEncode(u""), u"");
  EXPECT_EQ(FormEncode(Text()), u"");
  EXPECT_FALSE(FormEncode(Text()).IsAbsent());
}

TEST(FormEncode, TurnsBlanksIntoPlusSigns) {
  EXPECT_EQ(FormEncode(u"a b"), u"a+b");
  EXPECT_EQ(FormEncode(u"  "), u"++");
}

TEST(FormEncode, EscapesThePlusAndPercentSigns) {
  EXPECT_EQ(FormEncode(u"a+b"), u"a%2Bb");
  EXPECT_EQ(FormEncode(u"100%"), u"100%25");
}

TEST(FormEncode, LetsTheSeparatorsPass) {
  EXPECT_EQ(FormEncode(u"name=value&other=x y"), u"name=value&other=x+y");
  EXPECT_EQ(FormEncode(u":/.?=_-$(){}~&"), u":/.?=_-$(){}~&");
  EXPECT_EQ(FormEncode(u",;\"#\\'!*@[]^`|<>"), u"%2C%3B%22%23%5C%27%21%2A%40%5B%5D%5E%60%7C%3C%3E");
}

TEST(FormEncode, WritesControlCharactersWithTwoDigits) {
  EXPECT_EQ(FormEncode(u"\n"), u"%0A");
  EXPECT_EQ(FormEncode(u"\r"), u"%0D");
  EXPECT_EQ(FormEncode(u"\t"), u"%09");
  EXPECT_EQ(FormEncode(Text(1, u'\0')), u"%00");
  EXPECT_EQ(FormEncode(u"\x0F\x10\x1F\x7F"), u"%0F%10%1F%7F");
}

TEST(FormEncode, MarksWhatThePageLacksWithAnEscapedQuestionMark) {
  EXPECT_EQ(FormEncode(u"?\u0416?", kPage1252), u"?%3F?");
  EXPECT_EQ(FormEncode(u"\U0001F600", kPage1252), u"%3F%3F");
}

TEST(FormEncode, WritesATwoByteCharacterAsOnePiece) {
  const PageOfOddCodes page;
  EXPECT_EQ(FormEncode(u"a\u3042b", page), u"a%82A0b");
  EXPECT_EQ(FormEncode(u"\u4E00", page), u"%120F");
}

TEST(FormEncode, GoesByTheCodeThatThePageGives) {
  const PageOfOddCodes page;
  EXPECT_EQ(FormEncode(u"\u2003", page), u"+");
  EXPECT_EQ(FormEncode(u"\u25D9", page), u"%0A");
  EXPECT_EQ(FormEncode(u"\u20AC\u200B", page), u"%3F%3F");
}

TEST(FormEncode, CopiesRunsOfEveryLengthAroundAnEscape) {
  for (std::size_t length = 0; length <= 450; ++length) {
    std::u16string run;
    for (std::size_t i = 0; i < length; ++i) run += static_cast<char16_t>(u'a' + i % 26);
    ASSERT_TRUE(FormEncode(run + u"%" + run + u"%%") == Text(run + u"%25" + run + u"%25%25"))
        << length;
  }
}

TEST(FormEncode, HoldsAtMost32766Characters) {
  const Text longest(32766, u'a');
  EXPECT_TRUE(FormEncode(longest) == longest);
  EXPECT_EQ(FormEncode(Text(32767, u'a')), u"");
  EXPECT_EQ(FormEncode(Text(32768, u'a')), u"");
  EXPECT_EQ(FormEncode(Text(70000, u'a')), u"");
}

// A page that counts what it is asked.
class CountingPage final : public CodePage {
 public:
  [[nodiscard]] std::string ToBytes(std::u16string_view) const override {
    ++asked;
    return "?";
  }
  [[nodiscard]] std::u16string FromBytes(std::string_view) const override { return {}; }
  mutable int asked = 0;
};

// With 32767 characters it is the counter's step behind the last one that fails; with more, the
// length, before the first.
TEST(FormEncode, FailsBehindTheLastOf32767CharactersAndBeforeTheFirstOfMore) {
  for (const std::size_t length : {std::size_t{32767}, std::size_t{32768}}) {
    const CountingPage page;
    const Text text = u"\u00E9" + Text(length - 2, u'a') + u"\u4E00";
    EXPECT_EQ(FormEncode(text, page), u"") << length;
    EXPECT_EQ(page.asked, length == 32767 ? 2 : 0) << length;
  }
}

TEST(FormEncode, LimitsTheInputAndNotTheOutput) {
  const PageOfOddCodes page;
  std::u16string expected;
  for (int i = 0; i < 32766; ++i) expected += u"%82A0";
  EXPECT_TRUE(FormEncode(Text(32766, u'\u3042'), page) == Text(expected));
  EXPECT_EQ(FormEncode(Text(32766, u'%')).Length(), 3 * 32766);
}

TEST(FormEncode, DropsAllWorkOnAnyFailure) {
  EXPECT_EQ(FormEncode(u"abc\u00E9", FailingPage()), u"");
  EXPECT_EQ(FormEncode(u"abc", FailingPage()), u"abc");
  EXPECT_EQ(FormEncode(u"\x7F", FailingPage()), u"%7F") << "ASCII is the same in every page";
}

}  // namespace
}  // namespace quorvane
