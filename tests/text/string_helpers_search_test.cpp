// The empty test and the search for the last occurrence: what counts as empty, which comparison
// each uses, and agreement with the search in its longest form.
#include <gtest/gtest.h>

#include <random>

#include "tests/support/fake_collation.h"
#include "tests/support/raises.h"
#include "tests/text/literal_string_helpers.h"
#include "text/string_helpers.h"

namespace quorvane::testing {
namespace {

TEST(IsEmptyText, IsTrueForAnAbsentAndForTheEmptyText) {
  EXPECT_EQ(IsEmptyText(Text()), kTrue);
  EXPECT_EQ(IsEmptyText(u""), kTrue);
}

TEST(IsEmptyText, IsFalseForASingleBlank) { EXPECT_EQ(IsEmptyText(u" "), kFalse); }

TEST(IsEmptyText, IsTrueForWhatTheCollationPassesOver) {
  const FakeCollation collation;
  EXPECT_EQ(IsEmptyText(Text(3, FakeCollation::kPassedOver), collation), kTrue);
  EXPECT_EQ(IsEmptyText(u"\u00ADa", collation), kFalse);
}

TEST(LastPosition, GivesTheLastOccurrence) {
  EXPECT_EQ(LastPosition(u"abcabc", u"bc"), 5);
  EXPECT_EQ(LastPosition(u"abc", u"abc"), 1);
  EXPECT_EQ(LastPosition(u"abc", u"a"), 1);
  EXPECT_EQ(LastPosition(u"abc", u"c"), 3);
}

TEST(LastPosition, LetsOccurrencesOverlap) {
  EXPECT_EQ(LastPosition(u"aaa", u"aa"), 2);
  EXPECT_EQ(LastPosition(u"ababa", u"aba"), 3);
}

TEST(LastPosition, RespectsCase) {
  EXPECT_EQ(LastPosition(u"Abc", u"abc"), 0);
  EXPECT_EQ(LastPosition(u"abcABC", u"abc"), 1);
}

TEST(LastPosition, IsZeroWhenThereIsNothingToFind) {
  EXPECT_EQ(LastPosition(u"abc", u""), 0);
  EXPECT_EQ(LastPosition(u"abc", Text()), 0);
  EXPECT_EQ(LastPosition(u"", u"abc"), 0);
  EXPECT_EQ(LastPosition(Text(), u"abc"), 0);
  EXPECT_EQ(LastPosition(u"", u""), 0);
  EXPECT_EQ(LastPosition(u"ab", u"abc"), 0);
  EXPECT_EQ(LastPosition(u"abc", u"x"), 0);
}

TEST(LastPosition, IsZeroForAFindThatOnlyTheCollationCallsEmpty) {
  const FakeCollation collation;
  EXPECT_EQ(LastPosition(u"a\u00ADb", u"\u00AD", collation), 0);
  EXPECT_EQ(LastPosition(u"a\u00ADb", u"\u00ADb", collation), 2);
}

TEST(LastPosition, ComparesZerosAndHalvesOfPairsLikeAnyCharacter) {
  const Text text(std::u16string(u"a\0b\0b", 5));
  EXPECT_EQ(LastPosition(text, Text(std::u16string(u"\0b", 2))), 4);
  EXPECT_EQ(LastPosition(u"\xD83D\xDE00x\xDE00", u"\xDE00"), 4);
}

TEST(LastPosition, CountsBeyondSixteenBits) {
  EXPECT_EQ(LastPosition(Text(100000, u'a'), u"a"), 100000);
  EXPECT_EQ(LastPosition(Text(70000, u'a'), Text(40000, u'a')), 30001);
}

TEST(LastPosition, AgreesWithTheLongestFormOnRandomTexts) {
  std::mt19937 random(20240131);  // NOLINT(cert-msc51-cpp): the same texts on every run
  const std::u16string letters = u"aab\u00AD";
  const auto make = [&](unsigned longest) {
    std::u16string made(random() % (longest + 1), u' ');
    for (char16_t& c : made) c = letters[random() % letters.size()];
    return Text(made);
  };
  const FakeCollation collation;
  for (int i = 0; i < 20000; ++i) {
    const Text text = make(12);
    const Text find = make(4);
    ASSERT_EQ(LastPosition(text, find, collation), LiteralLastPosition(text, find, collation))
        << ::testing::PrintToString(text) << " " << ::testing::PrintToString(find);
  }
}

// Sixteen bits are no limit here. Overlapping parts stand anywhere in the last characters.
TEST(LastPosition, AgreesWithTheLongestFormAroundSixteenBits) {
  std::mt19937 random(20240131);  // NOLINT(cert-msc51-cpp): the same texts on every run
  const FakeCollation collation;
  for (std::size_t length = 32766; length <= 32769; ++length) {
    for (const Text& find : {Text(u"ab"), Text(u"aba"), Text(u"\u0436"), Text(u"-a")}) {
      for (int i = 0; i < 10; ++i) {
        std::u16string characters(length, u'-');
        for (std::size_t k = length - 100; k < length; ++k) {
          if (random() % 4 != 0) characters[k] = u"ab\u0436\u0416"[random() % 4];
        }
        ASSERT_EQ(LastPosition(Text(characters), find, collation),
                  LiteralLastPosition(Text(characters), find, collation))
            << length << " " << ::testing::PrintToString(find);
      }
    }
  }
  EXPECT_EQ(LastPosition(Text(32768, u'a'), u"a"), 32768);
}

TEST(IsEmptyText, NeedsNoCollationThatCanTell) {
  const FakeCollation failing(FakeCollation::Plain::kYes, FaultPlan(1));
  EXPECT_EQ(IsEmptyText(u"x", failing), kFalse);
  const FakeCollation failing_again(FakeCollation::Plain::kYes, FaultPlan(1));
  EXPECT_EQ(IsEmptyText(Text(), failing_again), kTrue);
}

}  // namespace
}  // namespace quorvane::testing
