#include "platform/short_date.h"

#include <algorithm>
#include <string>

#include "platform/windows/os_headers.h"
#include "runtime/runtime_error.h"

namespace quorvane {
namespace {

// GetDateFormatW knows no day before 1601. The Gregorian calendar repeats itself, weekdays
// included, every 400 years, so an earlier day is written as its like in a later year, with the
// year's own digits set into the pattern.
constexpr WORD kFirstYear = 1601;
constexpr WORD kCycle = 400;

SYSTEMTIME SystemTimeOf(const CalendarDay& day) {
  SYSTEMTIME time{};
  time.wYear = static_cast<WORD>(day.year);
  time.wMonth = static_cast<WORD>(day.month);
  time.wDay = static_cast<WORD>(day.day);
  return time;
}

// A null pattern stands for the locale's short form.
Text Write(const SYSTEMTIME& time, const wchar_t* pattern) {
  const DWORD form = pattern == nullptr ? DATE_SHORTDATE : 0;
  const auto write = [&](wchar_t* buffer, int size) {
    return ::GetDateFormatW(LOCALE_SYSTEM_DEFAULT, form, &time, pattern, buffer, size);
  };
  std::wstring written(static_cast<std::size_t>(write(nullptr, 0)), L'\0');
  if (written.empty() || write(written.data(), static_cast<int>(written.size())) == 0) {
    Raise(ErrorNumber::kInvalidProcedureCall);
  }
  written.pop_back();  // the count includes the terminator
  return Text(std::u16string(written.begin(), written.end()));
}

std::wstring ShortPattern() {
  const auto read = [](wchar_t* buffer, int size) {
    return ::GetLocaleInfoW(LOCALE_SYSTEM_DEFAULT, LOCALE_SSHORTDATE, buffer, size);
  };
  std::wstring pattern(static_cast<std::size_t>(read(nullptr, 0)), L'\0');
  if (pattern.empty() || read(pattern.data(), static_cast<int>(pattern.size())) == 0) {
    Raise(ErrorNumber::kInvalidProcedureCall);
  }
  pattern.pop_back();
  return pattern;
}

// What one run of y stands for: the year in full for yyyy and more, its last two digits with and
// without a leading zero for yy and y.
std::wstring YearDigits(std::int32_t year, std::size_t run) {
  if (run > 2) return std::to_wstring(year);
  const std::wstring digits = std::to_wstring(year % 100);
  return run == 2 && digits.size() == 1 ? L"0" + digits : digits;
}

// The pattern with the year written out; what stands between quotes is left alone.
std::wstring WithYear(const std::wstring& pattern, std::int32_t year) {
  std::wstring result;
  bool quoted = false;
  for (std::size_t i = 0; i < pattern.size();) {
    if (pattern[i] == L'\'') quoted = !quoted;
    if (quoted || pattern[i] != L'y') {
      result += pattern[i++];
      continue;
    }
    const std::size_t end = std::min(pattern.find_first_not_of(L'y', i), pattern.size());
    result += L'\'' + YearDigits(year, end - i) + L'\'';
    i = end;
  }
  return result;
}

class SystemShortDate final : public ShortDate {
 public:
  Text Format(const CalendarDay& day) const override {
    SYSTEMTIME time = SystemTimeOf(day);
    if (time.wYear >= kFirstYear) return Write(time, nullptr);
    while (time.wYear < kFirstYear) time.wYear = static_cast<WORD>(time.wYear + kCycle);
    return Write(time, WithYear(ShortPattern(), day.year).c_str());
  }
};

}  // namespace

const ShortDate& systemShortDate() noexcept {
  static const SystemShortDate kInstance;
  return kInstance;
}

}  // namespace quorvane
