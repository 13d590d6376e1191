#include "programs/quorvane/commands.h"

#include <algorithm>
#include <array>
#include <vector>

#include "programs/common/suggestion.h"

namespace quorvane::programs {
namespace {

// The table of subcommands: one line for each family, see commands.h.
using Family = std::span<const Command> (*)();
constexpr auto kFamilies = std::to_array<Family>({
    CrcCommands,
    FormCommands,
    TextCommands,
    GradientCommands,
    HostCommands,
    RegistryCommands,
    DoctorCommands,
});

constexpr std::array kProgramOptions{
    Option{"--version", nullptr, "shows the version", 'V'},
};

constexpr Command kProgram{"",
                           "COMMAND",
                           "the services of the library from the command line",
                           R"(Texts are UTF-8, in and out. "--" ends the options of a command.
exit codes: 0 success; 1 a run-time error, or output that cannot be written;
2 wrong usage; 130 ended from the keyboard)",
                           kProgramOptions,
                           nullptr};

std::vector<Command> Collect() {
  std::vector<Command> all;
  for (const Family family : kFamilies) {
    const std::span<const Command> commands = family();
    all.insert(all.end(), commands.begin(), commands.end());
  }
  return all;
}

// The command of that name; raises UsageError, which calls the name `word` and suggests another of
// the group's, or of the program's own.
const Command& Find(const std::string& name, const std::string& word, const Command* group) {
  std::vector<std::string> names;
  for (const Command& command : AllCommands()) {
    if (name == command.name) return command;
    const std::string_view known = command.name;
    if (group != nullptr && command.BelongsTo(*group))
      names.emplace_back(known.substr(known.find(' ') + 1));
    if (group == nullptr && known.find(' ') == std::string_view::npos) names.emplace_back(known);
  }
  const std::string hint = " '" + word + "'" + Suggestion(word, names);
  if (group == nullptr) throw UsageError("unknown command" + hint);
  throw UsageError(std::string(group->name) + ": unknown operation" + hint, group->name);
}

const Command& TakeOperation(const Command& group, std::vector<std::string>& words,
                             bool group_will_do) {
  const std::string prefix = std::string(group.name) + " ";
  const auto end = std::ranges::find(words, "--");
  auto found = std::find_if(words.begin(), end, [&prefix](const std::string& word) {
    return std::ranges::any_of(
        AllCommands(), [&](const Command& command) { return command.name == prefix + word; });
  });
  if (found == end) {
    found = std::find_if(words.begin(), end,
                         [](const std::string& word) { return !word.starts_with('-'); });
  }
  if (found == end) {
    if (group_will_do) return group;
    throw UsageError(
        std::string(group.name) + ": too few arguments: " + group.operands + " is wanted",
        group.name);
  }
  const std::string word = *found;
  const Command& command = Find(prefix + word, word, &group);
  words.erase(found);
  return command;
}

}  // namespace

bool Command::BelongsTo(const Command& group) const {
  return std::string_view(name).starts_with(std::string(group.name) + " ");
}

std::span<const Command> AllCommands() {
  static const std::vector<Command> kAll = Collect();
  return kAll;
}

const Command& Program() { return kProgram; }

const Command& TakeCommand(std::vector<std::string>& words, bool group_will_do) {
  const std::string first = words.front();
  const Command& command = Find(first, first, nullptr);
  words.erase(words.begin());
  return command.IsGroup() ? TakeOperation(command, words, group_will_do) : command;
}

}  // namespace quorvane::programs
