// Proves what an absent text is beside an empty one, and that texts are values.

#include "runtime/text.h"

#include <gtest/gtest.h>

#include "tests/support/raises.h"

namespace quorvane {
namespace {

TEST(Text, IsAbsentUntilItIsGivenCharacters) {
  EXPECT_TRUE(Text().IsAbsent());
  EXPECT_FALSE(Text(u"").IsAbsent());
  EXPECT_FALSE(Text(u"a").IsAbsent());
}

TEST(Text, CountsAsEmptyWhenAbsent) {
  EXPECT_TRUE(Text().IsEmpty());
  EXPECT_EQ(Text().Length(), 0);
  EXPECT_EQ(Text(), Text(u""));
}

TEST(Text, KeepsZerosAndSingleSurrogates) {
  const std::u16string units{u'a', u'\0', char16_t{0xD800}, u'b'};
  const Text text(units);
  EXPECT_EQ(text.Length(), 4);
  EXPECT_EQ(text.Characters(), units);
}

TEST(Text, ComparesCharactersExactly) {
  EXPECT_FALSE(Text(u"abc") == Text(u"Abc"));
  EXPECT_TRUE(Text(u"abc") == Text(u"abc"));
}

TEST(Text, IsPresentOfAnyCharactersAlsoOfNone) {
  EXPECT_FALSE(Text(u"").IsAbsent());
  EXPECT_FALSE(Text(std::u16string()).IsAbsent());
  EXPECT_FALSE(Text(std::u16string_view()).IsAbsent());
  EXPECT_FALSE(Text(0, u'x').IsAbsent());
}

TEST(Text, IsMadeOfRepeatedCharacters) { EXPECT_EQ(Text(3, u' '), Text(u"   ")); }

TEST(Text, IsPresentAfterConcatenation) {
  const Text joined = Text() + Text();
  EXPECT_FALSE(joined.IsAbsent());
  EXPECT_EQ(Text(u"ab") + u"c", Text(u"abc"));
}

TEST(Text, IsPresentOnceItIsEdited) {
  Text text;
  text.Edit() += u"ab";
  EXPECT_EQ(text, Text(u"ab"));
  Text untouched;
  EXPECT_TRUE(untouched.Edit().empty());
  EXPECT_FALSE(untouched.IsAbsent());
}

TEST(Text, OwnsItsCopy) {
  Text original(u"abc");
  const Text copy = original;
  original = u"changed";
  EXPECT_EQ(copy, Text(u"abc"));
}

}  // namespace
}  // namespace quorvane
