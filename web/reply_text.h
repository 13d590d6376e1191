#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

namespace quorvane {

/// A text that arrives block by block. It is kept in pieces and joined once, so that a long one is
/// not copied again and again, and needs no single room of twice its size, as it grows.
class ReplyText {
 public:
  [[nodiscard]] bool IsEmpty() const { return pieces_.empty(); }

  /// Adds characters, at least one.
  void Append(std::u16string_view characters);

  /// The whole text; nothing is left here.
  [[nodiscard]] std::u16string Take();

 private:
  std::deque<std::u16string> pieces_;
};

}  // namespace quorvane
