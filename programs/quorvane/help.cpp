#include "programs/quorvane/help.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <sstream>
#include <vector>

#include "programs/quorvane/json.h"

namespace quorvane::programs {
namespace {

// The version block of the module bears the same text.
constexpr const char* kVersion = QUORVANE_VERSION_TEXT;

constexpr Option kHelpOption{"--help", nullptr, "shows this help", 'h'};

std::string UsageOf(const Command& command) {
  const std::string start = "quorvane " + std::string(command.name);
  const auto with = [](const std::string& words) { return words.empty() ? "" : " " + words; };
  std::string usage =
      start + (command.options.empty() ? "" : " [OPTION]...") + with(command.operands) + "\n";
  for (const Option& option : command.options) {
    if (!option.replaces_operands) continue;
    const std::string value = option.value == nullptr ? "" : option.value;
    usage += start + " " + option.name + with(value) + "\n";
  }
  return usage;
}

// "usage: " before the first of the lines, as much room before the others.
std::string UsageBlock(const std::string& lines) {
  std::string block;
  for (std::size_t start = 0; start < lines.size();) {
    const std::size_t end = lines.find('\n', start) + 1;
    block += (start == 0 ? "usage: " : "       ") + lines.substr(start, end - start);
    start = end;
  }
  return block;
}

struct Row {
  std::string name;
  std::string text;
};

constexpr std::size_t kLineWidth = 80;

// Two columns; the words of a text fill lines below each other.
std::string Columns(std::span<const Row> rows) {
  std::size_t width = 0;
  for (const Row& row : rows) width = std::max(width, row.name.size());
  const std::string margin(width + 3, ' ');
  std::string columns;
  for (const Row& row : rows) {
    std::string line = "  " + row.name + std::string(width - row.name.size() + 1, ' ');
    std::istringstream words(row.text);
    for (std::string word; words >> word;) {
      if (line.size() + 1 + word.size() > kLineWidth) {
        columns += line + "\n";
        line = margin;
      }
      line += " " + word;
    }
    columns += line + "\n";
  }
  return columns;
}

std::string OptionsBlock(std::span<const Option> options) {
  std::vector<Row> rows;
  for (const Option& option : WithHelp(options)) {
    std::string names = "    ";
    if (option.letter != '\0') names = {'-', option.letter, ',', ' '};
    names += option.name;
    if (option.value != nullptr) names.append(" ").append(option.value);
    rows.push_back({names, option.help});
  }
  return Columns(rows);
}

std::string GroupHelp(const Command& group) {
  std::string usage;
  std::vector<Row> rows;
  for (const Command& command : AllCommands()) {
    if (!command.BelongsTo(group)) continue;
    usage += UsageOf(command);
    rows.push_back(
        {std::string(command.name).substr(std::string(group.name).size() + 1), command.summary});
  }
  return UsageBlock(usage)
      .append("\n")
      .append(group.details)
      .append("\n\n" + Columns(rows) + "\n'quorvane help ")
      .append(group.name)
      .append(" ")
      .append(group.operands)
      .append("' tells more of each.\n");
}

std::string OptionJson(const Option& option) {
  const auto text_or_null = [](const char* text) {
    return text == nullptr ? "null" : JsonText(text);
  };
  const std::array letter{option.letter, '\0'};
  return JsonRecord({{"name", JsonText(option.name)},
                     {"letter", text_or_null(option.letter == '\0' ? nullptr : letter.data())},
                     {"value", text_or_null(option.value)},
                     {"repeatable", JsonBoolean(option.repeatable)},
                     {"replaces_operands", JsonBoolean(option.replaces_operands)},
                     {"help", JsonText(option.help)}});
}

std::string OptionsJson(std::span<const Option> options) {
  std::vector<std::string> list;
  std::ranges::transform(WithHelp(options), std::back_inserter(list), OptionJson);
  return JsonList(list);
}

std::string CommandJson(const Command& command) {
  return JsonRecord({{"name", JsonText(command.name)},
                     {"operands", JsonText(command.operands)},
                     {"summary", JsonText(command.summary)},
                     {"details", JsonText(command.details)},
                     {"is_group", JsonBoolean(command.IsGroup())},
                     {"options", OptionsJson(command.options)}});
}

}  // namespace

std::vector<Option> WithHelp(std::span<const Option> options) {
  std::vector<Option> all(options.begin(), options.end());
  all.push_back(kHelpOption);
  return all;
}

std::string VersionLine() { return std::string("quorvane ") + kVersion + "\n"; }

std::string GeneralHelp() {
  std::vector<Row> rows;
  for (const Command& command : AllCommands()) {
    const std::string name = command.name;
    if (name.find(' ') == std::string::npos) rows.push_back({name, command.summary});
  }
  return "usage: quorvane COMMAND [ARGUMENTS]\n"
         "       quorvane help COMMAND\n"
         "       quorvane --help | --version\n"
         "\n"
         "commands:\n" +
         Columns(rows) + "\n" + Program().details + "\n";
}

std::string HelpOf(const Command& command) {
  if (command.IsGroup()) return GroupHelp(command);
  return UsageBlock(UsageOf(command)) + "\n" + command.details + "\n\n" +
         OptionsBlock(command.options);
}

std::string Description() {
  std::vector<std::string> commands;
  std::ranges::transform(AllCommands(), std::back_inserter(commands), CommandJson);
  return JsonRecord({{"program", JsonText("quorvane")},
                     {"version", JsonText(kVersion)},
                     {"summary", JsonText(Program().summary)},
                     {"details", JsonText(Program().details)},
                     {"options", OptionsJson(Program().options)},
                     {"commands", JsonList(commands)}}) +
         "\n";
}

}  // namespace quorvane::programs
