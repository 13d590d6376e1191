#include "platform/short_date.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "platform/windows/os_headers.h"
#include "runtime/runtime_error.h"

namespace quorvane {
namespace {

// GetDateFormatW knows no day before 1601. The Gregorian calendar repeats itself, weekdays
// included, every 400 years, so an earlier day is written as the same day of a later cycle, with
// the year's own digits put into the pattern.
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
  // By way of std::to_string: to_wstring prints through a formatter as large as this whole room.
  const std::string digits = std::to_string(run > 2 ? year : year % 100);
  std::wstring wide(run == 2 && digits.size() == 1 ? 1 : 0, L'0');
  return wide.append(digits.begin(), digits.end());
}

// A pattern while it is written. What is put in as it stands goes between quotes; texts that touch
// share theirs, since two quotes in a row would be an apostrophe.
class Pattern {
 public:
  void PutLiteral(std::wstring_view text) {
    SetQuoted(true);
    for (const wchar_t c : text) written_.append(c == L'\'' ? 2 : 1, c);
  }
  void PutField(wchar_t letter) {
    SetQuoted(false);
    written_ += letter;
  }
  [[nodiscard]] std::wstring Take() {
    SetQuoted(false);
    return std::move(written_);
  }

 private:
  void SetQuoted(bool quoted) {
    if (quoted != quoted_) written_ += L'\'';
    quoted_ = quoted;
  }

  std::wstring written_;
  bool quoted_ = false;
};

// The pattern with the year written out; what stands between quotes is left alone.
std::wstring WithYear(std::wstring_view pattern, std::int32_t year) {
  Pattern result;
  bool quoted = false;
  while (!pattern.empty()) {
    std::size_t taken = 1;
    if (quoted && pattern.starts_with(L"''")) {
      taken = 2;
      result.PutLiteral(L"'");
    } else if (pattern.front() == L'\'') {
      quoted = !quoted;
    } else if (quoted) {
      result.PutLiteral(pattern.substr(0, 1));
    } else if (pattern.front() == L'y') {
      taken = std::min(pattern.find_first_not_of(L'y'), pattern.size());
      result.PutLiteral(YearDigits(year, taken));
    } else {
      result.PutField(pattern.front());
    }
    pattern.remove_prefix(taken);
  }
  return result.Take();
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
