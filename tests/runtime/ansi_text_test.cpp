// Proves the one rule for texts around an 8-bit call: out just before, back right after, absent as
// a null pointer.

#include "runtime/ansi_text.h"

#include <gtest/gtest.h>

#include <cstring>

#include "tests/support/double_byte_page.h"
#include "tests/support/raises.h"

namespace quorvane {
namespace {

// One byte a character, and '?' for what is above 255.
class Latin1 final : public CodePage {
 public:
  std::string ToBytes(std::u16string_view characters) const override {
    std::string bytes;
    for (const char16_t c : characters) bytes += c < 0x100 ? static_cast<char>(c) : '?';
    return bytes;
  }
  std::u16string FromBytes(std::string_view bytes) const override {
    std::u16string characters;
    for (const char c : bytes) characters += static_cast<unsigned char>(c);
    return characters;
  }
};

const Latin1 kLatin1;

TEST(CallWithAnsi, HandsOutBytesWithATerminatorAndReturnsTheResult) {
  Text name = u"caf\u00E9";
  const int result = CallWithAnsi(
      kLatin1, [](char* bytes) { return std::strcmp(bytes, "caf\xE9"); }, name);
  EXPECT_EQ(result, 0);
  EXPECT_EQ(name, Text(u"caf\u00E9"));
}

TEST(CallWithAnsi, GivesANullPointerForAnAbsentTextAndKeepsItAbsent) {
  Text absent;
  Text empty = u"";
  CallWithAnsi(
      kLatin1,
      [](const char* first, const char* second) {
        EXPECT_EQ(first, nullptr);
        EXPECT_NE(second, nullptr);
        EXPECT_EQ(*second, '\0');
        return 0;
      },
      absent, empty);
  EXPECT_TRUE(absent.IsAbsent());
  EXPECT_FALSE(empty.IsAbsent());
}

TEST(CallWithAnsi, ChangesACharacterThatTheCodePageCannotHold) {
  Text name = u"a\u4E00b";
  CallWithAnsi(
      kLatin1, [](char*) { return 0; }, name);
  EXPECT_EQ(name, Text(u"a?b"));
}

TEST(CallWithAnsi, TakesBackTheWholeBufferZerosIncluded) {
  Text buffer(5, u' ');
  CallWithAnsi(
      kLatin1,
      [](char* bytes) {
        std::memcpy(bytes, "AB", 3);
        return 0;
      },
      buffer);
  EXPECT_EQ(buffer.Characters(), (std::u16string{u'A', u'B', u'\0', u' ', u' '}));
}

TEST(CallWithAnsi, CountsBytesForTheCallAndCharactersForTheWrapper) {
  const testing::DoubleBytePage page;
  Text text = u"\u3041\u3042";
  CallWithAnsi(
      page,
      [](const char* bytes) {
        EXPECT_EQ(std::strlen(bytes), 4U);
        return 0;
      },
      text);
  EXPECT_EQ(text.Length(), 2);
}

TEST(CallWithAnsi, KeepsTheOrderOfItsTexts) {
  Text first = u"1";
  Text second = u"2";
  CallWithAnsi(
      kLatin1,
      [](char* a, char* b) {
        EXPECT_STREQ(a, "1");
        EXPECT_STREQ(b, "2");
        *a = 'x';
        *b = 'y';
        return 0;
      },
      first, second);
  EXPECT_EQ(first, Text(u"x"));
  EXPECT_EQ(second, Text(u"y"));
}

TEST(CallWithAnsi, LetsTheCallWriteOverTheCopysOwnZeroAndLeavesThatOut) {
  for (const std::size_t size :
       {std::size_t{5}, std::size_t{263}, std::size_t{264}, std::size_t{5000}}) {
    Text buffer(size, u'\0');
    CallWithAnsi(
        kLatin1, [&](char* bytes) { std::memset(bytes, 'x', size + 1); }, buffer);
    EXPECT_EQ(buffer, Text(size, u'x')) << size;
  }
}

TEST(CallWithAnsi, TakesBackOtherCharactersThanAscii) {
  Text buffer(300, u' ');
  CallWithAnsi(
      kLatin1, [](char* bytes) { bytes[299] = '\xE9'; }, buffer);
  EXPECT_EQ(buffer, Text(std::u16string(299, u' ') + u"\u00E9"));
}

TEST(CallWithAnsi, TakesBackAsManyCharactersAsTheCallMadeOfTheBytes) {
  const testing::DoubleBytePage page;
  Text text = u"\u3042\u3044";  // four bytes
  CallWithAnsi(
      page, [](char* bytes) { std::memcpy(bytes, "abcd", 4); }, text);
  EXPECT_EQ(text, Text(u"abcd"));
}

// A page that cannot convert anything.
class NoPage final : public CodePage {
 public:
  std::string ToBytes(std::u16string_view) const override { Raise(ErrorNumber::kInternalError); }
  std::u16string FromBytes(std::string_view) const override { Raise(ErrorNumber::kInternalError); }
};

TEST(CallWithAnsi, AsksThePageForNothingThatIsAscii) {
  Text text(300, u'\x7F');
  CallWithAnsi(
      NoPage(), [](char* bytes) { bytes[0] = 'b'; }, text);
  EXPECT_EQ(text, Text(u"b") + Text(299, u'\x7F'));
}

// One byte for every two characters above 127.
class HalfByte final : public CodePage {
 public:
  std::string ToBytes(std::u16string_view characters) const override {
    return std::string(characters.size() / 2, '\x80');
  }
  std::u16string FromBytes(std::string_view bytes) const override {
    return std::u16string(bytes.size() * 2, u'\u3042');
  }
};

TEST(CallWithAnsi, FillsACopyUpThatHasFewerBytesThanCharacters) {
  const HalfByte page;
  Text text(4, u'\u3042');
  CallWithAnsi(
      page,
      [](const char* bytes) {
        EXPECT_EQ(std::string_view(bytes, 5), std::string_view("\x80\x80\0\0\0", 5));
      },
      text);
  EXPECT_EQ(text, Text(4, u'\u3042')) << "the filling does not come back";
}

TEST(CallWithAnsi, ReplacesNothingWhenTheCallRaises) {
  Text text = u"a\u4E00b";
  EXPECT_EQ(testing::ErrorNumberOf([&] {
              CallWithAnsi(
                  kLatin1, [](char*) { Raise(ErrorNumber::kLibraryNotFound); }, text);
            }),
            ErrorNumber::kLibraryNotFound);
  EXPECT_EQ(text, Text(u"a\u4E00b"));
}

// Two characters to a byte.
class HalvingPage final : public CodePage {
 public:
  std::string ToBytes(std::u16string_view characters) const override {
    return std::string((characters.size() + 1) / 2, '\xAA');
  }
  std::u16string FromBytes(std::string_view bytes) const override {
    return std::u16string(bytes.size() * 2, u'\u00AA');
  }
};

TEST(CallWithAnsi, FillsUpWithZerosWhereThePageMakesFewerBytesThanCharacters) {
  const HalvingPage page;
  for (const std::size_t length : {10U, 600U}) {
    Text text(length, u'\u00AA');
    CallWithAnsi(
        page,
        [&](const char* bytes) {
          EXPECT_EQ(std::string(bytes, length + 1),
                    std::string(length / 2, '\xAA') + std::string(length / 2 + 1, '\0'));
          return 0;
        },
        text);
    EXPECT_EQ(text, Text(length, u'\u00AA'));
  }
}

}  // namespace
}  // namespace quorvane
