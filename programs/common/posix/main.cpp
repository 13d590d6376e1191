#include <csignal>

#include "programs/common/program.h"
#include "runtime/ignored_result.h"
#include "runtime/utf8.h"

int main(int count, char** words) {
  // A reader that went away shall be a failing write, which is reported, and not a silent death.
  quorvane::IgnoreResult(std::signal(SIGPIPE, SIG_IGN));
  const std::vector<std::string> all(words, words + count);
  return quorvane::examples::ProgramMain(std::span(all).subspan(all.empty() ? 0 : 1));
}
