// Where the system's collation parts from a comparison of characters, for text helpers that must
// not compare by themselves outside of plain ASCII.
#include <gtest/gtest.h>

#include "platform/collation.h"

#include "tests/support/replaced_import_windows.h"

namespace quorvane::testing {
namespace {

bool AreEqual(std::u16string_view left, std::u16string_view right) {
  return systemCollation().AreEqual(left, right);
}

TEST(WindowsCollation, PassesOverCharactersThatMakeNoMark) {
  EXPECT_TRUE(AreEqual(std::u16string_view(u"\0", 1), u""));
  EXPECT_TRUE(AreEqual(u"\u00AD", u""));
  EXPECT_TRUE(AreEqual(u"a\u200Db", u"AB"));
}

TEST(WindowsCollation, TakesTheSharpSForTwo) { EXPECT_TRUE(AreEqual(u"Stra\u00DFe", u"strasse")); }

// Case is all that is left aside: neither accents, nor the width of a character, nor its kind of
// kana, nor signs.
TEST(WindowsCollation, LeavesNothingButCaseAside) {
  EXPECT_FALSE(AreEqual(u"e", u"\u00E9"));
  EXPECT_FALSE(AreEqual(u"a", u"\uFF41"));
  EXPECT_FALSE(AreEqual(u"\u3042", u"\u30A2"));
  EXPECT_FALSE(AreEqual(u"a-b", u"ab"));
  EXPECT_FALSE(AreEqual(u"a b", u"ab"));
  EXPECT_TRUE(AreEqual(u"\uFF21", u"\uFF41"));
}

LCID asked_locale = 0;
DWORD asked_flags = 0;
int WINAPI NoteAndCallEqual(LCID locale, DWORD flags, LPCWSTR, int, LPCWSTR, int) {
  asked_locale = locale;
  asked_flags = flags;
  return CSTR_EQUAL;
}

// The system's locale, not the user's: the two may differ.
TEST(WindowsCollation, IsTheSystemLocalesWithoutCaseAndNothingElse) {
  const ReplacedImport noted(::GetModuleHandleW(nullptr), "CompareStringW", NoteAndCallEqual);
  ASSERT_TRUE(noted.Took());
  EXPECT_TRUE(AreEqual(u"a", u"b"));
  EXPECT_EQ(asked_locale, LCID{LOCALE_SYSTEM_DEFAULT});
  EXPECT_EQ(asked_flags, DWORD{NORM_IGNORECASE});
}

}  // namespace
}  // namespace quorvane::testing
