// The words of the command line: options, operands, whole numbers, the container's settings.
//
// Oracle: a second reader, which takes letters and words from one list of pieces; strtoll() for the
// numbers.

#include "programs/common/options.h"

#include <cerrno>
#include <cstdlib>
#include <optional>

#include "fuzz/target.h"
#include "programs/form_host/settings.h"
#include "runtime/utf8.h"

namespace quorvane::fuzz::options {

using programs::Arguments;
using programs::Option;
using programs::UsageError;

constexpr Option kKnown[] = {{"--wait", nullptr, "", 'w'},
                             {"--save", "FILE", "", 's'},
                             {"--set", "NAME=VALUE", "", 't', true},
                             {"--long-only", nullptr, ""}};

struct Sorted {
  std::vector<std::pair<std::string, std::string>> options;
  std::vector<std::string> operands;
};

const Option* Named(const std::string& name) {
  for (const Option& option : kKnown)
    if (name == option.name || (option.letter != '\0' && name == std::string{'-', option.letter}))
      return &option;
  return nullptr;
}

// Nothing where the words make no sense.
std::optional<Sorted> Sort(std::vector<std::string> words) {
  Sorted sorted;
  while (!words.empty()) {
    std::string word = words.front();
    words.erase(words.begin());
    if (word == "--") {
      sorted.operands.insert(sorted.operands.end(), words.begin(), words.end());
      break;
    }
    const bool is_long = word.starts_with("--");
    if (word.size() < 2 || word[0] != '-' ||
        (!is_long && std::isdigit(static_cast<unsigned char>(word[1])) != 0)) {
      sorted.operands.push_back(word);
      continue;
    }
    // The option's own name, and what else stands in its word.
    const std::size_t end = is_long ? std::min(word.find('='), word.size()) : 2;
    const Option* const option = Named(word.substr(0, end));
    if (option == nullptr) return std::nullopt;
    std::string value;
    if (option->value == nullptr) {
      if (is_long && end < word.size()) return std::nullopt;
      // The letters behind a bare one are options, too, whatever a word of them would be.
      if (!is_long && end < word.size()) {
        const std::string rest = word.substr(2);
        const Option* const next = rest.empty() ? nullptr : Named(std::string{'-', rest[0]});
        if (next == nullptr) return std::nullopt;
        words.insert(words.begin(), "-" + rest);
      }
    } else if (end < word.size()) {
      value = word.substr(is_long ? end + 1 : end);
    } else {
      if (words.empty()) return std::nullopt;
      value = words.front();
      words.erase(words.begin());
    }
    for (const auto& [name, earlier] : sorted.options)
      if (name == option->name && !option->repeatable) return std::nullopt;
    sorted.options.emplace_back(option->name, value);
  }
  return sorted;
}

void CheckWords(const std::vector<std::string>& words) {
  const auto expected = Sort(words);
  try {
    const Arguments arguments(words, kKnown);
    Require(expected.has_value(), "words without sense are taken");
    Require(arguments.Operands() == expected->operands, "the operands");
    for (const Option& option : kKnown) {
      std::vector<std::string> values;
      for (const auto& [name, value] : expected->options)
        if (name == option.name) values.push_back(value);
      Require(arguments.Values(option.name) == values, "an option's values");
      Require(arguments.Has(option.name) == !values.empty(), "whether an option is given");
    }
  } catch (const UsageError& error) {
    Require(!expected, error.what());
  }
}

void CheckInteger(const std::string& word) {
  const bool is_hexadecimal = word.starts_with("0x") || word.starts_with("0X");
  const std::string digits = is_hexadecimal ? word.substr(2) : word;
  const bool is_negative = !is_hexadecimal && digits.starts_with('-');
  const std::string plain = is_negative ? digits.substr(1) : digits;
  const char* const known = is_hexadecimal ? "0123456789abcdefABCDEF" : "0123456789";
  const bool is_number = !plain.empty() && plain.find_first_not_of(known) == std::string::npos;
  errno = 0;
  const long long value = std::strtoll(digits.c_str(), nullptr, is_hexadecimal ? 16 : 10);
  const bool is_good = is_number && errno == 0 && value >= -70000 && value <= 70000;
  try {
    Require(programs::ParseInteger(word, "N", -70000, 70000) == value && is_good, "ParseInteger()");
  } catch (const UsageError&) {
    Require(!is_good, "ParseInteger() refuses a number");
  }
}

void CheckSetting(const std::string& word) {
  const std::size_t sign = word.find('=');
  bool is_good = false;
  for (const char* name : {"ServerAddress", "ServerPort", "ServerFile", "UseProxy", "ProxyServer",
                           "UserName", "Password"})
    is_good = is_good || (sign != std::string::npos && word.substr(0, sign) == name);
  try {
    const programs::Change change = programs::ParseChange(word);
    Require(is_good && ToUtf8(change.setting) == word.substr(0, sign) &&
                change.value == FromUtf8(word.substr(sign + 1)),
            "ParseChange()");
  } catch (const UsageError&) {
    Require(!is_good, "ParseChange() refuses a setting");
  }
}

void Run(Input input) {
  std::vector<std::string> words;
  std::string word;
  std::string bytes = input.Rest();
  std::erase(bytes, '\0');  // no system hands one over
  for (const char c : bytes) {
    if (c != '\n') {
      word += c;
      continue;
    }
    words.push_back(word);
    word.clear();
  }
  words.push_back(word);
  CheckWords(words);
  CheckInteger(words.front());
  CheckSetting(words.back());
}

const Registered kTarget("options", Run);

}  // namespace quorvane::fuzz::options
