#pragma once

#include <span>
#include <string>
#include <string_view>

#include "programs/common/console.h"
#include "programs/common/options.h"

namespace quorvane::programs {

/// One subcommand of the program: all that the help, the hints, the manual and the completions tell
/// of it comes from here, see help.h.
struct Command {
  const char* name;      ///< "crc"; behind its group's name where it belongs to one: "text empty"
  const char* operands;  ///< "HIVE KEY NAME [VALUE]", see Arguments::RequireOperands()
  const char* summary;   ///< one line, without a full stop
  const char* details;  ///< the help's paragraphs, lines of 80 columns at most; no line end at last
  std::span<const Option> options;  ///< --help is every command's and stands in none
  /// Does the work and gives the exit code. Usage errors and run-time errors are thrown: main.cpp
  /// turns them into a line on standard error and the right code. Null for a group.
  int (*run)(const Arguments& arguments, Console& console);

  [[nodiscard]] bool IsGroup() const { return run == nullptr; }
  /// Whether it is an operation of that group.
  [[nodiscard]] bool BelongsTo(const Command& group) const;
};

// A family of subcommands has one source file, command_<family>.cpp, which defines its list here.
// To add a subcommand: append it to its family's list. To add a family: write its file, declare its
// list below, name the list in commands.cpp and the file in CMakeLists.txt.
[[nodiscard]] std::span<const Command> CrcCommands();
[[nodiscard]] std::span<const Command> FormCommands();
[[nodiscard]] std::span<const Command> TextCommands();
[[nodiscard]] std::span<const Command> GradientCommands();
[[nodiscard]] std::span<const Command> HostCommands();
[[nodiscard]] std::span<const Command> RegistryCommands();
[[nodiscard]] std::span<const Command> DoctorCommands();

/// All subcommands in the order of the help, each group before its operations.
[[nodiscard]] std::span<const Command> AllCommands();

/// The words that stand for no command; the same table for them.
[[nodiscard]] const Command& Program();

/// Takes the subcommand's name from the words of the command line: the first, and for a group the
/// operation among those that follow, wherever it stands. The words behind the options' end "--"
/// are never taken. Raises UsageError when there is none of that name; a group without an operation
/// is returned itself when `group_will_do`.
[[nodiscard]] const Command& TakeCommand(std::vector<std::string>& words, bool group_will_do);

}  // namespace quorvane::programs
