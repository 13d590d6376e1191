#include "programs/common/customs.h"

#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstring>

#include "programs/common/posix/command_line.h"
#include "programs/common/program.h"
#include "runtime/ignored_result.h"

namespace quorvane::programs {
namespace {

constexpr const char* kLineEnd = "\n";
// NOLINTBEGIN(cppcoreguidelines-avoid-non-const-global-variables): a signal handler can be told
// nothing in another way, and there is one command line
std::atomic<const char*> farewell = kLineEnd;
std::span<char*> command_line;
// NOLINTEND(cppcoreguidelines-avoid-non-const-global-variables)

// Calls only what a signal handler may call.
void End(int /*signal*/) {
  const char* const text = farewell;
  if (::isatty(STDERR_FILENO) == 1) IgnoreResult(::write(STDERR_FILENO, text, std::strlen(text)));
  ::_exit(ExitCode::kInterrupted);
}

}  // namespace

void KeepCommandLine(std::span<char*> words) { command_line = words; }

bool IsHelpWord(std::string_view word) { return word == "--help" || word == "-h"; }

std::vector<std::string> ExpandName(const std::string& word) { return {word}; }

std::string_view EndOfInputKeys() { return "Ctrl-D"; }

void HideFromProcessList(std::string_view secret) {
  for (char* const word : command_line) {
    const std::size_t length = std::strlen(word);
    if (!secret.empty() && std::string_view(word, length).ends_with(secret))
      std::memset(word + (length - secret.size()), '*', secret.size());
  }
}

void EndOnInterrupt() {
  struct sigaction before {};
  if (::sigaction(SIGINT, nullptr, &before) != 0 || before.sa_handler == SIG_IGN) return;
  struct sigaction action {};
  action.sa_handler = &End;
  IgnoreResult(::sigaction(SIGINT, &action, nullptr));
}

void SetFarewell(const char* text) { farewell = text == nullptr ? kLineEnd : text; }

}  // namespace quorvane::programs
