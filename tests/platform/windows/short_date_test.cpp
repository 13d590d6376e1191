// The short date under patterns of the user's own, on both sides of 1601, where the system's own
// formatting begins: the year stands in its place and form, and what is quoted stays.

#include "platform/short_date.h"

#include <gtest/gtest.h>

#include <array>
#include <cwchar>
#include <vector>

#include "tests/support/raises.h"
#include "tests/support/replaced_import_windows.h"

namespace quorvane::testing {
namespace {

// The short date pattern of the system locale until the end of the scope.
class ShortPattern {
 public:
  explicit ShortPattern(const wchar_t* pattern) {
    EXPECT_NE(::GetLocaleInfoW(LOCALE_SYSTEM_DEFAULT, LOCALE_SSHORTDATE, before_.data(),
                               static_cast<int>(before_.size())),
              0);
    EXPECT_TRUE(::SetLocaleInfoW(LOCALE_SYSTEM_DEFAULT, LOCALE_SSHORTDATE, pattern));
  }
  ShortPattern(const ShortPattern&) = delete;
  ShortPattern& operator=(const ShortPattern&) = delete;
  ~ShortPattern() { ::SetLocaleInfoW(LOCALE_SYSTEM_DEFAULT, LOCALE_SSHORTDATE, before_.data()); }

 private:
  std::array<wchar_t, 100> before_{};
};

struct Case {
  const wchar_t* pattern;
  CalendarDay day;
  const char16_t* written;
};

TEST(WindowsShortDate, PutsTheYearInItsPlace) {
  for (const Case& c :
       {Case{L"yyyy-MM-dd", {1700, 2, 3}, u"1700-02-03"},
        Case{L"yyyy-MM-dd", {1601, 1, 1}, u"1601-01-01"},
        Case{L"yyyy-MM-dd", {1600, 12, 31}, u"1600-12-31"},
        Case{L"yyyy-MM-dd", {100, 1, 1}, u"100-01-01"},
        Case{L"M/d/yyyy", {1205, 7, 9}, u"7/9/1205"}, Case{L"dd.MM.yy", {1205, 7, 9}, u"09.07.05"},
        Case{L"dd.MM.yy", {1700, 7, 9}, u"09.07.00"}, Case{L"d.M.y", {1205, 7, 9}, u"9.7.5"},
        Case{L"d.M.y", {1234, 7, 9}, u"9.7.34"}}) {
    const ShortPattern pattern(c.pattern);
    EXPECT_EQ(systemShortDate().Format(c.day), Text(c.written)) << c.day.year;
  }
}

TEST(WindowsShortDate, LeavesAloneWhatIsQuoted) {
  for (const Case& c : {Case{L"yyyy'y.'M-d", {1500, 2, 3}, u"1500y.2-3"},
                        Case{L"yyyy'y.'M-d", {1700, 2, 3}, u"1700y.2-3"},
                        Case{L"'y'yyyy/M/d", {1500, 2, 3}, u"y1500/2/3"},
                        Case{L"'y'yyyy/M/d", {1700, 2, 3}, u"y1700/2/3"},
                        Case{L"'yy'yy'yy' d M", {1505, 2, 3}, u"yy05yy 3 2"},
                        Case{L"d'.yyyy.'M yyyy", {1505, 2, 3}, u"3.yyyy.2 1505"},
                        Case{L"yyyy'o''clock'd M", {1505, 2, 3}, u"1505o'clock3 2"},
                        Case{L"yyyy'o''clock'd M", {1705, 2, 3}, u"1705o'clock3 2"}}) {
    const ShortPattern pattern(c.pattern);
    EXPECT_EQ(systemShortDate().Format(c.day), Text(c.written)) << c.day.year;
  }
}

std::vector<LCID> asked_locales;
int Give(LPWSTR buffer) {
  if (buffer != nullptr) std::wcscpy(buffer, L"d");
  return 2;
}
int WINAPI NoteAndFormat(LCID locale, DWORD, const SYSTEMTIME*, LPCWSTR, LPWSTR buffer, int) {
  asked_locales.push_back(locale);
  return Give(buffer);
}
int WINAPI NoteAndAnswer(LCID locale, LCTYPE, LPWSTR buffer, int) {
  asked_locales.push_back(locale);
  return Give(buffer);
}

// The system's locale, not the user's: the two may differ.
TEST(WindowsShortDate, IsTheSystemLocales) {
  const HMODULE program = ::GetModuleHandleW(nullptr);
  const ReplacedImport format(program, "GetDateFormatW", NoteAndFormat);
  const ReplacedImport ask(program, "GetLocaleInfoW", NoteAndAnswer);
  ASSERT_TRUE(format.Took());
  ASSERT_TRUE(ask.Took());
  asked_locales.clear();
  EXPECT_EQ(systemShortDate().Format({2024, 1, 31}), Text(u"d"));
  EXPECT_EQ(systemShortDate().Format({1500, 1, 31}), Text(u"d"));
  EXPECT_GE(asked_locales.size(), 6U) << "size and text, of the pattern and of two days";
  for (const LCID locale : asked_locales) EXPECT_EQ(locale, LCID{LOCALE_SYSTEM_DEFAULT});
}

}  // namespace
}  // namespace quorvane::testing
