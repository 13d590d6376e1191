#include "text/form_encoding.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include "runtime/ignored_result.h"
#include "runtime/integers.h"

namespace quorvane {
namespace {

// Kept: the separators & and = pass, and so do ? / : $ ( ) { } ~, while other signs that a URL may
// hold do not. A body is encoded after its pairs were joined, so its separators must come through.
// Pinned by FormEncode.LetsTheSeparatorsPass.
constexpr std::u16string_view kPassThrough =
    u"1234567890ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz:/.?=_-$(){}~&";

constexpr std::size_t kAsciiCount = 128;
constexpr std::size_t kLongestPiece = 5;

// What one character becomes. All of `characters` is copied, of which the first `length` count.
struct Piece {
  std::array<char16_t, 3> characters;
  std::uint16_t length;
};

constexpr char16_t HexDigit(std::uint32_t value) { return u"0123456789ABCDEF"[value & 0xF]; }

// By the code of one byte. A character above ASCII may have the code of a blank, too: the nearest
// one that its page holds.
constexpr auto kPiecesOfBytes = [] {
  std::array<Piece, 256> pieces{};
  for (std::uint32_t code = 0; code < pieces.size(); ++code)
    pieces[code] = {{u'%', HexDigit(code >> 4), HexDigit(code)}, 3};
  pieces[u' '] = {{u'+'}, 1};
  return pieces;
}();

// By the character. Every page of the system holds ASCII at its own places.
constexpr auto kAsciiPieces = [] {
  std::array<Piece, kAsciiCount> pieces{};
  std::copy_n(kPiecesOfBytes.begin(), kAsciiCount, pieces.begin());
  for (const char16_t c : kPassThrough) pieces[c] = {{c}, 1};
  return pieces;
}();

// Writes into at least kLongestPiece characters of room; gives the end of the piece.
char16_t* Write(const Piece& piece, char16_t* out) {
  std::memcpy(out, piece.characters.data(), sizeof piece.characters);
  return out + piece.length;
}

// Kept: a code of two bytes comes out as one piece of four digits behind a single percent sign,
// which is no well-formed escape. A server that reads such bodies would notice two escapes. Pinned
// by FormEncode.WritesATwoByteCharacterAsOnePiece.
char16_t* WriteTwoBytes(std::uint32_t code, char16_t* out) {
  *out++ = u'%';
  for (const int shift : {12, 8, 4, 0}) *out++ = HexDigit(code >> shift);
  return out;
}

char16_t* WriteCode(std::uint16_t code, char16_t* out) {
  return code <= 0xFF ? Write(kPiecesOfBytes[code], out) : WriteTwoBytes(code, out);
}

// The codes of characters above ASCII. A text has few of them, and many times each, so those last
// asked for are kept.
class KnownCodes {
 public:
  explicit KnownCodes(const CodePage& code_page) : code_page_(code_page) {}

  std::uint16_t Of(char16_t character) {
    Entry& entry = entries_[character % entries_.size()];
    if (entry.character != character) {
      entry = {character, static_cast<std::uint16_t>(code_page_.CodeOf(character))};
    }
    return entry.code;
  }

 private:
  struct Entry {
    char16_t character;
    std::uint16_t code;
  };

  const CodePage& code_page_;
  std::array<Entry, 64> entries_{};
};

// How long the encoded text will be, if no character takes two bytes.
std::size_t ExpectedLength(std::u16string_view characters) {
  std::size_t length = 0;
  for (const char16_t c : characters) length += c < kAsciiCount ? kAsciiPieces[c].length : 3U;
  return length;
}

constexpr auto kPasses = [] {
  std::array<bool, kAsciiCount> passes{};
  for (const char16_t c : kPassThrough) passes[c] = true;
  return passes;
}();

bool Passes(char16_t c) { return c < kAsciiCount && kPasses[c]; }

// Most characters pass, in runs: those are copied without a look at what they become, four at a
// time. Gives the length of the run at the front of `from`, at most `length`; behind the run up to
// three characters more are written.
std::ptrdiff_t CopyRun(const char16_t* from, std::ptrdiff_t length, char16_t* out) {
  constexpr std::ptrdiff_t kFour = 4;
  constexpr std::uint64_t kAboveAscii = 0xFF80FF80FF80FF80;
  std::ptrdiff_t i = 0;
  for (; length - i >= kFour; i += kFour) {
    std::uint64_t four = 0;
    std::memcpy(&four, from + i, sizeof four);
    if ((four & kAboveAscii) != 0) break;
    std::memcpy(out + i, &four, sizeof four);
#pragma GCC unroll 4
    for (std::ptrdiff_t next = 0; next < kFour; ++next)
      if (!kPasses[from[i + next]]) return i + next;
  }
  for (; i < length && Passes(from[i]); ++i) out[i] = from[i];
  return i;
}

// Kept: position and length are 16 bits wide and the step behind the last character is tested, too,
// so 32767 characters fail after all of them are encoded, and more fail at once; the caller sees
// the empty text. Pinned by FormEncode.HoldsAtMost32766Characters.
Text EncodeAll(const std::u16string& characters, const CodePage& code_page) {
  const std::int16_t length = NarrowTo16(characters.size());
  KnownCodes codes(code_page);
  std::u16string encoded;
  // Few texts have more to escape than this holds; the others are counted where it is full.
  encoded.reserve(characters.size() + characters.size() / 4);
  // Pieces are collected here, so that adding one costs no test of the text's own room.
  std::array<char16_t, 1024> block;  // NOLINT(cppcoreguidelines-pro-type-member-init)
  constexpr std::ptrdiff_t kAtOnce = block.size() / kLongestPiece;
  const char16_t* next = characters.data();
  const char16_t* const end = next + length;
  while (next != end) {
    const char16_t* const stop = next + std::min(kAtOnce, end - next);
    char16_t* out = block.data();
    while (next != stop) {
      const std::ptrdiff_t run = CopyRun(next, stop - next, out);
      out += run;
      for (next += run; next != stop && !Passes(*next); ++next)
        out =
            *next < kAsciiCount ? Write(kAsciiPieces[*next], out) : WriteCode(codes.Of(*next), out);
    }
    const auto added = static_cast<std::size_t>(out - block.data());
    if (encoded.capacity() - encoded.size() < added)
      encoded.reserve(encoded.size() + added + ExpectedLength({next, end}));
    encoded.append(block.data(), added);
  }
  IgnoreResult(CheckedAdd<std::int16_t>(length, 1));
  return Text(std::move(encoded));
}

}  // namespace

Text FormEncode(const Text& text, const CodePage& code_page) {
  Text result = u"";
  // Kept: whatever fails, all work is dropped and the result stays empty; no error reaches the
  // caller. Pinned by FormEncode.DropsAllWorkOnAnyFailure.
  try {
    if (!text.IsEmpty()) result = EncodeAll(text.Characters(), code_page);
  } catch (...) {  // NOLINT(bugprone-empty-catch): see above
  }
  return result;
}

}  // namespace quorvane
