#include <chrono>
#include <ctime>
#include <iomanip>
#include <sstream>
#include <string>

#include "platform/posix/system_locale.h"

namespace quorvane {
namespace {

// All the fields that a locale's form may ask for.
std::tm BrokenDown(const CalendarDay& day) {
  namespace chrono = std::chrono;
  const auto unsigned_of = [](std::int32_t value) { return static_cast<unsigned>(value); };
  const chrono::sys_days days = chrono::year(day.year) / chrono::month(unsigned_of(day.month)) /
                                chrono::day(unsigned_of(day.day));
  std::tm fields{};
  fields.tm_year = day.year - 1900;
  fields.tm_mon = day.month - 1;
  fields.tm_mday = day.day;
  fields.tm_wday = static_cast<int>(chrono::weekday(days).c_encoding());
  fields.tm_yday =
      static_cast<int>((days - chrono::sys_days(chrono::year(day.year) / 1 / 1)).count());
  return fields;
}

class LocaleShortDate final : public ShortDate {
 public:
  explicit LocaleShortDate(const std::locale& locale) : locale_(locale) {}

  Text Format(const CalendarDay& day) const override {
    const std::tm fields = BrokenDown(day);
    std::wostringstream stream;
    stream.imbue(locale_);
    stream.exceptions(std::ios_base::badbit);  // or it would keep exhausted memory to itself
    stream << std::put_time(&fields, L"%x");
    const std::wstring written = stream.str();
    return Text(std::u16string(written.begin(), written.end()));
  }

 private:
  std::locale locale_;
};

}  // namespace

std::unique_ptr<ShortDate> MakeShortDate(const std::locale& locale) {
  return std::make_unique<LocaleShortDate>(locale);
}

}  // namespace quorvane
