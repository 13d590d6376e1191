#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

#include "runtime/code_page.h"

namespace quorvane {

/// Fills `characters` with what as many `bytes` are in the code page, zeros included: cut behind
/// them, or filled up with spaces.
void CopyBackFixed(std::string_view bytes, std::span<char16_t> characters,
                   const CodePage& code_page);

/// A fixed text of `Size` characters that an 8-bit call fills. It lives for one call, on the stack.
///
/// It starts as `Size` times the same ASCII character, which is the same byte in every code page,
/// so its 8-bit copy is made at once: Bytes(), and a zero of its own behind. The call may write
/// into the copy and over that zero, never behind it.
template <std::size_t Size>
class FixedBuffer {
 public:
  /// All `Size` characters are this one, which must be ASCII.
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): CopyBack() fills the characters
  explicit FixedBuffer(char ascii) {
    bytes_.fill(ascii);
    bytes_.back() = '\0';
  }

  /// The 8-bit copy that the call fills: `Size` bytes and a zero.
  [[nodiscard]] char* Bytes() { return bytes_.data(); }

  /// The text after the call, always `Size` characters: all bytes are converted back, not only
  /// those before a zero, and where a multi-byte code page makes fewer characters of them spaces
  /// fill the rest. Good as long as the buffer is.
  [[nodiscard]] std::u16string_view CopyBack(const CodePage& code_page) {
    CopyBackFixed({bytes_.data(), Size}, characters_, code_page);
    return {characters_.data(), Size};
  }

 private:
  std::array<char, Size + 1> bytes_;
  std::array<char16_t, Size> characters_;
};

}  // namespace quorvane
