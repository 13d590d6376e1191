#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quorvane::programs {

/// The words on the command line make no sense. what() says why, in one line; Topic() is the
/// subcommand whose help the hint should name, or empty.
class UsageError : public std::runtime_error {
 public:
  explicit UsageError(const std::string& message, std::string topic = {})
      : std::runtime_error(message), topic_(std::move(topic)) {}

  [[nodiscard]] const std::string& Topic() const { return topic_; }

 private:
  std::string topic_;
};

/// An option that a command knows.
struct Option {
  const char* name = "";           ///< with its dashes: "--save"
  const char* value = nullptr;     ///< what the help calls its value, "FILE"; null for a bare word
  const char* help = "";           ///< what it does, in one paragraph
  char letter = '\0';              ///< of its short form, 's' for "-s"; zero for none
  bool repeatable = false;         ///< else a second one is a usage error
  bool replaces_operands = false;  ///< with it the command takes no operands
};

/// The words of one command, sorted into options and operands.
///
/// Options may stand before, between or behind the operands; "--" ends them, and whatever follows
/// is an operand. A long one is "--save FILE", "--save=FILE" or a bare "--wait"; a short one
/// "-s FILE", "-sFILE" or a bare "-w", and bare ones may be written together. A single dash is an
/// operand (standard input, where a command says so), and so is a negative number. Any other word
/// that starts with a dash is an unknown option.
class Arguments {
 public:
  /// Raises UsageError for an unknown option, a missing or an unwanted value, and an option given
  /// twice.
  Arguments(std::span<const std::string> words, std::span<const Option> known);

  [[nodiscard]] bool Has(std::string_view option) const;
  /// The option's value, or nothing when it was not given; for a repeatable one the first value.
  [[nodiscard]] std::optional<std::string> Value(std::string_view option) const;
  /// All values of a repeatable option, in the order given.
  [[nodiscard]] std::vector<std::string> Values(std::string_view option) const;
  [[nodiscard]] const std::vector<std::string>& Operands() const { return operands_; }

  /// Raises UsageError unless there are at least `least` and at most `most` operands; `names` are
  /// what the help calls them, "FILE...".
  void RequireOperands(std::size_t least, std::size_t most, const std::string& names) const;
  /// The same by the help's own line of operands, "HIVE KEY NAME [VALUE]": each word is one, in
  /// brackets one that may be left out, and "..." says any number of it.
  void RequireOperands(std::string_view line) const;

 private:
  /// Each takes the option or options at words[at] with their value; gives the next word's index.
  std::size_t TakeLong(std::span<const std::string> words, std::size_t at,
                       std::span<const Option> known);
  std::size_t TakeShort(std::span<const std::string> words, std::size_t at,
                        std::span<const Option> known);
  void Add(const Option& option, std::string value);

  std::vector<std::pair<std::string, std::string>> options_;
  std::vector<std::string> operands_;
};

/// No upper limit for RequireOperands().
inline constexpr std::size_t kAnyNumber = SIZE_MAX;

/// A decimal integer, or "0x" with hexadecimal digits, within the limits (both inclusive); raises
/// UsageError, which calls it `what`.
[[nodiscard]] std::int32_t ParseInteger(const std::string& word, const std::string& what,
                                        std::int32_t lowest = INT32_MIN,
                                        std::int32_t highest = INT32_MAX);

}  // namespace quorvane::programs
