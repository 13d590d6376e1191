// Replace-all against its longest form: on random texts with the system's own collation, with
// letters of several scripts, and around the sixteen-bit limits.
#include <gtest/gtest.h>

#include <random>

#include "tests/support/fake_collation.h"
#include "tests/support/raises.h"
#include "tests/text/literal_string_helpers.h"
#include "text/string_helpers.h"

namespace quorvane::testing {
namespace {

class Source {
 public:
  std::size_t Below(std::size_t limit) { return random_() % limit; }
  std::size_t Between(std::size_t least, std::size_t most) {
    return least + Below(most - least + 1);
  }
  Text TextOf(std::u16string_view letters, std::size_t longest) {
    std::u16string made(Below(longest + 1), u' ');
    for (char16_t& c : made) c = letters[Below(letters.size())];
    return Text(made);
  }

 private:
  std::mt19937 random_{20240131};  // NOLINT(cert-msc51-cpp): the same texts on every run
};

void ExpectAgreement(std::u16string_view letters, const Collation& collation, int rounds) {
  Source source;
  for (int i = 0; i < rounds; ++i) {
    const Text text = source.TextOf(letters, 24);
    const Text find = source.TextOf(letters, 3);
    const Text replacement = source.TextOf(letters, 4);
    ASSERT_EQ(ReplaceAll(text, find, replacement, collation),
              LiteralReplaceAll(text, find, replacement, collation))
        << ::testing::PrintToString(text) << " " << ::testing::PrintToString(find);
  }
}

TEST(ReplaceAllAgainstItsLongestForm, AgreesOnPlainAscii) {
  ExpectAgreement(u"aAbB -'", systemCollation(), 20000);
}

TEST(ReplaceAllAgainstItsLongestForm, AgreesOnAllOfPlainAscii) {
  std::u16string letters;
  for (char16_t c = 0x20; c <= 0x7E; ++c) letters += c;
  ExpectAgreement(letters, systemCollation(), 5000);
}

TEST(ReplaceAllAgainstItsLongestForm, AgreesWhereTheCollationIsAskedAboutAscii) {
  ExpectAgreement(u"dDzZcChHsS", NotPlain(systemCollation()), 5000);
}

TEST(ReplaceAllAgainstItsLongestForm, AgreesOnLettersOfSeveralScripts) {
  // e acute, sharp s, the Turkish i's, Cyrillic zhe, the sigmas, alef, han, kana.
  ExpectAgreement(
      u"sSe\u00E9\u00C9\u00DFiI\u0130\u0131\u0436\u0416\u03C3\u03A3\u03C2\u05D0\u4E00\u3042",
      systemCollation(), 20000);
}

TEST(ReplaceAllAgainstItsLongestForm, AgreesOnMarksZerosAndPairs) {
  const std::u16string letters(u"aA\0\u00AD\u0301\u200D\xD801\xDC00\xDC28\x1F\x7F", 11);
  ExpectAgreement(letters, systemCollation(), 20000);
}

TEST(ReplaceAllAgainstItsLongestForm, AgreesWhenCharactersArePassedOver) {
  ExpectAgreement(u"aAb\u00AD", FakeCollation(), 20000);
}

// Occurrences scattered over the last characters that sixteen bits can reach.
TEST(ReplaceAllAgainstItsLongestForm, AgreesAroundTheSixteenBitLimits) {
  Source source;
  const FakeCollation collation;
  int unchanged = 0;
  for (int i = 0; i < 400; ++i) {
    std::u16string characters(source.Between(32764, 32772), u'-');
    const std::u16string find = std::u16string(u"abab").substr(0, source.Between(1, 4));
    for (int k = 0; k < 4; ++k) {
      const std::size_t front = source.Below(4) == 0 ? source.Below(100) : 0;
      const std::size_t place = front > 0 ? front : source.Between(32750, characters.size() - 1);
      characters.replace(place, std::min(find.size(), characters.size() - place), find);
    }
    const Text replacement = source.TextOf(u"ax", 5);
    const Text expected = LiteralReplaceAll(Text(characters), find, replacement, collation);
    ASSERT_EQ(ReplaceAll(Text(characters), find, replacement, collation), expected) << i;
    unchanged += expected == Text(characters) ? 1 : 0;
  }
  // Both outcomes did occur.
  EXPECT_GT(unchanged, 40);
  EXPECT_LT(unchanged, 360);
}

TEST(ReplaceAllAgainstItsLongestForm, AgreesOnTextsFullOfOccurrences) {
  const Text find(16, u'A');
  for (const std::size_t length : {32766U, 32767U, 32768U, 32769U}) {
    const Text text(length, u'a');
    for (const std::size_t count : {0U, 1U, 16U, 17U}) {
      const Text replacement(count, u'b');
      ASSERT_EQ(ReplaceAll(text, find, replacement),
                LiteralReplaceAll(text, find, replacement, FakeCollation()))
          << length << " " << count;
    }
  }
}

}  // namespace
}  // namespace quorvane::testing
