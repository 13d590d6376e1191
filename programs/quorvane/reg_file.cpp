#include "programs/quorvane/reg_file.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include "platform/system_code_page.h"
#include "programs/quorvane/registry_hives.h"
#include "programs/quorvane/utf16_bytes.h"
#include "runtime/utf8.h"

namespace quorvane::programs {
namespace {

constexpr std::string_view kHead = "Windows Registry Editor Version 5.00";
constexpr std::string_view kOldHead = "REGEDIT4";
constexpr std::string_view kUtf16Mark = "\xFF\xFE";
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

using Kind = RegistryChange::Kind;

// --- writing

std::string Quoted(const std::u16string& text) {
  std::string quoted = "\"";
  for (const char c : ToUtf8(Text(text))) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

std::string Hexadecimal(std::uint32_t value, int digits) {
  std::string written;
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
    written += "0123456789abcdef"[(value >> shift) & 15];
  return written;
}

std::string HexadecimalBytes(std::string_view data) {
  std::string written;
  for (const char c : data)
    written += (written.empty() ? "" : ",") + Hexadecimal(static_cast<unsigned char>(c), 2);
  return written;
}

// A text that stands on one line and ends with its only zero.
std::optional<std::u16string> PlainText(const RegistryEntry& value) {
  if (value.type != 1 || value.data.size() % 2 != 0) return std::nullopt;
  std::u16string text = FromUtf16Bytes(value.data);
  if (text.empty() || text.back() != u'\0') return std::nullopt;
  text.pop_back();
  const bool is_plain =
      text.find_first_of(std::u16string_view(u"\0\r\n", 3)) == std::u16string::npos;
  // A single half of a surrogate pair has no UTF-8.
  if (!is_plain || FromUtf8(ToUtf8(Text(text))) != Text(text)) return std::nullopt;
  return text;
}

std::string DataOf(const RegistryEntry& value) {
  if (const auto text = PlainText(value)) return Quoted(*text);
  if (value.type == 4 && value.data.size() == 4) {
    std::uint32_t number = 0;
    for (std::size_t i = 4; i > 0; --i)
      number = (number << 8) | static_cast<unsigned char>(value.data[i - 1]);
    return "dword:" + Hexadecimal(number, 8);
  }
  std::array<char, 16> type{};
  const auto [end, error] = std::to_chars(type.data(), type.data() + type.size(),
                                          static_cast<std::uint32_t>(value.type), 16);
  const std::string kind = value.type == 3 ? "hex:" : "hex(" + std::string(type.data(), end) + "):";
  return kind + HexadecimalBytes(value.data);
}

// --- reading

bool IsUtf8(std::string_view bytes) { return ToUtf8(FromUtf8(bytes)) == bytes; }

std::u16string Decoded(std::string_view bytes) {
  if (bytes.starts_with(kUtf16Mark)) return FromUtf16Bytes(bytes.substr(kUtf16Mark.size()));
  if (bytes.starts_with(kUtf8Mark)) bytes.remove_prefix(kUtf8Mark.size());
  return IsUtf8(bytes) ? FromUtf8(bytes).Characters() : systemCodePage().FromBytes(bytes);
}

std::u16string_view Trimmed(std::u16string_view line) {
  constexpr std::u16string_view kBlanks = u" \t\r";
  while (!line.empty() && kBlanks.find(line.front()) != std::u16string_view::npos)
    line.remove_prefix(1);
  while (!line.empty() && kBlanks.find(line.back()) != std::u16string_view::npos)
    line.remove_suffix(1);
  return line;
}

// Takes a quoted text off the front.
std::optional<std::u16string> TakeQuoted(std::u16string_view& rest) {
  if (!rest.starts_with(u'"')) return std::nullopt;
  std::u16string text;
  for (std::size_t i = 1; i < rest.size(); ++i) {
    if (rest[i] == u'"') {
      rest = Trimmed(rest.substr(i + 1));
      return text;
    }
    if (rest[i] == u'\\' && i + 1 < rest.size()) ++i;
    text += rest[i];
  }
  return std::nullopt;
}

template <class Number>
std::optional<Number> HexadecimalNumber(std::string_view digits) {
  Number number{};
  const auto [end, error] =
      std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
  if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  return number;
}

std::optional<std::string> BytesOf(std::string_view list) {
  std::string bytes;
  while (!list.empty()) {
    const std::size_t end = std::min(list.find(','), list.size());
    const auto byte = HexadecimalNumber<std::uint8_t>(list.substr(0, end));
    if (!byte) return std::nullopt;
    bytes += static_cast<char>(*byte);
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return bytes;
}

class Parser {
 public:
  explicit Parser(std::string_view bytes) : text_(Decoded(bytes)) {}

  std::vector<RegistryChange> Run() {
    const std::string head = ToUtf8(Text(std::u16string(TakeLine())));
    if (head != kHead && head != kOldHead) Refuse("this is no .reg file");
    is_old_ = head == kOldHead;
    while (at_ < text_.size()) Take(TakeLine());
    return std::move(changes_);
  }

 private:
  [[noreturn]] void Refuse(const std::string& reason) const {
    throw RegFileError("line " + std::to_string(line_) + ": " + reason);
  }

  std::u16string_view TakeLine() {
    const std::size_t end = std::min(text_.find(u'\n', at_), text_.size());
    const auto line = Trimmed(std::u16string_view(text_).substr(at_, end - at_));
    at_ = end + 1;
    ++line_;
    return line;
  }

  void Take(std::u16string_view line) {
    if (line.empty() || line.front() == u';') return;
    if (line.front() == u'[') return TakeKey(line);
    if (path_.empty()) Refuse("a value before the first key");
    TakeValue(line);
  }

  void TakeKey(std::u16string_view line) {
    if (line.back() != u']') Refuse("a key without its ]");
    line = line.substr(1, line.size() - 2);
    const bool removes = line.starts_with(u'-');
    if (removes) line.remove_prefix(1);
    const std::size_t end = std::min(line.find(u'\\'), line.size());
    const auto hive = HiveNamed(ToUtf8(Text(line.substr(0, end))));
    if (!hive) Refuse("no such hive");
    if (removes && end + 1 >= line.size()) Refuse("a whole hive cannot be removed");
    const Text root = FromUtf8(hive->long_name);
    path_ = root.Characters() + std::u16string(line.substr(end));
    changes_.push_back({removes ? Kind::kRemoveKey : Kind::kMakeKey, path_, {}});
  }

  void TakeValue(std::u16string_view line) {
    RegistryEntry value;
    if (line.starts_with(u'@')) {
      line = Trimmed(line.substr(1));
    } else {
      const auto name = TakeQuoted(line);
      if (!name) Refuse("a value's name is missing");
      value.name = *name;
    }
    if (!line.starts_with(u'=')) Refuse("a value without its =");
    line = Trimmed(line.substr(1));
    const bool removes = line == u"-";
    if (!removes) TakeData(line, value);
    changes_.push_back({removes ? Kind::kRemoveValue : Kind::kSetValue, path_, value});
  }

  void TakeData(std::u16string_view line, RegistryEntry& value) {
    if (const auto text = TakeQuoted(line)) {
      value.type = 1;
      value.data = Utf16Bytes(*text + u'\0');
      if (!line.empty()) Refuse("something behind a text");
      return;
    }
    std::string data = ToUtf8(Text(line));
    while (data.ends_with('\\') && at_ < text_.size()) {
      data.pop_back();
      data += ToUtf8(Text(TakeLine()));
    }
    std::erase_if(data, [](char c) { return c == ' ' || c == '\t'; });
    if (data.starts_with("dword:")) {
      TakeNumber(data.substr(6), value);
    } else {
      TakeBytes(data, value);
    }
  }

  void TakeNumber(std::string_view digits, RegistryEntry& value) const {
    const auto number = HexadecimalNumber<std::uint32_t>(digits);
    if (!number) Refuse("no number of 32 bits");
    value.type = 4;
    for (const int shift : {0, 8, 16, 24})
      value.data += static_cast<char>((*number >> shift) & 0xFF);
  }

  void TakeBytes(std::string_view data, RegistryEntry& value) const {
    const std::size_t colon = std::min(data.find(':'), data.size());
    std::string_view kind = data.substr(0, colon);
    value.type = 3;
    if (kind.starts_with("hex(") && kind.ends_with(')')) {
      const auto type = HexadecimalNumber<std::uint32_t>(kind.substr(4, kind.size() - 5));
      if (!type) Refuse("no type of a value");
      value.type = static_cast<std::int32_t>(*type);
    } else if (kind != "hex") {
      Refuse("no kind of value that is known");
    }
    const auto bytes = BytesOf(data.substr(std::min(colon + 1, data.size())));
    if (!bytes) Refuse("no list of bytes");
    // The old files hold 8-bit texts.
    value.data =
        is_old_ && value.IsText() ? Utf16Bytes(systemCodePage().FromBytes(*bytes)) : *bytes;
  }

  std::u16string text_;
  std::size_t at_ = 0;
  std::size_t line_ = 0;
  bool is_old_ = false;
  std::u16string path_;
  std::vector<RegistryChange> changes_;
};

}  // namespace

std::string RegFileText(std::span<const RegistryBranch> branches) {
  std::string text = std::string(kHead) + "\n";
  for (const RegistryBranch& branch : branches) {
    text += "\n[" + ToUtf8(Text(branch.path)) + "]\n";
    for (const RegistryEntry& value : branch.values)
      text += (value.name.empty() ? "@" : Quoted(value.name)) + "=" + DataOf(value) + "\n";
  }
  return text;
}

std::string RegFileBytes(std::string_view text) {
  const Text wide = FromUtf8(text);
  std::u16string lines;
  for (const char16_t c : wide.Characters()) {
    if (c == u'\n') lines += u'\r';
    lines += c;
  }
  return std::string(kUtf16Mark) + Utf16Bytes(lines);
}

std::vector<RegistryChange> ParseRegFile(std::string_view bytes) { return Parser(bytes).Run(); }

}  // namespace quorvane::programs
