// Proves form encoding over the stand-in's code pages: the single-byte page 1252 and the two-byte
// page 932.

#include <gtest/gtest.h>
#include <iconv.h>

#include <array>
#include <cstdio>
#include <string>

#include "platform/posix/system_text.h"
#include "tests/support/raises.h"
#include "tests/support/table_1252.h"
#include "text/form_encoding.h"

namespace quorvane {
namespace {

using testing::Table1252;

TEST(FormEncodeOverStandIn, FollowsThePublishedTableOf1252) {
  const auto page = MakeCodePage(1252);
  const Table1252 table;
  for (std::uint32_t c = 0; c <= 0xFFFF; ++c) {
    const Text character(1, static_cast<char16_t>(c));
    ASSERT_EQ(FormEncode(character, *page), FormEncode(character, table)) << c;
  }
}

TEST(FormEncodeOverStandIn, WritesCharactersOf932InOneOrTwoBytes) {
  const auto page = MakeCodePage(932);
  EXPECT_EQ(FormEncode(u"name=\u65E5\u672C\u8A9E x", *page), u"name=%93FA%967B%8CEA+x");
  EXPECT_EQ(FormEncode(u"\uFF71", *page), u"%B1");    // half-width, one byte
  EXPECT_EQ(FormEncode(u"\u00E9", *page), u"%3F");    // not in the page
  EXPECT_EQ(FormEncode(u"\u8868", *page), u"%955C");  // trail byte 5C is no backslash
  EXPECT_EQ(FormEncode(u"\\", *page), u"%5C");
}

// The pair of bytes by the rows and cells of JIS X 0208, as Shift JIS folds them, and the character
// from the system's EUC-JP, which orders the same set in another way.
TEST(FormEncodeOverStandIn, FoldsTheKanjiRowsOf932AsShiftJisDoes) {
  const auto page = MakeCodePage(932);
  iconv_t euc = ::iconv_open("UTF-16LE", "EUC-JP");
  int compared = 0;
  for (unsigned row = 16; row <= 84; ++row) {
    for (unsigned cell = 1; cell <= 94; ++cell) {
      std::array<char, 2> source{static_cast<char>(row + 0xA0), static_cast<char>(cell + 0xA0)};
      char16_t character = 0;
      char* from = source.data();
      char* to = reinterpret_cast<char*>(&character);
      std::size_t from_left = 2;
      std::size_t to_left = 2;
      ::iconv(euc, nullptr, nullptr, nullptr, nullptr);
      if (::iconv(euc, &from, &from_left, &to, &to_left) != 0) continue;
      const unsigned lead = (row - 1) / 2 + (row <= 62 ? 0x81 : 0xC1);
      const unsigned trail = row % 2 == 0 ? cell + 0x9E : cell + (cell <= 63 ? 0x3F : 0x40);
      std::array<char, 16> digits{};
      std::snprintf(digits.data(), digits.size(), "%%%02X%02X", lead, trail);
      const std::string piece = digits.data();
      ASSERT_EQ(FormEncode(Text(1, character), *page),
                Text(std::u16string(piece.begin(), piece.end())))
          << row << '/' << cell;
      ++compared;
    }
  }
  ::iconv_close(euc);
  EXPECT_EQ(compared, 6355);  // the kanji of levels 1 and 2
}

}  // namespace
}  // namespace quorvane
