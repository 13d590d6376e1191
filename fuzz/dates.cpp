// The packed date: yyyymmdd behind five characters.
//
// Oracle: the C library's timegm() and gmtime_r(), which carry months and days over by themselves.
// How its three numbers are read is for the target `numbers`.

#include <ctime>

#include "fuzz/target.h"
#include "platform/conversions.h"
#include "runtime/runtime_error.h"
#include "tests/support/fake_short_date.h"
#include "text/string_helpers.h"

namespace quorvane::fuzz::dates {

// The day, or the number of the error.
struct Answer {
  CalendarDay day;
  std::int32_t error = 0;
  friend bool operator==(const Answer&, const Answer&) = default;
};

Answer DayIn(const std::u16string& packed) {
  const std::u16string date = packed.size() > 5 ? packed.substr(5, 8) : u"";
  const auto from = [&date](std::size_t place) {
    return date.size() > place ? date.substr(place) : u"";
  };
  std::tm fields{};
  try {
    const int year = ToInteger16(Text(from(0).substr(0, 4)));
    fields.tm_year = (year < 0 || year > 99 ? year : year < 30 ? 2000 + year : 1900 + year) - 1900;
    fields.tm_mon = ToInteger16(Text(from(4).substr(0, 2))) - 1;
    fields.tm_mday = ToInteger16(Text(from(date.size() < 2 ? 0 : date.size() - 2)));
  } catch (const RuntimeError& error) {
    return {{}, error.number};
  }
  const std::time_t time = ::timegm(&fields);
  ::gmtime_r(&time, &fields);
  if (fields.tm_year < 100 - 1900 || fields.tm_year > 9999 - 1900) return {{}, 5};
  return {{fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday}};
}

void Run(Input input) {
  const std::u16string packed = input.Characters(SIZE_MAX);
  const testing::FakeShortDate form;
  Answer answer;
  try {
    static_cast<void>(PackedDateToShortDate(packed, form));
    Require(form.days.size() == 1, "not one day is written");
    answer.day = form.days[0];
  } catch (const RuntimeError& error) {
    answer.error = error.number;
  }
  Require(answer == DayIn(packed), "another day, or another error");
}

const Registered kTarget("dates", Run);

}  // namespace quorvane::fuzz::dates
