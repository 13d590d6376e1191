#include "runtime/ascii.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace quorvane {
namespace {

// Several units at a time: this stands before and behind every call to the system.
template <class Unit>
bool AllAscii(std::basic_string_view<Unit> text) {
  static_assert(sizeof(Unit) <= 2);
  using Several = std::size_t;
  constexpr auto kAboveAscii =
      static_cast<Several>(sizeof(Unit) == 1 ? 0x8080808080808080 : 0xFF80FF80FF80FF80);
  constexpr std::size_t kTogether = sizeof(Several) / sizeof(Unit);
  Several all = 0;
  std::size_t at = 0;
  for (; at + kTogether <= text.size(); at += kTogether) {
    Several several = 0;
    std::memcpy(&several, text.data() + at, sizeof several);
    all |= several;
  }
  for (; at < text.size(); ++at) all |= static_cast<Several>(text[at]) & kAboveAscii;
  return (all & kAboveAscii) == 0;
}

// The compiler's own way for a loop over single units, where it has vectors: on every processor of
// 64 bits. Elsewhere, as on 32-bit Windows, four at a time take a third of the time: four
// characters are two words, or one word of bytes.
constexpr bool kHasVectors = sizeof(void*) == 8;
constexpr std::size_t kUnits = 4;
static_assert(std::endian::native == std::endian::little);

constexpr std::uint32_t Narrowed(std::uint32_t two) { return (two | two >> 8) & 0xFFFF; }
static_assert(Narrowed(0x00BB00AA) == 0xBBAA);
constexpr std::uint32_t Widened(std::uint32_t two) { return (two & 0xFF) | (two & 0xFF00) << 8; }
static_assert(Widened(0xBBAA) == 0x00BB00AA);

}  // namespace

bool IsAscii(std::u16string_view characters) { return AllAscii(characters); }
bool IsAscii(std::string_view bytes) { return AllAscii(bytes); }

void NarrowAscii(std::u16string_view characters, char* bytes) {
  std::size_t at = 0;
  for (; !kHasVectors && at + kUnits <= characters.size(); at += kUnits) {
    std::uint32_t low = 0;
    std::uint32_t high = 0;
    std::memcpy(&low, &characters[at], sizeof low);
    std::memcpy(&high, &characters[at + 2], sizeof high);
    const std::uint32_t four = Narrowed(low) | Narrowed(high) << 16;
    std::memcpy(bytes + at, &four, sizeof four);
  }
  for (; at < characters.size(); ++at) bytes[at] = static_cast<char>(characters[at]);
}

void WidenAscii(std::string_view bytes, char16_t* characters) {
  std::size_t at = 0;
  for (; !kHasVectors && at + kUnits <= bytes.size(); at += kUnits) {
    std::uint32_t four = 0;
    std::memcpy(&four, &bytes[at], sizeof four);
    const std::uint32_t low = Widened(four);
    const std::uint32_t high = Widened(four >> 16);
    std::memcpy(characters + at, &low, sizeof low);
    std::memcpy(characters + at + 2, &high, sizeof high);
  }
  for (; at < bytes.size(); ++at) characters[at] = static_cast<unsigned char>(bytes[at]);
}

}  // namespace quorvane
