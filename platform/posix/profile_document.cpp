#include "platform/posix/profile_document.h"

#include <algorithm>
#include <cstring>

#include "platform/posix/system_text.h"
#include "runtime/utf8.h"

namespace quorvane {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16LowFirstMark = "\xFF\xFE";
constexpr std::string_view kUtf16HighFirstMark = "\xFE\xFF";

std::u16string_view TrimBlanks(std::u16string_view text) {
  constexpr std::u16string_view kBlanks = u" \t";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::u16string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::u16string_view WithoutQuotes(std::u16string_view value) {
  const bool quoted = value.size() >= 2 && value.front() == value.back() &&
                      (value.front() == u'"' || value.front() == u'\'');
  return quoted ? value.substr(1, value.size() - 2) : value;
}

bool SameName(std::u16string_view left, std::u16string_view right) {
  return FoldCase(TrimBlanks(left)) == FoldCase(TrimBlanks(right));
}

// The name in a section's first line; nothing for any other line.
std::optional<std::u16string_view> Heading(std::u16string_view line) {
  const std::u16string_view content = TrimBlanks(line);
  const std::size_t end = content.rfind(u']');
  if (!content.starts_with(u'[') || end == std::u16string_view::npos) return std::nullopt;
  return TrimBlanks(content.substr(1, end - 1));
}

// Of a line that is neither blank nor a heading.
std::optional<std::u16string_view> KeyIn(std::u16string_view line) {
  if (TrimBlanks(line).empty() || Heading(line)) return std::nullopt;
  return TrimBlanks(line.substr(0, line.find(u'=')));
}

std::u16string SwapBytes(std::u16string characters) {
  for (char16_t& c : characters) c = static_cast<char16_t>(c << 8 | c >> 8);
  return characters;
}

}  // namespace

ProfileDocument::ProfileDocument(std::string_view bytes) {
  for (const std::string_view mark : {kUtf8Mark, kUtf16LowFirstMark, kUtf16HighFirstMark}) {
    if (bytes.starts_with(mark)) mark_ = mark;
  }
  if (mark_.empty() && ToUtf8(FromUtf8(bytes)) != bytes) is_utf8_ = false;
  const std::u16string characters = Decode(bytes.substr(mark_.size()));
  std::u16string_view rest = characters;
  while (!rest.empty()) {
    const std::size_t length = std::min(rest.find_first_of(u"\r\n"), rest.size());
    const std::u16string_view content = rest.substr(0, length);
    rest.remove_prefix(length);
    const std::u16string_view end = rest.substr(0, rest.starts_with(u"\r\n") ? 2 : 1);
    rest.remove_prefix(end.size());
    lines_.push_back({std::u16string(content), std::u16string(end)});
  }
  end_ = lines_.empty() || lines_[0].end.empty() ? u"\n" : lines_[0].end;
  is_whole_ = Bytes() == bytes;
}

std::optional<std::string> ProfileDocument::Bytes() const {
  if (!is_whole_) return std::nullopt;
  std::string bytes = mark_;
  std::u16string_view end_before;
  for (const Line& line : lines_) {
    // Behind a CR the LF of an empty line would be the other half of one line end.
    const bool joins = end_before == u"\r" && line.content.empty() && line.end == u"\n";
    end_before = joins ? u"\r\n" : std::u16string_view(line.end);
    bytes += Encode(line.content + std::u16string(end_before));
  }
  return bytes;
}

std::u16string ProfileDocument::Decode(std::string_view bytes) const {
  if (!is_utf8_) return FromSystemPage(bytes);
  if (mark_.size() != 2) return FromUtf8(bytes).Characters();
  std::u16string characters(bytes.size() / 2, u'\0');
  std::memcpy(characters.data(), bytes.data(), 2 * characters.size());
  return mark_ == kUtf16HighFirstMark ? SwapBytes(characters) : characters;
}

std::string ProfileDocument::Encode(const std::u16string& characters) const {
  if (!is_utf8_) return ToSystemPage(characters);
  if (mark_.size() != 2) return ToUtf8(characters);
  const auto units = mark_ == kUtf16HighFirstMark ? SwapBytes(characters) : characters;
  return {reinterpret_cast<const char*>(units.data()), 2 * units.size()};
}

std::span<ProfileDocument::Line> ProfileDocument::FindSection(std::u16string_view name) {
  const auto is_heading = [](const Line& line) { return Heading(line.content).has_value(); };
  const auto has_name = [name](const Line& line) {
    const auto heading = Heading(line.content);
    return heading && SameName(*heading, name);
  };
  const bool is_front = TrimBlanks(name).empty();
  const auto first = is_front ? lines_.begin() : std::ranges::find_if(lines_, has_name);
  const auto behind_heading = is_front || first == lines_.end() ? first : first + 1;
  return {first, std::find_if(behind_heading, lines_.end(), is_heading)};
}

ProfileDocument::Line* ProfileDocument::FindKey(std::u16string_view section,
                                                std::u16string_view key) {
  for (Line& line : FindSection(section)) {
    if (const auto name = KeyIn(line.content); name && SameName(*name, key)) return &line;
  }
  return nullptr;
}

std::optional<std::u16string> ProfileDocument::Value(std::u16string_view section,
                                                     std::u16string_view key) {
  const Line* const line = FindKey(section, key);
  if (line == nullptr) return std::nullopt;
  const std::u16string_view content = line->content;
  const std::size_t sign = std::min(content.find(u'='), content.size() - 1);
  return std::u16string(WithoutQuotes(TrimBlanks(content.substr(sign + 1))));
}

std::vector<std::u16string> ProfileDocument::SectionNames() const {
  std::vector<std::u16string> names;
  for (const Line& line : lines_) {
    if (const auto name = Heading(line.content)) names.emplace_back(*name);
  }
  return names;
}

std::vector<std::u16string> ProfileDocument::KeyNames(std::u16string_view section) {
  std::vector<std::u16string> names;
  for (const Line& line : FindSection(section)) {
    const auto name = KeyIn(line.content);
    const bool has_value = line.content.find(u'=') != std::u16string::npos;
    if (name && has_value && !name->starts_with(u';')) names.emplace_back(*name);
  }
  return names;
}

void ProfileDocument::InsertLine(std::size_t at, const std::u16string& content) {
  if (at > 0 && lines_[at - 1].end.empty()) lines_[at - 1].end = end_;
  lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(at), {content, end_});
}

void ProfileDocument::SetValue(std::u16string_view section, std::u16string_view key,
                               std::u16string_view value) {
  const std::u16string setting = u"=" + std::u16string(value);
  if (Line* const line = FindKey(section, key)) {
    line->content = line->content.substr(0, line->content.find(u'=')) + setting;
    return;
  }
  const std::u16string name(TrimBlanks(section));
  if (!name.empty() && FindSection(name).empty()) InsertLine(lines_.size(), u"[" + name + u"]");
  std::span<const Line> lines = FindSection(name);
  while (!lines.empty() && TrimBlanks(lines.back().content).empty()) {
    lines = lines.first(lines.size() - 1);
  }
  const auto at = static_cast<std::size_t>(lines.data() + lines.size() - lines_.data());
  InsertLine(at, std::u16string(TrimBlanks(key)) + setting);
}

void ProfileDocument::RemoveKey(std::u16string_view section, std::u16string_view key) {
  const Line* const line = FindKey(section, key);
  if (line != nullptr) lines_.erase(lines_.begin() + (line - lines_.data()));
}

void ProfileDocument::RemoveSection(std::u16string_view section) {
  const std::span<const Line> lines = FindSection(section);
  const auto first = lines_.begin() + (lines.data() - lines_.data());
  lines_.erase(first, first + static_cast<std::ptrdiff_t>(lines.size()));
}

}  // namespace quorvane
