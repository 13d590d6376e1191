#include "text/character_scan.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace quorvane {
namespace {

constexpr std::size_t kInVector = 8;
constexpr std::size_t kInBlock = 4 * kInVector;
using Characters [[gnu::vector_size(2 * kInVector)]] = std::uint16_t;
using Halves [[gnu::vector_size(2 * kInVector)]] = std::uint64_t;

// What is looked for is told by no branch but one a block of characters.

// The blocks at the front of the text that hold nothing but plain ASCII; gives their length.
QUORVANE_VECTORS std::size_t PlainBlocks(std::u16string_view text) {
  std::size_t at = 0;
  for (; at + kInBlock <= text.size(); at += kInBlock) {
    Characters beyond{};
    for (std::size_t i = 0; i < kInBlock; i += kInVector) {
      Characters now;
      std::memcpy(&now, &text[at + i], sizeof now);
      // The true ones of a comparison are all bits.
      beyond |= reinterpret_cast<Characters>(now - 0x20 > 0x7E - 0x20);
    }
    const auto halves = reinterpret_cast<Halves>(beyond);
    if ((halves[0] | halves[1]) != 0) break;
  }
  return at;
}

// The blocks from a place on in which no character, with the bits of `mask` set, is `wanted`.
QUORVANE_VECTORS std::size_t BlocksWithout(std::u16string_view text, std::uint16_t wanted,
                                           std::uint16_t mask) {
  std::size_t at = 0;
  for (; at + kInBlock <= text.size(); at += kInBlock) {
    Characters found{};
    for (std::size_t i = 0; i < kInBlock; i += kInVector) {
      Characters now;
      std::memcpy(&now, &text[at + i], sizeof now);
      found |= reinterpret_cast<Characters>((now | mask) == wanted);
    }
    const auto halves = reinterpret_cast<Halves>(found);
    if ((halves[0] | halves[1]) != 0) break;
  }
  return at;
}

}  // namespace

bool IsPlainAscii(std::u16string_view text, bool with_vectors) {
  if (with_vectors) text.remove_prefix(PlainBlocks(text));
  return std::ranges::all_of(text, [](char16_t c) { return c >= 0x20 && c <= 0x7E; });
}

std::size_t FindEitherCase(std::u16string_view text, std::size_t from, char16_t lower,
                           char16_t upper, bool with_vectors) {
  // Where it comes often, it is near, and single characters are quicker.
  constexpr std::size_t kNear = 16;
  const auto find_until = [&](std::size_t end) {
    while (from < end && text[from] != lower && text[from] != upper) ++from;
    return from < end;
  };
  if (!with_vectors || find_until(std::min(from + kNear, text.size()))) {
    find_until(text.size());
    return from;
  }
  // The two cases of a letter differ in one bit, which is set in the small one.
  from += BlocksWithout(text.substr(from), lower, static_cast<std::uint16_t>(lower ^ upper));
  find_until(text.size());
  return from;
}

}  // namespace quorvane
