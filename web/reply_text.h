#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

namespace quorvane {

/// A text that arrives block by block. It is kept in pieces and joined once, so that a long one is
/// not copied again and again, and needs no single room of twice its size, as it grows. Until then
/// those below 0x80 in front take one byte each: most replies have no others, and what a long one
/// costs is the memory that is gone through.
class ReplyText {
 public:
  /// Whether nothing was added since the beginning or the last Take().
  [[nodiscard]] bool IsEmpty() const { return ascii_.empty() && others_.empty(); }

  /// Adds characters, at least one.
  void Append(std::u16string_view characters);

  /// Adds characters below 0x80, at least one.
  void AppendAscii(std::string_view characters);

  /// The whole text; nothing is left here.
  [[nodiscard]] std::u16string Take();

 private:
  // What came before the first character above ASCII, and all from there on. A piece is begun when
  // the one before is full, so that replies of any mixture take about the room of their text.
  std::deque<std::string> ascii_;
  std::deque<std::u16string> others_;
};

}  // namespace quorvane
