// The system's default code page, taken to be Western European (1252), as it is in the stand-in, in
// Wine and on most test machines.

#include <gtest/gtest.h>

#include <string>

#include "platform/system_code_page.h"

namespace quorvane {
namespace {

std::string ToBytes(std::u16string_view characters) { return systemCodePage().ToBytes(characters); }
std::u16string FromBytes(std::string_view bytes) { return systemCodePage().FromBytes(bytes); }

TEST(SystemCodePage, KeepsAscii) {
  std::string bytes;
  std::u16string characters;
  for (char c = 0; c < 127; ++c) {
    bytes += c;
    characters += static_cast<char16_t>(c);
  }
  EXPECT_EQ(ToBytes(characters), bytes);
  EXPECT_EQ(FromBytes(bytes), characters);
}

TEST(SystemCodePage, HoldsWesternEuropeanCharacters) {
  EXPECT_EQ(ToBytes(u"é€Œ™ÿ"), "\xE9\x80\x8C\x99\xFF");
  EXPECT_EQ(FromBytes("\xE9\x80\x8C\x99\xFF"), u"é€Œ™ÿ");
}

TEST(SystemCodePage, EveryByteComesBackAsItWas) {
  for (int value = 0; value < 256; ++value) {
    const std::string byte(1, static_cast<char>(value));
    EXPECT_EQ(FromBytes(byte).size(), 1U);
    EXPECT_EQ(ToBytes(FromBytes(byte)), byte) << value;
  }
}

TEST(SystemCodePage, AnUnusedByteStandsForTheControlOfItsValue) {
  EXPECT_EQ(FromBytes("\x81\x8D\x8F\x90\x9D"), u"\u0081\u008D\u008F\u0090\u009D");
  EXPECT_EQ(ToBytes(u"\u0081\u008D\u008F\u0090\u009D"), "\x81\x8D\x8F\x90\x9D");
}

TEST(SystemCodePage, WritesAQuestionMarkForWhatItLacks) {
  EXPECT_EQ(ToBytes(u"a中b"), "a?b");
  EXPECT_EQ(ToBytes(u"\u0416"), "?");
  EXPECT_EQ(ToBytes(u"\U0001F600"), "??");
  EXPECT_EQ(ToBytes(u"\xD83D"), "?");
}

TEST(SystemCodePage, LetsZerosPass) {
  using namespace std::string_literals;
  EXPECT_EQ(ToBytes(u"a\0b\0"s), "a\0b\0"s);
  EXPECT_EQ(FromBytes("a\0b\0"s), u"a\0b\0"s);
}

TEST(SystemCodePage, GivesNothingForNothing) {
  EXPECT_EQ(ToBytes(u""), "");
  EXPECT_EQ(FromBytes(""), u"");
}

TEST(SystemCodePage, GivesEveryCharacterTheCodeOfItsBytes) {
  for (unsigned unit = 0; unit < 0x10000; ++unit) {
    const auto character = static_cast<char16_t>(unit);
    const std::string bytes = ToBytes({&character, 1});
    ASSERT_EQ(bytes.size(), 1U) << unit;
    ASSERT_EQ(systemCodePage().CodeOf(character), static_cast<unsigned char>(bytes[0])) << unit;
  }
}

}  // namespace
}  // namespace quorvane
