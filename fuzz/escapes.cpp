// The escapes of batch files: a text on one line, and back.
//
// Oracle: a second reader, which goes from state to state where the house's takes pieces off; and
// that what Escaped() writes is one line of UTF-8 without control characters which reads back as
// the same text.

#include "fuzz/target.h"
#include "programs/quorvane/escaped_text.h"
#include "runtime/utf8.h"

namespace quorvane::fuzz::escapes {

using programs::Escaped;
using programs::EscapeError;
using programs::Unescaped;

// The text, and whether all escapes are known.
struct Read {
  std::u16string text;
  bool is_known = true;
};

int DigitOf(char16_t c, int base) {
  const std::u16string_view digits = u"0123456789abcdef";
  const std::size_t value = digits.find(c >= u'A' && c <= u'F' ? static_cast<char16_t>(c + 32) : c);
  return value < static_cast<std::size_t>(base) ? static_cast<int>(value) : -1;
}

Read ReadEscapes(std::u16string_view line) {
  constexpr std::u16string_view kLetters = u"\\'\"?abfnrtv";
  constexpr std::u16string_view kMeanings = u"\\'\"?\a\b\f\n\r\t\v";
  Read read;
  std::size_t i = 0;
  while (i < line.size()) {
    if (line[i] != u'\\') {
      read.text += line[i++];
      continue;
    }
    const char16_t kind = ++i < line.size() ? line[i] : u'\0';
    const std::size_t letter = kLetters.find(kind);
    const bool is_octal = DigitOf(kind, 8) >= 0 && i < line.size();
    if (i < line.size() && letter != std::u16string_view::npos) {
      read.text += kMeanings[letter];
      ++i;
    } else if (i < line.size() && (is_octal || kind == u'x' || kind == u'u')) {
      const std::size_t most = is_octal ? 3 : kind == u'x' ? 2 : 4;
      const std::size_t first = is_octal ? i : i + 1;
      int value = 0;
      for (i = first; i < first + most && i < line.size(); ++i) {
        const int digit = DigitOf(line[i], is_octal ? 8 : 16);
        if (digit < 0) break;
        value = value * (is_octal ? 8 : 16) + digit;
      }
      if (i - first < (is_octal ? 1 : most)) return {u"", false};
      read.text += static_cast<char16_t>(value);
    } else {
      return {u"", false};
    }
  }
  return read;
}

void Run(Input input) {
  const std::u16string line = input.Characters(SIZE_MAX);
  const Read expected = ReadEscapes(line);
  try {
    const Text text = Unescaped(line);
    Require(expected.is_known, "an unknown escape is taken");
    Require(text.Characters() == expected.text, "Unescaped() gives another text");
  } catch (const EscapeError&) {
    Require(!expected.is_known, "a known escape is refused");
  }

  const std::string written = Escaped(line);
  for (const char c : written) Require((c & 0xE0) != 0 && c != 0x7F, "a control character");
  const Text back = FromUtf8(written);
  Require(ToUtf8(back) == written, "Escaped() is no UTF-8");
  Require(Unescaped(back).Characters() == line, "Escaped() reads back as another text");
}

const Registered kTarget("escapes", Run);

}  // namespace quorvane::fuzz::escapes
