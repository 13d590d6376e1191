// The short form of dates, as the real call and the stand-in write it. Which form that is depends
// on the system locale, so what is tested holds for any form of day, month and year in digits.
#include "platform/short_date.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace quorvane::testing {
namespace {

std::string Written(const CalendarDay& day) {
  const Text text = systemShortDate().Format(day);
  return {text.Characters().begin(), text.Characters().end()};
}

// The numbers in a text, in their order.
std::multiset<int> NumbersIn(const std::string& text) {
  std::multiset<int> numbers;
  std::string digits;
  for (const char c : text + ' ') {
    if (c >= '0' && c <= '9') {
      digits += c;
    } else if (!digits.empty()) {
      numbers.insert(std::stoi(digits));
      digits.clear();
    }
  }
  return numbers;
}

TEST(ShortDate, HoldsDayMonthAndYear) {
  const auto numbers = NumbersIn(Written({2024, 1, 31}));
  EXPECT_EQ(numbers.size(), 3U);
  EXPECT_TRUE(numbers.contains(31));
  EXPECT_TRUE(numbers.contains(1));
  EXPECT_TRUE(numbers.contains(2024) || numbers.contains(24));
}

TEST(ShortDate, TellsTheDaysOfAYearApart) {
  std::set<std::string> written;
  for (int month = 1; month <= 12; ++month)
    for (int day = 1; day <= 28; ++day) written.insert(Written({2023, month, day}));
  EXPECT_EQ(written.size(), 12U * 28U);
}

// Also the years that the system's own formatting may not know.
TEST(ShortDate, WritesEveryYearFrom100To9999InTheSameForm) {
  for (int year = 100; year <= 9999; ++year) {
    auto expected = NumbersIn(Written({2024, 1, 31}));
    const int shown = expected.contains(2024) ? year : year % 100;
    expected.extract(expected.contains(2024) ? 2024 : 24);
    expected.insert(shown);
    ASSERT_EQ(NumbersIn(Written({year, 1, 31})), expected) << year;
  }
}

TEST(ShortDate, WritesLeapDaysBeforeTheCalendarWasAdopted) {
  for (const int year : {104, 400, 1200, 1580, 1600, 2000, 2024}) {
    const auto numbers = NumbersIn(Written({year, 2, 29}));
    EXPECT_TRUE(numbers.contains(29)) << year;
    EXPECT_TRUE(numbers.contains(2)) << year;
  }
}

}  // namespace
}  // namespace quorvane::testing
