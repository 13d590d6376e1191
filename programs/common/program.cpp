#include "programs/common/program.h"

#include "programs/common/options.h"
#include "runtime/utf8.h"

namespace quorvane::programs {

std::string DescribeError(const RuntimeError& error) {
  std::string line = "error " + std::to_string(error.number) + ": " + ToUtf8(error.description);
  if (!error.source.IsEmpty()) line += " (" + ToUtf8(error.source) + ")";
  return line;
}

namespace {

int Complain(Console& console, const std::string& message, int exit_code) {
  console.Complain(message);
  return exit_code;
}

int RunBody(Console& console, const std::function<int()>& body) {
  try {
    return body();
  } catch (const UsageError& error) {
    const std::string topic = error.Topic().empty() ? "" : " " + error.Topic();
    return Complain(console,
                    error.what() + ("\nTry '" + console.ProgramName()) + topic + " --help'.",
                    ExitCode::kUsage);
  } catch (const StreamError&) {
    throw;
  } catch (...) {
    return Complain(console, DescribeError(CurrentRuntimeError()), ExitCode::kFailure);
  }
}

}  // namespace

int ExitCodeOf(Console& console, const std::function<int()>& body) {
  try {
    const int exit_code = RunBody(console, body);
    console.Flush();
    return exit_code;
  } catch (const StreamError& error) {
    console.Err(console.ProgramName() + ": " + error.what() + "\n");
    return ExitCode::kFailure;
  }
}

}  // namespace quorvane::programs
