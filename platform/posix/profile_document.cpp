#include "platform/posix/profile_document.h"

#include <algorithm>

#include "platform/posix/case_fold.h"
#include "platform/posix/system_text.h"
#include "runtime/utf8.h"

namespace quorvane {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16Mark = "\xFF\xFE";

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

// A line inside a section; without a key it is blank or a comment.
struct KeyLine {
  std::optional<std::u16string_view> key;
  std::u16string_view before_value;
  std::optional<std::u16string_view> value;
};

KeyLine SplitKeyLine(std::u16string_view line) {
  const std::u16string_view content = TrimBlanks(line);
  if (content.empty() || content.front() == u';') return {};
  const std::size_t sign = line.find(u'=');
  if (sign == std::u16string_view::npos) return {content, line, std::nullopt};
  return {TrimBlanks(line.substr(0, sign)), line.substr(0, sign + 1),
          WithoutQuotes(TrimBlanks(line.substr(sign + 1)))};
}

}  // namespace

ProfileDocument::ProfileDocument(std::string_view bytes) {
  if (bytes.starts_with(kUtf16Mark)) {
    encoding_ = Encoding::kUtf16;
    mark_ = kUtf16Mark;
  } else if (bytes.starts_with(kUtf8Mark)) {
    mark_ = kUtf8Mark;
  } else if (!IsUtf8(bytes)) {
    encoding_ = Encoding::kSystemPage;
  }
  SplitLines(bytes.substr(mark_.size()));
}

std::string ProfileDocument::Bytes() const {
  std::string bytes = mark_;
  for (const Line& line : lines_) bytes.append(line.bytes).append(line.end);
  return bytes;
}

void ProfileDocument::SplitLines(std::string_view bytes) {
  const std::size_t width = encoding_ == Encoding::kUtf16 ? 2 : 1;
  const auto is = [&](std::size_t at, char c) {
    return at + width <= bytes.size() && bytes[at] == c && (width == 1 || bytes[at + 1] == '\0');
  };
  std::size_t start = 0;
  for (std::size_t at = 0; at < bytes.size();) {
    if (!is(at, '\r') && !is(at, '\n')) {
      at += width;
      continue;
    }
    const std::size_t end = at + (is(at, '\r') && is(at + width, '\n') ? 2 * width : width);
    lines_.push_back(
        {std::string(bytes.substr(start, at - start)), std::string(bytes.substr(at, end - at))});
    start = at = end;
  }
  if (start < bytes.size()) lines_.push_back({std::string(bytes.substr(start)), ""});
}

std::u16string ProfileDocument::Decode(std::string_view bytes) const {
  if (encoding_ == Encoding::kSystemPage) return FromSystemPage(bytes);
  if (encoding_ == Encoding::kUtf8) return FromUtf8(bytes).Characters();
  std::u16string characters;
  for (std::size_t at = 0; at + 2 <= bytes.size(); at += 2) {
    characters += static_cast<char16_t>(static_cast<unsigned char>(bytes[at]) |
                                        static_cast<unsigned char>(bytes[at + 1]) << 8);
  }
  return characters;
}

std::string ProfileDocument::Encode(std::u16string_view characters) const {
  if (encoding_ == Encoding::kSystemPage) return ToSystemPage(characters);
  if (encoding_ == Encoding::kUtf8) return ToUtf8(Text(characters));
  std::string bytes;
  for (const char16_t character : characters) {
    bytes += static_cast<char>(character & 0xFF);
    bytes += static_cast<char>(character >> 8);
  }
  return bytes;
}

std::optional<std::u16string> ProfileDocument::Heading(const Line& line) const {
  const std::u16string characters = Decode(line.bytes);
  const std::u16string_view content = TrimBlanks(characters);
  const std::size_t end = content.rfind(u']');
  if (!content.starts_with(u'[') || end == std::u16string_view::npos) return std::nullopt;
  return std::u16string(TrimBlanks(content.substr(1, end - 1)));
}

std::optional<ProfileDocument::Range> ProfileDocument::FindSection(std::u16string_view name) const {
  const auto next_heading = [&](std::size_t from) {
    while (from < lines_.size() && !Heading(lines_[from])) ++from;
    return from;
  };
  Range range{0, 0, next_heading(0)};
  if (TrimBlanks(name).empty()) return range;
  while (range.last < lines_.size()) {
    range = {range.last, 1, next_heading(range.last + 1)};
    if (SameName(*Heading(lines_[range.first]), name)) return range;
  }
  return std::nullopt;
}

std::optional<std::size_t> ProfileDocument::FindKey(const Range& range,
                                                    std::u16string_view key) const {
  for (std::size_t index = range.first + range.heading_lines; index < range.last; ++index) {
    const std::u16string characters = Decode(lines_[index].bytes);
    const KeyLine line = SplitKeyLine(characters);
    if (line.key && SameName(*line.key, key)) return index;
  }
  return std::nullopt;
}

std::optional<std::u16string> ProfileDocument::Value(std::u16string_view section,
                                                     std::u16string_view key) const {
  const auto range = FindSection(section);
  const auto index = range ? FindKey(*range, key) : std::nullopt;
  if (!index) return std::nullopt;
  const std::u16string characters = Decode(lines_[*index].bytes);
  return std::u16string(SplitKeyLine(characters).value.value_or(u""));
}

std::vector<std::u16string> ProfileDocument::SectionNames() const {
  std::vector<std::u16string> names;
  for (const Line& line : lines_) {
    if (auto name = Heading(line)) names.push_back(std::move(*name));
  }
  return names;
}

std::vector<std::u16string> ProfileDocument::KeyNames(std::u16string_view section) const {
  std::vector<std::u16string> names;
  const Range range = FindSection(section).value_or(Range{});
  for (std::size_t index = range.first + range.heading_lines; index < range.last; ++index) {
    const std::u16string characters = Decode(lines_[index].bytes);
    const KeyLine line = SplitKeyLine(characters);
    if (line.key && line.value) names.emplace_back(*line.key);
  }
  return names;
}

void ProfileDocument::InsertLine(std::size_t index, std::u16string_view characters) {
  const auto with_end = std::ranges::find_if(lines_, [](const Line& l) { return !l.end.empty(); });
  const std::string end = with_end != lines_.end() ? with_end->end : Encode(u"\n");
  if (index > 0 && lines_[index - 1].end.empty()) lines_[index - 1].end = end;
  lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(index), {Encode(characters), end});
}

void ProfileDocument::SetValue(std::u16string_view section, std::u16string_view key,
                               std::u16string_view value) {
  auto range = FindSection(section);
  if (!range) {
    InsertLine(lines_.size(), u"[" + std::u16string(TrimBlanks(section)) + u"]");
    range = Range{lines_.size() - 1, 1, lines_.size()};
  }
  if (const auto index = FindKey(*range, key)) {
    const std::u16string characters = Decode(lines_[*index].bytes);
    const KeyLine line = SplitKeyLine(characters);
    std::u16string changed(line.before_value);
    if (!line.value) changed += u'=';
    lines_[*index].bytes = Encode(changed.append(value));
    return;
  }
  std::size_t at = range->last;
  while (at > range->first + range->heading_lines &&
         TrimBlanks(Decode(lines_[at - 1].bytes)).empty()) {
    --at;
  }
  InsertLine(at, std::u16string(TrimBlanks(key)) + u"=" + std::u16string(value));
}

void ProfileDocument::RemoveKey(std::u16string_view section, std::u16string_view key) {
  const auto range = FindSection(section);
  const auto index = range ? FindKey(*range, key) : std::nullopt;
  if (index) lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(*index));
}

void ProfileDocument::RemoveSection(std::u16string_view section) {
  const auto range = FindSection(section);
  if (!range) return;
  lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(range->first),
               lines_.begin() + static_cast<std::ptrdiff_t>(range->last));
}

}  // namespace quorvane
