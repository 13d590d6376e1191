#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace quorvane {

/// A text of 16-bit characters, held by value; whoever receives one owns its copy.
///
/// A text may be absent. An absent text counts as the empty text everywhere, with one difference:
/// an 8-bit operating-system call receives a null pointer for an absent text and a pointer to an
/// empty text for an empty one. The characters are 16-bit units in any sequence: zeros and single
/// halves of a surrogate pair are kept as they are.
class Text {
 public:
  /// An absent text.
  Text() = default;
  // NOLINTBEGIN(google-explicit-constructor): texts are values
  /// A present text; an empty string makes an empty text, not an absent one.
  Text(std::u16string characters);
  /// The same, of a copy.
  Text(std::u16string_view characters);
  /// The same, up to the terminator; never null.
  Text(const char16_t* characters);
  // NOLINTEND(google-explicit-constructor)
  /// A present text of `count` times the same character.
  Text(std::size_t count, char16_t character);

  /// Whether it is absent; an empty text is not.
  [[nodiscard]] bool IsAbsent() const { return !present_; }
  /// Whether it has no characters; an absent text has none.
  [[nodiscard]] bool IsEmpty() const { return characters_.empty(); }
  /// Count of 16-bit characters; raises overflow (6) above 2147483647.
  [[nodiscard]] std::int32_t Length() const;
  /// The characters; empty for an absent text.
  [[nodiscard]] const std::u16string& Characters() const { return characters_; }
  /// The characters, to be changed in place; the text is a present one from then on.
  [[nodiscard]] std::u16string& Edit() {
    present_ = true;
    return characters_;
  }

  /// Exact comparison of the 16-bit characters; absent equals empty.
  friend bool operator==(const Text& left, const Text& right) {
    return left.characters_ == right.characters_;
  }
  /// Concatenation; the result is present.
  friend Text operator+(const Text& left, const Text& right);

 private:
  std::u16string characters_;
  bool present_ = false;
};

}  // namespace quorvane
