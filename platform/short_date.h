#pragma once

#include <cstdint>

#include "runtime/text.h"

namespace quorvane {

/// A day that exists in the Gregorian calendar, which is taken to hold before its adoption as well:
/// years 100 to 9999, months and days from 1.
struct CalendarDay {
  std::int32_t year = 0;   ///< 100 to 9999
  std::int32_t month = 0;  ///< 1 to 12
  std::int32_t day = 0;    ///< 1 to the month's last
  friend bool operator==(const CalendarDay&, const CalendarDay&) = default;
};

/// The short form in which the system locale writes a date.
class ShortDate {
 public:
  virtual ~ShortDate() = default;

  /// The day in that form. Raises invalid procedure call (5) when the system refuses to write it.
  [[nodiscard]] virtual Text Format(const CalendarDay& day) const = 0;
};

/// The system locale's short date.
[[nodiscard]] const ShortDate& systemShortDate() noexcept;

}  // namespace quorvane
