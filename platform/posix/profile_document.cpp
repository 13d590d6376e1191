#include "platform/posix/profile_document.h"

#include <algorithm>

#include "platform/posix/case_fold.h"
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

// A line inside a section; without a key it is blank.
struct KeyLine {
  std::u16string_view key;
  std::u16string_view before_value;
  std::optional<std::u16string_view> value;
};

KeyLine SplitKeyLine(std::u16string_view line) {
  const std::size_t sign = line.find(u'=');
  if (sign == std::u16string_view::npos) return {TrimBlanks(line), line, std::nullopt};
  return {TrimBlanks(line.substr(0, sign)), line.substr(0, sign + 1),
          WithoutQuotes(TrimBlanks(line.substr(sign + 1)))};
}

// The name in a section's first line; nothing for any other line.
std::optional<std::u16string_view> Heading(std::u16string_view line) {
  const std::u16string_view content = TrimBlanks(line);
  const std::size_t end = content.rfind(u']');
  if (!content.starts_with(u'[') || end == std::u16string_view::npos) return std::nullopt;
  return TrimBlanks(content.substr(1, end - 1));
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
    const std::size_t end_length = rest.substr(length).starts_with(u"\r\n") ? 2 : 1;
    lines_.push_back(
        {std::u16string(rest.substr(0, length)), std::u16string(rest.substr(length, end_length))});
    rest.remove_prefix(std::min(length + end_length, rest.size()));
  }
  is_whole_ = Bytes() == bytes;
}

std::optional<std::string> ProfileDocument::Bytes() const {
  if (!is_whole_) return std::nullopt;
  std::string bytes = mark_;
  for (const Line& line : lines_) bytes += Encode(line.content + line.end);
  return bytes;
}

std::u16string ProfileDocument::Decode(std::string_view bytes) const {
  if (encoding_ == Encoding::kSystemPage) return FromSystemPage(bytes);
  if (encoding_ == Encoding::kUtf8) return FromUtf8(bytes).Characters();
  const std::size_t low = encoding_ == Encoding::kUtf16LowFirst ? 0 : 1;
  std::u16string characters;
  for (std::size_t at = 0; at + 2 <= bytes.size(); at += 2) {
    characters += static_cast<char16_t>(static_cast<unsigned char>(bytes[at + low]) |
                                        static_cast<unsigned char>(bytes[at + 1 - low]) << 8);
  }
  return characters;
}

std::string ProfileDocument::Encode(std::u16string_view characters) const {
  if (encoding_ == Encoding::kSystemPage) return ToSystemPage(characters);
  if (encoding_ == Encoding::kUtf8) return ToUtf8(Text(characters));
  std::string bytes;
  for (const char16_t character : characters) {
    const char halves[] = {static_cast<char>(character & 0xFF), static_cast<char>(character >> 8)};
    const std::size_t first = encoding_ == Encoding::kUtf16LowFirst ? 0 : 1;
    bytes.append({halves[first], halves[1 - first]});
  }
  return bytes;
}

std::optional<ProfileDocument::Range> ProfileDocument::FindSection(std::u16string_view name) const {
  const auto next_heading = [&](std::size_t from) {
    while (from < lines_.size() && !Heading(lines_[from].content)) ++from;
    return from;
  };
  Range range{0, 0, next_heading(0)};
  if (TrimBlanks(name).empty()) return range;
  while (range.last < lines_.size()) {
    range = {range.last, 1, next_heading(range.last + 1)};
    if (SameName(*Heading(lines_[range.first].content), name)) return range;
  }
  return std::nullopt;
}

std::optional<std::size_t> ProfileDocument::FindKey(std::u16string_view section,
                                                    std::u16string_view key) const {
  const Range range = FindSection(section).value_or(Range{});
  for (std::size_t index = range.first + range.heading_lines; index < range.last; ++index) {
    const std::u16string_view name = SplitKeyLine(lines_[index].content).key;
    if (!TrimBlanks(lines_[index].content).empty() && SameName(name, key)) return index;
  }
  return std::nullopt;
}

std::optional<std::u16string> ProfileDocument::Value(std::u16string_view section,
                                                     std::u16string_view key) const {
  const auto index = FindKey(section, key);
  if (!index) return std::nullopt;
  return std::u16string(SplitKeyLine(lines_[*index].content).value.value_or(u""));
}

std::vector<std::u16string> ProfileDocument::SectionNames() const {
  std::vector<std::u16string> names;
  for (const Line& line : lines_) {
    if (const auto name = Heading(line.content)) names.emplace_back(*name);
  }
  return names;
}

std::vector<std::u16string> ProfileDocument::KeyNames(std::u16string_view section) const {
  std::vector<std::u16string> names;
  const Range range = FindSection(section).value_or(Range{});
  for (std::size_t index = range.first + range.heading_lines; index < range.last; ++index) {
    const KeyLine line = SplitKeyLine(lines_[index].content);
    if (line.value && !TrimBlanks(lines_[index].content).starts_with(u';')) {
      names.emplace_back(line.key);
    }
  }
  return names;
}

void ProfileDocument::InsertLine(std::size_t index, std::u16string content) {
  const auto with_end = std::ranges::find_if(lines_, [](const Line& l) { return !l.end.empty(); });
  const std::u16string end = with_end != lines_.end() ? with_end->end : u"\n";
  if (index > 0 && lines_[index - 1].end.empty()) lines_[index - 1].end = end;
  lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(index), {std::move(content), end});
}

void ProfileDocument::SetValue(std::u16string_view section, std::u16string_view key,
                               std::u16string_view value) {
  if (const auto index = FindKey(section, key)) {
    std::u16string& content = lines_[*index].content;
    const KeyLine line = SplitKeyLine(content);
    std::u16string changed(line.before_value);
    if (!line.value) changed += u'=';
    content = changed.append(value);
    return;
  }
  if (!FindSection(section)) {
    InsertLine(lines_.size(), u"[" + std::u16string(TrimBlanks(section)) + u"]");
  }
  const Range range = FindSection(section).value_or(Range{lines_.size(), 0, lines_.size()});
  std::size_t at = range.last;
  while (at > range.first + range.heading_lines && TrimBlanks(lines_[at - 1].content).empty()) --at;
  InsertLine(at, std::u16string(TrimBlanks(key)) + u"=" + std::u16string(value));
}

void ProfileDocument::RemoveKey(std::u16string_view section, std::u16string_view key) {
  const auto index = FindKey(section, key);
  if (index) lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(*index));
}

void ProfileDocument::RemoveSection(std::u16string_view section) {
  const auto range = FindSection(section);
  if (!range) return;
  lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(range->first),
               lines_.begin() + static_cast<std::ptrdiff_t>(range->last));
}

}  // namespace quorvane
