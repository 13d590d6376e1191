// The text of a form file: every rule that form_file.h states, each way to break it, and that
// whatever is written is read back unchanged.

#include <string>

#include "programs/form_host/form_file.h"
#include "tests/support/raises.h"

namespace quorvane::programs {
namespace {

using namespace std::string_literals;

TaggedValue ValueOf(const std::string& spelled) {
  const std::vector<FormEntry> entries = ParseForm("A = " + spelled);
  return entries.size() == 1 && entries[0].name == Text(u"A") ? entries[0].value : TaggedValue();
}

std::string ErrorOf(const std::string& form) {
  try {
    static_cast<void>(ParseForm(form));
    return "none";
  } catch (const FormFileError& error) {
    return error.what();
  }
}

TEST(ParseForm, KeepsTheOrderOfTheEntries) {
  const std::vector<FormEntry> expected = {
      {u"ServerPort", std::int16_t{8080}}, {u"UseProxy", kTrue}, {u"A_1", Text(u"x")}};
  EXPECT_EQ(ParseForm("ServerPort = 8080\nUseProxy=True\n\t A_1 \t=\t \"x\" \t\n"), expected);
}

TEST(ParseForm, PassesOverCommentsAndEmptyLines) {
  EXPECT_TRUE(ParseForm("").empty());
  EXPECT_TRUE(ParseForm("\n \t\n' a comment = 1\n  ; another\n").empty());
}

TEST(ParseForm, TakesBothLineEndsAndAByteOrderMark) {
  const std::vector<FormEntry> expected = {{u"A", std::int16_t{1}}, {u"B", std::int16_t{2}}};
  EXPECT_EQ(ParseForm("A = 1\nB = 2"), expected);
  EXPECT_EQ(ParseForm("\xEF\xBB\xBF"
                      "A = 1\r\nB = 2\r\n"),
            expected);
}

TEST(ParseForm, GivesNumbersTheSmallestKindThatHoldsThem) {
  EXPECT_EQ(ValueOf("0"), TaggedValue(std::int16_t{0}));
  EXPECT_EQ(ValueOf("32767"), TaggedValue(std::int16_t{32767}));
  EXPECT_EQ(ValueOf("-32768"), TaggedValue(std::int16_t{-32768}));
  EXPECT_EQ(ValueOf("32768"), TaggedValue(std::int32_t{32768}));
  EXPECT_EQ(ValueOf("-32769"), TaggedValue(std::int32_t{-32769}));
  EXPECT_EQ(ValueOf("2147483647"), TaggedValue(std::int32_t{2147483647}));
  EXPECT_EQ(ValueOf("-2147483648"), TaggedValue(std::int32_t{INT32_MIN}));
}

TEST(ParseForm, ReadsTexts) {
  EXPECT_EQ(ValueOf(R"("")"), TaggedValue(Text(u"")));
  EXPECT_EQ(ValueOf(R"("a = 'b' ; c")"), TaggedValue(Text(u"a = 'b' ; c")));
  EXPECT_EQ(ValueOf(R"("\"\\\n\r\t")"), TaggedValue(Text(u"\"\\\n\r\t")));
  EXPECT_EQ(ValueOf("\"\xC5\x81 \xE6\x97\xA5 \xF0\x9F\x98\x80\""),
            TaggedValue(Text(u"\u0141 \u65E5 \U0001F600")));
  EXPECT_EQ(ValueOf(R"("\u0141\uD83D\u00e9")"), TaggedValue(Text(u"\u0141\xD83D\u00E9")));
  EXPECT_EQ(ValueOf(R"("a\u0000b")"), TaggedValue(Text(std::u16string(u"a\0b", 3))));
}

TEST(ParseForm, ReadsTrueAndFalseInThisSpellingOnly) {
  EXPECT_EQ(ValueOf("True"), TaggedValue(kTrue));
  EXPECT_EQ(ValueOf("False"), TaggedValue(kFalse));
  EXPECT_NE(ErrorOf("A = true"), "none");
  EXPECT_NE(ErrorOf("A = FALSE"), "none");
}

TEST(ParseForm, NamesTheLineOfAnError) {
  EXPECT_EQ(ErrorOf("A = 1\n\n' x\nB"), "line 4: a name must be followed by \"=\" and a value");
}

TEST(ParseForm, RefusesALineWithoutAName) {
  const std::string message =
      "line 1: an entry must start with a name of letters, digits and underscores";
  for (const std::string form : {"= 1", "1A = 1", "_A = 1", "\"A\" = 1", "\xC3\xA4 = 1", "[A]"})
    EXPECT_EQ(ErrorOf(form), message) << form;
}

TEST(ParseForm, RefusesANameWithoutAValue) {
  for (const std::string form : {"A", "A 1", "A: 1", "A-B = 1", "A\xC3\xA4 = 1"})
    EXPECT_EQ(ErrorOf(form), "line 1: a name must be followed by \"=\" and a value") << form;
  for (const std::string form : {"A =", "A = ", "A = x", "A = 'x'", "A = +1", "A = .5"})
    EXPECT_EQ(ErrorOf(form),
              "line 1: a value must be a text in quotes, a whole number, True or False")
        << form;
}

TEST(ParseForm, RefusesWhatIsNoWholeNumberOf32Bits) {
  for (const std::string form : {"A = 1.5", "A = 1e3", "A = 0x10", "A = -", "A = --1", "A = 1,2"})
    EXPECT_EQ(ErrorOf(form), "line 1: a number must be whole, of decimal digits only") << form;
  for (const std::string form : {"A = 2147483648", "A = -2147483649", "A = 99999999999999999999"})
    EXPECT_EQ(ErrorOf(form), "line 1: the number lies outside -2147483648 to 2147483647") << form;
}

TEST(ParseForm, RefusesATextThatIsNotClosed) {
  for (const std::string form : {"A = \"", "A = \"x", "A = \"x\\\"", "A = \"x\ny\""})
    EXPECT_EQ(ErrorOf(form), "line 1: the text lacks its closing quote") << form;
}

TEST(ParseForm, RefusesAnUnknownEscape) {
  for (const std::string form : {R"(A = "\x")", R"(A = "\)", R"(A = "\u12")", R"(A = "\u12G4")",
                                 R"(A = "\u+123")", R"(A = "\u-123")", R"(A = "\U0041")"})
    EXPECT_EQ(ErrorOf(form),
              "line 1: behind a backslash must stand \\ \" n r t or u with four hex digits")
        << form;
}

TEST(ParseForm, RefusesControlCharactersInATextAndBehindIt) {
  EXPECT_EQ(ErrorOf("A = \"a\tb\""),
            "line 1: a control character in a text must be written as \\uXXXX");
  EXPECT_EQ(ErrorOf("A = \"a\0b\""s),
            "line 1: a control character in a text must be written as \\uXXXX");
  EXPECT_EQ(ErrorOf("A = \"a\" \"b\""), "line 1: nothing may follow the value");
  EXPECT_EQ(ErrorOf("A = 1 ' no comment"), "line 1: nothing may follow the value");
}

TEST(ParseForm, RefusesTheSameNameTwiceButNotInAnotherCase) {
  EXPECT_EQ(ErrorOf("A = 1\nB = 1\nA = 1"), "line 3: the entry A stands twice");
  EXPECT_EQ(ParseForm("Username = 1\nUserName = 1").size(), 2U);
}

TEST(ParseForm, RefusesBytesThatAreNoUtf8) {
  EXPECT_EQ(ErrorOf("A = 1\n' \xFF\n"), "line 2: the line is not UTF-8");
  EXPECT_EQ(ErrorOf("A = \"\xED\xA0\xBD\""), "line 1: the line is not UTF-8");
}

TEST(FormatForm, GivesBackWhatItHasWritten) {
  std::u16string every;
  for (int c = 0; c <= 0xFFFF; ++c) every += static_cast<char16_t>(c);
  const std::vector<FormEntry> entries = {
      {u"Every", Text(every)},
      {u"Empty", Text(u"")},
      {u"Small", std::int16_t{-32768}},
      {u"Large", std::int32_t{INT32_MIN}},
      {u"On", kTrue},
      {u"Off", kFalse},
  };
  EXPECT_EQ(ParseForm(FormatForm(entries)), entries);
}

TEST(FormatForm, IsReadable) {
  EXPECT_EQ(FormatForm(
                {{u"A", Text(u"\u0141 \"\\\n\x1\xD83D")}, {u"B", std::int16_t{-1}}, {u"C", kTrue}}),
            "A = \"\xC5\x81 \\\"\\\\\\n\\u0001\\uD83D\"\nB = -1\nC = True\n");
  EXPECT_EQ(FormatForm({}), "");
}

}  // namespace
}  // namespace quorvane::programs
