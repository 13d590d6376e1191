// Numbers in base 36: the whole range and what lies outside it, against the library's own digits.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <string>

#include "tests/support/raises.h"
#include "text/string_helpers.h"

namespace quorvane::testing {
namespace {

Text DigitsOfTheLibrary(std::int32_t value) {
  std::array<char, 16> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, 36).ptr;
  std::u16string digits(buffer.data(), end);
  std::ranges::transform(digits, digits.begin(), [](char16_t c) {
    return c >= u'a' ? static_cast<char16_t>(c - u'a' + u'A') : c;
  });
  return Text(digits);
}

TEST(NumberToBase36, WritesTheMostSignificantDigitFirst) {
  EXPECT_EQ(NumberToBase36(1), Text(u"1"));
  EXPECT_EQ(NumberToBase36(35), Text(u"Z"));
  EXPECT_EQ(NumberToBase36(36), Text(u"10"));
  EXPECT_EQ(NumberToBase36(1295), Text(u"ZZ"));
  EXPECT_EQ(NumberToBase36(1296), Text(u"100"));
  EXPECT_EQ(NumberToBase36(32767), Text(u"PA7"));
}

TEST(NumberToBase36, GivesTheEmptyTextOutsideItsRange) {
  for (const std::int32_t value :
       {0, -1, -32768, -32769, 32768, 65536, 65537, std::numeric_limits<std::int32_t>::max(),
        std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_EQ(NumberToBase36(value), Text(u"")) << value;
  }
}

TEST(NumberToBase36, AgreesWithTheLibraryOverTheWholeRange) {
  for (std::int32_t value = -40000; value <= 40000; ++value) {
    const bool in_range = value >= 1 && value <= 32767;
    ASSERT_EQ(NumberToBase36(value), in_range ? DigitsOfTheLibrary(value) : Text(u"")) << value;
  }
}

TEST(NumberToBase36, GivesAPresentTextAlsoOutsideItsRange) {
  for (const std::int32_t value : {0, -1, 32768, 2147483647}) {
    EXPECT_FALSE(NumberToBase36(value).IsAbsent()) << value;
  }
}

}  // namespace
}  // namespace quorvane::testing
