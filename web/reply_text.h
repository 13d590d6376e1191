#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

namespace quorvane {

/// A text that arrives block by block. It is kept in pieces and joined once, so that a long one is
/// not copied again and again, and needs no single room of twice its size, as it grows. Characters
/// below 0x80 take one byte each until then: most replies consist of them, and what a long one
/// costs is the memory that is gone through.
class ReplyText {
 public:
  [[nodiscard]] bool IsEmpty() const { return pieces_.empty(); }

  /// Adds characters, at least one.
  void Append(std::u16string_view characters);

  /// Adds characters below 0x80, at least one.
  void AppendAscii(std::string_view characters);

  /// The whole text; nothing is left here.
  [[nodiscard]] std::u16string Take();

 private:
  /// One of the two is empty.
  struct Piece {
    std::string ascii;
    std::u16string others;
  };

  template <class Characters>
  void AppendTo(Characters Piece::*kind,
                std::basic_string_view<typename Characters::value_type> characters);

  std::deque<Piece> pieces_;
};

}  // namespace quorvane
