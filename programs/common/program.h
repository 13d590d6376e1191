#pragma once

#include <functional>
#include <span>
#include <string>

#include "programs/common/console.h"
#include "runtime/runtime_error.h"

namespace quorvane::programs {

/// How a program ends: what a script that called it tests.
struct ExitCode {
  static constexpr int kSuccess = 0;
  static constexpr int kFailure = 1;  ///< a run-time error, or output that could not be written
  static constexpr int kUsage = 2;    ///< the words on the command line make no sense
  static constexpr int kInterrupted = 130;  ///< ended from the keyboard
};

/// "error 53: File not found (quorvane.File)"; without the brackets when the source is empty.
[[nodiscard]] std::string DescribeError(const RuntimeError& error);

/// Runs a program's body and turns what it throws into one line on standard error and an exit code:
/// UsageError (options.h) into kUsage with a hint at --help, anything else into kFailure. Output
/// that could not be written is a failure, whatever the body returned.
[[nodiscard]] int ExitCodeOf(Console& console, const std::function<int()>& body);

/// Each program defines this one; main() stands in posix/ and windows/ and calls it with the words
/// behind the program's name, in UTF-8. On Linux a word arrives byte for byte, so it may be no
/// UTF-8; on Windows a single half of a surrogate pair arrives as U+FFFD.
[[nodiscard]] int ProgramMain(std::span<const std::string> words);

}  // namespace quorvane::programs
