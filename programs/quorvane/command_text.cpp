// quorvane text: the string helpers.

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "platform/conversions.h"
#include "programs/common/program.h"
#include "programs/quorvane/commands.h"
#include "programs/quorvane/escaped_text.h"
#include "runtime/utf8.h"
#include "text/string_helpers.h"

namespace quorvane::examples {
namespace {

constexpr const char* kHelp =
    "usage: quorvane text empty TEXT\n"
    "       quorvane text last-position TEXT FIND\n"
    "       quorvane text replace TEXT FIND REPLACEMENT\n"
    "       quorvane text short-date PACKED\n"
    "       quorvane text base36 VALUE\n"
    "       quorvane text OPERATION --batch\n"
    "\n"
    "empty          True or False: whether TEXT counts as empty\n"
    "last-position  where FIND stands last in TEXT, counted from 1 in 16-bit characters; 0: "
    "nowhere\n"
    "replace        TEXT with each FIND, whatever its case, replaced by REPLACEMENT\n"
    "short-date     the date yyyymmdd behind the first five characters of PACKED, in the short "
    "form\n"
    "               of the system locale\n"
    "base36         VALUE, 1 to 32767, in the digits 0-9 and A-Z; nothing for any other\n"
    "\n"
    "  --batch      reads one case a line from standard input, its texts divided by tabs, and "
    "writes\n"
    "               one result a line. In and out, \\t is a tab, \\n a line feed, \\\\ a "
    "backslash, \\u20AC\n"
    "               a 16-bit character, and so on as in C. A case that fails gives a line that "
    "starts\n"
    "               with \"!\" and the error's number; a result that starts so is written \\x21... "
    "The\n"
    "               exit code is then 1, and the other cases are still done.\n";

constexpr std::array kOptions{Option{"--batch", false}};

using Operands = std::vector<Text>;

struct Operation {
  std::string_view name;
  std::size_t count;
  const char* operands;
  Text (*run)(const Operands& operands);
};

Text Number(std::int32_t value) { return ToText(value); }

Text Empty(const Operands& o) { return IsEmptyText(o[0]).IsTrue() ? u"True" : u"False"; }
Text Last(const Operands& o) { return Number(LastPosition(o[0], o[1])); }
Text Replace(const Operands& o) { return ReplaceAll(o[0], o[1], o[2]); }
Text Date(const Operands& o) { return PackedDateToShortDate(o[0]); }
Text Base36(const Operands& o) { return NumberToBase36(ToInteger32(o[0])); }

constexpr std::array kOperations{
    Operation{"empty", 1, "TEXT", Empty},
    Operation{"last-position", 2, "TEXT FIND", Last},
    Operation{"replace", 3, "TEXT FIND REPLACEMENT", Replace},
    Operation{"short-date", 1, "PACKED", Date},
    Operation{"base36", 1, "VALUE", Base36},
};

const Operation& FindOperation(const std::string& name) {
  const auto* const found = std::ranges::find(kOperations, name, &Operation::name);
  if (found == kOperations.end()) throw UsageError("unknown operation '" + name + "'");
  return *found;
}

Operands SplitCase(const Operation& operation, std::string_view line) {
  Operands operands;
  for (std::size_t start = 0; start <= line.size();) {
    const std::size_t tab = std::min(line.find('\t', start), line.size());
    operands.push_back(Unescaped(FromUtf8(line.substr(start, tab - start))));
    start = tab + 1;
  }
  if (operands.size() != operation.count) {
    throw EscapeError(std::string(operation.operands) + " is wanted, divided by tabs");
  }
  return operands;
}

// A line of results never starts with "!" unless it tells of a failure.
std::string ResultLine(const Text& result) {
  const std::string line = Escaped(result);
  return line.starts_with('!') ? "\\x21" + line.substr(1) : line;
}

bool RunCase(const Operation& operation, std::string_view line, Console& console) {
  try {
    console.Out(ResultLine(operation.run(SplitCase(operation, line))) + "\n");
    return true;
  } catch (const RuntimeError& error) {
    console.Out("!" + DescribeError(error) + "\n");
  } catch (const EscapeError& error) {
    console.Out(std::string("!") + error.what() + "\n");
  }
  return false;
}

int RunBatch(const Operation& operation, Console& console) {
  const std::string input = console.ReadAll();
  int exit_code = ExitCode::kSuccess;
  for (std::size_t start = 0; start < input.size();) {
    const std::size_t end = std::min(input.find('\n', start), input.size());
    std::string_view line = std::string_view(input).substr(start, end - start);
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (!RunCase(operation, line, console)) exit_code = ExitCode::kFailure;
    start = end + 1;
  }
  return exit_code;
}

int TextCommand(const Arguments& arguments, Console& console) {
  arguments.RequireOperands(1, kAnyNumber, "OPERATION");
  const std::vector<std::string>& words = arguments.Operands();
  const Operation& operation = FindOperation(words.front());
  if (arguments.Has("--batch")) {
    arguments.RequireOperands(1, 1, "OPERATION");
    return RunBatch(operation, console);
  }
  arguments.RequireOperands(1 + operation.count, 1 + operation.count, operation.operands);
  Operands operands;
  std::ranges::transform(words.begin() + 1, words.end(), std::back_inserter(operands),
                         [](const std::string& word) { return FromUtf8(word); });
  console.Out(ToUtf8(operation.run(operands)) + "\n");
  return ExitCode::kSuccess;
}

constexpr std::array kCommands{
    Command{"text", "string helpers: empty, last-position, replace, short-date, base36", kHelp,
            kOptions, TextCommand},
};

}  // namespace

std::span<const Command> TextCommands() { return kCommands; }

}  // namespace quorvane::examples
