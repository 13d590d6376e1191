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

bool IsUtf8(std::string_view bytes) { return ToUtf8(FromUtf8(bytes)) == bytes; }

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
  if (bytes.starts_with(kUtf16LowFirstMark) || bytes.starts_with(kUtf16HighFirstMark)) {
    mark_ = bytes.substr(0, 2);
    encoding_ = mark_ == kUtf16LowFirstMark ? Encoding::kUtf16LowFirst : Encoding::kUtf16HighFirst;
  } else if (bytes.starts_with(kUtf8Mark)) {
    mark_ = kUtf8Mark;
  } else if (!IsUtf8(bytes)) {
    encoding_ = Encoding::kSystemPage;
  }
  const std::u16string characters = Decode(bytes.substr(mark_.size()));
  std::u16string_view rest = characters;
  while (!rest.empty()) {
    const std::size_t length = std::min(rest.find_first_of(u"\r\n"), rest.size());
    const std::u16string_view content = rest.substr(0, length);
    rest.remove_prefix(length);
    const std::u16string_view end = rest.substr(0, rest.starts_with(u"\r\n") ? 2 : 1);
    rest.remove_prefix(end.size());
    if (end_.empty()) end_ = end;
    if (const auto name = Heading(content)) sections_.push_back({std::u16string(*name), {}});
    sections_.back().lines.push_back({std::u16string(content), std::u16string(end)});
  }
  if (end_.empty()) end_ = u"\n";
  is_whole_ = Bytes() == bytes;
}

std::optional<std::string> ProfileDocument::Bytes() const {
  if (!is_whole_) return std::nullopt;
  std::string bytes = mark_;
  std::u16string_view end_before;
  for (const Section& section : sections_) {
    for (const Line& line : section.lines) {
      // Behind a CR the LF of an empty line would be the other half of one line end.
      const bool joins = end_before == u"\r" && line.content.empty() && line.end == u"\n";
      end_before = joins ? u"\r\n" : std::u16string_view(line.end);
      bytes += Encode(line.content + std::u16string(end_before));
    }
  }
  return bytes;
}

std::u16string ProfileDocument::Decode(std::string_view bytes) const {
  if (encoding_ == Encoding::kSystemPage) return FromSystemPage(bytes);
  if (encoding_ == Encoding::kUtf8) return FromUtf8(bytes).Characters();
  std::u16string characters(bytes.size() / 2, u'\0');
  std::memcpy(characters.data(), bytes.data(), 2 * characters.size());
  return encoding_ == Encoding::kUtf16HighFirst ? SwapBytes(characters) : characters;
}

std::string ProfileDocument::Encode(const std::u16string& characters) const {
  if (encoding_ == Encoding::kSystemPage) return ToSystemPage(characters);
  if (encoding_ == Encoding::kUtf8) return ToUtf8(characters);
  const bool swaps = encoding_ == Encoding::kUtf16HighFirst;
  const std::u16string units = swaps ? SwapBytes(characters) : characters;
  return {reinterpret_cast<const char*>(units.data()), 2 * units.size()};
}

std::vector<ProfileDocument::Section>::iterator ProfileDocument::FindSection(
    std::u16string_view name) {
  if (TrimBlanks(name).empty()) return sections_.begin();
  const auto has_name = [&](const Section& section) { return SameName(section.name, name); };
  return std::find_if(sections_.begin() + 1, sections_.end(), has_name);
}

ProfileDocument::Line* ProfileDocument::FindKey(std::u16string_view section,
                                                std::u16string_view key) {
  const auto found = FindSection(section);
  if (found == sections_.end()) return nullptr;
  for (Line& line : found->lines) {
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
  for (std::size_t index = 1; index < sections_.size(); ++index) {
    names.push_back(sections_[index].name);
  }
  return names;
}

std::vector<std::u16string> ProfileDocument::KeyNames(std::u16string_view section) {
  std::vector<std::u16string> names;
  const auto found = FindSection(section);
  if (found == sections_.end()) return names;
  for (const Line& line : found->lines) {
    const auto name = KeyIn(line.content);
    const bool has_value = line.content.find(u'=') != std::u16string::npos;
    if (name && has_value && !name->starts_with(u';')) names.emplace_back(*name);
  }
  return names;
}

void ProfileDocument::InsertLine(std::vector<Line>& lines, std::size_t at,
                                 const std::u16string& content) {
  if (at > 0 && lines[at - 1].end.empty()) lines[at - 1].end = end_;
  lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(at), {content, end_});
}

void ProfileDocument::SetValue(std::u16string_view section, std::u16string_view key,
                               std::u16string_view value) {
  const std::u16string setting = u"=" + std::u16string(value);
  if (Line* const line = FindKey(section, key)) {
    line->content = line->content.substr(0, line->content.find(u'=')) + setting;
    return;
  }
  if (FindSection(section) == sections_.end()) {
    const std::u16string name(TrimBlanks(section));
    std::vector<Line>& last = sections_.back().lines;
    InsertLine(last, last.size(), u"[" + name + u"]");
    const Line heading = last.back();
    last.pop_back();
    sections_.push_back({name, {heading}});
  }
  std::vector<Line>& lines = FindSection(section)->lines;
  std::size_t at = lines.size();
  while (at > 0 && TrimBlanks(lines[at - 1].content).empty()) --at;
  InsertLine(lines, at, std::u16string(TrimBlanks(key)) + setting);
}

void ProfileDocument::RemoveKey(std::u16string_view section, std::u16string_view key) {
  if (const Line* const line = FindKey(section, key)) {
    std::vector<Line>& lines = FindSection(section)->lines;
    lines.erase(lines.begin() + (line - lines.data()));
  }
}

void ProfileDocument::RemoveSection(std::u16string_view section) {
  const auto found = FindSection(section);
  if (found == sections_.begin()) {
    found->lines.clear();
  } else if (found != sections_.end()) {
    sections_.erase(found);
  }
}

}  // namespace quorvane
