#pragma once

#include <optional>
#include <span>
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
/// - A line that starts with `;` is a comment, which can be had as a key of that name (`;key`) but
///   is not listed. A line without `=` is a key without a value.
/// - A value loses the blanks around it, and then one pair of equal quotation marks (" or ').
/// - A line ends with LF, CR LF or CR.
/// The bytes are UTF-16 behind its mark, either byte first; UTF-8, with or without its mark, where
/// they are valid as such; else the system's code page. A new document is UTF-8.
class ProfileDocument {
 public:
  explicit ProfileDocument(std::string_view bytes);

  /// Nothing where the bytes given were no whole text of their encoding, and so would not all be
  /// kept.
  [[nodiscard]] std::optional<std::string> Bytes() const;

  [[nodiscard]] std::optional<std::u16string> Value(std::u16string_view section,
                                                    std::u16string_view key);
  [[nodiscard]] std::vector<std::u16string> SectionNames() const;
  /// In the order of the lines; a name that occurs twice is listed twice.
  [[nodiscard]] std::vector<std::u16string> KeyNames(std::u16string_view section);

  /// Changes the key's line, or adds one behind the section's last line that is not blank, or adds
  /// the section at the end.
  void SetValue(std::u16string_view section, std::u16string_view key, std::u16string_view value);
  void RemoveKey(std::u16string_view section, std::u16string_view key);
  void RemoveSection(std::u16string_view section);

 private:
  struct Line {
    std::u16string content;
    std::u16string end;
  };

  [[nodiscard]] std::u16string Decode(std::string_view bytes) const;
  [[nodiscard]] std::string Encode(const std::u16string& characters) const;
  /// Its heading, if it has one, and the lines up to the next; empty when there is no such section.
  [[nodiscard]] std::span<Line> FindSection(std::u16string_view name);
  [[nodiscard]] Line* FindKey(std::u16string_view section, std::u16string_view key);
  void InsertLine(std::size_t at, const std::u16string& content);

  std::string mark_;
  bool is_utf8_ = true;  // where there is no mark
  bool is_whole_ = true;
  std::u16string end_;  // of the first line, and so of new ones
  std::vector<Line> lines_;
};

}  // namespace quorvane
