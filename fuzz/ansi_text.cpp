// Texts around an 8-bit call, under several code pages: what the call is given, what it writes, and
// what comes back.
//
// Oracle: the page asked for all bytes at once, without the house's shorter way for ASCII; and that
// a page's bytes for a text lead to characters which have the same bytes.

#include "runtime/ansi_text.h"

#include "fuzz/pages.h"
#include "fuzz/target.h"
#include "runtime/fixed_buffer.h"

namespace quorvane::fuzz::ansi_text {

void CheckCopy(Text text, const std::string& written, const CodePage& page) {
  const bool is_absent = text.IsAbsent();
  const std::u16string before = text.Characters();
  std::string bytes = page.ToBytes(before);
  // A call may write as many bytes as the text has characters, or the copy has, and over its zero.
  const std::size_t count = std::min(std::max(before.size(), bytes.size()) + 1, written.size());
  const std::size_t own = bytes.size();
  CallWithAnsi(
      page,
      [&](char* copy) {
        Require((copy == nullptr) == is_absent, "whether the text is absent");
        if (is_absent) return;
        Require(std::string_view(copy, own + 1) == std::string_view(bytes.c_str(), own + 1),
                "what the call is given");
        std::copy_n(written.begin(), count, copy);
      },
      text);
  for (std::size_t i = 0; i < std::min(count, own); ++i) bytes[i] = written[i];
  Require(text.IsAbsent() == is_absent, "an absent text stays absent");
  Require(text.Characters() == (is_absent ? u"" : page.FromBytes(bytes)), "what comes back");
}

void CheckFixed(const std::string& written, const CodePage& page) {
  constexpr std::size_t kSize = 25;
  FixedBuffer<kSize> buffer(' ');
  std::string bytes(kSize, ' ');
  for (std::size_t i = 0; i < std::min(kSize, written.size()); ++i) {
    buffer.Bytes()[i] = written[i];
    bytes[i] = written[i];
  }
  std::u16string expected = page.FromBytes(bytes);
  expected.resize(kSize, u' ');
  Require(buffer.CopyBack(page) == expected, "what comes back of a fixed text");
}

void Run(Input input) {
  const CodePage& page = PageOf(input.Byte());
  const std::uint8_t absent = input.Byte();
  const std::u16string characters = input.Characters(input.Byte());
  const std::string written = input.Rest();
  CheckCopy(absent == 0 ? Text() : Text(characters), written, page);
  CheckFixed(written, page);
  const std::string bytes = page.ToBytes(characters);
  Require(page.ToBytes(page.FromBytes(bytes)) == bytes, "the bytes of a text change");
  Require(std::ranges::count(page.FromBytes(written), u'\0') == std::ranges::count(written, '\0'),
          "a zero that does not pass through");
  std::string one_by_one;
  for (const char16_t c : characters) one_by_one += page.ToBytes({&c, 1});
  Require(one_by_one == bytes, "a character depends on its neighbours");
}

const Registered kTarget("ansi_text", Run);

}  // namespace quorvane::fuzz::ansi_text
