#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quorvane {

/// An 8-bit code page, single- or multi-byte. The system's own comes from
/// platform/system_code_page.h. Every page holds ASCII, 0 to 127, at its own places.
class CodePage {
 public:
  virtual ~CodePage() = default;

  /// The 8-bit form. A character that the page cannot hold becomes the page's replacement, the
  /// question mark (or, where the platform does so, a similar character). Zeros pass through.
  [[nodiscard]] virtual std::string ToBytes(std::u16string_view characters) const = 0;
  /// The 16-bit form; the inverse of ToBytes() where there is one. Zeros pass through.
  [[nodiscard]] virtual std::u16string FromBytes(std::string_view bytes) const = 0;

  /// The code of one character: its byte, or lead byte times 256 plus trail byte, as a signed
  /// 16-bit integer. One that the page cannot hold, or holds in more than two bytes, has that of
  /// the question mark. A page overrides it where it has a shorter way than ToBytes().
  [[nodiscard]] virtual std::int16_t CodeOf(char16_t character) const {
    return CodeOfBytes(ToBytes({&character, 1}));
  }

 protected:
  /// The code of a character by its bytes in the page, as CodeOf() gives it.
  [[nodiscard]] static std::int16_t CodeOfBytes(std::string_view bytes) {
    const auto byte = [bytes](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    if (bytes.size() == 1) return byte(0);
    if (bytes.size() == 2) return static_cast<std::int16_t>(byte(0) << 8 | byte(1));
    return '?';
  }
};

}  // namespace quorvane
