// quorvane: the services of the library from the command line.

#include <algorithm>
#include <string>

#include "programs/common/program.h"
#include "programs/quorvane/commands.h"

namespace quorvane::examples {
namespace {

// The version block of the module bears the same text.
constexpr const char* kVersion = "quorvane 3.09.0001\n";

std::string GeneralHelp() {
  std::string help =
      "usage: quorvane COMMAND [ARGUMENTS]\n"
      "       quorvane help COMMAND\n"
      "       quorvane --help | --version\n"
      "\n"
      "commands:\n";
  std::size_t width = 0;
  for (const Command& command : AllCommands())
    width = std::max(width, std::string(command.name).size());
  for (const Command& command : AllCommands()) {
    std::string name = command.name;
    name.resize(width, ' ');
    help += "  " + name + "  " + command.summary + "\n";
  }
  return help +
         "\n"
         "Texts are UTF-8, in and out. \"--\" ends the options of a command.\n"
         "exit codes: 0 success; 1 a run-time error, or output that cannot be written; 2 wrong "
         "usage\n";
}

int Print(Console& console, const std::string& text) {
  console.Out(text);
  return ExitCode::kSuccess;
}

// `quorvane help`, `quorvane help COMMAND`.
int Help(std::span<const std::string> words, Console& console) {
  if (words.empty()) return Print(console, GeneralHelp());
  if (words.size() > 1) throw UsageError("too many arguments, from '" + words[1] + "' on");
  return Print(console, FindCommand(words.front()).help);
}

// Whether --help stands among the options, where a value or an operand may have the same spelling
// only behind "--".
bool AsksForHelp(std::span<const std::string> words) {
  const auto options_end = std::ranges::find(words, "--");
  return std::find(words.begin(), options_end, "--help") != options_end;
}

int RunCommand(const Command& command, std::span<const std::string> words, Console& console) {
  if (AsksForHelp(words)) return Print(console, command.help);
  try {
    return command.run(Arguments(words, command.options), console);
  } catch (const UsageError& error) {
    throw UsageError(std::string(command.name) + ": " + error.what(), command.name);
  }
}

int Run(std::span<const std::string> words, Console& console) {
  if (words.empty()) throw UsageError("a command is missing");
  const std::string& first = words.front();
  const std::span<const std::string> rest = words.subspan(1);
  if (first == "help" || first == "--help") return Help(rest, console);
  if (first == "--version") {
    if (!rest.empty()) throw UsageError("too many arguments, from '" + rest[0] + "' on");
    return Print(console, kVersion);
  }
  if (first.starts_with('-')) throw UsageError("unknown option '" + first + "'");
  return RunCommand(FindCommand(first), rest, console);
}

}  // namespace

int ProgramMain(std::span<const std::string> words) {
  Console console("quorvane");
  return Guard(console, [&] { return Run(words, console); });
}

}  // namespace quorvane::examples
