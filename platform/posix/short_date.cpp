#include "platform/short_date.h"

#include <ctime>
#include <iomanip>
#include <sstream>

#include "platform/posix/system_locale.h"

namespace quorvane {
namespace {

class SystemShortDate final : public ShortDate {
 public:
  Text Format(const CalendarDay& day) const override { return ShortDateIn(systemLocale(), day); }
};

}  // namespace

Text ShortDateIn(const std::locale& locale, const CalendarDay& day) {
  std::tm fields{};
  fields.tm_year = day.year - 1900;
  fields.tm_mon = day.month - 1;
  fields.tm_mday = day.day;
  ::timegm(&fields);  // adds the other fields that a locale's form may ask for
  std::wostringstream stream;
  stream.imbue(locale);
  stream.exceptions(std::ios_base::badbit);  // or it would keep exhausted memory to itself
  stream << std::put_time(&fields, L"%x");
  const std::wstring written = stream.str();
  return Text(std::u16string(written.begin(), written.end()));
}

const ShortDate& systemShortDate() noexcept {
  static const SystemShortDate kInstance;
  return kInstance;
}

}  // namespace quorvane
