// The stand-ins of the system locale: what they make of a locale of their own, and where they part
// from Windows.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <locale>
#include <string>

#include "platform/posix/numeric_text.h"
#include "platform/posix/system_locale.h"
#include "tests/platform/posix/processes.h"

namespace quorvane::testing {
namespace {

// Letters as in Turkish: the capital of i has a dot, the small form of I has none.
class TurkishLetters final : public std::ctype<wchar_t> {
 protected:
  wchar_t do_tolower(wchar_t c) const override {
    return c == L'I' ? L'\u0131' : std::ctype<wchar_t>::do_tolower(c);
  }
  const wchar_t* do_tolower(wchar_t* first, const wchar_t* end) const override {
    for (; first != end; ++first) *first = do_tolower(*first);
    return end;
  }
};

// An order that passes over hyphens.
class HyphensDoNotCount final : public std::collate<wchar_t> {
 protected:
  int do_compare(const wchar_t* low1, const wchar_t* high1, const wchar_t* low2,
                 const wchar_t* high2) const override {
    return Without(low1, high1).compare(Without(low2, high2));
  }

 private:
  static std::wstring Without(const wchar_t* low, const wchar_t* high) {
    std::wstring text(low, high);
    std::erase(text, L'-');
    return text;
  }
};

TEST(LocaleCollation, FoldsAsciiPlainlyInTheNeutralLocale) {
  EXPECT_TRUE(MakeCollation(std::locale("C.UTF-8"))->FoldsAsciiPlainly());
  EXPECT_TRUE(MakeCollation(std::locale::classic())->FoldsAsciiPlainly());
}

TEST(LocaleCollation, FoldsAsciiOtherwiseWhereALetterHasAnotherPartner) {
  const auto turkish = MakeCollation(std::locale(std::locale("C.UTF-8"), new TurkishLetters));
  EXPECT_FALSE(turkish->FoldsAsciiPlainly());
  EXPECT_FALSE(turkish->AreEqual(u"I", u"i"));
  EXPECT_TRUE(turkish->AreEqual(u"I", u"\u0131"));
}

TEST(LocaleCollation, FoldsAsciiOtherwiseWhereACharacterIsPassedOver) {
  const auto words = MakeCollation(std::locale(std::locale("C.UTF-8"), new HyphensDoNotCount));
  EXPECT_FALSE(words->FoldsAsciiPlainly());
  EXPECT_TRUE(words->AreEqual(u"co-op", u"Coop"));
  EXPECT_TRUE(words->AreEqual(u"-", u""));
}

TEST(LocaleCollation, IsThatOfTheSystemLocaleForTheSystem) {
  EXPECT_EQ(systemCollation().FoldsAsciiPlainly(),
            MakeCollation(systemLocale())->FoldsAsciiPlainly());
}

TEST(LocaleCollation, TellsApartWhatWindowsJoins) {
  const auto neutral = MakeCollation(std::locale("C.UTF-8"));
  EXPECT_FALSE(neutral->AreEqual(u"\u00DF", u"ss"));
  EXPECT_FALSE(neutral->AreEqual(u"\u00AD", u""));
  EXPECT_FALSE(neutral->AreEqual(std::u16string_view(u"\0", 1), u""));
}

TEST(LocaleCollation, TakesAPairForItsCharacterAndTellsHalvesApart) {
  const auto neutral = MakeCollation(std::locale("C.UTF-8"));
  EXPECT_TRUE(neutral->AreEqual(u"\xD801\xDC00", u"\xD801\xDC28"));  // a Deseret letter's two cases
  EXPECT_FALSE(neutral->AreEqual(u"\xD801", u"\xD802"));
  EXPECT_FALSE(neutral->AreEqual(u"\xD801", u""));
  // A half beside a letter leaves the letter as it is.
  EXPECT_TRUE(neutral->AreEqual(u"a\xDC00", u"A\xDC00"));
  EXPECT_TRUE(neutral->AreEqual(u"\xD801z", u"\xD801Z"));
  EXPECT_FALSE(neutral->AreEqual(u"\xD801z", u"\xD801y"));
  EXPECT_TRUE(neutral->AreEqual(u"\xDC00z", u"\xDC00Z"));
  EXPECT_FALSE(neutral->AreEqual(u"\xD801\uE000", u"\xD802\xDC00")) << "no second half";
  EXPECT_FALSE(neutral->AreEqual(u"\xD7FF\xDC00", u"\uFC00")) << "no first half";
}

// In a program of its own, which has not asked for its locale yet.
TEST(SystemLocale, IsTheNeutralOneWhereTheEnvironmentNamesAnUnknownOne) {
  constexpr const char* kOwnProgram = "QUORVANE_TEST_UNKNOWN_LOCALE";
  if (std::getenv(kOwnProgram) == nullptr) {
    EXPECT_TRUE(AllProcesses(1, [](int /*number*/) {
      ::setenv(kOwnProgram, "1", 1);
      ::setenv("LC_ALL", "xx_XX.no-such-set", 1);
      const std::string file = std::filesystem::read_symlink("/proc/self/exe").native();
      return ::execl(file.c_str(), file.c_str(), "--gtest_brief=1",
                     "--gtest_filter=SystemLocale.*UnknownOne", nullptr) == 0;
    }));
    return;
  }
  EXPECT_EQ(systemLocale().name(), "C.UTF-8");
  EXPECT_EQ(systemShortDate().Format({2024, 1, 31}), Text(u"01/31/24"));
  EXPECT_TRUE(systemCollation().AreEqual(u"\u00C9", u"\u00E9"));
}

TEST(NumericText, WritesOutUpTo15PlacesBehindThePoint) {
  NumericText rules;
  const auto text_of = [&](double value) {
    std::u16string text = u"before";
    EXPECT_EQ(rules.VarBstrFromR8(value, 0, 0, &text), 0);
    return text;
  };
  EXPECT_EQ(text_of(0.00001), u"0.00001");
  EXPECT_EQ(text_of(-1.2345678901e-5), u"-0.000012345678901");
  EXPECT_EQ(text_of(1.23456789012e-5), u"1.23456789012E-05");
  EXPECT_EQ(text_of(1e-14), u"0.00000000000001");
  EXPECT_EQ(text_of(1e-15), u"1E-15");
  EXPECT_EQ(text_of(1e20), u"1E+20");
}

TEST(LocaleShortDate, WritesMonthDayYearInTheNeutralLocale) {
  EXPECT_EQ(ShortDateIn(std::locale::classic(), {2024, 1, 31}), Text(u"01/31/24"));
  EXPECT_EQ(ShortDateIn(std::locale::classic(), {105, 12, 1}), Text(u"12/01/05"));
}

}  // namespace
}  // namespace quorvane::testing
