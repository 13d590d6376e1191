// How a program ends: each kind of failure becomes one line and one exit code.

#include "programs/common/program.h"

#include <gtest/gtest.h>

#include <new>

#include "programs/common/options.h"

namespace quorvane::programs {

namespace {

struct Ending {
  int code;
  std::string out;
  std::string err;
};

Ending EndingOf(const std::function<int(Console&)>& body) {
  Console console("prog");
  ::testing::internal::CaptureStdout();
  ::testing::internal::CaptureStderr();
  const int code = ExitCodeOf(console, [&] { return body(console); });
  return {code, ::testing::internal::GetCapturedStdout(), ::testing::internal::GetCapturedStderr()};
}

TEST(DescribeError, NamesNumberDescriptionAndSource) {
  EXPECT_EQ(DescribeError({53, u"a.File", u"File not found"}), "error 53: File not found (a.File)");
  EXPECT_EQ(DescribeError({6, {}, u"Overflow"}), "error 6: Overflow");
  EXPECT_EQ(DescribeError({-1, u"\u00E4", u""}), "error -1:  (\xC3\xA4)");
}

TEST(ExitCodeOf, HandsOnTheBodysCodeAndFlushesItsOutput) {
  const Ending ending = EndingOf([](Console& console) {
    console.Out("a\n");
    console.Out("\xC3\xA4\r\n\x1a");
    return 7;
  });
  EXPECT_EQ(ending.code, 7);
  EXPECT_EQ(ending.out, "a\n\xC3\xA4\r\n\x1a");
  EXPECT_EQ(ending.err, "");
}

TEST(ExitCodeOf, TurnsARuntimeErrorIntoALineAndCode1BehindTheOutput) {
  const Ending ending = EndingOf([](Console& console) -> int {
    console.Out("so far\n");
    throw RuntimeError{13, u"here", u"Type mismatch"};
  });
  EXPECT_EQ(ending.code, ExitCode::kFailure);
  EXPECT_EQ(ending.out, "so far\n");
  EXPECT_EQ(ending.err, "prog: error 13: Type mismatch (here)\n");
}

TEST(ExitCodeOf, TurnsAUsageErrorIntoALineAHintAndCode2) {
  EXPECT_EQ(EndingOf([](Console&) -> int { throw UsageError("no sense"); }).err,
            "prog: no sense\nTry 'prog --help'.\n");
  const Ending ending = EndingOf([](Console&) -> int { throw UsageError("no sense", "cmd"); });
  EXPECT_EQ(ending.code, ExitCode::kUsage);
  EXPECT_EQ(ending.err, "prog: no sense\nTry 'prog cmd --help'.\n");
}

TEST(ExitCodeOf, KnowsExhaustedMemoryAndReportsAnythingElse) {
  EXPECT_EQ(EndingOf([](Console&) -> int { throw std::bad_alloc(); }).err,
            "prog: error 7: Out of memory\n");
  EXPECT_EQ(EndingOf([](Console&) -> int { throw 1; }).err, "prog: error 51: Internal error\n");
}

TEST(ExitCodeOf, TurnsAFailingStreamIntoALineAndCode1) {
  const Ending ending = EndingOf([](Console&) -> int { throw StreamError("it is full"); });
  EXPECT_EQ(ending.code, ExitCode::kFailure);
  EXPECT_EQ(ending.err, "prog: it is full\n");
}

TEST(Console, WritesLargeOutputWhole) {
  const std::string line(1000, 'x');
  const Ending ending = EndingOf([&](Console& console) {
    for (int i = 0; i < 200; ++i) console.Out(line);
    return 0;
  });
  EXPECT_EQ(ending.out, std::string(200000, 'x'));
}

}  // namespace
}  // namespace quorvane::programs
