// Proves the rules of numeric text: what counts as a number, how it is rounded, where it overflows.

#include "runtime/numeric_text.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/support/raises.h"

namespace quorvane {
namespace {

using testing::ErrorNumberOf;

struct Case {
  const char16_t* text;
  double value;
};

TEST(ParseNumber, TakesBlanksSignPointAndExponent) {
  for (const Case& c : {Case{u"0", 0},
                        {u"42", 42},
                        {u"  42  ", 42},
                        {u"\t42\t", 42},
                        {u"+7", 7},
                        {u"-7", -7},
                        {u"- 7", -7},
                        {u"007", 7},
                        {u"1.5", 1.5},
                        {u".5", 0.5},
                        {u"5.", 5},
                        {u"1e3", 1000},
                        {u"1E+3", 1000},
                        {u"1.25E-2", 0.0125},
                        {u"2D2", 200},
                        {u"2d2", 200},
                        {u"0e99999999", 0},
                        {u"1e-400", 0},
                        {u"1e-700", 0},
                        {u"12345678901234567890", 12345678901234567890.0},
                        {u"0.000000000000000000000000015", 1.5e-26}}) {
    const auto number = ParseNumber(c.text);
    ASSERT_TRUE(number) << ToUtf8(c.text);
    EXPECT_DOUBLE_EQ(*number, c.value) << ToUtf8(c.text);
  }
}

TEST(ParseNumber, TakesHexadecimalAndOctalAsBitPatterns) {
  for (const Case& c : {Case{u"&H0", 0},
                        {u"&HFF", 255},
                        {u"&hff", 255},
                        {u" &H7FFF ", 32767},
                        {u"&H8000", -32768},
                        {u"&HFFFF", -1},
                        {u"&H10000", 65536},
                        {u"&HFFFFFFFF", -1},
                        {u"&H80000000", -2147483648.0},
                        {u"&O17", 15},
                        {u"&o17", 15},
                        {u"&17", 15},
                        {u"&O177777", -1}}) {
    const auto number = ParseNumber(c.text);
    ASSERT_TRUE(number) << ToUtf8(c.text);
    EXPECT_EQ(*number, c.value) << ToUtf8(c.text);
  }
}

TEST(ParseNumber, RefusesWhatIsNoNumber) {
  for (const char16_t* text :
       {u"",   u" ",   u"abc",   u"12x",  u"1 2",  u"--1",  u"+-1", u"1-", u"1e5x",
        u".",  u"-",   u"1.2.3", u"e5",   u"1e",   u"1e+",  u"1,5", u"&",  u"&H",
        u"&O", u"&HG", u"&O8",   u"-&H1", u"&H-1", u"0x10", u"1\n"}) {
    EXPECT_FALSE(ParseNumber(text)) << ToUtf8(text);
  }
  EXPECT_FALSE(ParseNumber(Text()));
}

TEST(ParseNumber, RaisesOverflowBeyondADoubleOr32Bits) {
  for (const char16_t* text : {u"1e309", u"9e99999999", u"-1e400", u"100e307", u"&H100000000"}) {
    EXPECT_EQ(ErrorNumberOf([&] { (void)ParseNumber(text); }), 6) << ToUtf8(text);
  }
}

TEST(TextToInteger16, RoundsHalvesToEven) {
  EXPECT_EQ(TextToInteger16(u"0.5"), 0);
  EXPECT_EQ(TextToInteger16(u"1.5"), 2);
  EXPECT_EQ(TextToInteger16(u"2.5"), 2);
  EXPECT_EQ(TextToInteger16(u"-0.5"), 0);
  EXPECT_EQ(TextToInteger16(u"-1.5"), -2);
  EXPECT_EQ(TextToInteger16(u"-2.5"), -2);
  EXPECT_EQ(TextToInteger16(u"2.4999999"), 2);
  EXPECT_EQ(TextToInteger16(u"2.5000001"), 3);
}

TEST(TextToInteger16, RaisesOverflowAtItsLimitsAfterRounding) {
  EXPECT_EQ(TextToInteger16(u"32767.4"), 32767);
  EXPECT_EQ(TextToInteger16(u"-32768.5"), -32768);
  EXPECT_EQ(ErrorNumberOf([] { (void)TextToInteger16(u"32767.5"); }), 6);
  EXPECT_EQ(ErrorNumberOf([] { (void)TextToInteger16(u"-32769"); }), 6);
  EXPECT_EQ(ErrorNumberOf([] { (void)TextToInteger16(u"70000"); }), 6);
  EXPECT_EQ(ErrorNumberOf([] { (void)TextToInteger16(u"1e300"); }), 6);
}

TEST(TextToInteger16, RaisesTypeMismatchForOtherText) {
  EXPECT_EQ(ErrorNumberOf([] { (void)TextToInteger16(u"eighty"); }), 13);
  EXPECT_EQ(ErrorNumberOf([] { (void)TextToInteger16(u""); }), 13);
}

TEST(TextToInteger32, HoldsEvery32BitLimit) {
  EXPECT_EQ(TextToInteger32(u"2147483647"), 2147483647);
  EXPECT_EQ(TextToInteger32(u"-2147483648"), -2147483647 - 1);
  EXPECT_EQ(TextToInteger32(u"2147483646.5"), 2147483646);
  EXPECT_EQ(ErrorNumberOf([] { (void)TextToInteger32(u"2147483647.5"); }), 6);
  EXPECT_EQ(ErrorNumberOf([] { (void)TextToInteger32(u"x"); }), 13);
}

TEST(RoundTo32, RaisesOverflowForWhatIsNotFinite) {
  EXPECT_EQ(ErrorNumberOf([] { (void)RoundTo32(std::nan("")); }), 6);
  EXPECT_EQ(ErrorNumberOf([] { (void)RoundTo32(HUGE_VAL); }), 6);
}

TEST(NumberToText, GivesTheShortestFormOf15Digits) {
  EXPECT_EQ(NumberToText(0), Text(u"0"));
  EXPECT_EQ(NumberToText(0.1), Text(u"0.1"));
  EXPECT_EQ(NumberToText(-2.5), Text(u"-2.5"));
  EXPECT_EQ(NumberToText(123456789012345), Text(u"123456789012345"));
  EXPECT_EQ(NumberToText(1e20), Text(u"1E+20"));
  EXPECT_EQ(NumberToText(1e-7), Text(u"1E-07"));
  EXPECT_EQ(NumberToText(1e300), Text(u"1E+300"));
}

}  // namespace
}  // namespace quorvane
