// quorvane text: the string helpers.

#include <algorithm>
#include <array>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/conversions.h"
#include "programs/common/program.h"
#include "programs/quorvane/commands.h"
#include "programs/quorvane/escaped_text.h"
#include "runtime/utf8.h"
#include "text/string_helpers.h"

namespace quorvane::programs {
namespace text_family {
namespace {

constexpr std::array kOptions{
    Option{"--batch", nullptr,
           "reads one case a line from standard input, its texts divided by "
           "tabs, and writes one result a line, at once. In and out \\t is a "
           "tab, \\n a line feed, \\\\ a backslash, \\u20AC a 16-bit character, "
           "and so on as in C. A case that fails gives a line that starts "
           "with \"!\" and the error's number; a result that starts so is "
           "written \\x21... The exit code is then 1, and the other cases are "
           "still done",
           'b', false, true},
};

using Operands = std::vector<Text>;

using Helper = Text (*)(const Operands& operands);

Text Number(std::int32_t value) { return ToText(value); }

Text Empty(const Operands& o) { return IsEmptyText(o[0]).IsTrue() ? u"True" : u"False"; }
Text Last(const Operands& o) { return Number(LastPosition(o[0], o[1])); }
Text Replace(const Operands& o) { return ReplaceAll(o[0], o[1], o[2]); }
Text Date(const Operands& o) { return PackedDateToShortDate(o[0]); }
Text Base36(const Operands& o) { return NumberToBase36(ToInteger32(o[0])); }

std::vector<std::string> NamesOf(const std::string& operands) {
  std::istringstream stream(operands);
  return {std::istream_iterator<std::string>(stream), {}};
}

Operands SplitCase(const std::string& names, std::string_view line) {
  Operands operands;
  for (std::size_t start = 0; start <= line.size();) {
    const std::size_t tab = std::min(line.find('\t', start), line.size());
    operands.push_back(Unescaped(FromUtf8(line.substr(start, tab - start))));
    start = tab + 1;
  }
  if (operands.size() != NamesOf(names).size())
    throw EscapeError(names + " is wanted, divided by tabs");
  return operands;
}

// The error with what it is about: "error 6: Overflow: VALUE is '99999999999'".
std::string DescribeFailure(const RuntimeError& error, const std::string& names,
                            const Operands& operands) {
  std::string line = DescribeError(error);
  for (std::size_t i = 0; i < operands.size(); ++i) {
    line += (i == 0 ? ": " : ", ") + NamesOf(names)[i] + " is '" + Escaped(operands[i]) + "'";
  }
  return line;
}

// A line of results never starts with "!" unless it tells of a failure.
std::string ResultLine(const Text& result) {
  const std::string line = Escaped(result);
  return line.starts_with('!') ? "\\x21" + line.substr(1) : line;
}

bool RunCase(Helper helper, const std::string& names, std::string_view line, Console& console) {
  Operands operands;
  try {
    operands = SplitCase(names, line);
    console.Out(ResultLine(helper(operands)) + "\n");
    return true;
  } catch (const RuntimeError& error) {
    console.Out("!" + DescribeFailure(error, names, operands) + "\n");
  } catch (const EscapeError& error) {
    console.Out(std::string("!") + error.what() + "\n");
  }
  return false;
}

int RunBatch(Helper helper, const std::string& names, Console& console) {
  int exit_code = ExitCode::kSuccess;
  while (const auto line = console.ReadLine())
    if (!RunCase(helper, names, *line, console)) exit_code = ExitCode::kFailure;
  return exit_code;
}

int RunOnce(Helper helper, const std::string& names, const std::vector<std::string>& words,
            Console& console) {
  Operands operands;
  std::ranges::transform(words, std::back_inserter(operands),
                         [](const std::string& word) { return FromUtf8(word); });
  try {
    console.Out(ToUtf8(helper(operands)) + "\n");
    return ExitCode::kSuccess;
  } catch (const RuntimeError& error) {
    console.Complain(DescribeFailure(error, names, operands));
    return ExitCode::kFailure;
  }
}

constexpr const char* kGroupDetails =
    R"(The string helpers, on one case or, with --batch, on any number of them.)";

// An operation: what the help tells of it, and what it does.
struct Operation {
  const char* name;
  const char* operands;
  const char* summary;
  const char* details;
  Helper helper;
};

constexpr std::array kOperations{
    Operation{"text empty", "TEXT", "whether a text counts as empty",
              "Prints True or False: whether TEXT counts as empty.", Empty},
    Operation{"text last-position", "TEXT FIND", "where a text stands last in another",
              R"(Prints where FIND stands last in TEXT, counted from 1 in 16-bit characters; 0:
nowhere.)",
              Last},
    Operation{"text replace", "TEXT FIND REPLACEMENT", "a text with parts replaced",
              "Prints TEXT with each FIND, whatever its case, replaced by REPLACEMENT.", Replace},
    Operation{"text short-date", "PACKED", "a packed date in the locale's short form",
              R"(Prints the date yyyymmdd behind the first five characters of PACKED, in the
short form of the system locale.)",
              Date},
    Operation{"text base36", "VALUE", "a number in the digits 0-9 and A-Z",
              R"(Prints VALUE, 1 to 32767, in the digits 0-9 and A-Z; nothing for any other.)",
              Base36},
};

template <std::size_t kIndex>
int Run(const Arguments& arguments, Console& console) {
  constexpr const Operation& kOperation = kOperations[kIndex];
  if (arguments.Has("--batch")) return RunBatch(kOperation.helper, kOperation.operands, console);
  return RunOnce(kOperation.helper, kOperation.operands, arguments.Operands(), console);
}

template <std::size_t kIndex>
constexpr Command CommandOf() {
  constexpr const Operation& kOperation = kOperations[kIndex];
  return {kOperation.name, kOperation.operands, kOperation.summary, kOperation.details,
          kOptions,        Run<kIndex>};
}

constexpr std::array kCommands{
    Command{"text",
            "OPERATION",
            "string helpers: replace, last-position, base36 and others",
            kGroupDetails,
            {},
            nullptr},
    CommandOf<0>(),
    CommandOf<1>(),
    CommandOf<2>(),
    CommandOf<3>(),
    CommandOf<4>(),
};
static_assert(kCommands.size() == 1 + kOperations.size());

}  // namespace
}  // namespace text_family

std::span<const Command> TextCommands() { return text_family::kCommands; }

}  // namespace quorvane::programs
