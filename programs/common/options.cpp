#include "programs/common/options.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <sstream>
#include <system_error>

#include "programs/common/suggestion.h"

namespace quorvane::programs {
namespace {

bool IsNegativeNumber(std::string_view word) {
  return word.size() > 1 && word[0] == '-' && word[1] >= '0' && word[1] <= '9';
}

bool IsOption(std::string_view word) {
  return word.size() > 1 && word.front() == '-' && !IsNegativeNumber(word);
}

[[noreturn]] void RefuseUnknown(std::string_view word, std::span<const Option> known) {
  std::vector<std::string> names;
  std::ranges::transform(known, std::back_inserter(names), &Option::name);
  throw UsageError("unknown option '" + std::string(word) + "'" + Suggestion(word, names));
}

const Option& Find(std::span<const Option> known, std::string_view name) {
  const auto found =
      std::ranges::find_if(known, [&](const Option& option) { return name == option.name; });
  if (found == known.end()) RefuseUnknown(name, known);
  return *found;
}

const Option& Find(std::span<const Option> known, char letter) {
  const auto found = std::ranges::find(known, letter, &Option::letter);
  if (found == known.end()) throw UsageError(std::string("unknown option '-") + letter + "'");
  return *found;
}

}  // namespace

Arguments::Arguments(std::span<const std::string> words, std::span<const Option> known) {
  std::size_t at = 0;
  while (at < words.size() && words[at] != "--") {
    if (words[at].starts_with("--")) {
      at = TakeLong(words, at, known);
    } else if (IsOption(words[at])) {
      at = TakeShort(words, at, known);
    } else {
      operands_.push_back(words[at++]);
    }
  }
  for (++at; at < words.size(); ++at) operands_.push_back(words[at]);
}

std::size_t Arguments::TakeLong(std::span<const std::string> words, std::size_t at,
                                std::span<const Option> known) {
  const std::string& word = words[at];
  const std::size_t equals = word.find('=');
  const bool has_own_value = equals != std::string::npos;
  const Option& option = Find(known, word.substr(0, equals));
  const std::string name = option.name;
  if (option.value == nullptr) {
    if (has_own_value) throw UsageError("option '" + name + "' takes no value");
    Add(option, "");
    return at + 1;
  }
  if (has_own_value) {
    Add(option, word.substr(equals + 1));
    return at + 1;
  }
  if (at + 1 == words.size()) throw UsageError("option '" + name + "' wants a value");
  Add(option, words[at + 1]);
  return at + 2;
}

std::size_t Arguments::TakeShort(std::span<const std::string> words, std::size_t at,
                                 std::span<const Option> known) {
  const std::string& word = words[at];
  for (std::size_t place = 1; place < word.size(); ++place) {
    const Option& option = Find(known, word[place]);
    if (option.value == nullptr) {
      Add(option, "");
      continue;
    }
    if (place + 1 < word.size()) {
      Add(option, word.substr(place + 1));
      return at + 1;
    }
    if (at + 1 == words.size())
      throw UsageError(std::string("option '-") + option.letter + "' wants a value");
    Add(option, words[at + 1]);
    return at + 2;
  }
  return at + 1;
}

void Arguments::Add(const Option& option, std::string value) {
  const std::string name = option.name;
  if (Has(name) && !option.repeatable) throw UsageError("option '" + name + "' is given twice");
  options_.emplace_back(name, std::move(value));
}

bool Arguments::Has(std::string_view option) const { return Value(option).has_value(); }

std::optional<std::string> Arguments::Value(std::string_view option) const {
  for (const auto& [name, value] : options_)
    if (name == option) return value;
  return std::nullopt;
}

std::vector<std::string> Arguments::Values(std::string_view option) const {
  std::vector<std::string> values;
  for (const auto& [name, value] : options_)
    if (name == option) values.push_back(value);
  return values;
}

void Arguments::RequireOperands(std::size_t least, std::size_t most,
                                const std::string& names) const {
  if (operands_.size() < least) throw UsageError("too few arguments: " + names + " is wanted");
  if (operands_.size() > most)
    throw UsageError("too many arguments, from '" + operands_[most] + "' on");
}

void Arguments::RequireOperands(std::string_view line) const {
  std::size_t least = 0;
  std::size_t most = 0;
  std::istringstream names{std::string(line)};
  std::string wanted;
  for (std::string name; names >> name;) {
    const std::size_t dots = name.find("...");
    if (!name.starts_with('[')) ++least;
    most = dots == std::string::npos ? most + 1 : kAnyNumber;
    if (dots != std::string::npos) name.erase(dots, 3);
    wanted += (wanted.empty() ? "" : " ") + name;
  }
  RequireOperands(least, most, wanted);
}

std::int32_t ParseInteger(const std::string& word, const std::string& what, std::int32_t lowest,
                          std::int32_t highest) {
  const bool hexadecimal = word.starts_with("0x") || word.starts_with("0X");
  const char* const begin = word.data() + (hexadecimal ? 2 : 0);
  const char* const end = word.data() + word.size();
  std::int64_t value = 0;
  const auto [stop, error] = std::from_chars(begin, end, value, hexadecimal ? 16 : 10);
  const bool is_number = stop == end && (error == std::errc{} || stop != begin);
  if (!is_number || (hexadecimal && *begin == '-'))
    throw UsageError(what + " is no number: '" + word + "'");
  if (error == std::errc::result_out_of_range || value < lowest || value > highest) {
    throw UsageError(what + " must lie in " + std::to_string(lowest) + " to " +
                     std::to_string(highest) + ": '" + word + "'");
  }
  return static_cast<std::int32_t>(value);
}

}  // namespace quorvane::programs
