// The text of a form file: see form_file.h for its rules.

#include <array>
#include <charconv>
#include <optional>

#include "platform/conversions.h"
#include "programs/form_host/form_file.h"
#include "runtime/utf8.h"

namespace quorvane::programs {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsNameCharacter(char c) { return IsLetter(c) || IsDigit(c) || c == '_'; }

// What the letter behind a backslash stands for, and back.
struct Escape {
  char letter;
  char16_t character;
};
constexpr auto kEscapes = std::to_array<Escape>({
    {'"', u'"'},
    {'\\', u'\\'},
    {'n', u'\n'},
    {'r', u'\r'},
    {'t', u'\t'},
});

// One line of the file, eaten from the left.
class Line {
 public:
  explicit Line(std::string_view text) : rest_(text) {}

  [[nodiscard]] bool IsBlankOrComment() {
    SkipBlanks();
    return rest_.empty() || rest_.front() == '\'' || rest_.front() == ';';
  }

  FormEntry TakeEntry() {
    FormEntry entry;
    SkipBlanks();
    entry.name = TakeName();
    SkipBlanks();
    if (!TakeIf('=')) throw FormFileError("a name must be followed by \"=\" and a value");
    SkipBlanks();
    entry.value = TakeValue();
    SkipBlanks();
    if (!rest_.empty()) throw FormFileError("nothing may follow the value");
    return entry;
  }

 private:
  void SkipBlanks() {
    while (!rest_.empty() && (rest_.front() == ' ' || rest_.front() == '\t'))
      rest_.remove_prefix(1);
  }

  bool TakeIf(char c) {
    if (!rest_.starts_with(c)) return false;
    rest_.remove_prefix(1);
    return true;
  }

  template <class Belongs>
  std::string_view TakeWhile(Belongs belongs) {
    std::size_t length = 0;
    while (length < rest_.size() && belongs(rest_[length])) ++length;
    const std::string_view taken = rest_.substr(0, length);
    rest_.remove_prefix(length);
    return taken;
  }

  Text TakeName() {
    if (rest_.empty() || !IsLetter(rest_.front()))
      throw FormFileError("an entry must start with a name of letters, digits and underscores");
    return FromUtf8(TakeWhile(IsNameCharacter));
  }

  TaggedValue TakeValue() {
    if (TakeIf('"')) return TakeText();
    const std::string_view word = TakeWhile([](char c) { return c != ' ' && c != '\t'; });
    if (word == "True") return kTrue;
    if (word == "False") return kFalse;
    if (!word.empty() && (word.front() == '-' || IsDigit(word.front()))) return Number(word);
    throw FormFileError("a value must be a text in quotes, a whole number, True or False");
  }

  static TaggedValue Number(std::string_view word) {
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    if (error == std::errc::result_out_of_range)
      throw FormFileError("the number lies outside -2147483648 to 2147483647");
    if (error != std::errc{} || end != word.data() + word.size())
      throw FormFileError("a number must be whole, of decimal digits only");
    if (number >= INT16_MIN && number <= INT16_MAX) return static_cast<std::int16_t>(number);
    return number;
  }

  // Behind the opening quote, up to and with the closing one.
  TaggedValue TakeText() {
    std::u16string characters;
    for (;;) {
      const std::string_view plain = TakeWhile([](char c) { return c != '"' && c != '\\'; });
      for (const char c : plain)
        if (static_cast<unsigned char>(c) < 0x20)
          throw FormFileError("a control character in a text must be written as \\uXXXX");
      characters += FromUtf8(plain).Characters();
      if (TakeIf('"')) return Text(characters);
      if (!TakeIf('\\')) throw FormFileError("the text lacks its closing quote");
      characters += TakeEscaped();
    }
  }

  char16_t TakeEscaped() {
    for (const Escape& escape : kEscapes)
      if (TakeIf(escape.letter)) return escape.character;
    std::uint16_t code = 0;
    if (TakeIf('u') && rest_.size() >= 4) {
      const char* const end = rest_.data() + 4;
      const auto [stop, error] = std::from_chars(rest_.data(), end, code, 16);
      if (error == std::errc{} && stop == end) {
        rest_.remove_prefix(4);
        return static_cast<char16_t>(code);
      }
    }
    throw FormFileError("behind a backslash must stand \\ \" n r t or u with four hex digits");
  }

  std::string_view rest_;
};

// Without its end; the rest starts behind it.
std::string_view TakeLine(std::string_view& rest) {
  const std::size_t end = rest.find('\n');
  std::string_view line = rest.substr(0, end);
  rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

void AddLine(std::vector<FormEntry>& entries, std::string_view text) {
  if (ToUtf8(FromUtf8(text)) != text) throw FormFileError("the line is not UTF-8");
  Line line(text);
  if (line.IsBlankOrComment()) return;
  FormEntry entry = line.TakeEntry();
  for (const FormEntry& earlier : entries)
    if (earlier.name == entry.name)
      throw FormFileError("the entry " + ToUtf8(entry.name) + " stands twice");
  entries.push_back(std::move(entry));
}

bool IsSurrogate(char16_t c) { return c >= 0xD800 && c <= 0xDFFF; }

// The character behind a backslash, or nothing when it may stand as it is. Halves of surrogate
// pairs are always spelled out, which is right for whole pairs, too.
std::optional<std::string> Escaped(char16_t c) {
  for (const Escape& escape : kEscapes)
    if (escape.character == c) return std::string{'\\', escape.letter};
  if (c >= 0x20 && !IsSurrogate(c)) return std::nullopt;
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  return std::string{
      '\\', 'u', kDigits[c >> 12], kDigits[(c >> 8) & 15], kDigits[(c >> 4) & 15], kDigits[c & 15]};
}

std::string Quoted(const Text& text) {
  std::string quoted = "\"";
  for (const char16_t c : text.Characters()) {
    const auto escaped = Escaped(c);
    quoted += escaped ? *escaped : ToUtf8(Text(1, c));
  }
  return quoted + '"';
}

}  // namespace

std::vector<FormEntry> ParseForm(std::string_view bytes) {
  if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
  std::vector<FormEntry> entries;
  for (int number = 1; !bytes.empty(); ++number) {
    try {
      AddLine(entries, TakeLine(bytes));
    } catch (const FormFileError& error) {
      throw FormFileError("line " + std::to_string(number) + ": " + error.what());
    }
  }
  return entries;
}

std::string FormatValue(const TaggedValue& value) {
  return value.Is<Text>() ? Quoted(ToText(value)) : ToUtf8(ToText(value));
}

std::string FormatForm(const std::vector<FormEntry>& entries) {
  std::string bytes;
  for (const FormEntry& entry : entries)
    bytes += ToUtf8(entry.name) + " = " + FormatValue(entry.value) + "\n";
  return bytes;
}

}  // namespace quorvane::programs
