// The system's idea of equal texts, as the real call and the stand-in keep it: what text comparison
// may rest on everywhere, and that plain ASCII folds plainly where it is said to.
#include "platform/collation.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quorvane::testing {
namespace {

bool AreEqual(std::u16string_view left, std::u16string_view right) {
  return systemCollation().AreEqual(left, right);
}

char16_t ToLower(char16_t c) { return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c; }

std::u16string ToLower(std::u16string text) {
  for (char16_t& c : text) c = ToLower(c);
  return text;
}

TEST(Collation, TakesATextForEqualToItselfOnly) {
  EXPECT_TRUE(AreEqual(u"", u""));
  EXPECT_TRUE(AreEqual(u"abc", u"abc"));
  EXPECT_FALSE(AreEqual(u"abc", u"abd"));
  EXPECT_FALSE(AreEqual(u"abc", u"ab"));
  EXPECT_FALSE(AreEqual(u"ab", u"abc"));
  EXPECT_FALSE(AreEqual(u" ", u""));
  EXPECT_FALSE(AreEqual(u"", u"a"));
}

TEST(Collation, LeavesCaseAsideInEveryScript) {
  EXPECT_TRUE(AreEqual(u"Hello", u"hELLO"));
  EXPECT_TRUE(AreEqual(u"\u00C9", u"\u00E9"));              // e acute
  EXPECT_TRUE(AreEqual(u"\u0416\u0423", u"\u0436\u0443"));  // Cyrillic
  EXPECT_TRUE(AreEqual(u"\u03A9", u"\u03C9"));              // omega
  EXPECT_FALSE(AreEqual(u"\u00C9", u"e"));
  EXPECT_FALSE(AreEqual(u"\u0416", u"\u0437"));
  EXPECT_FALSE(AreEqual(u"\u4E00", u"\u4E8C"));
}

TEST(Collation, TakesSwappedArgumentsAlike) {
  const std::vector<std::u16string> texts{u"", u"a", u"A", u"\u00DF", u"ss", u"\u00AD", u"\u0130"};
  for (const auto& left : texts)
    for (const auto& right : texts) EXPECT_EQ(AreEqual(left, right), AreEqual(right, left));
}

TEST(Collation, FoldsPlainAsciiPlainlyWhereItSaysSo) {
  if (!systemCollation().FoldsAsciiPlainly()) GTEST_SKIP() << "it does not say so in this locale";
  for (char16_t left = 0x20; left <= 0x7E; ++left) {
    for (char16_t right = 0x20; right <= 0x7E; ++right) {
      const std::u16string one(1, left);
      const std::u16string other(1, right);
      ASSERT_EQ(AreEqual(one, other), ToLower(left) == ToLower(right))
          << int{left} << " " << int{right};
    }
  }
}

// Where words are sorted, hyphens and apostrophes weigh less: not so when texts are compared.
TEST(Collation, FoldsPlainAsciiPlainlyInContext) {
  if (!systemCollation().FoldsAsciiPlainly()) GTEST_SKIP() << "it does not say so in this locale";
  constexpr std::u16string_view kLetters = u"aAb -'";
  std::vector<std::u16string> texts{u""};
  for (std::size_t done = 0; texts[done].size() < 3; ++done)
    for (const char16_t c : kLetters) texts.push_back(texts[done] + c);
  for (const auto& left : texts)
    for (const auto& right : texts)
      ASSERT_EQ(AreEqual(left, right), ToLower(left) == ToLower(right));
}

}  // namespace
}  // namespace quorvane::testing
