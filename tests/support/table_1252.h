#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "runtime/code_page.h"

namespace quorvane::testing {

/// The Western European code page 1252, written down from its published table, to compare the
/// system's own with. It knows no "best fit": what is not in the table becomes a question mark.
class Table1252 final : public CodePage {
 public:
  /// The byte of a character; nothing when the page does not hold it.
  static std::optional<std::uint8_t> ByteOf(char16_t character) {
    if (character < 0x80 || (character >= 0xA0 && character <= 0xFF))
      return static_cast<std::uint8_t>(character);
    for (std::size_t i = 0; i < kFrom80.size(); ++i) {
      if (kFrom80[i] == character) return static_cast<std::uint8_t>(0x80 + i);
    }
    return std::nullopt;
  }

  [[nodiscard]] std::string ToBytes(std::u16string_view characters) const override {
    std::string bytes;
    for (const char16_t c : characters) bytes += static_cast<char>(ByteOf(c).value_or('?'));
    return bytes;
  }

  [[nodiscard]] std::u16string FromBytes(std::string_view bytes) const override {
    std::u16string characters;
    for (const char c : bytes) {
      const auto byte = static_cast<unsigned char>(c);
      characters += byte >= 0x80 && byte < 0xA0 ? kFrom80[byte - 0x80] : char16_t{byte};
    }
    return characters;
  }

 private:
  // The bytes 80 to 9F; 81, 8D, 8F, 90 and 9D are unused and stand for the controls of the same
  // value.
  static constexpr std::array<char16_t, 32> kFrom80{
      0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
      0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
      0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
};

}  // namespace quorvane::testing
