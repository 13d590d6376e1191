#include "platform/posix/system_text.h"

#include <locale.h>
#include <wctype.h>

#include <algorithm>

#include "platform/system_code_page.h"
#include "runtime/utf8.h"

namespace quorvane {
namespace {

constexpr char16_t kByteMark = 0xDC00;

// By the C library's own rules for all of Unicode, whatever locale the program runs in; for ASCII
// alone where it lacks them.
char16_t UpperCase(char16_t character) {
  static const locale_t kUnicode = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  static const locale_t kRules =
      kUnicode != nullptr ? kUnicode : ::newlocale(LC_CTYPE_MASK, "C", nullptr);
  const wint_t upper = ::towupper_l(character, kRules);
  return upper <= 0xFFFF ? static_cast<char16_t>(upper) : character;
}

}  // namespace

std::u16string FromSystemPage(std::string_view bytes) { return systemCodePage().FromBytes(bytes); }

std::string ToSystemPage(std::u16string_view characters) {
  return systemCodePage().ToBytes(characters);
}

std::u16string FoldCase(std::u16string_view name) {
  std::u16string folded(name);
  for (char16_t& character : folded) character = UpperCase(character);
  return folded;
}

Text FileNameFrom(std::string_view bytes) {
  Text name = FromUtf8(bytes);
  if (ToUtf8(name) == bytes) return name;
  std::u16string characters;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    characters += static_cast<char16_t>(byte < 0x80 ? byte : kByteMark + byte);
  }
  return characters;
}

std::string SystemFileName(std::u16string_view name) {
  name = name.substr(0, name.find(u'\0'));
  std::string bytes;
  while (!name.empty()) {
    const bool is_pair = name.size() > 1 && (name[0] & 0xFC00) == 0xD800;
    const bool is_byte = name[0] >= kByteMark + 0x80 && name[0] <= kByteMark + 0xFF;
    const std::u16string_view character = name.substr(0, is_pair ? 2 : 1);
    bytes += is_byte ? std::string(1, static_cast<char>(name[0])) : ToUtf8(Text(character));
    name.remove_prefix(character.size());
  }
  std::ranges::replace(bytes, '\\', '/');
  return bytes;
}

}  // namespace quorvane
