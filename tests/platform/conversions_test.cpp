// Proves what each kind of value becomes in each other kind, and where a conversion raises 6 or 13:
// by the system's conversions and by the stand-in alike.

#include "platform/conversions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>

#include "tests/support/raises.h"

namespace quorvane {
namespace {

using testing::ErrorNumberOf;

struct TextCase {
  const char16_t* text;
  std::int32_t value;
};

TEST(ToInteger32, TakesWhatTheSystemTakesForANumber) {
  for (const TextCase& c : {TextCase{u"0", 0},
                            {u"42", 42},
                            {u"  42  ", 42},
                            {u"\t42\t", 42},
                            {u"42\r\n", 42},
                            {u"\u00A042\u00A0", 42},
                            {u"\u300042\u2009", 42},
                            {u"+7", 7},
                            {u"-7", -7},
                            {u"- 7", -7},
                            {u"007", 7},
                            {u"224-", -224},
                            {u"224 +", 224},
                            {u"(24)", -24},
                            {u" ( 24 ) ", -24},
                            {u"(-24)", -24},
                            {u"$024", 24},
                            {u"24 $", 24},
                            {u"-$24", -24},
                            {u"1,23", 123},
                            {u"2,024", 2024},
                            {u"1,2,3,", 123},
                            {u"1.5", 2},
                            {u".5", 0},
                            {u"5.", 5},
                            {u"1e3", 1000},
                            {u"1E+3", 1000},
                            {u"1.25E2-", -125},
                            {u"25e-1", 2},
                            {u"35e-1", 4},
                            {u"0e400", 0},
                            {u"2147483647", 2147483647},
                            {u"-2147483648", -2147483647 - 1},
                            {u"123456789", 123456789},
                            {u"2147483646.5", 2147483646},
                            {u"2147483647.4999999999999999999999", 2147483647},
                            {u"2.50000000000000000000000000000000000001", 3},
                            {u"42\0x", 42}}) {
    EXPECT_EQ(ToInteger32(Text(c.text)), c.value) << ToUtf8(c.text);
  }
}

TEST(ToInteger32, TakesHexadecimalAndOctalAsBitPatterns) {
  for (const TextCase& c : {TextCase{u"&H0", 0},
                            {u"&HFF", 255},
                            {u"&hff", 255},
                            {u" &H7FFF ", 32767},
                            {u"&HFFFF", 65535},
                            {u"&H10000", 65536},
                            {u"&HFFFFFFFF", -1},
                            {u"&H80000000", -2147483647 - 1},
                            {u"&H00000000ff", 255},
                            {u"&O17", 15},
                            {u"&o17", 15},
                            {u"&O37777777777", -1}}) {
    EXPECT_EQ(ToInteger32(Text(c.text)), c.value) << ToUtf8(c.text);
  }
  EXPECT_EQ(ToInteger16(Text(u"&HFFFF")), -1);
  EXPECT_EQ(ToInteger16(Text(u"&H8000")), -32768);
  EXPECT_EQ(ToInteger16(Text(u"&O177777")), -1);
}

TEST(ToInteger32, RaisesTypeMismatchForWhatIsNoNumber) {
  for (const char16_t* text :
       {u"",     u" ",  u"abc",   u"12x", u"1 2",        u"--1",    u"-1-",  u"+1+",  u"1e5x",
        u".",    u"-",  u"1.2.3", u"e5",  u"1e",         u"1e+",    u"1d3",  u",5",   u"&",
        u"&H",   u"&O", u"&HG",   u"&17", u"&O8",        u"&H-1",   u"&H1$", u"0x10", u"$$1",
        u"$1e3", u"(1", u"1)",    u"()",  u"1\u2009000", u"\u0661", u"true"}) {
    EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(ToInteger32(Text(text))); }), 13)
        << ToUtf8(text);
    EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(ToInteger16(Text(text))); }), 13)
        << ToUtf8(text);
  }
  EXPECT_EQ(ErrorNumberOf([] { static_cast<void>(ToInteger32(Text())); }), 13);
}

TEST(ToInteger32, RaisesOverflowBeyond32Bits) {
  for (const char16_t* text :
       {u"2147483647.5", u"-2147483648.50001", u"12345678901234567890", u"1e300", u"1e400",
        u"9e99999999999", u"&H100000000", u"&HFFFFFFFFFFFFFFFFF"}) {
    EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(ToInteger32(Text(text))); }), 6)
        << ToUtf8(text);
  }
  EXPECT_EQ(ErrorNumberOf([] { static_cast<void>(ToInteger32(1e10)); }), 6);
}

TEST(ToInteger16, RoundsHalvesToEven) {
  EXPECT_EQ(ToInteger16(Text(u"0.5")), 0);
  EXPECT_EQ(ToInteger16(Text(u"1.5")), 2);
  EXPECT_EQ(ToInteger16(Text(u"2.5")), 2);
  EXPECT_EQ(ToInteger16(Text(u"-0.5")), 0);
  EXPECT_EQ(ToInteger16(Text(u"-1.5")), -2);
  EXPECT_EQ(ToInteger16(Text(u"-2.5")), -2);
  EXPECT_EQ(ToInteger16(Text(u"2.4999999")), 2);
  EXPECT_EQ(ToInteger16(Text(u"2.5000001")), 3);
}

TEST(ToInteger16, RaisesOverflowAtItsLimitsAfterRounding) {
  EXPECT_EQ(ToInteger16(Text(u"32767.4")), 32767);
  EXPECT_EQ(ToInteger16(Text(u"-32768.5")), -32768);
  for (const char16_t* text : {u"32767.5", u"-32769", u"70000", u"1e300", u"&H10000"})
    EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(ToInteger16(Text(text))); }), 6)
        << ToUtf8(text);
  EXPECT_EQ(ErrorNumberOf([] { static_cast<void>(ToInteger16(std::int32_t{40000})); }), 6);
  EXPECT_EQ(ErrorNumberOf([] { static_cast<void>(ToInteger16(1e10)); }), 6);
}

TEST(ToInteger16, TakesEveryOtherKind) {
  EXPECT_EQ(ToInteger16(TaggedValue()), 0);
  EXPECT_EQ(ToInteger16(kTrue), -1);
  EXPECT_EQ(ToInteger16(2.5), 2);
  EXPECT_EQ(ToInteger16(std::int16_t{-7}), -7);
  EXPECT_EQ(ToInteger32(TaggedValue()), 0);
  EXPECT_EQ(ToInteger32(kTrue), -1);
  EXPECT_EQ(ToInteger32(std::int16_t{-7}), -7);
  EXPECT_EQ(ToInteger32(std::int32_t{-2147483647}), -2147483647);
  EXPECT_EQ(ToInteger32(3.5), 4);
}

// Numbers of known value, written in every way: what is divided and rounded here in whole numbers
// is read there from digits.
TEST(ToInteger32, IsTheNearestIntegerOfANumberWrittenInAnyWay) {
  std::mt19937 random(9);
  for (int i = 0; i < 20000; ++i) {
    const std::int64_t digits = static_cast<std::int64_t>(random()) >> (random() % 32);
    const std::size_t places = random() % 4;
    std::string text = std::to_string(digits);
    std::int64_t unit = 1;
    for (std::size_t place = 0; place < places; ++place) unit *= 10;
    if (text.size() <= places) text.insert(0, places + 1 - text.size(), '0');
    // Some versions of the system round 0.0d up by its first digit.
    if (digits < unit / 10) continue;
    if (places > 0) text.insert(text.size() - places, ".");
    for (int group = static_cast<int>(text.find_first_of('.') % text.size()) - 3;
         group > 0 && random() % 2 == 0; group -= 3) {
      text.insert(static_cast<std::size_t>(group), ",");
    }
    const bool negative = random() % 2 == 0;
    if (negative) text = random() % 2 == 0 ? "-" + text : text + "-";
    if (random() % 4 == 0) text = " " + text + "\n";

    std::int64_t expected = digits / unit;
    const std::int64_t rest = 2 * (digits % unit);
    if (rest > unit || (rest == unit && expected % 2 != 0)) ++expected;
    if (negative) expected = -expected;
    const Text written(std::u16string(text.begin(), text.end()));
    const bool fits = expected >= INT32_MIN && expected <= INT32_MAX;
    if (fits) {
      ASSERT_EQ(ToInteger32(written), expected) << text;
    } else {
      ASSERT_EQ(ErrorNumberOf([&] { static_cast<void>(ToInteger32(written)); }), 6) << text;
    }
  }
}

TEST(ToBoolean, IsMinusOneOrZero) {
  EXPECT_EQ(ToBoolean(TaggedValue()), kFalse);
  EXPECT_EQ(ToBoolean(Boolean16{1}), kTrue);
  EXPECT_EQ(ToBoolean(std::int16_t{2}), kTrue);
  EXPECT_EQ(ToBoolean(std::int32_t{65536}), kTrue);
  EXPECT_EQ(ToBoolean(std::int32_t{0}), kFalse);
  EXPECT_EQ(ToBoolean(0.25), kTrue);
  EXPECT_EQ(ToBoolean(5e-324), kTrue);
  EXPECT_EQ(ToBoolean(-0.0), kFalse);
}

TEST(ToBoolean, TakesTheTwoWordsAndNumbers) {
  for (const char16_t* text :
       {u"True", u"TRUE", u"tRUE", u"#TRUE#", u"-1", u"1", u"(0.5)", u"1e-300", u"&H1", u"65536"})
    EXPECT_EQ(ToBoolean(Text(text)), kTrue) << ToUtf8(text);
  for (const char16_t* text : {u"False", u"FALSE", u"fALSE", u"#FALSE#", u"0", u" 0.0 ", u"-0",
                               u"(0)", u"0e5", u"1e-400", u"&H0"})
    EXPECT_EQ(ToBoolean(Text(text)), kFalse) << ToUtf8(text);
}

TEST(ToBoolean, RaisesForAnyOtherText) {
  for (const char16_t* text :
       {u"", u"yes", u"truE!", u"trux", u"TRUX", u"tru!", u"TRU[", u"tru{", u" True", u"True ",
        u"#true#", u"#False#", u"#TRUE", u"fals", u"falsee"})
    EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(ToBoolean(Text(text))); }), 13) << ToUtf8(text);
  for (const char16_t* text : {u"1e400", u"-1e310", u"&H100000000"})
    EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(ToBoolean(Text(text))); }), 6) << ToUtf8(text);
}

TEST(ToText, WritesEveryKind) {
  EXPECT_EQ(ToText(TaggedValue()), Text(u""));
  EXPECT_FALSE(ToText(TaggedValue()).IsAbsent());
  EXPECT_EQ(ToText(Text(u"as it is")), Text(u"as it is"));
  EXPECT_TRUE(ToText(Text()).IsAbsent());
  EXPECT_EQ(ToText(kTrue), Text(u"True"));
  EXPECT_EQ(ToText(Boolean16{1}), Text(u"True"));
  EXPECT_EQ(ToText(kFalse), Text(u"False"));
  EXPECT_EQ(ToText(std::int16_t{-1}), Text(u"-1"));
  EXPECT_EQ(ToText(std::int32_t{2147483647}), Text(u"2147483647"));
  EXPECT_EQ(ToText(2.5), Text(u"2.5"));
}

TEST(ToText, WritesANumberInUpTo15Digits) {
  struct NumberCase {
    double value;
    const char16_t* text;
  };
  for (const NumberCase& c : {NumberCase{0, u"0"},
                              {-0.0, u"0"},
                              {0.1, u"0.1"},
                              {-2.5, u"-2.5"},
                              {1.0 / 3, u"0.333333333333333"},
                              {2.0 / 3, u"0.666666666666667"},
                              {1200, u"1200"},
                              {123456789012345, u"123456789012345"},
                              {999999999999999, u"999999999999999"},
                              {1e15, u"1E+15"},
                              {1e20, u"1E+20"},
                              {0.0001, u"0.0001"},
                              {1.23456789012e-5, u"1.23456789012E-05"},
                              {1e-15, u"1E-15"},
                              {1e300, u"1E+300"},
                              {4.94065645841247e-324, u"4.94065645841247E-324"},
                              {1.5e-310, u"1.50000000000002E-310"},
                              {1.79769313486231571e308, u"1.79769313486232E+308"}}) {
    EXPECT_EQ(ToText(c.value), Text(c.text)) << c.value;
  }
}

class FailingOleaut32 final : public Oleaut32 {
 public:
  explicit FailingOleaut32(std::int32_t result) : result_(result) {}
  std::int32_t VarI2FromStr(const char16_t* /*text*/, std::uint32_t locale, std::uint32_t flags,
                            std::int16_t* /*value*/) override {
    return Answer(locale, flags);
  }
  std::int32_t VarI4FromStr(const char16_t* /*text*/, std::uint32_t locale, std::uint32_t flags,
                            std::int32_t* /*value*/) override {
    return Answer(locale, flags);
  }
  std::int32_t VarBoolFromStr(const char16_t* /*text*/, std::uint32_t locale, std::uint32_t flags,
                              std::int16_t* /*value*/) override {
    return Answer(locale, flags);
  }
  std::int32_t VarBstrFromR8(double /*value*/, std::uint32_t locale, std::uint32_t flags,
                             std::u16string* /*text*/) override {
    return Answer(locale, flags);
  }

 private:
  [[nodiscard]] std::int32_t Answer(std::uint32_t locale, std::uint32_t flags) const {
    EXPECT_EQ(locale, 0x409U);
    EXPECT_EQ(flags, 0x80000000U);
    return result_;
  }
  std::int32_t result_;
};

// The number that each conversion raises when the system's call answers so.
std::vector<std::int32_t> NumbersRaised(std::int32_t result) {
  FailingOleaut32 oleaut(result);
  const auto number_of = [](auto body) {
    try {
      body();
      return 0;
    } catch (...) {
      return CurrentRuntimeError().number;
    }
  };
  const TaggedValue text(Text(u"1"));
  return {number_of([&] { static_cast<void>(ToInteger16(text, oleaut)); }),
          number_of([&] { static_cast<void>(ToInteger32(text, oleaut)); }),
          number_of([&] { static_cast<void>(ToBoolean(text, oleaut)); }),
          number_of([&] { static_cast<void>(ToText(0.5, oleaut)); })};
}

TEST(Conversions, RaiseTheSystemsFailureUnderTheLocaleOfTheTypeLibrary) {
  using Numbers = std::vector<std::int32_t>;
  EXPECT_EQ(NumbersRaised(0), (Numbers{0, 0, 0, 0}));
  EXPECT_EQ(NumbersRaised(Oleaut32::kTypeMismatch), (Numbers{13, 13, 13, 13}));
  EXPECT_EQ(NumbersRaised(Oleaut32::kOverflow), (Numbers{6, 6, 6, 6}));
  EXPECT_EQ(NumbersRaised(Oleaut32::kOutOfMemory), (Numbers{7, 7, 7, 7}));
  EXPECT_EQ(NumbersRaised(static_cast<std::int32_t>(0x80070057)), (Numbers{13, 13, 13, 13}));
}

}  // namespace
}  // namespace quorvane
