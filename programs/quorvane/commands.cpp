#include "programs/quorvane/commands.h"

#include <array>
#include <string>
#include <vector>

namespace quorvane::examples {
namespace {

// The table of subcommands: one line for each family, see commands.h.
using Family = std::span<const Command> (*)();
constexpr auto kFamilies = std::to_array<Family>({
    CrcCommands,
    FormCommands,
    TextCommands,
    GradientCommands,
    HostCommands,
});

std::vector<Command> Collect() {
  std::vector<Command> all;
  for (const Family family : kFamilies) {
    const std::span<const Command> commands = family();
    all.insert(all.end(), commands.begin(), commands.end());
  }
  return all;
}

}  // namespace

std::span<const Command> AllCommands() {
  static const std::vector<Command> kAll = Collect();
  return kAll;
}

const Command& FindCommand(std::string_view name) {
  for (const Command& command : AllCommands())
    if (name == command.name) return command;
  throw UsageError("unknown command '" + std::string(name) + "'");
}

}  // namespace quorvane::examples
