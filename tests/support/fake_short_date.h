#pragma once

#include <string>
#include <vector>

#include "platform/short_date.h"
#include "runtime/runtime_error.h"

namespace quorvane::testing {

/// Remembers the days that it was asked to write, and writes each as "day.month.year".
class FakeShortDate final : public ShortDate {
 public:
  Text Format(const CalendarDay& day) const override {
    days.push_back(day);
    if (refusal != 0) Raise(refusal);
    const std::string written =
        std::to_string(day.day) + '.' + std::to_string(day.month) + '.' + std::to_string(day.year);
    return Text(std::u16string(written.begin(), written.end()));
  }

  mutable std::vector<CalendarDay> days;
  /// The number to raise instead of writing; 0 for none.
  std::int32_t refusal = 0;
};

}  // namespace quorvane::testing
