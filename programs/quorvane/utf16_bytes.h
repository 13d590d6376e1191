#pragma once

#include <string>
#include <string_view>

namespace quorvane::programs {

/// The characters as bytes, the low one first.
[[nodiscard]] inline std::string Utf16Bytes(std::u16string_view characters) {
  std::string bytes;
  for (const char16_t c : characters) {
    bytes += static_cast<char>(c & 0xFF);
    bytes += static_cast<char>(c >> 8);
  }
  return bytes;
}

/// The reverse; a last single byte is left out.
[[nodiscard]] inline std::u16string FromUtf16Bytes(std::string_view bytes) {
  std::u16string characters;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto low = static_cast<unsigned char>(bytes[i]);
    const auto high = static_cast<unsigned char>(bytes[i + 1]);
    characters += static_cast<char16_t>(low | (high << 8));
  }
  return characters;
}

}  // namespace quorvane::programs
