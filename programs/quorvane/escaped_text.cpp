#include "programs/quorvane/escaped_text.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "runtime/utf8.h"

namespace quorvane::programs {
namespace {

struct Letter {
  char16_t letter;
  char16_t character;
};

constexpr std::array kLetters{
    Letter{u'\\', u'\\'}, Letter{u'\'', u'\''}, Letter{u'"', u'"'},  Letter{u'?', u'?'},
    Letter{u'a', u'\a'},  Letter{u'b', u'\b'},  Letter{u'f', u'\f'}, Letter{u'n', u'\n'},
    Letter{u'r', u'\r'},  Letter{u't', u'\t'},  Letter{u'v', u'\v'},
};

int DigitValue(char16_t c) {
  if (c >= u'0' && c <= u'9') return c - u'0';
  if (c >= u'A' && c <= u'F') return c - u'A' + 10;
  if (c >= u'a' && c <= u'f') return c - u'a' + 10;
  return 99;
}

// Takes from `least` to `most` digits of the base off the front; nothing when there are too few.
std::optional<char16_t> TakeDigits(std::u16string_view& rest, int base, int least, int most) {
  unsigned value = 0;
  int count = 0;
  while (count < most && !rest.empty() && DigitValue(rest.front()) < base) {
    value = value * static_cast<unsigned>(base) + static_cast<unsigned>(DigitValue(rest.front()));
    rest.remove_prefix(1);
    ++count;
  }
  if (count < least) return std::nullopt;
  return static_cast<char16_t>(value);
}

// Takes what follows a backslash.
std::optional<char16_t> TakeEscape(std::u16string_view& rest) {
  if (rest.empty()) return std::nullopt;
  if (DigitValue(rest.front()) < 8) return TakeDigits(rest, 8, 1, 3);
  const char16_t kind = rest.front();
  rest.remove_prefix(1);
  if (kind == u'x') return TakeDigits(rest, 16, 2, 2);
  if (kind == u'u') return TakeDigits(rest, 16, 4, 4);
  const auto* const found = std::ranges::find(kLetters, kind, &Letter::letter);
  if (found == kLetters.end()) return std::nullopt;
  return found->character;
}

std::string HexDigits(char16_t c, int digits) {
  std::string written;
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) {
    written += "0123456789ABCDEF"[(c >> shift) & 0xF];
  }
  return written;
}

bool IsHigh(char16_t c) { return c >= 0xD800 && c <= 0xDBFF; }
bool IsLow(char16_t c) { return c >= 0xDC00 && c <= 0xDFFF; }

std::string Escape(char16_t c) {
  constexpr std::u16string_view kUsual = u"\\\n\r\t";
  if (kUsual.find(c) != std::u16string_view::npos) {
    const auto* const found = std::ranges::find(kLetters, c, &Letter::character);
    return {'\\', static_cast<char>(found->letter)};
  }
  if (c < 0x20 || c == 0x7F) return "\\x" + HexDigits(c, 2);
  return "\\u" + HexDigits(c, 4);
}

}  // namespace

Text Unescaped(const Text& line) {
  std::u16string characters;
  std::u16string_view rest = line.Characters();
  while (!rest.empty()) {
    const std::u16string_view from_here = rest;
    rest.remove_prefix(1);
    if (from_here.front() != u'\\') {
      characters += from_here.front();
      continue;
    }
    const std::optional<char16_t> character = TakeEscape(rest);
    if (!character) throw EscapeError("no such escape: " + ToUtf8(Text(from_here.substr(0, 6))));
    characters += *character;
  }
  return Text(std::move(characters));
}

std::string Escaped(const Text& text) {
  std::string written;
  const std::u16string& characters = text.Characters();
  for (std::size_t i = 0; i < characters.size(); ++i) {
    const char16_t c = characters[i];
    const bool pair = IsHigh(c) && i + 1 < characters.size() && IsLow(characters[i + 1]);
    const bool single_half = !pair && (IsHigh(c) || IsLow(c));
    if (c < 0x20 || c == 0x7F || c == u'\\' || single_half) {
      written += Escape(c);
      continue;
    }
    written += ToUtf8(Text(characters.substr(i, pair ? 2 : 1)));
    if (pair) ++i;
  }
  return written;
}

}  // namespace quorvane::programs
