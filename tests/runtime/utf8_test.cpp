// Proves that UTF-8 at the edges of the programs is strict in what it takes and loses nothing that
// is well formed.

#include "runtime/utf8.h"

#include <gtest/gtest.h>

#include "tests/support/raises.h"
#include "tests/support/thinned.h"

namespace quorvane {
namespace {

using testing::kOneIn;

TEST(Utf8, RoundTripsEveryCodePoint) {
  for (char32_t c = 0; c <= 0x10FFFF; c += kOneIn) {
    if (c >= 0xD800 && c <= 0xDFFF) continue;
    std::u16string units;
    if (c < 0x10000) {
      units += static_cast<char16_t>(c);
    } else {
      units += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
      units += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
    }
    ASSERT_EQ(FromUtf8(ToUtf8(Text(units))).Characters(), units) << static_cast<std::uint32_t>(c);
  }
}

TEST(Utf8, WritesThePublishedForms) {
  EXPECT_EQ(ToUtf8(u"A\u00E9\u20AC\U0001D11E"), "A\xC3\xA9\xE2\x82\xAC\xF0\x9D\x84\x9E");
  EXPECT_EQ(ToUtf8(Text(1, u'\0')), std::string(1, '\0'));
}

TEST(Utf8, ReplacesMalformedSequences) {
  EXPECT_EQ(FromUtf8("\x80"), Text(u"\uFFFD"));
  EXPECT_EQ(FromUtf8("\xC0\xAF"), Text(u"\uFFFD\uFFFD"));
  EXPECT_EQ(FromUtf8("\xC3"), Text(u"\uFFFD"));
  EXPECT_EQ(FromUtf8("\xC3("), Text(u"\uFFFD("));
  EXPECT_EQ(FromUtf8("\xE2\x82"), Text(u"\uFFFD"));
  EXPECT_EQ(FromUtf8("\xE0\x80\x80"), Text(u"\uFFFD\uFFFD\uFFFD"));
  EXPECT_EQ(FromUtf8("\xED\xA0\x80"), Text(u"\uFFFD\uFFFD\uFFFD"));
  EXPECT_EQ(FromUtf8("\xF0\x80\x80\x80"), Text(u"\uFFFD\uFFFD\uFFFD\uFFFD"));
  EXPECT_EQ(FromUtf8("\xF4\x90\x80\x80"), Text(u"\uFFFD\uFFFD\uFFFD\uFFFD"));
  EXPECT_EQ(FromUtf8("\xF5"), Text(u"\uFFFD"));
}

TEST(Utf8, ReplacesSingleSurrogates) {
  EXPECT_EQ(ToUtf8(Text(1, char16_t{0xD800})), "\xEF\xBF\xBD");
  EXPECT_EQ(ToUtf8(Text(1, char16_t{0xDC00})), "\xEF\xBF\xBD");
  EXPECT_EQ(ToUtf8(Text(std::u16string{char16_t{0xD800}, u'a'})),
            "\xEF\xBF\xBD"
            "a");
}

// RFC 3629, section 4, as a list: which second byte a sequence may go on with.
bool MayFollow(int lead, int second) {
  if (lead == 0xE0) return second >= 0xA0 && second <= 0xBF;
  if (lead == 0xED) return second >= 0x80 && second <= 0x9F;
  if (lead == 0xF0) return second >= 0x90 && second <= 0xBF;
  if (lead == 0xF4) return second >= 0x80 && second <= 0x8F;
  return lead >= 0xC2 && lead <= 0xF4 && second >= 0x80 && second <= 0xBF;
}

TEST(Utf8, TakesEveryPairOfBytesForWhatItIs) {
  const auto alone = [](int byte) {
    return std::u16string(1, byte < 0x80 ? static_cast<char16_t>(byte) : u'\uFFFD');
  };
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      std::u16string expected = alone(first) + alone(second);
      if (MayFollow(first, second)) expected = u"\uFFFD";  // begun, and cut off
      if (MayFollow(first, second) && first < 0xE0)
        expected = std::u16string(1, static_cast<char16_t>((first & 0x1F) << 6 | (second & 0x3F)));
      const std::string bytes{static_cast<char>(first), static_cast<char>(second)};
      ASSERT_EQ(FromUtf8(bytes), Text(expected)) << first << ' ' << second;
    }
  }
}

}  // namespace
}  // namespace quorvane
