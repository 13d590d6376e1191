#pragma once

#include <span>
#include <string_view>

#include "programs/common/console.h"
#include "programs/common/options.h"

namespace quorvane::examples {

/// One subcommand of the program.
struct Command {
  const char* name;
  const char* summary;  ///< one line for `quorvane --help`
  const char* help;     ///< for `quorvane help NAME`, from "usage: ..." to its last newline
  std::span<const Option> options;
  /// Does the work and gives the exit code. Usage errors and run-time errors are thrown: main.cpp
  /// turns them into a line on standard error and the right code.
  int (*run)(const Arguments& arguments, Console& console);
};

// A family of subcommands has one source file, command_<family>.cpp, which defines its list here.
// To add a subcommand: append it to its family's list. To add a family: write its file, declare its
// list below, name the list in commands.cpp and the file in CMakeLists.txt.
[[nodiscard]] std::span<const Command> CrcCommands();
[[nodiscard]] std::span<const Command> FormCommands();
[[nodiscard]] std::span<const Command> TextCommands();
[[nodiscard]] std::span<const Command> GradientCommands();
[[nodiscard]] std::span<const Command> HostCommands();

/// All subcommands, in the order of the help.
[[nodiscard]] std::span<const Command> AllCommands();
/// The subcommand of that name; raises UsageError when there is none.
[[nodiscard]] const Command& FindCommand(std::string_view name);

}  // namespace quorvane::examples
