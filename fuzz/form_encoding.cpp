// The form encoding under several code pages.
//
// Oracle: one character after the other, by the page's own bytes for it, through printf().

#include "text/form_encoding.h"

#include <cstdio>

#include "fuzz/pages.h"
#include "fuzz/target.h"

namespace quorvane::fuzz::form_encoding {

std::string PieceOf(char16_t character, const CodePage& page) {
  constexpr std::string_view kPass =
      "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ&$(){}~-_=?./:";
  if (character < 0x80 && kPass.find(static_cast<char>(character)) < kPass.size())
    return {static_cast<char>(character)};
  std::string bytes = page.ToBytes({&character, 1});
  if (bytes.size() > 2) bytes = "?";
  if (bytes == " ") return "+";
  std::string piece = "%";
  for (const char c : bytes) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02X", static_cast<unsigned char>(c));
    piece += digits;
  }
  return piece;
}

void Run(Input input) {
  const CodePage& page = PageOf(input.Byte());
  const std::u16string text = input.Characters(SIZE_MAX);
  std::string expected;
  for (const char16_t c : text) expected += PieceOf(c, page);
  const std::u16string encoded = FormEncode(text, page).Characters();
  Require(encoded == std::u16string(expected.begin(), expected.end()), "FormEncode()");
}

const Registered kTarget("form_encoding", Run);

}  // namespace quorvane::fuzz::form_encoding
