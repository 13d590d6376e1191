// The text of a profile file, and changes to it.
//
// Oracle: the document as one flat list of lines, which is searched from the top for every answer,
// and changed by the rules of platform/posix/profile_document.h line by line. The bytes that come
// out must decode to just these lines.

#include "platform/posix/profile_document.h"

#include <optional>

#include "fuzz/target.h"
#include "platform/posix/system_text.h"
#include "runtime/utf8.h"

namespace quorvane::fuzz::profile_document {

struct Line {
  std::u16string content;
  std::u16string end;
  friend bool operator==(const Line&, const Line&) = default;
};
using Lines = std::vector<Line>;

enum class Encoding { kUtf16LowFirst, kUtf16HighFirst, kMarkedUtf8, kUtf8, kPage };

Encoding EncodingOf(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE")) return Encoding::kUtf16LowFirst;
  if (bytes.starts_with("\xFE\xFF")) return Encoding::kUtf16HighFirst;
  if (bytes.starts_with("\xEF\xBB\xBF")) return Encoding::kMarkedUtf8;
  return ToUtf8(FromUtf8(bytes)) == bytes ? Encoding::kUtf8 : Encoding::kPage;
}

// The whole text; nothing where it has no characters for all the bytes.
std::optional<std::u16string> Decoded(std::string_view bytes, Encoding encoding) {
  if (encoding == Encoding::kPage) return FromSystemPage(bytes);
  if (encoding == Encoding::kUtf8 || encoding == Encoding::kMarkedUtf8) {
    const Text text = FromUtf8(bytes.substr(encoding == Encoding::kUtf8 ? 0 : 3));
    const std::string back = (encoding == Encoding::kUtf8 ? "" : "\xEF\xBB\xBF") + ToUtf8(text);
    return back == bytes ? std::optional(text.Characters()) : std::nullopt;
  }
  const std::size_t low = encoding == Encoding::kUtf16LowFirst ? 0 : 1;
  std::u16string text;
  for (std::size_t i = 2; i + 1 < bytes.size(); i += 2)
    text += static_cast<char16_t>(static_cast<unsigned char>(bytes[i + low]) |
                                  static_cast<unsigned char>(bytes[i + 1 - low]) << 8);
  return bytes.size() % 2 == 0 ? std::optional(text) : std::nullopt;
}

Lines LinesOf(const std::u16string& text) {
  Lines lines;
  bool is_open = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!is_open) lines.emplace_back();
    is_open = text[i] != u'\n' && text[i] != u'\r';
    if (is_open) {
      lines.back().content += text[i];
      continue;
    }
    lines.back().end = text[i];
    if (text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n')
      lines.back().end += text[++i];
  }
  return lines;
}

std::u16string Trim(std::u16string text) {
  while (!text.empty() && (text.front() == u' ' || text.front() == u'\t')) text.erase(0, 1);
  while (!text.empty() && (text.back() == u' ' || text.back() == u'\t')) text.pop_back();
  return text;
}

bool Equal(const std::u16string& left, const std::u16string& right) {
  return FoldCase(Trim(left)) == FoldCase(Trim(right));
}

std::optional<std::u16string> SectionIn(const Line& line) {
  const std::u16string content = Trim(line.content);
  const std::size_t end = content.rfind(u']');
  if (content.empty() || content[0] != u'[' || end == std::u16string::npos) return std::nullopt;
  return Trim(content.substr(1, end - 1));
}

struct Range {
  std::size_t first;  // behind the heading
  std::size_t end;
};

// The lines of the first section of that name; nothing where there is none.
std::optional<Range> SectionOf(const Lines& lines, const std::u16string& section) {
  std::size_t first = 0;
  if (!Trim(section).empty()) {
    while (first < lines.size() &&
           !(SectionIn(lines[first]) && Equal(*SectionIn(lines[first]), section)))
      ++first;
    if (first++ == lines.size()) return std::nullopt;
  }
  std::size_t end = first;
  while (end < lines.size() && !SectionIn(lines[end])) ++end;
  return Range{first, end};
}

std::optional<std::size_t> PlaceOf(const Lines& lines, const std::u16string& section,
                                   const std::u16string& key) {
  const auto range = SectionOf(lines, section);
  if (!range) return std::nullopt;
  for (std::size_t i = range->first; i < range->end; ++i) {
    const std::u16string& content = lines[i].content;
    if (!Trim(content).empty() && Equal(content.substr(0, content.find(u'=')), key)) return i;
  }
  return std::nullopt;
}

std::optional<std::u16string> ValueIn(const Lines& lines, const std::u16string& section,
                                      const std::u16string& key) {
  const auto place = PlaceOf(lines, section, key);
  if (!place) return std::nullopt;
  const std::u16string& content = lines[*place].content;
  const std::size_t sign = content.find(u'=');
  std::u16string value = sign == std::u16string::npos ? u"" : Trim(content.substr(sign + 1));
  const bool is_quoted = value.size() > 1 && value.front() == value.back() &&
                         (value.front() == u'"' || value.front() == u'\'');
  return is_quoted ? value.substr(1, value.size() - 2) : value;
}

// Two lines stay two: an empty line's LF behind a CR would be the other half of a CR LF.
void KeepApart(Lines& lines) {
  for (std::size_t i = 1; i < lines.size(); ++i)
    if (lines[i - 1].end == u"\r" && lines[i].content.empty() && lines[i].end == u"\n")
      lines[i].end = u"\r\n";
}

void Insert(Lines& lines, std::size_t at, const std::u16string& content,
            const std::u16string& end) {
  if (at > 0 && lines[at - 1].end.empty()) lines[at - 1].end = end;
  lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(at), {content, end});
}

void Set(Lines& lines, const std::u16string& section, const std::u16string& key,
         const std::u16string& value, const std::u16string& end) {
  if (const auto place = PlaceOf(lines, section, key)) {
    std::u16string& content = lines[*place].content;
    content = content.substr(0, content.find(u'=')) + u"=" + value;
    return;
  }
  if (!SectionOf(lines, section)) Insert(lines, lines.size(), u"[" + Trim(section) + u"]", end);
  const Range range = *SectionOf(lines, section);
  std::size_t at = range.end;
  while (at > range.first && Trim(lines[at - 1].content).empty()) --at;
  Insert(lines, at, Trim(key) + u"=" + value, end);
}

void Remove(Lines& lines, std::size_t first, std::size_t end) {
  lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(first),
              lines.begin() + static_cast<std::ptrdiff_t>(end));
}

void RemoveSection(Lines& lines, const std::u16string& section) {
  const auto range = SectionOf(lines, section);
  if (range) Remove(lines, range->first - (Trim(section).empty() ? 0 : 1), range->end);
}

// As a call of the system brings it: in the page, on one line, up to its zero.
std::u16string CallersText(Input& input, const char* left_out) {
  std::string bytes;
  for (char c = '\0'; !input.IsEmpty() && (c = input.Bytes(1)[0]) != '\n';) bytes += c;
  std::erase_if(bytes, [left_out](char c) {
    return c == '\0' || c == '\r' || std::string_view(left_out).find(c) != std::string_view::npos;
  });
  return FromSystemPage(bytes);
}

void CheckAnswers(ProfileDocument& document, const Lines& lines, const std::u16string& section,
                  const std::u16string& key) {
  Require(document.Value(section, key) == ValueIn(lines, section, key), "Value()");
  std::vector<std::u16string> sections;
  for (const Line& line : lines)
    if (const auto name = SectionIn(line)) sections.push_back(*name);
  Require(document.SectionNames() == sections, "SectionNames()");
  std::vector<std::u16string> keys;
  const Range range = SectionOf(lines, section).value_or(Range{0, 0});
  for (std::size_t i = range.first; i < range.end; ++i) {
    const std::u16string name = Trim(lines[i].content.substr(0, lines[i].content.find(u'=')));
    const bool has_value = lines[i].content.find(u'=') != std::u16string::npos;
    if (has_value && !name.starts_with(u';')) keys.push_back(name);
  }
  Require(document.KeyNames(section) == keys, "KeyNames()");
}

void Run(Input input) {
  struct Change {
    std::uint8_t kind;
    std::u16string section, key, value;
  };
  std::vector<Change> changes(input.Byte(3));
  for (Change& change : changes) {
    change.kind = input.Byte(3);
    change.section = CallersText(input, "");
    // A key with one of these is another key, or a section, once it is read back.
    change.key = CallersText(input, "=[");
    change.value = CallersText(input, "");
  }
  const std::string bytes = input.Rest();
  ProfileDocument document(bytes);
  const Encoding encoding = EncodingOf(bytes);
  const auto text = Decoded(bytes, encoding);
  Require(text ? document.Bytes() == bytes : !document.Bytes(), "the bytes as they came");
  if (!text) return;

  Lines lines = LinesOf(*text);
  const std::u16string end = lines.empty() || lines[0].end.empty() ? u"\n" : lines[0].end;
  for (const Change& change : changes) {
    CheckAnswers(document, lines, change.section, change.key);
    // A key of blanks alone is none that comes back.
    if (Trim(change.key).empty()) continue;
    if (change.kind == 0) {
      document.RemoveSection(change.section);
      RemoveSection(lines, change.section);
    } else if (change.kind == 1) {
      document.RemoveKey(change.section, change.key);
      if (const auto place = PlaceOf(lines, change.section, change.key))
        Remove(lines, *place, *place + 1);
    } else {
      document.SetValue(change.section, change.key, change.value);
      Set(lines, change.section, change.key, change.value, end);
    }
    KeepApart(lines);
    const auto now = document.Bytes();
    Require(now.has_value(), "no bytes");
    // What was in the page may look like UTF-8 without a line that is gone.
    const auto decoded = Decoded(*now, encoding);
    Require(decoded && LinesOf(*decoded) == lines, "other lines");
    CheckAnswers(document, lines, change.section, change.key);
  }
}

const Registered kTarget("profile_document", Run);

}  // namespace quorvane::fuzz::profile_document
