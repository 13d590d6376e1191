#include "text/form_encoding.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "runtime/integers.h"

namespace quorvane {
namespace {

// Kept: the separators & and = pass, and so do ? / : $ ( ) { } ~, while other signs that a URL may
// hold do not. Callers encode the assembled body in one go and rely on it. Pinned by
// FormEncode.LetsTheSeparatorsPass.
constexpr std::u16string_view kPassThrough =
    u"1234567890ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz:/.?=_-$(){}~&";

constexpr std::size_t kAsciiCount = 128;

enum class Class : std::uint8_t { kEscape, kPass, kBlank };

constexpr auto kClasses = [] {
  std::array<Class, kAsciiCount> classes{};
  for (const char16_t c : kPassThrough) classes[c] = Class::kPass;
  classes[u' '] = Class::kBlank;
  return classes;
}();

// The encoded text, written through a block so that the common piece of one or three characters
// costs no test of the string's own capacity.
class Output {
 public:
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): what Add has not written is not read
  explicit Output(std::size_t expected) { text_.reserve(expected); }

  void Add(char16_t character) {
    if (used_ == block_.size()) Flush();
    block_[used_++] = character;
  }

  void AddEscape(std::uint32_t code) {
    Add(u'%');
    // Kept: a code of two bytes comes out as one piece of four digits behind a single percent sign,
    // which is no well-formed escape; servers of double-byte systems take it apart. Pinned by
    // FormEncode.WritesATwoByteCharacterAsOnePiece.
    if (code > 0xFF) {
      Add(Digit(code >> 12));
      Add(Digit(code >> 8));
    }
    Add(Digit(code >> 4));
    Add(Digit(code));
  }

  Text Take() {
    Flush();
    return Text(std::move(text_));
  }

 private:
  static char16_t Digit(std::uint32_t value) { return u"0123456789ABCDEF"[value & 0xF]; }

  void Flush() {
    text_.append(block_.data(), used_);
    used_ = 0;
  }

  std::u16string text_;
  std::array<char16_t, 1024> block_;  // NOLINT: written before it is read
  std::size_t used_ = 0;
};

// The code of one character in the page: one byte, or lead and trail byte.
std::uint32_t CodeOf(char16_t character, const CodePage& code_page) {
  // Every page of the system holds ASCII at its own places.
  if (character < kAsciiCount) return character;
  const std::string bytes = code_page.ToBytes({&character, 1});
  const auto byte = [&bytes](std::size_t i) {
    return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i]));
  };
  if (bytes.size() == 1) return byte(0);
  if (bytes.size() == 2) return byte(0) << 8 | byte(1);
  return u'?';
}

void Encode(char16_t character, const CodePage& code_page, Output& output) {
  const Class kind = character < kAsciiCount ? kClasses[character] : Class::kEscape;
  if (kind == Class::kPass) return output.Add(character);
  if (kind == Class::kBlank) return output.Add(u'+');
  const std::uint32_t code = CodeOf(character, code_page);
  // A character whose nearest one in the page is the blank.
  if (code == u' ') return output.Add(u'+');
  output.AddEscape(code);
}

// Kept: position and length are 16 bits wide and the step behind the last character is tested, too,
// so 32767 characters fail after all of them are encoded, and more fail at once; the empty text is
// what callers test for. Pinned by FormEncode.HoldsAtMost32766Characters.
Text EncodeAll(const std::u16string& characters, const CodePage& code_page) {
  Output output(characters.size());
  const std::int16_t length = NarrowTo16(characters.size());
  for (std::int16_t position = 1; position <= length;
       position = CheckedAdd<std::int16_t>(position, 1)) {
    Encode(characters[static_cast<std::size_t>(position) - 1], code_page, output);
  }
  return output.Take();
}

}  // namespace

Text FormEncode(const Text& text, const CodePage& code_page) {
  Text result = u"";
  try {
    if (!text.IsEmpty()) result = EncodeAll(text.Characters(), code_page);
  } catch (...) {  // NOLINT(bugprone-empty-catch): whatever fails, the result stays empty
  }
  return result;
}

}  // namespace quorvane
