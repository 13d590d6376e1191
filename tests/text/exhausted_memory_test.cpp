// What each text utility gives when memory runs out at any point in it, the first use of the
// system's locale and code page included: the operations stand here as a caller writes them.

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "runtime/runtime_error.h"
#include "tests/support/failing_memory.h"
#include "tests/support/raises.h"
#include "text/form_encoding.h"
#include "text/string_helpers.h"

namespace quorvane::testing {
namespace {

const Text kLong = Text(std::size_t{300}, u'\u00E9');

TEST(ExhaustedMemory, LeavesTheEmptyTestRight) {
  FailEachAllocation([](auto arm, auto disarm) {
    arm();
    const bool full = IsEmptyText(kLong).IsTrue();
    const bool blank = IsEmptyText(u" ").IsTrue();
    const bool absent = IsEmptyText(Text()).IsTrue();
    disarm();
    EXPECT_FALSE(full);
    EXPECT_FALSE(blank);
    EXPECT_TRUE(absent);
  });
}

TEST(ExhaustedMemory, LeavesTheLastPositionRight) {
  const Text text = kLong + u"x" + kLong;
  FailEachAllocation([&](auto arm, auto disarm) {
    arm();
    const std::int32_t position = LastPosition(text, kLong);
    const std::int32_t none = LastPosition(text, Text());
    disarm();
    EXPECT_EQ(position, 302);
    EXPECT_EQ(none, 0);
  });
}

TEST(ExhaustedMemory, GivesTheTextBackFromReplaceAll) {
  for (const Text& text : {kLong + u"x" + kLong, Text(std::size_t{300}, u'a')}) {
    const Text find = text.Characters().substr(280, 10);
    const Text replacement = u"longer than what it replaces";
    const Text replaced = ReplaceAll(text, find, replacement);
    EXPECT_FALSE(replaced == text);
    const int failures = FailEachAllocation([&](auto arm, auto disarm) {
      Text given = text;
      arm();
      const Text result = ReplaceAll(std::move(given), find, replacement);
      EXPECT_EQ(result, disarm() ? text : replaced);
    });
    EXPECT_GE(failures, 2);
  }
}

// The locale's form is asked for the first time here.
TEST(ExhaustedMemory, IsTheErrorItIsForADate) {
  constexpr CalendarDay kDay{2024, 1, 31};
  std::int32_t first = 0;
  FailEachAllocation([&](auto arm, auto disarm) {
    arm();
    first = NumberRaised([&] { static_cast<void>(systemShortDate().Format(kDay)); });
    disarm();
  });
  EXPECT_EQ(first, 0);
  const Text expected = systemShortDate().Format(kDay);
  FailEachAllocation([&](auto arm, auto disarm) {
    const Text packed = u"ABCDE20240131";
    Text date;
    arm();
    const std::int32_t number = NumberRaised([&] { date = PackedDateToShortDate(packed); });
    const bool failed = disarm();
    EXPECT_TRUE(number == 0 || (failed && number == 7)) << number;
    EXPECT_EQ(date, number == 0 ? expected : Text());
  });
}

TEST(ExhaustedMemory, GivesTheEmptyTextForANumber) {
  FailEachAllocation([](auto arm, auto disarm) {
    arm();
    const Text digits = NumberToBase36(32767);
    const Text none = NumberToBase36(70000);
    disarm();
    EXPECT_EQ(digits, Text(u"PA7"));  // short enough to need none
    EXPECT_EQ(none, Text(u""));
  });
}

TEST(ExhaustedMemory, GivesTheEmptyTextFromFormEncode) {
  const Text body = u"name=x y \u00E9\u4E00 and as much again behind it";
  const int failures = FailEachAllocation([&](auto arm, auto disarm) {
    arm();
    const Text result = FormEncode(body);
    const bool failed = disarm();
    EXPECT_EQ(result.IsEmpty(), failed);
    EXPECT_FALSE(result.IsAbsent());
  });
  EXPECT_GE(failures, 2);
}

}  // namespace
}  // namespace quorvane::testing
