// The form file: see programs/form_host/form_file.h.
//
// Oracle: a second reader, which cuts the whole file into lines and words first and knows neither
// the house's order of steps nor its words: it tells which entries there are, or the first bad
// line. And what is written of the entries reads back as the same.

#include <cstdlib>
#include <optional>

#include "fuzz/target.h"
#include "programs/form_host/form_file.h"
#include "runtime/utf8.h"

namespace quorvane::fuzz::form_file {

using programs::FormEntry;
using programs::FormFileError;

constexpr const char* kBlanks = " \t";
constexpr const char* kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
constexpr const char* kNameSigns =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_";

std::string WithoutBlanks(const std::string& text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string::npos) return "";
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// Of the characters between the quotes; nothing for a quote or a control character among them, and
// for an unknown escape.
std::optional<std::u16string> TextBetweenQuotes(const std::string& inside) {
  const std::u16string characters = FromUtf8(inside).Characters();
  std::u16string text;
  for (std::size_t i = 0; i < characters.size(); ++i) {
    if (characters[i] < 0x20 || characters[i] == u'"') return std::nullopt;
    if (characters[i] != u'\\') {
      text += characters[i];
      continue;
    }
    if (++i == characters.size()) return std::nullopt;
    const std::u16string kind(1, characters[i]);
    if (kind == u"u") {
      const std::string digits = ToUtf8(characters.substr(i + 1, 4));
      if (digits.size() != 4 || digits.find_first_not_of("0123456789abcdefABCDEF") < 4)
        return std::nullopt;
      text += static_cast<char16_t>(std::strtoul(digits.c_str(), nullptr, 16));
      i += 4;
    } else if (kind == u"n" || kind == u"r" || kind == u"t") {
      text += kind == u"n" ? u'\n' : kind == u"r" ? u'\r' : u'\t';
    } else if (kind == u"\\" || kind == u"\"") {
      text += kind;
    } else {
      return std::nullopt;
    }
  }
  return text;
}

std::optional<TaggedValue> ValueFrom(const std::string& word) {
  if (word == "True") return TaggedValue(kTrue);
  if (word == "False") return TaggedValue(kFalse);
  if (word.size() >= 2 && word.front() == '"' && word.back() == '"') {
    const auto text = TextBetweenQuotes(word.substr(1, word.size() - 2));
    return text ? std::optional<TaggedValue>(Text(*text)) : std::nullopt;
  }
  const std::string digits = word.starts_with('-') ? word.substr(1) : word;
  if (digits.empty() || digits.find_first_not_of("0123456789") != std::string::npos) return {};
  const std::size_t first = std::min(digits.find_first_not_of('0'), digits.size() - 1);
  if (digits.size() - first > 10) return std::nullopt;
  const long long number = std::atoll(word.c_str());
  if (number < -2147483648LL || number > 2147483647LL) return std::nullopt;
  if (number < -32768 || number > 32767) return TaggedValue(static_cast<std::int32_t>(number));
  return TaggedValue(static_cast<std::int16_t>(number));
}

// Nothing for a bad line, no entry for one that holds none.
std::optional<std::vector<FormEntry>> EntryIn(const std::string& line) {
  if (ToUtf8(FromUtf8(line)) != line) return std::nullopt;
  const std::string content = WithoutBlanks(line);
  if (content.empty() || content[0] == '\'' || content[0] == ';') return std::vector<FormEntry>{};
  const std::size_t sign = content.find('=');
  if (sign == std::string::npos) return std::nullopt;
  const std::string name = WithoutBlanks(content.substr(0, sign));
  const bool is_name = !name.empty() && name.find_first_of(kLetters) == 0 &&
                       name.find_first_not_of(kNameSigns) == std::string::npos;
  const auto value = ValueFrom(WithoutBlanks(content.substr(sign + 1)));
  if (!is_name || !value) return std::nullopt;
  return std::vector<FormEntry>{{FromUtf8(name), *value}};
}

struct FormRead {
  std::vector<FormEntry> entries;
  int bad_line = 0;  // counted from 1; 0 for none
};

FormRead ReadForm(std::string bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.erase(0, 3);
  FormRead read;
  for (int number = 1; !bytes.empty(); ++number) {
    const std::size_t end = bytes.find('\n');
    std::string line = bytes.substr(0, end);
    bytes.erase(0, end == std::string::npos ? end : end + 1);
    if (line.ends_with('\r')) line.pop_back();
    const auto entry = EntryIn(line);
    bool is_bad = !entry;
    for (const FormEntry& earlier : read.entries)
      is_bad = is_bad || (!entry->empty() && earlier.name == entry->front().name);
    if (is_bad) return {{}, number};
    read.entries.insert(read.entries.end(), entry->begin(), entry->end());
  }
  return read;
}

void Run(Input input) {
  const std::string bytes = input.Rest();
  const FormRead expected = ReadForm(bytes);
  try {
    const std::vector<FormEntry> entries = programs::ParseForm(bytes);
    Require(expected.bad_line == 0, "a bad line is taken");
    Require(entries == expected.entries, "ParseForm() gives other entries");
    const std::string written = programs::FormatForm(entries);
    Require(programs::ParseForm(written) == entries, "what is written reads back as others");
  } catch (const FormFileError& error) {
    const std::string where = "line " + std::to_string(expected.bad_line) + ": ";
    Require(std::string_view(error.what()).starts_with(where), "the error names another line");
  }
}

const Registered kTarget("form_file", Run);

}  // namespace quorvane::fuzz::form_file
