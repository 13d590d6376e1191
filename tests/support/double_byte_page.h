#pragma once

#include <string>
#include <string_view>

#include "runtime/code_page.h"

namespace quorvane::testing {

/// A page with two bytes for every character above 127, 0x80 and the low byte: U+3000 to U+30FF go
/// there and back.
class DoubleBytePage : public CodePage {
 public:
  [[nodiscard]] std::string ToBytes(std::u16string_view characters) const override {
    std::string bytes;
    for (const char16_t c : characters) {
      if (c > 0x7F) bytes += '\x80';
      bytes += static_cast<char>(c);
    }
    return bytes;
  }
  [[nodiscard]] std::u16string FromBytes(std::string_view bytes) const override {
    std::u16string characters;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      const bool lead = bytes[i] == '\x80' && i + 1 < bytes.size();
      if (lead) ++i;
      characters +=
          static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) + (lead ? 0x3000 : 0));
    }
    return characters;
  }
};

}  // namespace quorvane::testing
