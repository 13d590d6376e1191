#pragma once

#include <string>
#include <vector>

#include "programs/quorvane/commands.h"

namespace quorvane::programs {

/// "quorvane 3.09.0001"
[[nodiscard]] std::string VersionLine();

/// A command's options and the one that all have.
[[nodiscard]] std::vector<Option> WithHelp(std::span<const Option> options);

/// What `quorvane --help` shows.
[[nodiscard]] std::string GeneralHelp();

/// What `quorvane help COMMAND` shows: the usage, the details, the options or a group's operations.
[[nodiscard]] std::string HelpOf(const Command& command);

/// All of the table as JSON, for what makes manuals and completions of it (`--describe`):
///
///   {"program", "version", "summary", "details", "options": [OPTION ...],
///    "commands": [{"name", "operands", "summary", "details", "is_group", "options": [OPTION
///    ...]}]}
///   OPTION: {"name", "letter" or null, "value" or null, "repeatable", "replaces_operands", "help"}
///
/// The options hold --help, too. An operation of a group is named "GROUP OPERATION" and stands
/// behind it.
[[nodiscard]] std::string Description();

}  // namespace quorvane::programs
