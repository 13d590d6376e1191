// Packed dates: which characters are read, numeric text, and the calendar's carry over its whole
// range, against a calendar that counts day by day.
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <string>

#include "tests/support/fake_short_date.h"
#include "tests/support/raises.h"
#include "tests/support/thinned.h"
#include "text/string_helpers.h"

namespace quorvane::testing {
namespace {

Text Packed(const std::string& date) {
  return Text(u"ABCDE" + std::u16string(date.begin(), date.end()));
}

CalendarDay DayOf(const Text& packed) {
  const FakeShortDate form;
  static_cast<void>(PackedDateToShortDate(packed, form));
  return form.days.at(0);
}

CalendarDay DayOf(const std::string& date) { return DayOf(Packed(date)); }

std::int32_t ErrorOfDate(const std::string& date) {
  return ErrorNumberOf([&] { static_cast<void>(DayOf(date)); });
}

// Prints a test's name for the day it fails at.
std::string Shown(const CalendarDay& day) {
  return std::to_string(day.year) + "-" + std::to_string(day.month) + "-" + std::to_string(day.day);
}

std::int32_t DaysOfMonth(std::int32_t year, std::int32_t month) {
  constexpr std::array<std::int32_t, 12> kDays{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return kDays.at(static_cast<std::size_t>(month - 1)) + (month == 2 && leap ? 1 : 0);
}

void GoToNextMonth(CalendarDay& day, std::int32_t step) {
  day.month += step;
  if (day.month < 1 || day.month > 12) {
    day.year += step;
    day.month -= 12 * step;
  }
}

// Month by month, day by day.
CalendarDay CarriedSlowly(std::int32_t year, std::int32_t month, std::int32_t day) {
  CalendarDay carried{year, 1, 1};
  for (; month > 1; --month) GoToNextMonth(carried, 1);
  for (; month < 1; ++month) GoToNextMonth(carried, -1);
  for (; day > 1; --day) {
    if (++carried.day > DaysOfMonth(carried.year, carried.month)) {
      carried.day = 1;
      GoToNextMonth(carried, 1);
    }
  }
  for (; day < 1; ++day) {
    if (--carried.day < 1) {
      GoToNextMonth(carried, -1);
      carried.day = DaysOfMonth(carried.year, carried.month);
    }
  }
  return carried;
}

std::string TwoCharacters(int value) {
  std::array<char, 8> buffer{};
  std::snprintf(buffer.data(), buffer.size(), value < 0 ? "%d" : "%02d", value);
  return buffer.data();
}

std::string FourDigits(int value) {
  std::array<char, 16> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%04d", value);
  return buffer.data();
}

TEST(PackedDateToShortDate, ReturnsWhatTheSystemWrites) {
  const FakeShortDate form;
  EXPECT_EQ(PackedDateToShortDate(u"ABCDE20240131", form), Text(u"31.1.2024"));
  ASSERT_EQ(form.days.size(), 1U);
  EXPECT_EQ(form.days[0], (CalendarDay{2024, 1, 31}));
}

TEST(PackedDateToShortDate, SkipsFiveCharactersUnread) {
  EXPECT_EQ(DayOf(Text(u"     20240131")), (CalendarDay{2024, 1, 31}));
  EXPECT_EQ(DayOf(Text(std::u16string(u"\0\xD800\u4E00-1", 5) + u"20240131")),
            (CalendarDay{2024, 1, 31}));
}

TEST(PackedDateToShortDate, IgnoresWhatFollowsPosition13) {
  EXPECT_EQ(DayOf("20240131235959"), (CalendarDay{2024, 1, 31}));
  EXPECT_EQ(DayOf("20240131 and more"), (CalendarDay{2024, 1, 31}));
}

TEST(PackedDateToShortDate, SharesACharacterBetweenMonthAndDay) {
  EXPECT_EQ(DayOf("2024123"), (CalendarDay{2024, 12, 23}));
  EXPECT_EQ(DayOf("2024052"), CarriedSlowly(2024, 5, 52));
}

TEST(PackedDateToShortDate, ReadsMonthAndDayFromTheSameCharactersOfAShorterPiece) {
  EXPECT_EQ(DayOf("202412"), (CalendarDay{2024, 12, 12}));
  EXPECT_EQ(DayOf("20241"), CarriedSlowly(2024, 1, 41));
}

TEST(PackedDateToShortDate, RaisesTypeMismatchForMissingPieces) {
  EXPECT_EQ(ErrorNumberOf([] { static_cast<void>(PackedDateToShortDate(Text())); }), 13);
  EXPECT_EQ(ErrorNumberOf([] { static_cast<void>(PackedDateToShortDate(u"")); }), 13);
  EXPECT_EQ(ErrorNumberOf([] { static_cast<void>(PackedDateToShortDate(u"ABCDE")); }), 13);
  EXPECT_EQ(ErrorOfDate("2024"), 13);
}

TEST(PackedDateToShortDate, RaisesTypeMismatchForWhatIsNotNumeric) {
  EXPECT_EQ(ErrorOfDate("x0240131"), 13);
  EXPECT_EQ(ErrorOfDate("2024x131"), 13);
  EXPECT_EQ(ErrorOfDate("202401x1"), 13);
  EXPECT_EQ(ErrorOfDate("2024  31"), 13);
}

TEST(PackedDateToShortDate, FollowsTheRulesForNumericText) {
  EXPECT_EQ(DayOf("2E3 0131"), (CalendarDay{2000, 1, 31}));
  EXPECT_EQ(DayOf("+999 7 9"), (CalendarDay{999, 7, 9}));
  EXPECT_EQ(DayOf("1,999 7$9"), (CalendarDay{199, 9, 7}));
  EXPECT_EQ(ErrorOfDate("2024&7&5"), 13);
  EXPECT_EQ(ErrorOfDate("224-0131"), 5);  // the year -224
  EXPECT_EQ(DayOf("202419.5"), CarriedSlowly(2024, 19, 0));
}

TEST(PackedDateToShortDate, RaisesOverflowForAYearBeyondSixteenBits) {
  EXPECT_EQ(ErrorOfDate("9E9 0131"), 6);
  EXPECT_EQ(ErrorOfDate("4E4 0131"), 6);
  // The pieces are read in order: the year's error comes before the month's.
  EXPECT_EQ(ErrorOfDate("9E9 x131"), 6);
}

TEST(PackedDateToShortDate, CarriesMonthsAndDays) {
  EXPECT_EQ(DayOf("20231301"), (CalendarDay{2024, 1, 1}));
  EXPECT_EQ(DayOf("20240001"), (CalendarDay{2023, 12, 1}));
  EXPECT_EQ(DayOf("20240300"), (CalendarDay{2024, 2, 29}));
  EXPECT_EQ(DayOf("20230229"), (CalendarDay{2023, 3, 1}));
  EXPECT_EQ(DayOf("20240100"), (CalendarDay{2023, 12, 31}));
  EXPECT_EQ(DayOf("2024-1-1"), (CalendarDay{2023, 10, 30}));
}

TEST(PackedDateToShortDate, TakesYearsOfTwoDigitsForThoseFrom1930To2029) {
  EXPECT_EQ(DayOf("00000131"), (CalendarDay{2000, 1, 31}));
  EXPECT_EQ(DayOf("00290131"), (CalendarDay{2029, 1, 31}));
  EXPECT_EQ(DayOf("00300131"), (CalendarDay{1930, 1, 31}));
  EXPECT_EQ(DayOf("00990131"), (CalendarDay{1999, 1, 31}));
  EXPECT_EQ(DayOf("00991301"), (CalendarDay{2000, 1, 1}));
}

TEST(PackedDateToShortDate, RaisesInvalidProcedureCallOutsideTheYears100To9999) {
  EXPECT_EQ(DayOf("01000101"), (CalendarDay{100, 1, 1}));
  EXPECT_EQ(DayOf("99991231"), (CalendarDay{9999, 12, 31}));
  EXPECT_EQ(ErrorOfDate("01000100"), 5);
  EXPECT_EQ(ErrorOfDate("99991232"), 5);
  EXPECT_EQ(ErrorOfDate("99991301"), 5);
  EXPECT_EQ(ErrorOfDate("-0010131"), 5);
  EXPECT_EQ(ErrorOfDate("-9990131"), 5);
  EXPECT_EQ(ErrorOfDate("3E4 0131"), 5);
  // A date that only its parts leave, and that carries back into the calendar, is one.
  EXPECT_EQ(DayOf("1E4 0031"), (CalendarDay{9999, 12, 31}));
}

TEST(PackedDateToShortDate, HandsOnTheRefusalOfTheSystem) {
  FakeShortDate form;
  form.refusal = 5;
  EXPECT_EQ(
      ErrorNumberOf([&] { static_cast<void>(PackedDateToShortDate(u"ABCDE20240131", form)); }), 5);
}

// Keeps the day that it was asked to write: for days by the million.
class DayKeeper final : public ShortDate {
 public:
  Text Format(const CalendarDay& asked) const override {
    day = asked;
    return {};
  }
  mutable CalendarDay day;
};

void WriteDigits(std::u16string& text, std::size_t behind_last, std::int32_t count,
                 std::int32_t value) {
  for (; count > 0; --count, value /= 10)
    text[--behind_last] = static_cast<char16_t>(u'0' + value % 10);
}

TEST(PackedDateToShortDate, AgreesWithACalendarCountedDayByDay) {
  const DayKeeper form;
  std::u16string packed = u"ABCDEyyyymmdd";
  std::int32_t count = 0;
  for (CalendarDay day{100, 1, 1}; day.year <= 9999; ++count) {
    if (count % kOneIn == 0) {
      WriteDigits(packed, 9, 4, day.year);
      WriteDigits(packed, 11, 2, day.month);
      WriteDigits(packed, 13, 2, day.day);
      static_cast<void>(PackedDateToShortDate(Text(packed), form));
      ASSERT_EQ(form.day, day) << Shown(day);
    }
    if (++day.day > DaysOfMonth(day.year, day.month)) {
      day.day = 1;
      GoToNextMonth(day, 1);
    }
  }
}

TEST(PackedDateToShortDate, CarriesEveryMonthAndDayThatTwoCharactersHold) {
  for (const int year : {101, 1582, 1600, 1899, 1900, 1999, 2000, 2023, 2024, 9990}) {
    for (int month = -9; month <= 99; ++month) {
      for (int day = -9; day <= 99; ++day) {
        const std::string date = FourDigits(year) + TwoCharacters(month) + TwoCharacters(day);
        const CalendarDay expected = CarriedSlowly(year, month, day);
        ASSERT_EQ(DayOf(date), expected) << date << " " << Shown(expected);
      }
    }
  }
}

}  // namespace
}  // namespace quorvane::testing
