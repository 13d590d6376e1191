// quorvane: the services of the library from the command line.

#include <algorithm>
#include <string>
#include <vector>

#include "programs/common/customs.h"
#include "programs/common/program.h"
#include "programs/quorvane/help.h"

namespace quorvane::programs {
namespace {

using Words = std::vector<std::string>;

int Print(Console& console, const std::string& text) {
  console.Out(text);
  return ExitCode::kSuccess;
}

void RequireEnd(const Words& words) {
  if (!words.empty()) throw UsageError("too many arguments, from '" + words.front() + "' on");
}

// `quorvane help`, `quorvane help COMMAND`, `quorvane help GROUP OPERATION`.
int Help(Words words, Console& console) {
  if (words.empty()) return Print(console, GeneralHelp());
  const Command& command = TakeCommand(words, true);
  RequireEnd(words);
  return Print(console, HelpOf(command));
}

// Takes the words that ask for help away from among the options, where a value or an operand may
// have the same spelling only behind "--".
bool TakeHelpWords(Words& words) {
  const auto options_end = std::ranges::find(words, "--");
  const auto gone = std::remove_if(words.begin(), options_end, IsHelpWord);
  const bool were_there = gone != options_end;
  words.erase(gone, options_end);
  return were_there;
}

int RunCommand(Words words, Console& console) {
  const bool asks_for_help = TakeHelpWords(words);
  const Command& command = TakeCommand(words, asks_for_help);
  if (asks_for_help) return Print(console, HelpOf(command));
  try {
    const Arguments arguments(words, command.options);
    const bool stands_alone = std::ranges::any_of(command.options, [&](const Option& option) {
      return option.replaces_operands && arguments.Has(option.name);
    });
    arguments.RequireOperands(stands_alone ? "" : command.operands);
    return command.run(arguments, console);
  } catch (const UsageError& error) {
    throw UsageError(std::string(command.name) + ": " + error.what(), command.name);
  }
}

int Run(const Words& words, Console& console) {
  if (words.empty()) throw UsageError("a command is missing");
  const std::string& first = words.front();
  const Words rest(words.begin() + 1, words.end());
  if (first == "help" || IsHelpWord(first)) return Help(rest, console);
  if (!first.starts_with('-')) return RunCommand(words, console);
  static constexpr Option kDescribe{"--describe"};
  std::vector<Option> known = WithHelp(Program().options);
  known.push_back(kDescribe);
  const Arguments arguments(std::span(&first, 1), known);
  RequireEnd(rest);
  return Print(console, arguments.Has("--version") ? VersionLine() : Description());
}

}  // namespace

int ProgramMain(std::span<const std::string> words) {
  Console console("quorvane");
  return ExitCodeOf(console, [&] { return Run(Words(words.begin(), words.end()), console); });
}

}  // namespace quorvane::programs
