#include <csignal>
#include <string>
#include <vector>

#include "programs/common/customs.h"
#include "programs/common/posix/command_line.h"
#include "programs/common/program.h"
#include "runtime/ignored_result.h"

int main(int count, char** words) {
  using namespace quorvane::programs;
  // A reader that went away shall be a failing write, which is reported, and not a silent death.
  quorvane::IgnoreResult(std::signal(SIGPIPE, SIG_IGN));
  EndOnInterrupt();
  KeepCommandLine(std::span(words, static_cast<std::size_t>(count)));
  const std::vector<std::string> behind_the_name(words + (count > 0 ? 1 : 0), words + count);
  return ProgramMain(behind_the_name);
}
