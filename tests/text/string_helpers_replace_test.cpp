// Replace-all: the guards, what counts as an occurrence, the sixteen-bit limits, and that every
// error gives the text back.
#include <gtest/gtest.h>

#include "tests/support/fake_collation.h"
#include "tests/support/raises.h"
#include "text/string_helpers.h"

namespace quorvane::testing {
namespace {

constexpr std::size_t kLast = 32767;

// A text of blanks with `find` at a 1-based position and two more characters behind it.
Text BlanksWith(std::u16string_view find, std::size_t position) {
  return Text(std::u16string(position - 1, u' ').append(find).append(u"--"));
}

TEST(ReplaceAll, IgnoresCaseAndPutsTheReplacementInAsItStands) {
  EXPECT_EQ(ReplaceAll(u"Hello", u"L", u"x"), Text(u"Hexxo"));
  EXPECT_EQ(ReplaceAll(u"one TWO two", u"tWo", u"Ten"), Text(u"one Ten Ten"));
}

TEST(ReplaceAll, GivesTheEmptyTextForAnEmptyText) {
  EXPECT_EQ(ReplaceAll(u"", u"a", u"b"), Text(u""));
  EXPECT_EQ(ReplaceAll(Text(), u"a", u"b"), Text(u""));
  EXPECT_EQ(ReplaceAll(u"", u"", u"b"), Text(u""));
}

TEST(ReplaceAll, GivesTheEmptyTextForAnEmptyFind) {
  EXPECT_EQ(ReplaceAll(u"abc", u"", u"b"), Text(u""));
  EXPECT_EQ(ReplaceAll(u"abc", Text(), u"b"), Text(u""));
}

TEST(ReplaceAll, TakesForEmptyWhatTheCollationTakesForEmpty) {
  const FakeCollation collation;
  EXPECT_EQ(ReplaceAll(u"a\u00ADb", u"\u00AD", u"x", collation), Text(u""));
  EXPECT_EQ(ReplaceAll(u"\u00AD\u00AD", u"a", u"x", collation), Text(u""));
}

TEST(ReplaceAll, GivesTheTextWhenFindDoesNotOccur) {
  EXPECT_EQ(ReplaceAll(u"Hello", u"x", u"y"), Text(u"Hello"));
  EXPECT_EQ(ReplaceAll(u"ab", u"abc", u"y"), Text(u"ab"));
  EXPECT_EQ(ReplaceAll(Text(100000, u'a'), u"b", u"y"), Text(100000, u'a'));
}

TEST(ReplaceAll, NeverSearchesWhatItPutIn) {
  EXPECT_EQ(ReplaceAll(u"aaa", u"a", u"aa"), Text(u"aaaaaa"));
  EXPECT_EQ(ReplaceAll(u"ab", u"a", u"a"), Text(u"ab"));
  // Neither alone nor together with what follows.
  EXPECT_EQ(ReplaceAll(u"abb", u"ab", u"a"), Text(u"ab"));
}

TEST(ReplaceAll, GoesOnAtThePlaceOfTheMatchForAnEmptyReplacement) {
  EXPECT_EQ(ReplaceAll(u"aabb", u"ab", u""), Text(u"ab"));
  EXPECT_EQ(ReplaceAll(u"aaaa", u"aa", Text()), Text(u""));
  EXPECT_EQ(ReplaceAll(u"aaaaa", u"aa", u""), Text(u"a"));
}

TEST(ReplaceAll, FindsAnOccurrenceThatBeginsInsideABrokenOffOne) {
  EXPECT_EQ(ReplaceAll(u"aaab", u"aab", u"x"), Text(u"ax"));
  EXPECT_EQ(ReplaceAll(u"abababc", u"ababc", u"x"), Text(u"abx"));
  EXPECT_EQ(ReplaceAll(u"aabaabaaab", u"aabaaab", u"x"), Text(u"aabx"));
}

TEST(ReplaceAll, TakesOutExactlyAsManyCharactersAsFindHas) {
  const FakeCollation collation;
  // The stretch of two characters, soft hyphen and a, equals "a" and a soft hyphen.
  EXPECT_EQ(ReplaceAll(u"x\u00ADay", u"a\u00AD", u"_", collation), Text(u"x_y"));
  // One character of the text equals the two of Find, but no stretch of two does.
  EXPECT_EQ(ReplaceAll(u"xay", u"a\u00AD", u"_", collation), Text(u"xay"));
}

TEST(ReplaceAll, GivesTheTextBackWhenAPositionExceedsSixteenBits) {
  EXPECT_EQ(ReplaceAll(BlanksWith(u"a", kLast - 1), u"a", u""), BlanksWith(u"", kLast - 1));
  // Position 32767 is in range, but no character behind it is: the sum fails.
  const Text at_last = BlanksWith(u"a", kLast);
  EXPECT_EQ(ReplaceAll(at_last, u"a", u""), at_last);
  const Text behind_last = BlanksWith(u"a", kLast + 1);
  EXPECT_EQ(ReplaceAll(behind_last, u"a", u""), behind_last);
}

TEST(ReplaceAll, GivesTheTextBackWhenPositionAndLengthTogetherExceedSixteenBits) {
  EXPECT_EQ(ReplaceAll(BlanksWith(u"abc", kLast - 3), u"abc", u"x"), BlanksWith(u"x", kLast - 3));
  const Text text = BlanksWith(u"abc", kLast - 2);
  EXPECT_EQ(ReplaceAll(text, u"abc", u"x"), text);
}

TEST(ReplaceAll, LosesEarlierReplacementsWhenALaterOneFails) {
  const Text text = u"a" + BlanksWith(u"a", kLast);
  EXPECT_EQ(ReplaceAll(text, u"a", u"x"), text);
}

TEST(ReplaceAll, CountsPositionsInTheTextAsReplacedSoFar) {
  // Two characters come in at the front, so the match at 32765 stands at 32767 when its turn comes.
  const Text grown = Text(u"a") + BlanksWith(u"a", kLast - 3);
  EXPECT_EQ(ReplaceAll(grown, u"a", u"xxx"), grown);
  // One goes out, so the match at 32767 stands at 32766.
  const Text shrunk = Text(u"a") + BlanksWith(u"a", kLast - 1);
  EXPECT_EQ(ReplaceAll(shrunk, u"a", u""), BlanksWith(u"", kLast - 1));
}

TEST(ReplaceAll, ReplacesEachOf32766Characters) {
  // At position 32767 the sum with the length of the sought text is the first beyond sixteen bits.
  for (const std::size_t length : {kLast - 2, kLast - 1, kLast, kLast + 1, kLast + 2}) {
    const Text text(length, u'a');
    EXPECT_EQ(ReplaceAll(text, u"A", u"b"), length < kLast ? Text(length, u'b') : text) << length;
    // Nothing is left in front of a match, and so none is too far.
    EXPECT_EQ(ReplaceAll(text, u"A", u""), Text(u"")) << length;
    // The text grows beyond the limit halfway.
    EXPECT_EQ(ReplaceAll(text, u"A", u"bb"), text) << length;
  }
  EXPECT_EQ(ReplaceAll(Text(16383, u'a'), u"A", u"bb"), Text(kLast - 1, u'b'));
  EXPECT_EQ(ReplaceAll(Text(16384, u'a'), u"A", u"bb"), Text(16384, u'a'));
}

TEST(ReplaceAll, TakesAFindOfUpTo32767Characters) {
  // One match, at position 1: the sum is 32768 for the longest.
  const Text longest(kLast, u'a');
  EXPECT_EQ(ReplaceAll(longest, longest, u"x"), longest);
  const Text one_less(kLast - 1, u'a');
  EXPECT_EQ(ReplaceAll(one_less, one_less, u"x"), Text(u"x"));
  EXPECT_EQ(ReplaceAll(u"abc", longest, u"x"), Text(u"abc"));
}

TEST(ReplaceAll, GivesTheTextBackForAFindOfMoreThan32767Characters) {
  const Text too_long(kLast + 1, u'a');
  EXPECT_EQ(ReplaceAll(u"abc", too_long, u"x"), Text(u"abc"));
  EXPECT_EQ(ReplaceAll(too_long, too_long, u"x"), too_long);
  // Nor one whose length is short again when only sixteen bits of it are looked at.
  const Text far_too_long(65536 + 1, u'a');
  EXPECT_EQ(ReplaceAll(far_too_long, far_too_long, u"x"), far_too_long);
  const Text far_too_long_and_not_plain(65536 + 1, u'\u0436');
  EXPECT_EQ(ReplaceAll(far_too_long_and_not_plain, far_too_long_and_not_plain, u"x"),
            far_too_long_and_not_plain);
}

TEST(ReplaceAll, LetsTheTextGrowBeyondSixteenBits) {
  const Text replacement(40000, u'x');
  EXPECT_EQ(ReplaceAll(u"a", u"a", replacement), replacement);
  EXPECT_EQ(ReplaceAll(u"abc", u"a", replacement), replacement + u"bc");
  // The second match then stands behind position 32767.
  EXPECT_EQ(ReplaceAll(u"aba", u"a", replacement), Text(u"aba"));
}

TEST(ReplaceAll, GivesTheTextBackWhateverFails) {
  const Text text = u"a\u00E9a";
  int faults = 0;
  for (int n = 1;; ++n) {
    const FakeCollation collation(FakeCollation::Plain::kNo, FaultPlan(n));
    const Text result = ReplaceAll(text, u"a", u"x", collation);
    if (collation.questions < n) {
      EXPECT_EQ(result, Text(u"x\u00E9x"));
      break;
    }
    EXPECT_EQ(result, text) << "failing question " << n;
    ++faults;
  }
  // Both guards and the three places.
  EXPECT_EQ(faults, 5);
}

TEST(ReplaceAll, LooksAtTheTextBeforeFind) {
  // The second question, which would fail, is not asked of a text that is empty.
  const FakeCollation empty(FakeCollation::Plain::kYes, FaultPlan(2));
  EXPECT_EQ(ReplaceAll(u"\u00AD", u"a", u"x", empty), Text(u""));
  EXPECT_EQ(empty.questions, 1);
  const FakeCollation other(FakeCollation::Plain::kYes, FaultPlan(2));
  EXPECT_EQ(ReplaceAll(u"\u00E9", u"\u00AD", u"x", other), Text(u"\u00E9"));
}

TEST(ReplaceAll, ComparesPlainAsciiItself) {
  const FakeCollation collation;
  EXPECT_EQ(ReplaceAll(Text(30000, u'A'), u"a", u"x", collation), Text(30000, u'x'));
  EXPECT_EQ(collation.questions, 0);
}

TEST(ReplaceAll, AsksTheCollationOncePerPlaceForOtherTexts) {
  const FakeCollation collation;
  static_cast<void>(ReplaceAll(Text(1000, u'\u00E9'), u"ab", u"x", collation));
  EXPECT_EQ(collation.questions, 2 + 999);  // the guards, too
}

TEST(ReplaceAll, AsksTheCollationWhereAsciiIsNotPlain) {
  const FakeCollation collation(FakeCollation::Plain::kNo);
  EXPECT_EQ(ReplaceAll(u"aaaa", u"A", u"x", collation), Text(u"xxxx"));
  EXPECT_EQ(collation.questions, 2 + 4);
}

TEST(ReplaceAll, AsksTheCollationForCharactersJustOutsideThePlainRange) {
  for (const char16_t c : {u'\u001F', u'\u007F', u'\u0080', u'\0'}) {
    const FakeCollation collation;
    static_cast<void>(ReplaceAll(Text(3, c), u"a", u"x", collation));
    EXPECT_EQ(collation.questions, 2 + 3) << static_cast<int>(c);
  }
}

// The guard comes before the length is narrowed.
TEST(ReplaceAll, GivesTheEmptyTextForALongFindThatTheCollationCallsEmpty) {
  const FakeCollation collation;
  EXPECT_EQ(ReplaceAll(u"abc", Text(40000, FakeCollation::kPassedOver), u"x", collation),
            Text(u""));
  EXPECT_EQ(ReplaceAll(Text(), Text(40000, u'a'), u"x"), Text(u""));
}

TEST(ReplaceAll, GivesTheTextBackForAMatchBehindPosition65536) {
  for (const std::size_t position : {65535U, 65536U, 65537U, 65538U, 98305U, 131073U}) {
    const Text text = BlanksWith(u"find", position);
    EXPECT_EQ(ReplaceAll(text, u"find", u"x"), text) << position;
    const Text other = BlanksWith(u"f\u00EFnd", position);
    EXPECT_EQ(ReplaceAll(other, u"f\u00EFnd", u"x"), other) << position;
  }
}

}  // namespace
}  // namespace quorvane::testing
