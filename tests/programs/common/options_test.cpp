// The words of a command line: which are options, which operands, and what makes no sense.

#include "programs/common/options.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>

#include "programs/common/suggestion.h"

namespace quorvane::programs {
namespace {

using Words = std::vector<std::string>;

constexpr std::array kKnown{
    Option{"--flag", nullptr, "", 'f'},
    Option{"--save", "FILE", "", 's'},
    Option{.name = "--set", .value = "NAME=VALUE", .repeatable = true},
    Option{"--bare", nullptr, "", 'b'},
};

Arguments Parse(const Words& words) { return Arguments(words, kKnown); }

std::string ErrorOf(const std::function<void()>& body) {
  try {
    body();
    return "none";
  } catch (const UsageError& error) {
    return error.what();
  }
}

std::string ParseError(const Words& words) {
  return ErrorOf([&] { Parse(words); });
}

TEST(Arguments, TakeOptionsAnywhereAmongTheOperands) {
  const Arguments arguments = Parse({"a", "--flag", "b", "--save", "file", "c"});
  EXPECT_EQ(arguments.Operands(), (Words{"a", "b", "c"}));
  EXPECT_TRUE(arguments.Has("--flag"));
  EXPECT_EQ(arguments.Value("--save"), "file");
  EXPECT_FALSE(arguments.Has("--set"));
  EXPECT_EQ(arguments.Value("--set"), std::nullopt);
}

TEST(Arguments, TakeAValueBehindAnEqualsSign) {
  EXPECT_EQ(Parse({"--save=a=b"}).Value("--save"), "a=b");
  EXPECT_EQ(Parse({"--save="}).Value("--save"), "");
  EXPECT_EQ(Parse({"--save", "--flag"}).Value("--save"), "--flag");
}

TEST(Arguments, KeepTheOrderOfARepeatedOption) {
  const Arguments arguments = Parse({"--set", "a=1", "--set=b=2", "--set", "a=3"});
  EXPECT_EQ(arguments.Values("--set"), (Words{"a=1", "b=2", "a=3"}));
  EXPECT_EQ(arguments.Value("--set"), "a=1");
}

TEST(Arguments, TakeShortFormsApartAndTogether) {
  EXPECT_EQ(Parse({"-s", "file"}).Value("--save"), "file");
  EXPECT_EQ(Parse({"-sfile"}).Value("--save"), "file");
  const Arguments together = Parse({"-fbs", "file", "a"});
  EXPECT_TRUE(together.Has("--flag"));
  EXPECT_TRUE(together.Has("--bare"));
  EXPECT_EQ(together.Value("--save"), "file");
  EXPECT_EQ(together.Operands(), (Words{"a"}));
  EXPECT_EQ(ParseError({"-s"}), "option '-s' wants a value");
  EXPECT_EQ(ParseError({"-ff"}), "option '--flag' is given twice");
  EXPECT_EQ(ParseError({"-f", "--flag"}), "option '--flag' is given twice");
}

TEST(Arguments, EndTheOptionsAtTwoDashes) {
  EXPECT_EQ(Parse({"a", "--", "--flag", "--", "-x"}).Operands(),
            (Words{"a", "--flag", "--", "-x"}));
  EXPECT_TRUE(Parse({"--"}).Operands().empty());
  EXPECT_EQ(Parse({"--save", "--", "a"}).Value("--save"), "--");
}

TEST(Arguments, CountADashAndANegativeNumberAsOperands) {
  EXPECT_EQ(Parse({"-", "-5", "", "-0x1"}).Operands(), (Words{"-", "-5", "", "-0x1"}));
}

TEST(Arguments, RefuseWhatTheyDoNotKnow) {
  EXPECT_EQ(ParseError({"--fla"}), "unknown option '--fla'; did you mean '--flag'?");
  EXPECT_EQ(ParseError({"-x"}), "unknown option '-x'");
  EXPECT_EQ(ParseError({"-fx"}), "unknown option '-x'");
  EXPECT_EQ(ParseError({"--nope=1"}), "unknown option '--nope'");
}

TEST(Arguments, RefuseAMissingAndAnUnwantedValue) {
  EXPECT_EQ(ParseError({"--save"}), "option '--save' wants a value");
  EXPECT_EQ(ParseError({"--flag=1"}), "option '--flag' takes no value");
}

TEST(Arguments, RefuseASecondOneUnlessRepeatable) {
  EXPECT_EQ(ParseError({"--flag", "--flag"}), "option '--flag' is given twice");
  EXPECT_EQ(ParseError({"--save=", "--save", "b"}), "option '--save' is given twice");
}

TEST(Arguments, CheckTheCountOfOperands) {
  const Arguments arguments = Parse({"a", "b"});
  EXPECT_EQ(ErrorOf([&] { arguments.RequireOperands(1, kAnyNumber, "FILE..."); }), "none");
  EXPECT_EQ(ErrorOf([&] { arguments.RequireOperands(2, 2, "A B"); }), "none");
  EXPECT_EQ(ErrorOf([&] { arguments.RequireOperands(3, 3, "A B C"); }),
            "too few arguments: A B C is wanted");
  EXPECT_EQ(ErrorOf([&] { arguments.RequireOperands(0, 1, "A"); }),
            "too many arguments, from 'b' on");
}

TEST(Arguments, CheckTheOperandsByTheLineOfTheHelp) {
  const Arguments arguments = Parse({"a", "b"});
  for (const char* const line : {"A B", "A [B]", "A...", "A B [C...]", "[A] [B] [C]"})
    EXPECT_EQ(ErrorOf([&] { arguments.RequireOperands(line); }), "none") << line;
  EXPECT_EQ(ErrorOf([&] { arguments.RequireOperands("A B C... [D]"); }),
            "too few arguments: A B C [D] is wanted");
  EXPECT_EQ(ErrorOf([&] { arguments.RequireOperands("A"); }), "too many arguments, from 'b' on");
  EXPECT_EQ(ErrorOf([&] { arguments.RequireOperands(""); }), "too many arguments, from 'a' on");
}

TEST(Suggestion, NamesTheNearestWordThatIsNearEnough) {
  const Words names{"encode", "text", "registry", "crc"};
  EXPECT_EQ(Suggestion("encdoe", names), "; did you mean 'encode'?");
  EXPECT_EQ(Suggestion("regis", names), "; did you mean 'registry'?");
  EXPECT_EQ(Suggestion("registery", names), "; did you mean 'registry'?");
  EXPECT_EQ(Suggestion("cr", names), "; did you mean 'crc'?");
  EXPECT_EQ(Suggestion("tetx", names), "; did you mean 'text'?");
  for (const char* const word : {"nope", "x", "", "gradient"})
    EXPECT_EQ(Suggestion(word, names), "");
  EXPECT_EQ(Suggestion("crc", {}), "");
}

TEST(ParseInteger, ReadsDecimalAndHexadecimal) {
  EXPECT_EQ(ParseInteger("0", "N"), 0);
  EXPECT_EQ(ParseInteger("-2147483648", "N"), INT32_MIN);
  EXPECT_EQ(ParseInteger("2147483647", "N"), INT32_MAX);
  EXPECT_EQ(ParseInteger("0xff", "N"), 255);
  EXPECT_EQ(ParseInteger("0X7FFFFFFF", "N"), INT32_MAX);
}

TEST(ParseInteger, RefusesWhatIsNoNumber) {
  for (const std::string word : {"", "x", "1x", " 1", "1 ", "+1", "0x", "0x-1", "1.5", "--1"})
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(ParseInteger(word, "N")); }),
              "N is no number: '" + word + "'");
}

TEST(ParseInteger, RefusesWhatLiesOutsideTheLimits) {
  EXPECT_EQ(ErrorOf([] { static_cast<void>(ParseInteger("11", "N", -10, 10)); }),
            "N must lie in -10 to 10: '11'");
  EXPECT_EQ(ParseInteger("-10", "N", -10, 10), -10);
  for (const std::string word : {"2147483648", "-2147483649", "0x80000000", "99999999999999999999"})
    EXPECT_EQ(ErrorOf([&] { static_cast<void>(ParseInteger(word, "N")); }),
              "N must lie in -2147483648 to 2147483647: '" + word + "'");
}

}  // namespace
}  // namespace quorvane::programs
