#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

/// The text of a profile file: sections of `key=value` lines under `[section]` lines.
///
/// Every line that is not itself changed keeps its bytes and its line end. Rules of reading:
/// - Names of sections and keys are compared without regard to case and to blanks (spaces, tabs)
///   around them; the first section and the first key of a name count, further ones do not.
/// - The lines in front of the first section make a section with an empty name.
/// - A line that starts with `;` is a comment. A line without `=` is a key without a value.
/// - A value loses the blanks around it, and then one pair of equal quotation marks (" or ').
/// - A line ends with LF, CR LF or CR.
/// The bytes are UTF-16 (low byte first) behind the mark FF FE; UTF-8, with or without the mark
/// EF BB BF, where they are valid as such; else the system's code page. A new document is UTF-8.
class ProfileDocument {
 public:
  explicit ProfileDocument(std::string_view bytes);

  [[nodiscard]] std::string Bytes() const;

  [[nodiscard]] std::optional<std::u16string> Value(std::u16string_view section,
                                                    std::u16string_view key) const;
  [[nodiscard]] std::vector<std::u16string> SectionNames() const;
  /// In the order of the lines; a name that occurs twice is listed twice.
  [[nodiscard]] std::vector<std::u16string> KeyNames(std::u16string_view section) const;

  /// Changes the key's line, or adds one behind the section's last line that is not blank, or adds
  /// the section at the end.
  void SetValue(std::u16string_view section, std::u16string_view key, std::u16string_view value);
  void RemoveKey(std::u16string_view section, std::u16string_view key);
  void RemoveSection(std::u16string_view section);

 private:
  enum class Encoding { kUtf8, kSystemPage, kUtf16 };
  struct Line {
    std::string bytes;
    std::string end;
  };
  /// A section's lines, its heading included: first to last, the last excluded.
  struct Range {
    std::size_t first = 0;
    std::size_t heading_lines = 0;
    std::size_t last = 0;
  };

  void SplitLines(std::string_view bytes);
  [[nodiscard]] std::u16string Decode(std::string_view bytes) const;
  [[nodiscard]] std::string Encode(std::u16string_view characters) const;
  [[nodiscard]] std::optional<std::u16string> Heading(const Line& line) const;
  [[nodiscard]] std::optional<Range> FindSection(std::u16string_view name) const;
  [[nodiscard]] std::optional<std::size_t> FindKey(const Range& range,
                                                   std::u16string_view key) const;
  void InsertLine(std::size_t index, std::u16string_view characters);

  std::string mark_;
  Encoding encoding_ = Encoding::kUtf8;
  std::vector<Line> lines_;
};

}  // namespace quorvane
